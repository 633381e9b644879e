// SPDX-License-Identifier: MIT
// Names of files that a configuration file holds in a line that is longer than its readers take. Their lists keep what
// was read, as any other value; but an element must not open the file of a truncated name.
#ifndef FWLIB_PROPERTIES_CUTNAMES_H
#define FWLIB_PROPERTIES_CUTNAMES_H

#include "fwlib/internal/hidden.h"

namespace FWLIB_HIDDEN VESK {

// Keeps the name of a "Filename=" line that was cut, for the life of the process: 1, or 0 when memory is out. Other
// lines need not be kept.
int KeepCutName(const char* pchLine);

// Whether the value of "Filename" is one that was cut.
bool IsCutName(const char* pchName);

} // namespace VESK

#endif
