// SPDX-License-Identifier: MIT
// The frameworks that exist, so that an element that outlives its own does not report to it.
#ifndef FWLIB_INTERNAL_LIVING_H
#define FWLIB_INTERNAL_LIVING_H

#include "fwlib/types.h"

#pragma GCC visibility push(hidden)

namespace VESK {

void BeginLife(const FRAMEWORK* pFramework); // without memory to note it, it counts as gone
void EndLife(const FRAMEWORK* pFramework);
bool Living(const FRAMEWORK* pFramework);

} // namespace VESK

#pragma GCC visibility pop

#endif
