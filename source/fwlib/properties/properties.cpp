// SPDX-License-Identifier: MIT
#include "fwlib/properties/properties.h"

#include "fwlib/internal/decimal.h"
#include "fwlib/internal/textcopy.h"
#include "fwlib/properties/list.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstdio>
#include <cstdlib>

namespace VESK {

namespace {

// The value of an entry, lent; null if there is none. If bAsked, a missing key is reported to a watch.
// Inlined, it would take registers from its callers in 32-bit code.
template <bool bAsked = true>
__attribute__((noinline)) char* FindValue(const PROPERTIES& cList, const char* pchKey,
                                          const char* pchSection) {
    if (!pchKey || !pchSection) {
        return nullptr;
    }
    const Byte4Type b4Index = FindEntry(cList, pchKey, pchSection);
    if (b4Index >= cList.m_b2PropertyCount) {
        return bAsked ? ReportMissing(cList, pchKey, pchSection) : nullptr;
    }
    return cList.m_pachValues[b4Index];
}

// The typed getters: the converted value if the key exists, otherwise the default.
template <class Value, class Convert>
int GetConverted(const PROPERTIES& cList, const char* pchKey, Value* pValue, Value Default,
                 const char* pchSection, Convert convert) {
    char* const pchText = FindValue(cList, pchKey, pchSection);
    if (pValue) {
        *pValue = pchText ? static_cast<Value>(convert(pchText)) : Default;
    }
    return pchText != nullptr;
}

// fwatoi, but faster for short numbers, which most are: for those, fwatoi takes longer than finding the entry.
int ToInt(char* pchText) {
    constexpr int TooLong = 9; // digits; a number with fewer fits in an int
    int iValue = 0;
    int i = 0;
    for (; i < TooLong && pchText[i] >= '0' && pchText[i] <= '9'; ++i) {
        iValue = iValue * 10 + (pchText[i] - '0');
    }
    return i > 0 && i < TooLong ? iValue : fwatoi(pchText);
}

long long ToLong(char* pchText) {
    return std::strtoll(pchText, nullptr, 10);
}

// Overwrites a value that is at least as long as the number, as the size of its block is not known otherwise. Numbers
// are set for every object that is sent, and a new copy would be most of the cost. SetEntry replaces a
// "Name", and counts the change.
bool Overwrite(const PROPERTIES& cList, const char* pchKey, const DecimalText& cText,
               const char* pchSection) {
    char* const pchValue = FindValue<false>(cList, pchKey, pchSection);
    if (!pchValue || strnlen(pchValue, cText.Length()) < cText.Length() ||
        (*pchKey == *Key::Name && fwstrcmp(pchKey, Key::Name) == 0)) {
        return false;
    }
    CopyShort(pchValue, cText.Begin(), cText.Length());
    pchValue[cText.Length()] = '\0';
    return true;
}

int SetNumber(PROPERTIES& cList, const char* pchKey, const DecimalText& cText, const char* pchSection) {
    return Overwrite(cList, pchKey, cText, pchSection) ||
           SetEntry(cList, pchKey, cText.Begin(), cText.Length(), pchSection);
}

void Release(const PROPERTIES& cList) {
    for (Byte4Type b4 = 0; b4 < cList.m_b2PropertyCount; ++b4) {
        std::free(cList.m_pachKeys[b4]);
        std::free(cList.m_pachValues[b4]);
        std::free(cList.m_pachSections[b4]);
    }
    fwfree(cList.m_pachKeys);
    fwfree(cList.m_pachValues);
    fwfree(cList.m_pachSections);
}

// The caller's buffer has room for the text and its terminator.
void CopyWhole(char* pchBuffer, const char* pchText) {
    std::memcpy(pchBuffer, pchText, std::strlen(pchText) + 1);
}

} // namespace

PROPERTIES::PROPERTIES()
    : m_b2PropertyCapacity(0),
      m_b2PropertyCount(0),
      m_pachSections(nullptr),
      m_pachKeys(nullptr),
      m_pachValues(nullptr) {}

PROPERTIES::~PROPERTIES() {
    Release(*this);
}

int PROPERTIES::Reset() {
    NameChanges.fetch_add(1, std::memory_order_relaxed);
    Release(*this);
    m_pachKeys = m_pachValues = m_pachSections = nullptr;
    m_b2PropertyCapacity = m_b2PropertyCount = 0;
    return 1;
}

Byte2Type PROPERTIES::GetNumberOfProperties() {
    return m_b2PropertyCount;
}

int PROPERTIES::FindProperty(char* pchKey, Byte2Type* pb2Index, char* pchSection) {
    if (!pchKey || !pb2Index || !pchSection) {
        return 0;
    }
    const Byte4Type b4Index = FindEntry(*this, pchKey, pchSection);
    if (b4Index >= m_b2PropertyCount) {
        ReportMissing(*this, pchKey, pchSection);
        return 0;
    }
    *pb2Index = static_cast<Byte2Type>(b4Index);
    return 1;
}

int PROPERTIES::GetProperty(char* pchKey, char* pchBuffer, Byte2Type b2Length, char* pchDefault,
                            char* pchSection) {
    const char* const pchValue = FindValue(*this, pchKey, pchSection);
    if (pchBuffer && b2Length > 0) {
        CopyBounded(pchBuffer, b2Length, pchValue ? pchValue : pchDefault ? pchDefault : "");
    }
    return pchValue != nullptr;
}

int PROPERTIES::GetProperty(char* pchKey, int* piValue, int iDefault, char* pchSection) {
    return GetConverted(*this, pchKey, piValue, iDefault, pchSection, ToInt);
}

int PROPERTIES::GetProperty(char* pchKey, unsigned int* puValue, unsigned int uDefault, char* pchSection) {
    return GetConverted(*this, pchKey, puValue, uDefault, pchSection, ToInt);
}

int PROPERTIES::GetProperty(char* pchKey, Byte2Type* pb2Value, Byte2Type b2Default, char* pchSection) {
    return GetConverted(*this, pchKey, pb2Value, b2Default, pchSection, ToInt);
}

int PROPERTIES::GetProperty(char* pchKey, long long* pllValue, long long llDefault, char* pchSection) {
    return GetConverted(*this, pchKey, pllValue, llDefault, pchSection, ToLong);
}

int PROPERTIES::GetProperty(char* pchKey, unsigned long long* pullValue, unsigned long long ullDefault,
                            char* pchSection) {
    return GetConverted(*this, pchKey, pullValue, ullDefault, pchSection, ToLong);
}

int PROPERTIES::GetProperty(char* pchKey, void** ppValue, void* pDefault, char* pchSection) {
    return GetConverted(*this, pchKey, ppValue, pDefault, pchSection, [ppValue](char* pchText) {
        void* pScanned = nullptr;
        return std::sscanf(pchText, "%p", &pScanned) == 1 ? pScanned : *ppValue;
    });
}

int PROPERTIES::GetPropertyLength(char* pchKey, Byte2Type* pb2Length, char* pchSection) {
    const char* const pchValue = FindValue(*this, pchKey, pchSection);
    if (!pchValue || !pb2Length) {
        return 0;
    }
    *pb2Length = static_cast<Byte2Type>(strnlen(pchValue, UINT16_MAX));
    return 1;
}

int PROPERTIES::SetProperty(char* pchKey, char* pchValue, char* pchSection) {
    const char* const pchText = pchValue ? pchValue : "";
    return SetEntry(*this, pchKey, pchText, std::strlen(pchText), pchSection);
}

int PROPERTIES::SetProperty(char* pchKey, int iValue, char* pchSection) {
    return SetNumber(*this, pchKey, DecimalText(iValue), pchSection);
}

int PROPERTIES::SetProperty(char* pchKey, unsigned int uValue, char* pchSection) {
    return SetNumber(*this, pchKey, DecimalText(static_cast<int>(uValue)), pchSection);
}

int PROPERTIES::SetProperty(char* pchKey, Byte2Type b2Value, char* pchSection) {
    return SetNumber(*this, pchKey, DecimalText(Byte4Type{b2Value}), pchSection);
}

int PROPERTIES::SetProperty(char* pchKey, long long llValue, char* pchSection) {
    return SetNumber(*this, pchKey, DecimalText(llValue), pchSection);
}

int PROPERTIES::SetProperty(char* pchKey, void* pValue, char* pchSection) {
    char achText[32]; // "0x" and 16 digits, or the platform's word for null
    std::snprintf(achText, sizeof achText, "%p", pValue);
    return SetProperty(pchKey, achText, pchSection);
}

int PROPERTIES::AddKeyValuePair(char* pchSection, char* pchPair) {
    char* const pchEquals = pchPair ? fwstrchr(pchPair, '=') : nullptr;
    if (pchEquals) {
        *pchEquals = '\0';
        SetProperty(pchPair, pchEquals + 1, pchSection);
    }
    return 1;
}

int PROPERTIES::GetKeyLength(Byte2Type b2Index, Byte2Type* pb2Length) {
    if (b2Index >= m_b2PropertyCount || !pb2Length) {
        return 0;
    }
    *pb2Length = static_cast<Byte2Type>(strnlen(m_pachKeys[b2Index], UINT16_MAX));
    return 1;
}

int PROPERTIES::GetKeyName(Byte2Type b2Index, char* pchKey) {
    if (b2Index >= m_b2PropertyCount || !pchKey) {
        return 0;
    }
    CopyWhole(pchKey, m_pachKeys[b2Index]);
    return 1;
}

int PROPERTIES::GetKeyValuePair(Byte2Type b2Index, char* pchSection, char* pchKey, char* pchValue) {
    if (b2Index >= m_b2PropertyCount || !pchSection || fwstrcmp(m_pachSections[b2Index], pchSection) != 0) {
        return 0;
    }
    if (pchKey) {
        CopyWhole(pchKey, m_pachKeys[b2Index]);
    }
    if (pchValue) {
        CopyWhole(pchValue, m_pachValues[b2Index]);
    }
    return 1;
}

int PROPERTIES::Copy(PROPERTIES* pProperties) {
    if (pProperties) {
        MergeEntries(*this, *pProperties);
    }
    return 1;
}

} // namespace VESK
