// SPDX-License-Identifier: MIT
// Where plugins are, besides the folders that the loader searches.
#ifndef FWLIB_FRAMEWORK_PLUGINSEARCH_H
#define FWLIB_FRAMEWORK_PLUGINSEARCH_H

#include "fwlib/internal/hidden.h"

#include <climits>

namespace FWLIB_HIDDEN VESK {

// The first regular file of a name without a slash: in the folders of the environment variable FWLIB_PLUGIN_PATH, which
// ':' separates, then in fwlib/plugins in the folder of the library. Otherwise the name itself, for the loader. The
// library's own name is not looked for. Programs with raised privileges ignore the variable.
struct FoundPlugin {
    FoundPlugin(const char* pchName, const char* pchLibrary);

    char achPath[PATH_MAX];
};

} // namespace VESK

#endif
