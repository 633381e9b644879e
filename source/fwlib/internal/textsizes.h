// SPDX-License-Identifier: MIT
// Sizes of buffers for texts, terminators included.
#ifndef FWLIB_INTERNAL_TEXTSIZES_H
#define FWLIB_INTERNAL_TEXTSIZES_H

namespace VESK {

constexpr unsigned int TypeTextSize = 32;     // the name of a type or element in a message
constexpr unsigned int ElementNameSize = 256; // an element's name: as much of it as is compared
constexpr unsigned int FileNameSize = 256;    // a file's name

} // namespace VESK

#endif
