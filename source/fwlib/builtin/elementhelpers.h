// SPDX-License-Identifier: MIT
// Helpers of the built-in elements.
#ifndef FWLIB_BUILTIN_ELEMENTHELPERS_H
#define FWLIB_BUILTIN_ELEMENTHELPERS_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/types.h"

namespace FWLIB_HIDDEN VESK {

// Create pads of the element; pOwner, which may be null, is the owner of source pads. Return 1; or 0, after a report,
// when there would be more than 65,520 pads or there is not enough memory. A pad that cannot be added is deleted.
int CreateSinkPad(EObject& cElement);
int CreateSourcePads(EObject& cElement, Byte4Type b4Count, EObject* pOwner);

// An object's type in a message: at most 31 characters. pchNone replaces a missing type; null stands for "".
struct ObjectTypeText {
    explicit ObjectTypeText(QObject& cObject, const char* pchNone = nullptr);

    char achText[TypeTextSize];
};

// Reports an object pointer that is null, and returns 0.
__attribute__((cold, noinline)) int ReportNullObject(EObject& cElement, Byte2Type b2Index);

} // namespace VESK

#endif
