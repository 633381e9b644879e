// SPDX-License-Identifier: MIT
// Work on a property list that its users do not see: finding without copying, setting texts of known length.
#ifndef FWLIB_INTERNAL_LIST_H
#define FWLIB_INTERNAL_LIST_H

#include "fwlib/internal/texts.h"
#include "fwlib/properties/properties.h"

#pragma GCC visibility push(hidden) // so that calls need no procedure table, whose register costs 32-bit code

namespace VESK {

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
int SetEntry(PROPERTIES& cList, const SoughtText& cKey, const char* pchValue, std::size_t uLength,
             const SoughtText& cSection);

// PROPERTIES::Copy, but tells whether every entry of the source arrived.
int MergeEntries(PROPERTIES& cTarget, const PROPERTIES& cSource);

} // namespace VESK

#pragma GCC visibility pop

#endif
