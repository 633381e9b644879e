// SPDX-License-Identifier: MIT
#include "escape.h"

#include <algorithm>

namespace FwPipe {

namespace {

constexpr char Digits[] = "0123456789abcdef";

// The first character of a text that is not empty: its code point and its length in bytes; none for a byte that is not
// UTF-8.
struct Character {
    explicit Character(std::string_view cBytes);

    bool Acts() const {
        return m_uNumber < 0x20 || (m_uNumber >= 0x7f && m_uNumber < 0xa0) ||
               (m_uNumber >= 0x202a && m_uNumber <= 0x202e) || (m_uNumber >= 0x2066 && m_uNumber <= 0x2069);
    }

    char32_t m_uNumber;
    std::size_t m_uLength;
};

Character::Character(std::string_view cBytes)
    : m_uNumber(static_cast<unsigned char>(cBytes.front())), m_uLength(1) {
    if (m_uNumber < 0x80) {
        return;
    }
    const std::size_t uLength = m_uNumber >= 0xf0 ? 4 : m_uNumber >= 0xe0 ? 3 : 2;
    const char32_t uSmallest = uLength == 4 ? 0x10000 : uLength == 3 ? 0x800 : 0x80;
    const bool bLead = m_uNumber >= 0xc0 && m_uNumber < 0xf8 && uLength <= cBytes.size();
    m_uLength = bLead ? uLength : 0;
    m_uNumber &= 0x7fU >> uLength;
    for (std::size_t u = 1; u < m_uLength; ++u) {
        const auto uchNext = static_cast<unsigned char>(cBytes[u]);
        m_uLength = (uchNext & 0xc0) == 0x80 ? m_uLength : 0;
        m_uNumber = m_uNumber << 6 | (uchNext & 0x3f);
    }
    const bool bSurrogate = m_uNumber >= 0xd800 && m_uNumber < 0xe000;
    m_uLength = m_uNumber < uSmallest || bSurrogate || m_uNumber > 0x10ffff ? 0 : m_uLength;
}

// Appends the characters that no form escapes, which are most of them.
void TakePlain(std::string_view& cBytes, std::string& cText) {
    const auto* const pEnd = std::find_if(cBytes.begin(), cBytes.end(), [](char chByte) {
        return chByte < ' ' || chByte > '~' || chByte == '\\' ||
               chByte == '"'; // bytes beyond ASCII may be negative
    });
    const auto uLength = static_cast<std::size_t>(pEnd - cBytes.begin());
    cText += cBytes.substr(0, uLength);
    cBytes.remove_prefix(uLength);
}

void AppendBytes(std::string_view cBytes, const char* pchPrefix, std::string& cText) {
    for (const char chByte : cBytes) {
        const auto uchByte = static_cast<unsigned char>(chByte);
        cText.append(pchPrefix).append({Digits[uchByte >> 4], Digits[uchByte & 15]});
    }
}

void AppendNumber(char32_t uNumber, std::string& cText) {
    static constexpr std::string_view Short = "\b\t\n\f\r";
    const std::size_t uShort = Short.find(static_cast<char>(uNumber));
    if (uNumber < 0x20 && uShort != std::string_view::npos) {
        cText += {'\\', "btnfr"[uShort]};
    } else {
        cText += {'\\',
                  'u',
                  Digits[uNumber >> 12],
                  Digits[uNumber >> 8 & 15],
                  Digits[uNumber >> 4 & 15],
                  Digits[uNumber & 15]};
    }
}

} // namespace

std::size_t FirstCharacter(std::string_view cBytes, bool& bActs) {
    const Character cCharacter(cBytes);
    bActs = cCharacter.m_uLength == 0 || cCharacter.Acts();
    return std::max<std::size_t>(cCharacter.m_uLength, 1);
}

void AppendEscaped(std::string_view cBytes, std::string& cText) {
    for (TakePlain(cBytes, cText); !cBytes.empty(); TakePlain(cBytes, cText)) {
        bool bActs;
        const std::string_view cTaken = cBytes.substr(0, FirstCharacter(cBytes, bActs));
        if (bActs) {
            AppendBytes(cTaken, "\\x", cText);
        } else {
            cText.append(cTaken).append(cTaken == "\\" ? 1 : 0, '\\');
        }
        cBytes.remove_prefix(cTaken.size());
    }
}

void AppendJson(std::string_view cBytes, bool bBytes, bool bRaw, std::string& cText) {
    cText += '"';
    for (TakePlain(cBytes, cText); !cBytes.empty(); TakePlain(cBytes, cText)) {
        const Character cCharacter(cBytes);
        const std::string_view cTaken = cBytes.substr(0, cCharacter.m_uLength ? cCharacter.m_uLength : 1);
        if (cCharacter.m_uLength == 0 && !bRaw) {
            AppendBytes(cTaken, "\\\\x", cText);
        } else if (cTaken == "\\") {
            cText += bBytes && !bRaw ? "\\\\\\\\" : "\\\\";
        } else if (cTaken == "\"") {
            cText += "\\\"";
        } else if (cCharacter.m_uLength > 0 && cCharacter.Acts() && (!bRaw || cCharacter.m_uNumber < 0x20)) {
            AppendNumber(cCharacter.m_uNumber, cText);
        } else {
            cText += cTaken;
        }
        cBytes.remove_prefix(cTaken.size());
    }
    cText += '"';
}

bool IsUtf8(std::string_view cBytes) {
    while (!cBytes.empty()) {
        const Character cCharacter(cBytes);
        if (cCharacter.m_uLength == 0) {
            return false;
        }
        cBytes.remove_prefix(cCharacter.m_uLength);
    }
    return true;
}

} // namespace FwPipe
