// SPDX-License-Identifier: MIT
// The version of the headers, and of the loaded library. Before 1.0 a minor version may change the interface.
#ifndef FWLIB_VERSION_H
#define FWLIB_VERSION_H

#include "fwlib/export.h"
#include "fwlib/types.h"

#define FWLIB_VERSION_MAJOR 0
#define FWLIB_VERSION_MINOR 1
#define FWLIB_VERSION_PATCH 0

// As one number to compare: 0.1.2 is 102.
#define FWLIB_VERSION (FWLIB_VERSION_MAJOR * 10000 + FWLIB_VERSION_MINOR * 100 + FWLIB_VERSION_PATCH)

namespace VESK {

FWLIB_EXPORT Byte4Type GetVersion(); // FWLIB_VERSION of the loaded library

} // namespace VESK

#endif
