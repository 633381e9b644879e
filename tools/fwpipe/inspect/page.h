// SPDX-License-Identifier: MIT
// Descriptions as text for people. Texts of plugins are escaped (escape.h).
#ifndef FWPIPE_INSPECT_PAGE_H
#define FWPIPE_INSPECT_PAGE_H

#include <string>

namespace VESK {
struct ElementDescription;
struct ObjectDescription;
struct PluginDescription;
} // namespace VESK

namespace FwPipe {

// A line for each type: the elements, then the objects.
std::string ListOfTypes(const VESK::PluginDescription& cPlugin);

// Everything about one type. An empty plugin means the library.
std::string PageOf(const VESK::ElementDescription& cElement, const std::string& cPlugin);
std::string PageOf(const VESK::ObjectDescription& cObject);

} // namespace FwPipe

#endif
