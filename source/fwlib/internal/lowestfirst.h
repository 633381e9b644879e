// SPDX-License-Identifier: MIT
#ifndef FWLIB_INTERNAL_LOWESTFIRST_H
#define FWLIB_INTERNAL_LOWESTFIRST_H

namespace VESK {

// Whether the lowest byte of a word comes first in memory (little-endian). Code that processes several bytes in one
// word requires this. On other processors, a loop over single bytes next to it does the same.
constexpr bool LowestFirst = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

} // namespace VESK

#endif
