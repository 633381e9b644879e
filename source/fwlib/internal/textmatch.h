// SPDX-License-Identifier: MIT
// Comparing and hashing texts.
#ifndef FWLIB_INTERNAL_TEXTMATCH_H
#define FWLIB_INTERNAL_TEXTMATCH_H

#include "fwlib/internal/lowestfirst.h"
#include "fwlib/internal/textcopy.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace VESK {

inline bool TextEquals(const char* pchLeft, const char* pchRight) {
    return *pchLeft == *pchRight && std::strcmp(pchLeft, pchRight) == 0;
}

// Compares one text with many, a machine word at a time. The other text may be in a host's block that ends with its
// terminator. So a word is read only if its first byte belongs to the text, and only at an aligned address: then it
// does not cross a page. Bytes after the terminator are masked. The address sanitizer is off, as it would report these
// reads.
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

    // Returns the number of complete words; Many for more than one.
    static constexpr int Many = 2;
    int Words() const { return m_uWhole < Size ? 0 : m_uWhole == Size ? 1 : Many; }

    // Words: the result of Words().
    template <int Words>
    bool Equals(const char* pchOther) const {
        if (!LowestFirst || reinterpret_cast<std::uintptr_t>(pchOther) % Size != 0) {
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

    // The characters after the complete words.
    Word TailOf() const {
        const std::size_t uTail = m_uLength % Size;
        if (m_uWhole > 0) { // shifted in two steps, as a shift by all bits is undefined
            return Load(m_pchText + m_uLength - Size) >> CHAR_BIT * (Size - 1 - uTail) >> CHAR_BIT;
        }
        return static_cast<Word>(LoadTail(m_pchText, uTail));
    }

    bool WordEquals(const char* pchOther, std::size_t uFrom) const {
        return LoadWhole(pchOther + uFrom) == Load(m_pchText + uFrom);
    }

    // Compares the complete words after the first, two in an iteration.
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

// A lent text and its length.
class SoughtText {
public:
    explicit SoughtText(const char* pchText) : SoughtText(pchText, std::strlen(pchText)) {}
    SoughtText(const char* pchText, std::size_t uLength) : m_pchText(pchText), m_uLength(uLength) {}

    const char* Begin() const { return m_pchText; }
    std::size_t Length() const { return m_uLength; }

    // Hashes the first and the last word. The upper bits are mixed best.
    Byte4Type Hash() const {
        const TextWord Mixed = m_uLength < WordSize
                                   ? LoadTail(m_pchText, m_uLength)
                                   : LoadWord(m_pchText) ^ Turned(LoadWord(m_pchText + m_uLength - WordSize));
        return (static_cast<Byte4Type>(Mixed) ^ static_cast<Byte4Type>(Mixed >> 32)) * 0x9E3779B1U;
    }

    // Whether the other text, truncated to uCut characters, equals this one.
    bool EqualsCut(const char* pchOther, std::size_t uCut) const {
        return m_uLength < uCut ? TextEquals(pchOther, m_pchText)
                                : m_uLength == uCut && std::strncmp(pchOther, m_pchText, uCut) == 0;
    }

private:
    static TextWord Turned(TextWord Word) { return Word << 7 | Word >> (WordSize * CHAR_BIT - 7); }

    const char* m_pchText;
    std::size_t m_uLength;
};

} // namespace VESK

#endif
