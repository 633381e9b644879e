// SPDX-License-Identifier: MIT
// The 3-to-4 coding of bytes as printable characters, on plain memory.
#ifndef FWLIB_STREAMS_ASCIIZE_H
#define FWLIB_STREAMS_ASCIIZE_H

#include "fwlib/internal/hidden.h"

#include <cstddef>

namespace FWLIB_HIDDEN VESK {

constexpr std::size_t GroupBytes = 3;
constexpr std::size_t GroupCharacters = 4;

// What codes whole groups. Nothing outside the groups is read or written, at any alignment.
struct GroupCoder {
    void (*pEncode)(unsigned char* pText, const unsigned char* pData, std::size_t uGroups);
    void (*pDecode)(unsigned char* pData, const unsigned char* pText, std::size_t uGroups);
};

extern const GroupCoder cPlainCoder;  // with general registers only
const GroupCoder& ChooseGroupCoder(); // the best that this processor runs

} // namespace VESK

#endif
