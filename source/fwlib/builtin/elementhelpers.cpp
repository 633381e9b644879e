// SPDX-License-Identifier: MIT
#include "fwlib/builtin/elementhelpers.h"

#include "fwlib/elements/eobject.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/text.h"

namespace VESK {

ObjectTypeText::ObjectTypeText(QObject& cObject, const char* pchNone) {
    cObject.m_cProperties.GetProperty(Key::QObjectType, achText, sizeof achText, Text(pchNone),
                                      Section::Standard);
}

int ReportNullObject(EObject& cElement, Byte2Type b2Index) {
    cElement.ErrorMessage("DataArrived(%d): QObject pointer is NULL\n", b2Index);
    return 0;
}

} // namespace VESK
