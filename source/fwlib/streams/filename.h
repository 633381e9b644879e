// SPDX-License-Identifier: MIT
// Copies a file name to a field of fixed size: truncated if it is too long, and padded with zeros.
#ifndef FWLIB_STREAMS_FILENAME_H
#define FWLIB_STREAMS_FILENAME_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textcopy.h"

namespace FWLIB_HIDDEN VESK {

template <std::size_t Size>
void CopyName(char (&achName)[Size], const char* pchName) {
    CopyBounded(achName, pchName);
    const std::size_t uLength = std::strlen(achName);
    std::memset(achName + uLength, 0, Size - uLength);
}

} // namespace VESK

#endif
