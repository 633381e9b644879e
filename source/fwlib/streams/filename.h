// SPDX-License-Identifier: MIT
// A file's name kept in a field: cut to what fits, the rest of the field zero.
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
