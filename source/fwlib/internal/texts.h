// SPDX-License-Identifier: MIT
// Texts inside the library: bounded copies, decimal numbers, and stored texts that compare a word at a time.
#ifndef FWLIB_INTERNAL_TEXTS_H
#define FWLIB_INTERNAL_TEXTS_H

#include "fwlib/text.h"
#include "fwlib/types.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace VESK __attribute__((visibility("hidden"))) {

    constexpr unsigned int TypeTextSize = 32;  // a type or element name shown in a message
    constexpr unsigned int NameTextSize = 256; // an element's name, a file's name, a line of a pipe file

    // Copies at most uSize - 1 characters and terminates. The text may overlap the buffer.
    inline void CopyBounded(char* pchBuffer, std::size_t uSize, const char* pchText) {
        const std::size_t uLength = strnlen(pchText, uSize - 1);
        std::memmove(pchBuffer, pchText, uLength);
        pchBuffer[uLength] = '\0';
    }

    template <std::size_t Size>
    void CopyBounded(char(&achBuffer)[Size], const char* pchText) {
        CopyBounded(achBuffer, Size, pchText);
    }

    // A number in decimal. 20 digits, a sign and a terminator hold every 64-bit number.
    class DecimalText {
    public:
        explicit DecimalText(int iValue) { Format(MagnitudeOf(iValue), iValue < 0); }
        explicit DecimalText(Byte4Type b4Value) { Format(b4Value, false); }
        explicit DecimalText(long long llValue) { Format(MagnitudeOf(llValue), llValue < 0); }
        DecimalText(const DecimalText&) = delete;
        DecimalText& operator=(const DecimalText&) = delete;

        const char* Begin() const { return m_achText + m_uBegin; }
        std::size_t Length() const { return Size - 1 - m_uBegin; }

    private:
        static constexpr std::size_t Size = 22;

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
            char* pch = m_achText + Size - 1;
            *pch = '\0';
            do {
                *--pch = static_cast<char>('0' + Value % 10);
                Value /= 10;
            } while (Value != 0);
            if (bNegative) {
                *--pch = '-';
            }
            m_uBegin = static_cast<std::size_t>(pch - m_achText);
        }

        char m_achText[Size];
        std::size_t m_uBegin; // the text ends with the array
    };

    // A stored text lies in a block of whole words, the last one filled up with zero bytes, so that a
    // comparison can read its first word whatever its length.
    using TextWord = std::uint64_t;

    inline TextWord FirstWord(const char* pchStored) {
        TextWord Word;
        std::memcpy(&Word, pchStored, sizeof Word);
        return Word;
    }

    // A fresh stored copy of uLength characters, or null when memory is out. Released with fwfree.
    char* StoreText(const char* pchText, std::size_t uLength);

    // A text that is looked for among stored texts: its first word, and the rest when it is longer than that.
    class SoughtText {
    public:
        explicit SoughtText(const char* pchText) {
            char achWord[sizeof(TextWord)] = {};
            const std::size_t uLength = std::strlen(pchText);
            for (std::size_t u = 0; u < sizeof achWord && u < uLength; ++u) {
                achWord[u] = pchText[u];
            }
            m_Word = FirstWord(achWord);
            m_pchRest = uLength >= sizeof achWord ? pchText + sizeof achWord : nullptr;
        }

        bool Equals(const char* pchStored) const {
            return FirstWord(pchStored) == m_Word &&
                   (!m_pchRest || std::strcmp(pchStored + sizeof m_Word, m_pchRest) == 0);
        }

        // Whether the stored text, cut to uLength characters, equals this one. uLength is at least a word's.
        bool EqualsCut(const char* pchStored, std::size_t uLength) const {
            if (FirstWord(pchStored) != m_Word) {
                return false;
            }
            const std::size_t uRest = uLength - sizeof m_Word;
            return !m_pchRest || (std::strncmp(pchStored + sizeof m_Word, m_pchRest, uRest) == 0 &&
                                  strnlen(m_pchRest, uRest + 1) <= uRest);
        }

    private:
        TextWord m_Word;
        const char* m_pchRest; // lent; null for a text that its word holds
    };

} // namespace )

#endif
