// SPDX-License-Identifier: MIT
// Copying texts, and reading them a word at a time.
#ifndef FWLIB_INTERNAL_TEXTCOPY_H
#define FWLIB_INTERNAL_TEXTCOPY_H

#include "fwlib/internal/lowestfirst.h"
#include "fwlib/types.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace VESK {

// The word in which texts are hashed and numbers are composed.
using TextWord = std::uint64_t;
constexpr std::size_t WordSize = sizeof(TextWord);

inline TextWord LoadWord(const char* pch) {
    TextWord Word;
    std::memcpy(&Word, pch, WordSize);
    return Word;
}

// Returns at most 7 characters as one word.
inline TextWord LoadTail(const char* pch, std::size_t uLength) {
    constexpr std::size_t Half = sizeof(Byte4Type);
    if (!LowestFirst) {
        TextWord Word = 0;
        for (; uLength > 0; --uLength, ++pch) {
            Word = Word << CHAR_BIT | static_cast<unsigned char>(*pch);
        }
        return Word;
    }
    Byte4Type b4First = 0;
    if (uLength < Half) {
        for (std::size_t u = uLength; u > 0; --u) {
            b4First = b4First << CHAR_BIT | static_cast<unsigned char>(pch[u - 1]);
        }
        return b4First;
    }
    Byte4Type b4Second; // may overlap the first; shifted in two steps, as a shift by 32 bits is undefined
    std::memcpy(&b4First, pch, Half);
    std::memcpy(&b4Second, pch + uLength - Half, Half);
    b4Second = b4Second >> CHAR_BIT >> (WordSize - 1 - uLength) * CHAR_BIT;
    return TextWord{b4Second} << Half * CHAR_BIT | b4First;
}

// Copies exactly uLength bytes; source and target may overlap. Most texts are short, and a call of memmove costs more
// than copying two words.
inline void CopyShort(char* pchTo, const char* pchFrom, std::size_t uLength) {
    constexpr std::size_t Half = sizeof(Byte4Type);
    if (uLength > 2 * WordSize) {
        std::memmove(pchTo, pchFrom, uLength);
    } else if (uLength >= WordSize) {
        const TextWord First = LoadWord(pchFrom);
        const TextWord Last = LoadWord(pchFrom + uLength - WordSize);
        std::memcpy(pchTo, &First, WordSize);
        std::memcpy(pchTo + uLength - WordSize, &Last, WordSize);
    } else if (uLength >= Half) {
        Byte4Type b4First;
        Byte4Type b4Last;
        std::memcpy(&b4First, pchFrom, Half);
        std::memcpy(&b4Last, pchFrom + uLength - Half, Half);
        std::memcpy(pchTo, &b4First, Half);
        std::memcpy(pchTo + uLength - Half, &b4Last, Half);
    } else if (uLength > 0) {
        const char chFirst = pchFrom[0];
        const char chMiddle = pchFrom[uLength / 2];
        pchTo[uLength - 1] = pchFrom[uLength - 1];
        pchTo[uLength / 2] = chMiddle;
        pchTo[0] = chFirst;
    }
}

// Copies at most uSize - 1 characters and appends a terminator. The text may overlap the buffer.
inline void CopyBounded(char* pchBuffer, std::size_t uSize, const char* pchText) {
    const std::size_t uLength = strnlen(pchText, uSize - 1);
    CopyShort(pchBuffer, pchText, uLength);
    pchBuffer[uLength] = '\0';
}

template <std::size_t Size>
void CopyBounded(char (&achBuffer)[Size], const char* pchText) {
    CopyBounded(achBuffer, Size, pchText);
}

// Returns a copy of the text in a block of its exact size, to be released with free; or null when there is not enough
// memory. malloc is called directly: in 32-bit code, fwmalloc would take a sixth of the time of a Duplicate.
inline char* StoreText(const char* pchText, std::size_t uLength) {
    char* const pchStored = uLength < UINT32_MAX ? static_cast<char*>(std::malloc(uLength + 1)) : nullptr;
    if (pchStored) {
        CopyShort(pchStored, pchText, uLength);
        pchStored[uLength] = '\0';
    }
    return pchStored;
}

} // namespace VESK

#endif
