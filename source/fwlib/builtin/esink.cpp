// SPDX-License-Identifier: MIT
#include "fwlib/builtin/esink.h"

#include "fwlib/elements/qobject.h"
#include "fwlib/internal/elementwork.h"
#include "fwlib/internal/texts.h"

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
    char achType[TypeTextSize];
    pObject->m_cProperties.GetProperty(Key::QObjectType, achType, sizeof achType, nullptr, Section::Standard);
    std::printf("ESink::DataArrived: %s\n", achType);
    return 1;
}

} // namespace VESK
