// SPDX-License-Identifier: MIT
// Plugins that are loaded, for what their files do not tell.
#ifndef FWPIPE_MODEL_LOADEDPLUGINS_H
#define FWPIPE_MODEL_LOADEDPLUGINS_H

#include "plugins.h"

#include <memory>

namespace FwPipe {

// Loads each plugin that is looked for. Elements of types without a description are created and initialized once.
std::unique_ptr<Plugins> LoadPlugins();

// The same, but creates no element.
std::unique_ptr<Plugins> LoadDescriptions();

} // namespace FwPipe

#endif
