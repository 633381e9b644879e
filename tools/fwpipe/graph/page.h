// SPDX-License-Identifier: MIT
// The page of the HTML format, embedded at build time.
#ifndef FWPIPE_GRAPH_PAGE_H
#define FWPIPE_GRAPH_PAGE_H

namespace FwPipe {

extern const char PageHtml[]; // {{NAME}} stands for what html.cpp inserts
extern const char PageCss[];
extern const char PageJs[];

} // namespace FwPipe

#endif
