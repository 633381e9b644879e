// SPDX-License-Identifier: MIT
// File names in lines of configuration files that are too long to be read in one piece. A property list keeps the
// truncated value like any other; but an element must not open the file with the truncated name.
#ifndef FWLIB_PROPERTIES_CUTNAMES_H
#define FWLIB_PROPERTIES_CUTNAMES_H

#include "fwlib/internal/hidden.h"

namespace FWLIB_HIDDEN VESK {

// If this truncated line begins with "Filename=", records its name until the process ends. Returns 0 when there is not
// enough memory, otherwise 1.
int KeepCutName(const char* pchLine);

// Whether this value of "Filename" was truncated.
bool IsCutName(const char* pchName);

} // namespace VESK

#endif
