// SPDX-License-Identifier: MIT
// Loads a plugin, and explains what the loader reports about one that cannot be loaded.
#ifndef FWPIPE_INSPECT_LOADING_H
#define FWPIPE_INSPECT_LOADING_H

#include <string>

namespace VESK {
class FRAMEWORK;
class FWPLUGIN;
} // namespace VESK

namespace FwPipe {

// Initializes the plugin for the framework, whose messages are printed. Returns false after the library's report and
// a line that completes it (loadererror.h).
bool Load(VESK::FWPLUGIN& cPlugin, const std::string& cName, VESK::FRAMEWORK& cFramework);

} // namespace FwPipe

#endif
