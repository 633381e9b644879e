// SPDX-License-Identifier: MIT
// The formats of "fwpipe graph". Each writes a whole file.
#ifndef FWPIPE_GRAPH_FORMATS_H
#define FWPIPE_GRAPH_FORMATS_H

#include "picture.h"

#include <string>

namespace FwPipe {

// These throw a std::runtime_error when Graphviz is needed and cannot be used.
std::string DotOf(const Picture& cPicture);
std::string SvgOf(const Picture& cPicture);
std::string HtmlOf(const Picture& cPicture);
std::string MermaidOf(const Picture& cPicture);
std::string JsonOf(const Picture& cPicture);

// What the script of the page shows of each node, as JSON without "<", which could end the script element.
std::string PageDataOf(const Picture& cPicture);

} // namespace FwPipe

#endif
