// SPDX-License-Identifier: MIT
// A file's name kept in a field: cut to what fits, the rest of the field zero.
#ifndef FWLIB_INTERNAL_FILENAME_H
#define FWLIB_INTERNAL_FILENAME_H

#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#pragma GCC visibility push(hidden)

namespace VESK {

template <unsigned int Size>
void CopyName(char (&achName)[Size], char* pchName) {
    fwstrncpy(achName, pchName, Size);
    achName[Size - 1] = '\0';
}

} // namespace VESK

#pragma GCC visibility pop

#endif
