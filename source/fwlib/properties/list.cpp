// SPDX-License-Identifier: MIT
// How entries get into a list.
#include "fwlib/internal/list.h"

#include "fwlib/internal/growth.h"

#include <cstdlib>

namespace VESK {

namespace {

// Fresh copies, which the list takes over; some null when memory is out.
struct OwnTexts {
    char* pchKey;
    char* pchValue;
    char* pchSection;
};

int RoomForEntry(PROPERTIES& cList) {
    return MakeRoom(cList.m_b2PropertyCapacity, cList.m_b2PropertyCount, LargestCapacity, cList.m_pachKeys,
                    cList.m_pachValues, cList.m_pachSections);
}

// Appends where there is room: 1, or 0 with the entries and their count as they were.
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
    if (SoughtText(Key::Name).Equals(cList.m_pachKeys[b4Index])) {
        NameChanges.fetch_add(1, std::memory_order_relaxed);
    }
    return 1;
}

// Sets the source's entry in the target, where it can only stand among the first b4Searched.
int MergeEntry(PROPERTIES& cTarget, Byte4Type b4Searched, const PROPERTIES& cSource, Byte4Type b4Entry) {
    const char* const pchKey = cSource.m_pachKeys[b4Entry];
    const char* const pchValue = cSource.m_pachValues[b4Entry];
    const char* const pchSection = cSource.m_pachSections[b4Entry];
    for (Byte4Type b4 = 0; b4 < b4Searched; ++b4) {
        if (StoredEqual(cTarget.m_pachKeys[b4], pchKey) &&
            StoredEqual(cTarget.m_pachSections[b4], pchSection)) {
            return ReplaceValue(cTarget, b4, StoreAgain(pchValue));
        }
    }
    return RoomForEntry(cTarget) &&
           AppendEntry(cTarget, {StoreAgain(pchKey), StoreAgain(pchValue), StoreAgain(pchSection)});
}

} // namespace

int SetEntry(PROPERTIES& cList, const char* pchKey, const char* pchValue, std::size_t uLength,
             const char* pchSection) {
    if (!pchKey || !pchSection) {
        return 0;
    }
    return SetEntry(cList, SoughtText(pchKey), pchValue, uLength, SoughtText(pchSection),
                    cList.m_b2PropertyCount);
}

int SetEntry(PROPERTIES& cList, const SoughtText& cKey, const char* pchValue, std::size_t uLength,
             const SoughtText& cSection, Byte4Type b4Searched) {
    const Byte4Type b4Index = FindEntry(cList, b4Searched, cKey, cSection);
    if (b4Index < b4Searched) {
        return ReplaceValue(cList, b4Index, StoreText(pchValue, uLength));
    }
    return RoomForEntry(cList) &&
           AppendEntry(cList, {StoreText(cKey.Begin(), cKey.Length()), StoreText(pchValue, uLength),
                               StoreText(cSection.Begin(), cSection.Length())});
}

// A list holds each pair of key and section once, so what the source brings is looked for only among the
// entries that the target had before.
int MergeEntries(PROPERTIES& cTarget, const PROPERTIES& cSource) {
    if (&cTarget == &cSource) {
        return 1;
    }
    int iAll = 1;
    const Byte4Type b4Before = cTarget.m_b2PropertyCount;
    for (Byte4Type b4 = 0; b4 < cSource.m_b2PropertyCount; ++b4) {
        iAll &= MergeEntry(cTarget, b4Before, cSource, b4);
    }
    return iAll;
}

} // namespace VESK
