// SPDX-License-Identifier: MIT
// Texts inside the library: bounded copies, decimal numbers, and stored texts that compare a word at a time.
#ifndef FWLIB_INTERNAL_TEXTS_H
#define FWLIB_INTERNAL_TEXTS_H

#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"
#include "fwlib/types.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace VESK {

constexpr unsigned int TypeTextSize = 32;  // a type or element name shown in a message
constexpr unsigned int NameTextSize = 256; // an element's name, a file's name, a line of a pipe file

// Copies at most uSize - 1 characters and terminates. The text may overlap the buffer.
inline void CopyBounded(char* pchBuffer, std::size_t uSize, const char* pchText) {
    const std::size_t uLength = strnlen(pchText, uSize - 1);
    std::memmove(pchBuffer, pchText, uLength);
    pchBuffer[uLength] = '\0';
}

template <std::size_t Size>
void CopyBounded(char (&achBuffer)[Size], const char* pchText) {
    CopyBounded(achBuffer, Size, pchText);
}

// A stored text lies in a block of whole words, the last one filled up with zero bytes: it holds at least the
// terminator, and its last byte is always zero. So stored texts are compared and copied a word at a time.
using TextWord = std::uint64_t;
constexpr std::size_t WordSize = sizeof(TextWord);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "a word's lowest byte is its first character");

inline TextWord LoadWord(const char* pch) {
    TextWord Word;
    std::memcpy(&Word, pch, WordSize);
    return Word;
}

// The last word of a text: what is behind its whole words, at most 7 characters.
inline TextWord LoadTail(const char* pch, std::size_t uLength) {
    constexpr std::size_t Half = sizeof(Byte4Type);
    Byte4Type b4First = 0;
    if (uLength < Half) {
        for (std::size_t u = uLength; u > 0; --u) {
            b4First = b4First << CHAR_BIT | static_cast<unsigned char>(pch[u - 1]);
        }
        return b4First;
    }
    Byte4Type b4Second; // begins within the first; in two steps, since none can be by all 32 bits
    std::memcpy(&b4First, pch, Half);
    std::memcpy(&b4Second, pch + uLength - Half, Half);
    b4Second = b4Second >> CHAR_BIT >> (WordSize - 1 - uLength) * CHAR_BIT;
    return TextWord{b4Second} << Half * CHAR_BIT | b4First;
}

// Texts are many and small, so they come from malloc itself: the way round by fwmalloc costs 32-bit code a sixth of
// a duplicate. Released with free.
inline char* AllocateWords(std::size_t uSize) {
    return uSize > UINT32_MAX ? nullptr : static_cast<char*>(std::malloc(uSize));
}

inline void CopyWords(char* pchTo, const char* pchFrom, std::size_t uSize) {
    for (std::size_t u = 0; u < uSize; u += WordSize) {
        std::memcpy(pchTo + u, pchFrom + u, WordSize);
    }
}

// The length of a stored text, which shows in its last word.
inline std::size_t StoredLength(const char* pchStored) {
    std::size_t uWhole = 0;
    while (pchStored[uWhole + WordSize - 1] != '\0') {
        uWhole += WordSize;
    }
    const TextWord Tail = LoadWord(pchStored + uWhole);
    const int iZeroBits = Tail != 0 ? __builtin_clzll(Tail) : static_cast<int>(WordSize) * CHAR_BIT;
    return uWhole + WordSize - static_cast<std::size_t>(iZeroBits / CHAR_BIT);
}

// A fresh stored copy of a text, or null when memory is out.
inline char* StoreText(const char* pchText, std::size_t uLength) {
    const std::size_t uWhole = uLength / WordSize * WordSize;
    char* const pchStored = AllocateWords(uWhole + WordSize);
    if (pchStored) {
        CopyWords(pchStored, pchText, uWhole);
        const TextWord Tail = LoadTail(pchText + uWhole, uLength - uWhole);
        std::memcpy(pchStored + uWhole, &Tail, WordSize);
    }
    return pchStored;
}

// The same of a stored text.
inline char* StoreAgain(const char* pchStored) {
    std::size_t uSize = WordSize;
    while (pchStored[uSize - 1] != '\0') {
        uSize += WordSize;
    }
    char* const pchCopy = AllocateWords(uSize);
    if (pchCopy) {
        CopyWords(pchCopy, pchStored, uSize);
    }
    return pchCopy;
}

inline bool StoredEqual(const char* pchLeft, const char* pchRight) {
    for (std::size_t u = 0; LoadWord(pchLeft + u) == LoadWord(pchRight + u); u += WordSize) {
        if (pchLeft[u + WordSize - 1] == '\0') {
            return true;
        }
    }
    return false;
}

// A text, lent, that is looked for among stored texts. Where whole words are equal there is another one
// behind them, since the end of a stored text shows in its last word.
class SoughtText {
public:
    explicit SoughtText(const char* pchText) : SoughtText(pchText, std::strlen(pchText)) {}
    SoughtText(const char* pchText, std::size_t uLength)
        : m_pchText(pchText),
          m_uLength(uLength),
          m_uWhole(m_uLength / WordSize * WordSize),
          m_Tail(LoadTail(pchText + m_uWhole, m_uLength - m_uWhole)),
          m_First(m_uWhole > 0 ? LoadWord(pchText) : m_Tail) {}

