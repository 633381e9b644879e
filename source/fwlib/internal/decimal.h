// SPDX-License-Identifier: MIT
// Numbers as decimal texts.
#ifndef FWLIB_INTERNAL_DECIMAL_H
#define FWLIB_INTERNAL_DECIMAL_H

#include "fwlib/internal/textcopy.h"

#include <climits>
#include <cstddef>
#include <cstring>

namespace VESK {

// For each number below 100, its two digits in one 16-bit word, the first digit in the low byte.
struct DigitPairs {
    constexpr DigitPairs() : ab2Pair() {
        for (unsigned int u = 0; u < 100; ++u) {
            ab2Pair[u] = static_cast<Byte2Type>(('0' + u / 10) | ('0' + u % 10) << CHAR_BIT);
        }
    }
    Byte2Type ab2Pair[100];
};
inline constexpr DigitPairs Pairs;

// A number as decimal text. The array has room for every 64-bit number: 20 digits, a sign and a terminator.
class DecimalText {
public:
    explicit DecimalText(int iValue) { Format(MagnitudeOf(iValue), iValue < 0); }
    explicit DecimalText(Byte4Type b4Value) { Format(b4Value, false); }
    explicit DecimalText(unsigned long long ullValue) { Format(ullValue, false); }
    explicit DecimalText(long long llValue) { Format(MagnitudeOf(llValue), llValue < 0); }
    DecimalText(const DecimalText&) = delete;
    DecimalText& operator=(const DecimalText&) = delete;

    const char* Begin() const { return m_achText + m_uBegin; }
    std::size_t Length() const { return m_uLength; }

private:
    static constexpr std::size_t Size = 24;
    static constexpr Byte4Type WordLimit = 1000000; // 6 digits, a sign and a terminator are 8 bytes

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

    // Composes the text in a register: a word that is read right after its bytes were written one by one stalls the
    // processor.
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
