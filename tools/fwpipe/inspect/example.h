// SPDX-License-Identifier: MIT
// The example on an element's page: a pipe file.
#ifndef FWPIPE_INSPECT_EXAMPLE_H
#define FWPIPE_INSPECT_EXAMPLE_H

#include <string>
#include <vector>

namespace VESK {
struct ElementDescription;
}

namespace FwPipe {

// The lines of a pipe file that uses the element with all its defaults, between an ESource and an ESink where it has
// pads for them. An empty plugin means the library.
std::vector<std::string> ExampleOf(const VESK::ElementDescription& cElement, const std::string& cPlugin);

} // namespace FwPipe

#endif
