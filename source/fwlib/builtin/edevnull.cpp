// SPDX-License-Identifier: MIT
#include "fwlib/builtin/edevnull.h"

#include "fwlib/builtin/elementhelpers.h"
#include "fwlib/elements/pads.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/text.h"

namespace VESK {

EDevNull::EDevNull() {
    m_cProperties.SetProperty(Key::EObjectType, Type::EDevNull, Section::Standard);
}

EDevNull::~EDevNull() = default;

int EDevNull::Initialize() {
    const int iInitialized = EObject::Initialize();
    return iInitialized ? CreateSinkPads(*this, 1) : iInitialized;
}

int EDevNull::DataArrived(QObject* pObject, Byte2Type b2Index) {
    if (!pObject) {
        return ReportNullObject(*this, b2Index);
    }
    if (m_iDebug != 0) {
        Message(1, "DataArrived(%d): QObjectType = %s\n", b2Index,
                ObjectTypeText(*pObject, "[No QObject Type]").achText);
    }
    return 1;
}

} // namespace VESK
