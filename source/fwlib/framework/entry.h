// SPDX-License-Identifier: MIT
// The entry point that every plugin exports, this library included.
#ifndef FWLIB_FRAMEWORK_ENTRY_H
#define FWLIB_FRAMEWORK_ENTRY_H

#include "fwlib/export.h"
#include "fwlib/types.h"

// A plugin defines this function; this declaration makes its name exported and unmangled. The framework calls it each
// time it loads the plugin. The plugin owns the factory, which must be valid as long as the plugin is loaded. The
// library's own factory creates "QObject" and the built-in elements.
extern "C" FWLIB_EXPORT VESK::Factory* GetFactory();

namespace VESK {
struct PluginDescription;
}

// A plugin may also define this function, which returns the description of its types (framework/description.h).
// FWLIB_PLUGIN (describe/plugintypes.h) defines both functions. The plugin owns the description, which must be valid as
// long as the plugin is loaded.
extern "C" FWLIB_EXPORT const VESK::PluginDescription* GetPluginDescription();

namespace VESK {

// Uses the constructors of FRAMEWORK, EPipeline, MFColorTable, SOURCEPAD and SFileRead, so that they are linked into a
// host that only loads plugins. Each call creates one object of each class and never destroys it.
FWLIB_EXPORT void Pullin();

} // namespace VESK

#endif
