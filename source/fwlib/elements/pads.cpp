// SPDX-License-Identifier: MIT
#include "fwlib/elements/pads.h"

#include "fwlib/elements/eobject.h"
#include "fwlib/elements/pad.h"
#include "fwlib/internal/growth.h"

#include <new>

namespace VESK {

namespace {

int AddPad(EObject& cElement, SINKPAD* pPad) {
    return cElement.AddSinkPad(pPad);
}

int AddPad(EObject& cElement, SOURCEPAD* pPad) {
    return cElement.AddSourcePad(pPad);
}

// Adds the pad, or deletes it and reports; null, too, is reported.
template <class Pad>
int AddOrReport(EObject& cElement, Pad* pPad) {
    if (pPad && AddPad(cElement, pPad)) {
        return 1;
    }
    delete pPad;
    cElement.ErrorMessage("Initialize(): Unable to add a pad\n");
    return 0;
}

} // namespace

int CreateSinkPads(EObject& cElement, Byte4Type b4Count) {
    if (b4Count > LargestCapacity) {
        cElement.ErrorMessage("Initialize(): %u sink pads are more than %u\n", b4Count, LargestCapacity);
        return 0;
    }
    int iAdded = 1;
    for (Byte4Type b4 = 0; iAdded && b4 < b4Count; ++b4) {
        iAdded = AddOrReport(cElement, new (std::nothrow) SINKPAD(&cElement, static_cast<Byte2Type>(b4)));
    }
    return iAdded;
}

int CreateSourcePads(EObject& cElement, Byte4Type b4Count, EObject* pOwner) {
    if (b4Count > LargestCapacity) {
        cElement.ErrorMessage("Initialize(): %u source pads are more than %u\n", b4Count, LargestCapacity);
        return 0;
    }
    int iAdded = 1;
    for (Byte4Type b4 = 0; iAdded && b4 < b4Count; ++b4) {
        iAdded = AddOrReport(cElement, new (std::nothrow) SOURCEPAD(pOwner));
    }
    return iAdded;
}

} // namespace VESK
