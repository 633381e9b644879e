// SPDX-License-Identifier: MIT
#ifndef FWLIB_BUILTIN_DESCRIPTIONS_H
#define FWLIB_BUILTIN_DESCRIPTIONS_H

#include "fwlib/framework/description.h"
#include "fwlib/internal/hidden.h"

namespace FWLIB_HIDDEN VESK {

// The library's own types. They read numbers up to the first other character, so no text is refused as one.
extern const PluginDescription BuiltinDescription;

} // namespace VESK

#endif
