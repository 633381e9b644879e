// SPDX-License-Identifier: MIT
// Work on a property list that its users do not see: finding without copying, setting texts of known length.
#ifndef FWLIB_PROPERTIES_LIST_H
#define FWLIB_PROPERTIES_LIST_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/properties/properties.h"
#include "fwlib/text.h"

#include <atomic>

namespace FWLIB_HIDDEN VESK {

// Incremented when any list replaces or drops its "Name"; cached names are then stale.
inline std::atomic<Byte4Type> NameChanges{0};

// What FindEntry returns for a list with many entries from that one on, of which some may begin as the key does.
Byte4Type FindAmongMany(const PROPERTIES& cList, Byte4Type b4, const char* pchKey, const char* pchSection);

// The index of the first entry with this key and section, or the list's count. Most keys differ in their first
// character, and most lists are short: only a long one is worth preparing the key for.
inline Byte4Type FindEntry(const PROPERTIES& cList, const char* pchKey, const char* pchSection) {
    constexpr Byte4Type Many = 4;
    const Byte4Type b4Count = cList.m_b2PropertyCount;
    for (Byte4Type b4 = 0; b4 < b4Count; ++b4) {
        if (*cList.m_pachKeys[b4] != *pchKey) {
            continue;
        }
        if (b4Count - b4 > Many) {
            return FindAmongMany(cList, b4, pchKey, pchSection);
        }
        if (std::strcmp(cList.m_pachKeys[b4], pchKey) == 0 &&
            TextEquals(cList.m_pachSections[b4], pchSection)) {
            return b4;
        }
    }
    return b4Count;
}

// The value in section "Standard", lent until the list changes; null when the key is missing.
inline const char* FindStandard(const PROPERTIES& cList, const SoughtText& cKey) {
    const Byte4Type b4Index = FindEntry(cList, cKey.Begin(), Section::Standard);
    return b4Index < cList.m_b2PropertyCount ? cList.m_pachValues[b4Index] : nullptr;
}

// PROPERTIES::SetProperty for a value of known length.
int SetEntry(PROPERTIES& cList, const char* pchKey, const char* pchValue, std::size_t uLength,
             const char* pchSection);

// The same for an entry that is not in the list.
int AddEntry(PROPERTIES& cList, const SoughtText& cKey, const char* pchValue, std::size_t uLength,
             const SoughtText& cSection);

// Which keys a list may hold. A key that is not marked is not in the list, and need not be looked for: so a list is
// read in a time that grows with its length, not with its square, up to some thousands of entries.
class KeyFilter {
public:
    explicit KeyFilter(Byte4Type b4Keys) : m_uPower(LeastPower) {
        while (m_uPower < MostPower && 1U << m_uPower < BitsForKey * b4Keys) {
            ++m_uPower;
        }
        Clear();
    }
    KeyFilter(const PROPERTIES& cList, Byte4Type b4Coming) : KeyFilter(cList.m_b2PropertyCount + b4Coming) {
        MarkAll(cList);
    }
    void Clear() { std::memset(m_aWords, 0, (1U << m_uPower) / CHAR_BIT); }
    void MarkAll(const PROPERTIES& cList) {
        for (Byte4Type b4 = 0; b4 < cList.m_b2PropertyCount; ++b4) {
            Mark(SoughtText(cList.m_pachKeys[b4]));
        }
    }
    // Returns whether it was marked before.
    bool Mark(const SoughtText& cKey) {
        const Byte4Type b4Bit = cKey.Hash() >> (WordBits - m_uPower);
        Byte4Type& b4Word = m_aWords[b4Bit / WordBits];
        const Byte4Type b4Mark = Byte4Type{1} << b4Bit % WordBits;
        const bool bMarked = (b4Word & b4Mark) != 0;
        b4Word |= b4Mark;
        return bMarked;
    }

private:
    static constexpr unsigned int WordBits = 32;
    static constexpr unsigned int BitsForKey = 16;
    static constexpr unsigned int LeastPower = 7; // of two: the bits
    static constexpr unsigned int MostPower = 12; // 512 bytes

    unsigned int m_uPower;
    Byte4Type m_aWords[(1U << MostPower) / WordBits];
};

// PROPERTIES::Copy, but tells whether every entry of the source arrived.
int MergeEntries(PROPERTIES& cTarget, const PROPERTIES& cSource);

// What a configuration file would do to an entry: it may hold lines that a reader takes for others.
enum class ConfigLoss { None, Reading, Writing };

// The worst loss, and where it first is.
ConfigLoss LossInConfig(const PROPERTIES& cList, Byte4Type* pb4Entry);

// What keeps an entry from coming back out of a stream as it is, but for its section.
enum class StreamLoss { None, SignInKey, NewlineInKey, NewlineInValue, KeyTwice };

// The first loss, and where it is.
StreamLoss LossInStream(const PROPERTIES& cList, Byte4Type* pb4Entry);

} // namespace VESK

#endif
