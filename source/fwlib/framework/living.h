// SPDX-License-Identifier: MIT
// The existing frameworks: an element that outlives its framework must not report to it.
#ifndef FWLIB_FRAMEWORK_LIVING_H
#define FWLIB_FRAMEWORK_LIVING_H

#include "fwlib/internal/hidden.h"
#include "fwlib/types.h"

namespace FWLIB_HIDDEN VESK {

void BeginLife(const FRAMEWORK* pFramework); // if there is not enough memory, it counts as destroyed
void EndLife(const FRAMEWORK* pFramework);
bool Living(const FRAMEWORK* pFramework);

} // namespace VESK

#endif
