// SPDX-License-Identifier: MIT
#ifndef FWLIB_INTERNAL_LOWESTFIRST_H
#define FWLIB_INTERNAL_LOWESTFIRST_H

namespace VESK {

// Whether the lowest byte of a word comes first in memory. Code that works on several bytes in a word needs this; other
// processors run the loop over single bytes that stands beside it.
constexpr bool LowestFirst = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

} // namespace VESK

#endif
