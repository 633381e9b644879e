// SPDX-License-Identifier: MIT
#include "fwlib/builtin/esink.h"

#include "fwlib/builtin/elementhelpers.h"
#include "fwlib/elements/pads.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/framework/say.h"
#include "fwlib/text.h"

#include <cstring>

namespace VESK {

ESink::ESink() {
    m_cProperties.SetProperty(Key::EObjectType, Type::ESink, Section::Standard);
}

ESink::~ESink() = default;

int ESink::Initialize() {
    return CreateSinkPads(*this, 1);
}

int ESink::DataArrived(QObject* pObject, Byte2Type b2Index) {
    if (!pObject) {
        return ReportNullObject(*this, b2Index);
    }
    static constexpr char Begin[] = "ESink::DataArrived: ";
    const ObjectTypeText cType(*pObject);
    char achLine[sizeof Begin + TypeTextSize];
    std::memcpy(achLine, Begin, sizeof Begin - 1);
    std::memcpy(achLine + sizeof Begin - 1, cType.achText, std::strlen(cType.achText) + 1);
    SayOutputLine(*this, achLine);
    return 1;
}

} // namespace VESK
