// SPDX-License-Identifier: MIT
// Finds entries that would not be read back unchanged from a configuration file or a stream.
#include "fwlib/internal/textmatch.h"
#include "fwlib/properties/list.h"

#include <cstring>

namespace VESK {

namespace {

constexpr std::size_t LongestLine = 255;    // of a configuration file that is read in one piece
constexpr std::size_t LongestPiece = 1023;  // that is written, with its newlines
constexpr std::size_t BracketsOfHeader = 2; // around a section's name

bool HasNewline(const char* pchText) {
    return std::strchr(pchText, '\n') != nullptr;
}

// Whether an earlier entry has the same key, and this section unless it is null.
bool StandsBefore(const PROPERTIES& cList, Byte4Type b4Entry, const char* pchSection) {
    TextMatch cKey(cList.m_pachKeys[b4Entry]);
    for (Byte4Type b4 = 0; b4 < b4Entry; ++b4) {
        if (cKey.Equals(cList.m_pachKeys[b4]) &&
            (!pchSection || TextEquals(cList.m_pachSections[b4], pchSection))) {
            return true;
        }
    }
    return false;
}

ConfigLoss LossOfEntry(const char* pchSection, const char* pchKey, const char* pchValue) {
    const std::size_t uHeader = std::strlen(pchSection) + BracketsOfHeader;
    const std::size_t uLine = std::strlen(pchKey) + 1 + std::strlen(pchValue);
    if (*pchSection == '\0') {
        return ConfigLoss::Reading;
    }
    if (uHeader + 2 > LongestPiece || uLine + 1 > LongestPiece || HasNewline(pchSection) ||
        HasNewline(pchKey) || HasNewline(pchValue)) {
        return ConfigLoss::Writing;
    }
    return uHeader > LongestLine || uLine > LongestLine || *pchKey == '[' || std::strchr(pchKey, '=')
               ? ConfigLoss::Reading
               : ConfigLoss::None;
}

} // namespace

ConfigLoss LossInConfig(const PROPERTIES& cList, Byte4Type* pb4Entry) {
    ConfigLoss Worst = ConfigLoss::None;
    KeyFilter cBefore(cList.m_b2PropertyCount);
    for (Byte4Type b4 = 0; b4 < cList.m_b2PropertyCount && Worst != ConfigLoss::Writing; ++b4) {
        const char* const pchKey = cList.m_pachKeys[b4];
        const char* const pchSection = cList.m_pachSections[b4];
        ConfigLoss Loss = LossOfEntry(pchSection, pchKey, cList.m_pachValues[b4]);
        if (cBefore.Mark(SoughtText(pchKey)) && Loss == ConfigLoss::None &&
            StandsBefore(cList, b4, pchSection)) {
            Loss = ConfigLoss::Reading;
        }
        if (Loss > Worst) {
            Worst = Loss;
            *pb4Entry = b4;
        }
    }
    return Worst;
}

StreamLoss LossInStream(const PROPERTIES& cList, Byte4Type* pb4Entry) {
    KeyFilter cBefore(cList.m_b2PropertyCount);
    for (Byte4Type b4 = 0; b4 < cList.m_b2PropertyCount; ++b4) {
        const SoughtText cKey(cList.m_pachKeys[b4]);
        const bool bMarked = cBefore.Mark(cKey);
        const StreamLoss Loss = std::memchr(cKey.Begin(), '=', cKey.Length())    ? StreamLoss::SignInKey
                                : std::memchr(cKey.Begin(), '\n', cKey.Length()) ? StreamLoss::NewlineInKey
                                : HasNewline(cList.m_pachValues[b4])             ? StreamLoss::NewlineInValue
                                : bMarked && StandsBefore(cList, b4, nullptr)    ? StreamLoss::KeyTwice
                                                                                 : StreamLoss::None;
        if (Loss != StreamLoss::None) {
            *pb4Entry = b4;
            return Loss;
        }
    }
    return StreamLoss::None;
}

} // namespace VESK
