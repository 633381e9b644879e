// SPDX-License-Identifier: MIT
// What several built-in elements do alike.
#ifndef FWLIB_INTERNAL_ELEMENTWORK_H
#define FWLIB_INTERNAL_ELEMENTWORK_H

#include "fwlib/types.h"

#pragma GCC visibility push(hidden) // so that calls need no procedure table, whose register costs 32-bit code

namespace VESK {

// Create pads of the element; source pads belong to pOwner, which may be null. 1, or 0 with a report when
// there would be more than 65,520 or memory is out. What could not be added is deleted.
int CreateSinkPad(EObject& cElement);
int CreateSourcePads(EObject& cElement, Byte4Type b4Count, EObject* pOwner);

// Reports an object pointer that is null, and answers 0.
__attribute__((cold, noinline)) int ReportNullObject(EObject& cElement, Byte2Type b2Index);

} // namespace VESK

#pragma GCC visibility pop

#endif
