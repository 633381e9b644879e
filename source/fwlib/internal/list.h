// SPDX-License-Identifier: MIT
// Work on a property list that its users do not see: finding without copying, setting texts of known length.
#ifndef FWLIB_INTERNAL_LIST_H
#define FWLIB_INTERNAL_LIST_H

#include "fwlib/internal/texts.h"
#include "fwlib/properties/properties.h"

#include <atomic>

#pragma GCC visibility push(hidden) // so that calls need no procedure table, whose register costs 32-bit code

namespace VESK {

// Grows whenever a text that is filed under "Name" is replaced or goes, in any list that lives on: what is known of
// names is then no longer true.
inline std::atomic<Byte4Type> NameChanges{0};

// The index of the first of the list's first b4Count entries with this key and section, or b4Count.
inline Byte4Type FindEntry(const PROPERTIES& cList, Byte4Type b4Count, const SoughtText& cKey,
                           const SoughtText& cSection) {
    for (Byte4Type b4 = 0; b4 < b4Count; ++b4) {
        if (cKey.Equals(cList.m_pachKeys[b4]) && cSection.Equals(cList.m_pachSections[b4])) {
            return b4;
        }
    }
    return b4Count;
}

// The value in section "Standard", lent until the list changes; null when the key is missing.
inline const char* FindStandard(const PROPERTIES& cList, const SoughtText& cKey) {
    const Byte4Type b4Index = FindEntry(cList, cList.m_b2PropertyCount, cKey, SoughtText(Section::Standard));
    return b4Index < cList.m_b2PropertyCount ? cList.m_pachValues[b4Index] : nullptr;
}

// PROPERTIES::SetProperty for a value of known length.
int SetEntry(PROPERTIES& cList, const char* pchKey, const char* pchValue, std::size_t uLength,
             const char* pchSection);

// The same for a key that can only stand among the first b4Searched entries.
int SetEntry(PROPERTIES& cList, const SoughtText& cKey, const char* pchValue, std::size_t uLength,
             const SoughtText& cSection, Byte4Type b4Searched);

// Which keys a list may hold. A key that is not marked is not in the list, and need not be looked for: so a list is
// read in a time that grows with its length, not with its square, up to some thousands of entries.
class KeyFilter {
public:
    explicit KeyFilter(const PROPERTIES& cList) : m_aWords{} {
        for (Byte4Type b4 = 0; b4 < cList.m_b2PropertyCount; ++b4) {
            Mark(SoughtText(cList.m_pachKeys[b4], StoredLength(cList.m_pachKeys[b4])));
        }
    }
    bool MayHold(const SoughtText& cKey) const {
        const Byte4Type b4Bit = BitOf(cKey);
        return (m_aWords[b4Bit / WordBits] >> b4Bit % WordBits & 1) != 0;
    }
    void Mark(const SoughtText& cKey) {
        const Byte4Type b4Bit = BitOf(cKey);
        m_aWords[b4Bit / WordBits] |= Byte4Type{1} << b4Bit % WordBits;
    }

private:
    static constexpr unsigned int WordBits = 32;
    static constexpr unsigned int Power = 12; // of two: the bits; 512 bytes

    static Byte4Type BitOf(const SoughtText& cKey) { return cKey.Hash() >> (WordBits - Power); }

    Byte4Type m_aWords[(1U << Power) / WordBits];
};

// PROPERTIES::Copy, but tells whether every entry of the source arrived.
int MergeEntries(PROPERTIES& cTarget, const PROPERTIES& cSource);

} // namespace VESK

#pragma GCC visibility pop

#endif