    const char* Begin() const { return m_pchText; }
    std::size_t Length() const { return m_uLength; }

    // Of the first word and the last; its upper bits are the best mixed.
    Byte4Type Hash() const {
        const TextWord Mixed = m_First ^ (m_Tail << 7 | m_Tail >> (WordSize * CHAR_BIT - 7));
        return (static_cast<Byte4Type>(Mixed) ^ static_cast<Byte4Type>(Mixed >> 32)) * 0x9E3779B1U;
    }

    bool Equals(const char* pchStored) const {
        return LoadWord(pchStored) == m_First && (m_uWhole == 0 || RestEquals(pchStored));
    }

    // Whether the stored text, cut to uCut characters, equals this one.
    bool EqualsCut(const char* pchStored, std::size_t uCut) const {
        if (m_uLength < uCut) {
            return Equals(pchStored);
        }
        return m_uLength == uCut && std::strncmp(pchStored, m_pchText, uCut) == 0;
    }

private:
    bool RestEquals(const char* pchStored) const {
        for (std::size_t u = WordSize; u < m_uWhole; u += WordSize) {
            if (LoadWord(pchStored + u) != LoadWord(m_pchText + u)) {
                return false;
            }
        }
        return LoadWord(pchStored + m_uWhole) == m_Tail;
    }

    const char* m_pchText;
    std::size_t m_uLength;
    std::size_t m_uWhole; // the characters in whole words
    TextWord m_Tail;
    TextWord m_First;
};

// The digits of the numbers below 100, in words: the first digit lowest.
struct DigitPairs {
    constexpr DigitPairs() : ab2Pair() {
        for (unsigned int u = 0; u < 100; ++u) {
            ab2Pair[u] = static_cast<Byte2Type>(('0' + u / 10) | ('0' + u % 10) << CHAR_BIT);
        }
    }
    Byte2Type ab2Pair[100];
};
inline constexpr DigitPairs Pairs;

// A number in decimal. 20 digits, a sign and a terminator hold every 64-bit number; a word more, so that it can be
// copied a word at a time.
class DecimalText {
public:
    explicit DecimalText(int iValue) { Format(MagnitudeOf(iValue), iValue < 0); }
    explicit DecimalText(Byte4Type b4Value) { Format(b4Value, false); }
    explicit DecimalText(long long llValue) { Format(MagnitudeOf(llValue), llValue < 0); }
    DecimalText(const DecimalText&) = delete;
    DecimalText& operator=(const DecimalText&) = delete;

    const char* Begin() const { return m_achText + m_uBegin; }
    std::size_t Length() const { return m_uLength; }

private:
    static constexpr std::size_t Size = 24;
    static constexpr Byte4Type WordLimit = 1000000; // six digits, a sign and the terminator are a word

    static Byte4Type MagnitudeOf(int iValue) {
        const auto uValue = static_cast<Byte4Type>(iValue);
        return iValue < 0 ? 0 - uValue : uValue;
    }
    static unsigned long long MagnitudeOf(long long llValue) {
        const auto ullValue = static_cast<unsigned long long>(llValue);
        return llValue < 0 ? 0 - ullValue : ullValue;
    }

    template <class Unsigned>
    void Format(Unsigned Value, bool bNegative) {
        if (Value < WordLimit) {
            FormatWord(static_cast<Byte4Type>(Value), bNegative);
            return;
        }
        char* pch = m_achText + Size - 1;
        *pch = '\0';
        for (; Value >= 100; Value /= 100) {
            pch -= 2;
            std::memcpy(pch, &Pairs.ab2Pair[Value % 100], 2);
        }
        do {
            *--pch = static_cast<char>('0' + Value % 10);
            Value /= 10;
        } while (Value != 0);
        if (bNegative) {
            *--pch = '-';
        }
        m_uBegin = static_cast<std::size_t>(pch - m_achText);
        m_uLength = Size - 1 - m_uBegin;
    }

    // Composed in a register, since a word that is read right after its bytes were written one by one makes the
    // processor wait.
    void FormatWord(Byte4Type b4Value, bool bNegative) {
        TextWord Word = 0;
        m_uBegin = 0;
        m_uLength = bNegative;
        for (; b4Value >= 100; b4Value /= 100) {
            Word = Word << 2 * CHAR_BIT | Pairs.ab2Pair[b4Value % 100];
            m_uLength += 2;
        }
        const bool bPair = b4Value >= 10;
        Word = bPair ? Word << 2 * CHAR_BIT | Pairs.ab2Pair[b4Value] : Word << CHAR_BIT | ('0' + b4Value);
        m_uLength += bPair ? 2 : 1;
        if (bNegative) {
            Word = Word << CHAR_BIT | '-';
        }
        std::memcpy(m_achText, &Word, WordSize);
    }

    char m_achText[Size + WordSize];
    std::size_t m_uBegin;
    std::size_t m_uLength;
};

} // namespace VESK

#endif
