// SPDX-License-Identifier: MIT
// The 3-to-4 coding of bytes as printable characters, on plain memory.
#ifndef FWLIB_INTERNAL_ASCIIZE_H
#define FWLIB_INTERNAL_ASCIIZE_H

#include <cstddef>

#pragma GCC visibility push(hidden)

namespace VESK {

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

#pragma GCC visibility pop

#endif
