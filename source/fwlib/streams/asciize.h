// SPDX-License-Identifier: MIT
// The coding of 3 bytes as 4 printable characters, in memory.
#ifndef FWLIB_STREAMS_ASCIIZE_H
#define FWLIB_STREAMS_ASCIIZE_H

#include "fwlib/internal/hidden.h"

#include <cstddef>

namespace FWLIB_HIDDEN VESK {

constexpr std::size_t GroupBytes = 3;
constexpr std::size_t GroupCharacters = 4;

// Functions that code complete groups, at any alignment. They access only the bytes of the groups.
struct GroupCoder {
    void (*pEncode)(unsigned char* pText, const unsigned char* pData, std::size_t uGroups);
    void (*pDecode)(unsigned char* pData, const unsigned char* pText, std::size_t uGroups);
};

extern const GroupCoder cPlainCoder;  // with general registers only
const GroupCoder& ChooseGroupCoder(); // the fastest that this processor supports

} // namespace VESK

#endif
