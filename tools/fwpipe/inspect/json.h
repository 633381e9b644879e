// SPDX-License-Identifier: MIT
// Descriptions as JSON for programs.
#ifndef FWPIPE_INSPECT_JSON_H
#define FWPIPE_INSPECT_JSON_H

#include <string>
#include <vector>

namespace VESK {
struct ElementDescription;
struct ObjectDescription;
} // namespace VESK

namespace FwPipe {

// {"types":[{"type","meaning","originates","sinkPads","sourcePads","properties":[...]}],"objects":[{"type","meaning"}]}
// on one line. Pads are {"count":N} or {"property":KEY,"default":N}. A property has "key", "kind", "default", "min",
// "max", "choices", "unit", "meaning" and "required"; what it does not have,
// or is not known, is null. The default and the bounds of a
// number are numbers, the default of a flag is a boolean, other values are texts. Bytes that are not UTF-8 become U+FFFD.
std::string JsonOf(const std::vector<const VESK::ElementDescription*>& cElements,
                   const std::vector<const VESK::ObjectDescription*>& cObjects);

} // namespace FwPipe

#endif
