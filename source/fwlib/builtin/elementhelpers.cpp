// SPDX-License-Identifier: MIT
#include "fwlib/builtin/elementhelpers.h"

#include "fwlib/elements/pad.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/internal/growth.h"
#include "fwlib/text.h"

#include <new>

namespace VESK {

namespace {

int ReportNoPad(EObject& cElement) {
    cElement.ErrorMessage("Initialize(): Unable to add a pad\n");
    return 0;
}

} // namespace

int CreateSinkPad(EObject& cElement) {
    auto* const pPad = new (std::nothrow) SINKPAD(&cElement, 0);
    if (!pPad || !cElement.AddSinkPad(pPad)) {
        delete pPad;
        return ReportNoPad(cElement);
    }
    return 1;
}

int CreateSourcePads(EObject& cElement, Byte4Type b4Count, EObject* pOwner) {
    if (b4Count > LargestCapacity) {
        cElement.ErrorMessage("Initialize(): %u source pads are more than %u\n", b4Count, LargestCapacity);
        return 0;
    }
    for (Byte4Type b4 = 0; b4 < b4Count; ++b4) {
        auto* const pPad = new (std::nothrow) SOURCEPAD(pOwner);
        if (!pPad || !cElement.AddSourcePad(pPad)) {
            delete pPad;
            return ReportNoPad(cElement);
        }
    }
    return 1;
}

ObjectTypeText::ObjectTypeText(QObject& cObject, const char* pchNone) {
    cObject.m_cProperties.GetProperty(Key::QObjectType, achText, sizeof achText, Text(pchNone),
                                      Section::Standard);
}

int ReportNullObject(EObject& cElement, Byte2Type b2Index) {
    cElement.ErrorMessage("DataArrived(%d): QObject pointer is NULL\n", b2Index);
    return 0;
}

} // namespace VESK
