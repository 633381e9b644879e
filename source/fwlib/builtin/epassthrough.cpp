// SPDX-License-Identifier: MIT
#include "fwlib/builtin/epassthrough.h"

#include "fwlib/builtin/elementhelpers.h"
#include "fwlib/elements/pad.h"
#include "fwlib/elements/pads.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/framework/say.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/text.h"

namespace VESK {

namespace {

int Deliver(EPassthrough& cElement, QObject* pObject) {
    return cElement.m_pSourcePad ? cElement.m_pSourcePad->Push(pObject) : 0;
}

// The names at this moment: elements downstream may change the object's type.
struct Trace {
    Trace(EPassthrough& cElement, QObject& cObject) : cType(cObject) {
        cElement.m_cProperties.GetProperty(Key::Name, achName, sizeof achName, nullptr, Section::Standard);
    }

    char achName[TypeTextSize];
    const ObjectTypeText cType;
};

// A delivery with its two trace lines; out of line, as it is rare.
__attribute__((cold, noinline)) int DeliverTraced(EPassthrough& cElement, QObject& cObject) {
    const Trace cBefore(cElement, cObject);
    SayOutput(cElement, "EPassthrough::%s: %s\n", cBefore.achName, cBefore.cType.achText);
    const int iResult = Deliver(cElement, &cObject);
    const Trace cAfter(cElement, cObject);
    SayOutput(cElement, "EPassthrough::%s: %s, rv=%d\n", cAfter.achName, cAfter.cType.achText, iResult);
    return iResult;
}

} // namespace

EPassthrough::EPassthrough() : m_pSourcePad(nullptr), m_b4Debug(0) {
    m_cProperties.SetProperty(Key::EObjectType, Type::EPassthrough, Section::Standard);
}

EPassthrough::~EPassthrough() = default;

int EPassthrough::Initialize() {
    const Byte2Type b2Position = m_b2SourcePadCount;
    const int iPads = CreateSourcePads(*this, 1, this) && CreateSinkPads(*this, 1);
    m_pSourcePad = EObject::GetSourcePad(b2Position);
    m_cProperties.GetProperty(Key::Debug, &m_b4Debug, 0, Section::Standard);
    return iPads;
}

int EPassthrough::DataArrived(QObject* pObject, Byte2Type b2Index) {
    if (!pObject) {
        return ReportNullObject(*this, b2Index);
    }
    return m_b4Debug ? DeliverTraced(*this, *pObject) : Deliver(*this, pObject);
}

} // namespace VESK
