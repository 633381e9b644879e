// SPDX-License-Identifier: MIT
// Texts inside the library: bounded copies, comparing, and decimal numbers.
#ifndef FWLIB_INTERNAL_TEXTS_H
#define FWLIB_INTERNAL_TEXTS_H

#include "fwlib/internal/lowestfirst.h"
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

// Texts are hashed and numbers composed a word at a time.
using TextWord = std::uint64_t;
constexpr std::size_t WordSize = sizeof(TextWord);

inline TextWord LoadWord(const char* pch) {
    TextWord Word;
    std::memcpy(&Word, pch, WordSize);
    return Word;
}

// A word of at most 7 characters.
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
    Byte4Type b4Second; // begins within the first; in two steps, since none can be by all 32 bits
    std::memcpy(&b4First, pch, Half);
    std::memcpy(&b4Second, pch + uLength - Half, Half);
    b4Second = b4Second >> CHAR_BIT >> (WordSize - 1 - uLength) * CHAR_BIT;
    return TextWord{b4Second} << Half * CHAR_BIT | b4First;
}

// Copies exactly so many bytes; the places may overlap. Most texts are short, and a call costs more than two words.
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

// Copies at most uSize - 1 characters and terminates. The text may overlap the buffer.
inline void CopyBounded(char* pchBuffer, std::size_t uSize, const char* pchText) {
    const std::size_t uLength = strnlen(pchText, uSize - 1);
    CopyShort(pchBuffer, pchText, uLength);
    pchBuffer[uLength] = '\0';
}

template <std::size_t Size>
void CopyBounded(char (&achBuffer)[Size], const char* pchText) {
    CopyBounded(achBuffer, Size, pchText);
}

// A fresh copy of a text in a block of its size, or null when memory is out. Texts are many and small, so they come
// from malloc itself: a call of fwmalloc costs 32-bit code a sixth of a duplicate. Released with free.
inline char* StoreText(const char* pchText, std::size_t uLength) {
    char* const pchStored = uLength < UINT32_MAX ? static_cast<char*>(std::malloc(uLength + 1)) : nullptr;
    if (pchStored) {
        CopyShort(pchStored, pchText, uLength);
        pchStored[uLength] = '\0';
    }
    return pchStored;
}

inline bool TextEquals(const char* pchLeft, const char* pchRight) {
    return *pchLeft == *pchRight && std::strcmp(pchLeft, pchRight) == 0;
}

// Compares one text with many, a machine word at a time. A host may put texts of its own into a list, in blocks that
// end with their terminator. So a word is read only at a multiple of its size and when its first byte belongs to the
// text: it ends in the same page, and what is behind the terminator does not count. An address checker must not see it.
class TextMatch {
public:
    explicit TextMatch(const char* pchText)
        : m_pchText(pchText),
          m_uLength(std::strlen(pchText)),
          m_uWhole(m_uLength / Size * Size),
          m_TailMask(~Word{0} >> (Size - 1 - m_uLength % Size) * CHAR_BIT),
          m_Tail(TailOf()) {}

    bool Equals(const char* pchOther) const {
        return m_uWhole == 0 ? Equals<0>(pchOther) : Equals<Many>(pchOther);
    }

    // The number of whole words; Many for more than one.
    static constexpr int Many = 2;
    int Words() const { return m_uWhole < Size ? 0 : m_uWhole == Size ? 1 : Many; }

    // Words is what that tells.
    template <int Words>
    bool Equals(const char* pchOther) const {
        if (reinterpret_cast<std::uintptr_t>(pchOther) % Size != 0) {
            return TextEquals(pchOther, m_pchText);
        }
        return (Words < 1 || WordEquals(pchOther, 0)) && (Words < Many || RestEquals(pchOther)) &&
               (LoadWhole(pchOther + m_uWhole) & m_TailMask) == m_Tail;
    }

private:
    using Word = std::uintptr_t;
    static constexpr std::size_t Size = sizeof(Word);
    using Alias [[gnu::may_alias]] = Word;

    [[gnu::no_sanitize_address]] static Word LoadWhole(const char* pch) {
        return *reinterpret_cast<const Alias*>(pch);
    }
    static Word Load(const char* pch) {
        Word Chars;
        std::memcpy(&Chars, pch, Size);
        return Chars;
    }

    // The characters behind the whole words.
    Word TailOf() const {
        const std::size_t uTail = m_uLength % Size;
        if (m_uWhole > 0) { // in two steps, since none can be by all bits
            return Load(m_pchText + m_uLength - Size) >> CHAR_BIT * (Size - 1 - uTail) >> CHAR_BIT;
        }
        return static_cast<Word>(LoadTail(m_pchText, uTail));
    }

    bool WordEquals(const char* pchOther, std::size_t uFrom) const {
        return LoadWhole(pchOther + uFrom) == Load(m_pchText + uFrom);
    }

    // The whole words behind the first, two in a turn.
    bool RestEquals(const char* pchOther) const {
        std::size_t u = Size;
        for (; u + Size < m_uWhole; u += 2 * Size) {
            if (!WordEquals(pchOther, u) || !WordEquals(pchOther, u + Size)) {
                return false;
            }
        }
        return u == m_uWhole || WordEquals(pchOther, u);
    }

    const char* m_pchText;
    std::size_t m_uLength;
    std::size_t m_uWhole;
    Word m_TailMask;
    Word m_Tail;
};

// A text, lent, of known length.
class SoughtText {
public:
    explicit SoughtText(const char* pchText) : SoughtText(pchText, std::strlen(pchText)) {}
    SoughtText(const char* pchText, std::size_t uLength) : m_pchText(pchText), m_uLength(uLength) {}

    const char* Begin() const { return m_pchText; }
    std::size_t Length() const { return m_uLength; }

    // Of the first word and the last; its upper bits are the best mixed.
    Byte4Type Hash() const {
        const TextWord Mixed = m_uLength < WordSize
                                   ? LoadTail(m_pchText, m_uLength)
                                   : LoadWord(m_pchText) ^ Turned(LoadWord(m_pchText + m_uLength - WordSize));
        return (static_cast<Byte4Type>(Mixed) ^ static_cast<Byte4Type>(Mixed >> 32)) * 0x9E3779B1U;
    }

    // Whether the other text, cut to uCut characters, equals this one.
    bool EqualsCut(const char* pchOther, std::size_t uCut) const {
        return m_uLength < uCut ? TextEquals(pchOther, m_pchText)
                                : m_uLength == uCut && std::strncmp(pchOther, m_pchText, uCut) == 0;
    }

private:
    static TextWord Turned(TextWord Word) { return Word << 7 | Word >> (WordSize * CHAR_BIT - 7); }

    const char* m_pchText;
    std::size_t m_uLength;
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

// A number in decimal. 20 digits, a sign and a terminator hold every 64-bit number.
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
        if (LowestFirst && Value < WordLimit) {
            FormatWord(static_cast<Byte4Type>(Value), bNegative);
            return;
        }
        char* pch = m_achText + Size - 1;
        *pch = '\0';
        for (; LowestFirst && Value >= 100; Value /= 100) {
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

    char m_achText[Size];
    std::size_t m_uBegin;
    std::size_t m_uLength;
};

} // namespace VESK

#endif
