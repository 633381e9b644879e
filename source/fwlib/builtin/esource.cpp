// SPDX-License-Identifier: MIT
#include "fwlib/builtin/esource.h"

#include "fwlib/elements/pad.h"
#include "fwlib/elements/pads.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/text.h"

namespace VESK {

namespace {

constexpr Byte2Type DefaultPads = 1;
constexpr Byte2Type ObjectsSent = 1000; // by each Run

} // namespace

ESource::ESource() {
    m_cProperties.SetProperty(Key::EObjectType, Type::ESource, Section::Standard);
}

ESource::~ESource() = default;

int ESource::Initialize() {
    Byte2Type b2Pads;
    m_cProperties.GetProperty(Key::TotalSourcePads, &b2Pads, DefaultPads, Section::Standard);
    return CreateSourcePads(*this, b2Pads, this);
}

int ESource::DataArrived(QObject*, Byte2Type) {
    return 0;
}

int ESource::Run() {
    SOURCEPAD* const pPad = GetSourcePad(0);
    if (!pPad) {
        ErrorMessage("Run(): No source pad\n");
        return 0;
    }
    QObject cObject;
    const bool bTyped = cObject.m_cProperties.GetNumberOfProperties() > 0; // false: not enough memory
    for (Byte2Type b2 = 0; b2 < ObjectsSent; ++b2) {
        if (!bTyped || !cObject.m_cProperties.SetProperty(Key::Count, b2, Section::Standard)) {
            ErrorMessage("Run(): No memory for object %d\n", b2);
            return 0;
        }
        pPad->Push(&cObject);
    }
    return 1;
}

} // namespace VESK
