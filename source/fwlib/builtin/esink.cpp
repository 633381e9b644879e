// SPDX-License-Identifier: MIT
#include "fwlib/builtin/esink.h"

#include "fwlib/builtin/elementhelpers.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/text.h"

#include <cstdio>

namespace VESK {

ESink::ESink() {
    m_cProperties.SetProperty(Key::EObjectType, Type::ESink, Section::Standard);
}

ESink::~ESink() = default;

int ESink::Initialize() {
    return CreateSinkPad(*this);
}

int ESink::DataArrived(QObject* pObject, Byte2Type b2Index) {
    if (!pObject) {
        return ReportNullObject(*this, b2Index);
    }
    std::printf("ESink::DataArrived: %s\n", ObjectTypeText(*pObject).achText);
    return 1;
}

} // namespace VESK
