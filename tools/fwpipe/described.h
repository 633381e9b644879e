// SPDX-License-Identifier: MIT
// Reads the tables of a description, of which any part may be null or empty, as a plugin may write it by hand.
#ifndef FWPIPE_DESCRIBED_H
#define FWPIPE_DESCRIBED_H

#include <fwlib/fwlib.h>

#include <string>
#include <vector>

namespace FwPipe {

// The entries of a table that ends with null; without those that have no name.
std::vector<const VESK::ElementDescription*> ElementsOf(const VESK::PluginDescription* pPlugin);
std::vector<const VESK::ObjectDescription*> ObjectsOf(const VESK::PluginDescription* pPlugin);

// The type's own properties, then those that every element has.
std::vector<const VESK::PropertyDescription*> PropertiesOf(const VESK::ElementDescription& cElement);

// The name of the kind; null for a kind that this version does not know.
const char* KindName(VESK::Byte4Type b4Kind);

// Whether values of the kind are decimal numbers.
bool IsNumeric(VESK::Byte4Type b4Kind);

std::vector<std::string> ChoicesOf(const VESK::PropertyDescription& cProperty);

} // namespace FwPipe

#endif
