// SPDX-License-Identifier: MIT
// Completes what the loader reports about a plugin that cannot be loaded.
#ifndef FWPIPE_LOADERERROR_H
#define FWPIPE_LOADERERROR_H

#include <string>

namespace FwPipe {

// Prints a line that completes the library's report about the plugin: the symbol that is missing as C++ names it, and who
// needs it, or where files were looked for. Prints nothing if the report says all.
void ExplainLoaderError(const std::string& cReport, const std::string& cPlugin);

// The same after a build that failed, if it failed at a plugin line.
void ExplainFailedPlugin();

} // namespace FwPipe

#endif
