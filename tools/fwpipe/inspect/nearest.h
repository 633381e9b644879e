// SPDX-License-Identifier: MIT
// Names that resemble one that does not exist.
#ifndef FWPIPE_INSPECT_NEAREST_H
#define FWPIPE_INSPECT_NEAREST_H

#include <string>
#include <vector>

namespace FwPipe {

// At most three of the names, the nearest first, as "a, b, c"; empty when none resembles the name. Case is ignored.
std::string Nearest(const std::string& cName, const std::vector<std::string>& cNames);

} // namespace FwPipe

#endif
