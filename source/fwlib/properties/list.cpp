// SPDX-License-Identifier: MIT
// Adding and replacing entries of property lists.
#include "fwlib/properties/list.h"

#include "fwlib/internal/growth.h"
#include "fwlib/internal/textcopy.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/text.h"

#include <cstdlib>
#include <cstring>

namespace VESK {

namespace {

// Copies that the list will own; null where there was not enough memory.
struct OwnTexts {
    char* pchKey;
    char* pchValue;
    char* pchSection;
};

int RoomForEntry(PROPERTIES& cList) {
    return MakeRoom(cList.m_b2PropertyCapacity, cList.m_b2PropertyCount, LargestCapacity, cList.m_pachKeys,
                    cList.m_pachValues, cList.m_pachSections);
}

// Appends an entry; the arrays have a free slot. Returns 1; or 0, with the list unchanged, if a text is null.
int AppendEntry(PROPERTIES& cList, const OwnTexts& cTexts) {
    if (!cTexts.pchKey || !cTexts.pchValue || !cTexts.pchSection) {
        std::free(cTexts.pchKey);
        std::free(cTexts.pchValue);
        std::free(cTexts.pchSection);
        return 0;
    }
    cList.m_pachKeys[cList.m_b2PropertyCount] = cTexts.pchKey;
    cList.m_pachValues[cList.m_b2PropertyCount] = cTexts.pchValue;
    cList.m_pachSections[cList.m_b2PropertyCount] = cTexts.pchSection;
    ++cList.m_b2PropertyCount;
    return 1;
}

int ReplaceValue(PROPERTIES& cList, Byte4Type b4Index, char* pchOwnValue) {
    if (!pchOwnValue) {
        return 0;
    }
    std::free(cList.m_pachValues[b4Index]);
    cList.m_pachValues[b4Index] = pchOwnValue;
    if (std::strcmp(cList.m_pachKeys[b4Index], Key::Name) == 0) {
        NameChanges.fetch_add(1, std::memory_order_relaxed);
    }
    return 1;
}

template <int Words>
Byte4Type FindFrom(const PROPERTIES& cList, Byte4Type b4, TextMatch cKey, const char* pchSection) {
    const Byte4Type b4Count = cList.m_b2PropertyCount;
    char** const pchKeys = cList.m_pachKeys;
    while (b4 < b4Count &&
           !(cKey.Equals<Words>(pchKeys[b4]) && TextEquals(cList.m_pachSections[b4], pchSection))) {
        ++b4;
    }
    return b4;
}

} // namespace

Byte4Type FindAmongMany(const PROPERTIES& cList, Byte4Type b4, const char* pchKey, const char* pchSection) {
    const TextMatch cKey(pchKey);
    switch (cKey.Words()) {
    case 0:
        return FindFrom<0>(cList, b4, cKey, pchSection);
    case 1:
        return FindFrom<1>(cList, b4, cKey, pchSection);
    default:
        return FindFrom<TextMatch::Many>(cList, b4, cKey, pchSection);
    }
}

int SetEntry(PROPERTIES& cList, const char* pchKey, const char* pchValue, std::size_t uLength,
             const char* pchSection) {
    if (!pchKey || !pchSection) {
        return 0;
    }
    const Byte4Type b4Index = FindEntry(cList, pchKey, pchSection);
    return b4Index < cList.m_b2PropertyCount
               ? ReplaceValue(cList, b4Index, StoreText(pchValue, uLength))
               : AddEntry(cList, SoughtText(pchKey), pchValue, uLength, SoughtText(pchSection));
}

int AddEntry(PROPERTIES& cList, const SoughtText& cKey, const char* pchValue, std::size_t uLength,
             const SoughtText& cSection) {
    return RoomForEntry(cList) &&
           AppendEntry(cList, {StoreText(cKey.Begin(), cKey.Length()), StoreText(pchValue, uLength),
                               StoreText(cSection.Begin(), cSection.Length())});
}

// Sets each entry like SetProperty, but does not search for a key that is certainly new.
int MergeEntries(PROPERTIES& cTarget, const PROPERTIES& cSource) {
    if (&cTarget == &cSource) {
        return 1;
    }
    int iAll = 1;
    KeyFilter cHeld(cTarget, cSource.m_b2PropertyCount);
    for (Byte4Type b4 = 0; b4 < cSource.m_b2PropertyCount; ++b4) {
        const SoughtText cKey(cSource.m_pachKeys[b4]);
        const SoughtText cSection(cSource.m_pachSections[b4]);
        const SoughtText cValue(cSource.m_pachValues[b4]);
        iAll &= cHeld.Mark(cKey)
                    ? SetEntry(cTarget, cKey.Begin(), cValue.Begin(), cValue.Length(), cSection.Begin())
                    : AddEntry(cTarget, cKey, cValue.Begin(), cValue.Length(), cSection);
    }
    return iAll;
}

} // namespace VESK
