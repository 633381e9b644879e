// SPDX-License-Identifier: MIT
// The coders that the rows of the block text set beside each other.
#ifndef FWLIB_BENCH_CODERS_H
#define FWLIB_BENCH_CODERS_H

#include <cstddef>
#include <vector>

using Byte = unsigned char;

// The coding one byte at a time.
void EncodeBytewise(Byte* pText, const Byte* pData, std::size_t uGroups);
void DecodeBytewise(Byte* pData, const Byte* pText, std::size_t uGroups);

// A base64 coder of whole groups of 3 bytes; one of them breaks the text into lines.
struct Base64Coder {
    const char* pchName;
    std::size_t (*pEncode)(Byte* pText, const Byte* pData, std::size_t uBytes); // the characters
    void (*pDecode)(Byte* pData, const Byte* pText, std::size_t uCharacters);
};

std::vector<Base64Coder> Base64Coders(); // those that were there to compile with

#endif
