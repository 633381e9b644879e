// SPDX-License-Identifier: MIT
#include "fwlib/properties/properties.h"

#include "fwlib/internal/growth.h"
#include "fwlib/internal/list.h"
#include "fwlib/internal/texts.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cstdio>
#include <cstdlib>

namespace VESK {

char* StoreText(const char* pchText, std::size_t uLength) {
    constexpr std::size_t Word = sizeof(TextWord);
    const std::size_t uSize = (uLength + Word) / Word * Word; // one character more, in whole words
    if (uSize > UINT32_MAX) {
        return nullptr;
    }
    char* const pchStored = static_cast<char*>(fwmalloc(static_cast<unsigned int>(uSize)));
    if (pchStored) {
        std::memset(pchStored + uSize - Word, 0, Word);
        std::memcpy(pchStored, pchText, uLength);
    }
    return pchStored;
}

namespace {

// Appends an entry that the list does not hold: 1, or 0 with the entries and their count as they were.
int AppendEntry(PROPERTIES& cList, const char* pchKey, const char* pchValue, std::size_t uLength,
                const char* pchSection) {
    if (!MakeRoom(cList.m_b2PropertyCapacity, cList.m_b2PropertyCount, LargestCapacity, cList.m_pachKeys,
                  cList.m_pachValues, cList.m_pachSections)) {
        return 0;
    }
    char* const pchOwnKey = StoreText(pchKey, std::strlen(pchKey));
    char* const pchOwnValue = StoreText(pchValue, uLength);
    char* const pchOwnSection = StoreText(pchSection, std::strlen(pchSection));
    if (!pchOwnKey || !pchOwnValue || !pchOwnSection) {
        fwfree(pchOwnKey);
        fwfree(pchOwnValue);
        fwfree(pchOwnSection);
        return 0;
    }
    cList.m_pachKeys[cList.m_b2PropertyCount] = pchOwnKey;
    cList.m_pachValues[cList.m_b2PropertyCount] = pchOwnValue;
    cList.m_pachSections[cList.m_b2PropertyCount] = pchOwnSection;
    ++cList.m_b2PropertyCount;
    return 1;
}

int ReplaceValue(PROPERTIES& cList, Byte4Type b4Index, const char* pchValue, std::size_t uLength) {
    char* const pchOwnValue = StoreText(pchValue, uLength);
    if (!pchOwnValue) {
        return 0;
    }
    fwfree(cList.m_pachValues[b4Index]);
    cList.m_pachValues[b4Index] = pchOwnValue;
    return 1;
}

// SetEntry, when any entry of that key and section stands among the first b4Searched.
int SetAmong(PROPERTIES& cList, Byte4Type b4Searched, const char* pchKey, const char* pchValue,
             std::size_t uLength, const char* pchSection) {
    const Byte4Type b4Index = FindEntry(cList, b4Searched, SoughtText(pchKey), pchSection);
    return b4Index < b4Searched ? ReplaceValue(cList, b4Index, pchValue, uLength)
                                : AppendEntry(cList, pchKey, pchValue, uLength, pchSection);
}

// The value of an entry, lent, or null.
char* FindValue(const PROPERTIES& cList, const char* pchKey, const char* pchSection) {
    if (!pchKey || !pchSection) {
        return nullptr;
    }
    const Byte4Type b4Index = FindEntry(cList, cList.m_b2PropertyCount, SoughtText(pchKey), pchSection);
    return b4Index < cList.m_b2PropertyCount ? cList.m_pachValues[b4Index] : nullptr;
}

// Every typed getter: the converted value when the key is there, else the default.
template <class Value, class Convert>
int GetConverted(const PROPERTIES& cList, const char* pchKey, Value* pValue, Value Default,
                 const char* pchSection, Convert convert) {
    char* const pchText = FindValue(cList, pchKey, pchSection);
    if (pValue) {
        *pValue = pchText ? static_cast<Value>(convert(pchText)) : Default;
    }
    return pchText != nullptr;
}

int SetNumber(PROPERTIES& cList, const char* pchKey, const DecimalText& cText, const char* pchSection) {
    return SetEntry(cList, pchKey, cText.Begin(), cText.Length(), pchSection);
}

} // namespace

int SetEntry(PROPERTIES& cList, const char* pchKey, const char* pchValue, std::size_t uLength,
             const char* pchSection) {
    if (!pchKey || !pchSection) {
        return 0;
    }
    return SetAmong(cList, cList.m_b2PropertyCount, pchKey, pchValue, uLength, pchSection);
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
        const char* const pchValue = cSource.m_pachValues[b4];
        iAll &= SetAmong(cTarget, b4Before, cSource.m_pachKeys[b4], pchValue, std::strlen(pchValue),
                         cSource.m_pachSections[b4]);
    }
    return iAll;
}

PROPERTIES::PROPERTIES()
    : m_b2PropertyCapacity(0),
      m_b2PropertyCount(0),
      m_pachSections(nullptr),
      m_pachKeys(nullptr),
      m_pachValues(nullptr) {}

PROPERTIES::~PROPERTIES() {
    Reset();
}

int PROPERTIES::Reset() {
    for (Byte4Type b4 = 0; b4 < m_b2PropertyCount; ++b4) {
        fwfree(m_pachKeys[b4]);
        fwfree(m_pachValues[b4]);
        fwfree(m_pachSections[b4]);
    }
    fwfree(m_pachKeys);
    fwfree(m_pachValues);
    fwfree(m_pachSections);
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
    const Byte4Type b4Index = FindEntry(*this, m_b2PropertyCount, SoughtText(pchKey), pchSection);
    if (b4Index >= m_b2PropertyCount) {
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
    return GetConverted(*this, pchKey, piValue, iDefault, pchSection, fwatoi);
}

int PROPERTIES::GetProperty(char* pchKey, unsigned int* puValue, unsigned int uDefault, char* pchSection) {
    return GetConverted(*this, pchKey, puValue, uDefault, pchSection, fwatoi);
}

int PROPERTIES::GetProperty(char* pchKey, Byte2Type* pb2Value, Byte2Type b2Default, char* pchSection) {
    return GetConverted(*this, pchKey, pb2Value, b2Default, pchSection, fwatoi);
}

int PROPERTIES::GetProperty(char* pchKey, long long* pllValue, long long llDefault, char* pchSection) {
    return GetConverted(*this, pchKey, pllValue, llDefault, pchSection,
                        [](char* pchText) { return std::strtoll(pchText, nullptr, 10); });
}

int PROPERTIES::GetProperty(char* pchKey, unsigned long long* pullValue, unsigned long long ullDefault,
                            char* pchSection) {
    return GetConverted(*this, pchKey, pullValue, ullDefault, pchSection,
                        [](char* pchText) { return std::strtoll(pchText, nullptr, 10); });
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

int PROPERTIES::GetKeyName(Byte2Type b2Index, char* pchKey) {
    if (b2Index >= m_b2PropertyCount || !pchKey) {
        return 0;
    }
    std::strcpy(pchKey, m_pachKeys[b2Index]);
    return 1;
}

int PROPERTIES::GetKeyValuePair(Byte2Type b2Index, char* pchSection, char* pchKey, char* pchValue) {
    if (b2Index >= m_b2PropertyCount || !pchSection || fwstrcmp(m_pachSections[b2Index], pchSection) != 0) {
        return 0;
    }
    if (pchKey) {
        std::strcpy(pchKey, m_pachKeys[b2Index]);
    }
    if (pchValue) {
        std::strcpy(pchValue, m_pachValues[b2Index]);
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
