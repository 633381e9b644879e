// SPDX-License-Identifier: MIT
#include "fwlib/builtin/etee.h"

#include "fwlib/builtin/elementhelpers.h"
#include "fwlib/elements/pad.h"
#include "fwlib/elements/pads.h"
#include "fwlib/text.h"

namespace VESK {

namespace {

constexpr Byte4Type DefaultPads = 2;

} // namespace

ETee::ETee() {
    m_cProperties.SetProperty(Key::EObjectType, Type::ETee, Section::Standard);
}

ETee::~ETee() = default;

int ETee::Initialize() {
    Byte4Type b4Pads;
    m_cProperties.GetProperty(Key::TotalSourcePads, &b4Pads, DefaultPads, Section::Standard);
    return CreateSinkPads(*this, 1) && CreateSourcePads(*this, b4Pads, nullptr);
}

int ETee::DataArrived(QObject* pObject, Byte2Type b2Index) {
    if (!pObject) {
        return ReportNullObject(*this, b2Index);
    }
    int iResult = 1;
    for (Byte2Type b2 = 0; iResult && b2 < GetSourcePadCount(); ++b2) {
        SOURCEPAD* const pPad = GetSourcePad(b2);
        iResult = pPad ? pPad->Push(pObject) : 0;
    }
    return iResult;
}

} // namespace VESK
