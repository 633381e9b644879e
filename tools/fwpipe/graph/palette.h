// SPDX-License-Identifier: MIT
// The colours of drawings. The page of the HTML format replaces them for dark screens by these values.
#ifndef FWPIPE_GRAPH_PALETTE_H
#define FWPIPE_GRAPH_PALETTE_H

namespace FwPipe::Palette {

constexpr const char Paper[] = "#ffffff";
constexpr const char Ink[] = "#1b1f24";
constexpr const char Line[] = "#57606a";
constexpr const char Cluster[] = "#f3f5f8";
constexpr const char Element[] = "#e8eef7";
constexpr const char Sink[] = "#cdebd0";
constexpr const char Unreached[] = "#e4e4e4";
constexpr const char Pad[] = "#fefefe";
constexpr const char Unused[] = "#d3d9e0";
constexpr const char Open[] = "#ffcf70";
constexpr const char Wrong[] = "#ff9d94";

} // namespace FwPipe::Palette

#endif
