// SPDX-License-Identifier: MIT
// Helpers of the built-in elements.
#ifndef FWLIB_BUILTIN_ELEMENTHELPERS_H
#define FWLIB_BUILTIN_ELEMENTHELPERS_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/types.h"

namespace FWLIB_HIDDEN VESK {

// An object's type in a message: at most 31 characters. pchNone replaces a missing type; null stands for "".
struct ObjectTypeText {
    explicit ObjectTypeText(QObject& cObject, const char* pchNone = nullptr);

    char achText[TypeTextSize];
};

// Reports an object pointer that is null, and returns 0.
__attribute__((cold, noinline)) int ReportNullObject(EObject& cElement, Byte2Type b2Index);

} // namespace VESK

#endif
