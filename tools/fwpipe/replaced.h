// SPDX-License-Identifier: MIT
// Properties that the command line replaces after a pipeline was built: NAME.KEY=VALUE.
#ifndef FWPIPE_REPLACED_H
#define FWPIPE_REPLACED_H

#include <string>
#include <vector>

namespace VESK {
class EPipeline;
}

namespace FwPipe {

// Sets each property. Elements of nested pipelines are named OUTER/INNER. Returns false after a report when no element has
// the name, when its type describes no such property, or when there is no '.' or '='.
bool ReplaceProperties(const std::vector<std::string>& cSettings, VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
