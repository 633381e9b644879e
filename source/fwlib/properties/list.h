// SPDX-License-Identifier: MIT
// Internal operations on property lists: lookup without copies, setting texts of known length.
#ifndef FWLIB_PROPERTIES_LIST_H
#define FWLIB_PROPERTIES_LIST_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/properties/properties.h"
#include "fwlib/text.h"

#include <atomic>

namespace FWLIB_HIDDEN VESK {

// Passes a key that was asked for and is missing to the watch, if there is one. Returns null, as its callers do.
char* ReportMissing(const PROPERTIES& cList, const char* pchKey, const char* pchSection);

// Incremented when any list replaces or drops its "Name"; cached names are then stale.
inline std::atomic<Byte4Type> NameChanges{0};

// Continues FindEntry at entry b4 of a list that has many more entries.
Byte4Type FindAmongMany(const PROPERTIES& cList, Byte4Type b4, const char* pchKey, const char* pchSection);

// Returns the index of the first entry with this key and section, or the number of entries. Most keys differ in their
// first character, and most lists are short: only for a long list is the key prepared for a faster comparison.
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

// The same for an entry that is not in the list yet.
int AddEntry(PROPERTIES& cList, const SoughtText& cKey, const char* pchValue, std::size_t uLength,
             const SoughtText& cSection);

// Tells which keys a list may contain. A key that is not marked is not in the list and need not be searched for. So the
// time for reading a list grows with its length, not with its square, up to some thousands of entries.
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
    // Marks the key. Returns whether it was marked before.
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
    static constexpr unsigned int LeastPower = 7; // the filter has 2^7 to 2^12 bits
    static constexpr unsigned int MostPower = 12; // 512 bytes

    unsigned int m_uPower;
    Byte4Type m_aWords[(1U << MostPower) / WordBits];
};

// PROPERTIES::Copy, but returns 0 when there was not enough memory for every entry.
int MergeEntries(PROPERTIES& cTarget, const PROPERTIES& cSource);

// What happens to an entry in a configuration file: nothing, it is read back differently, or it cannot be written.
enum class ConfigLoss { None, Reading, Writing };

// Returns the worst loss. Stores the first entry that has it; unchanged for None.
ConfigLoss LossInConfig(const PROPERTIES& cList, Byte4Type* pb4Entry);

// Why an entry is read back differently from a stream. Sections are not compared, as streams do not contain them.
enum class StreamLoss { None, SignInKey, NewlineInKey, NewlineInValue, KeyTwice };

// Returns the first loss. Stores the index of its entry; unchanged for None.
StreamLoss LossInStream(const PROPERTIES& cList, Byte4Type* pb4Entry);

} // namespace VESK

#endif
