// SPDX-License-Identifier: MIT
// Typed access to properties in section "Standard", without casts; and a loop over a list.
//
//   SetValue(cObject, "Celsius", 21.5);
//   double dCelsius = 0;
//   if (!GetValue(cObject, "Celsius", dCelsius)) { ... }      // missing, or not a number
//   for (const Entry& cEntry : Entries(cObject.m_cProperties)) { ... cEntry.pchKey ... }
//
// The first argument is a PROPERTIES, or an element or data object, whose property list is then used.
#ifndef FWLIB_PROPERTIES_VALUES_H
#define FWLIB_PROPERTIES_VALUES_H

#include "fwlib/export.h"
#include "fwlib/properties/properties.h"
#include "fwlib/text.h"
#include "fwlib/types.h"

#include <cstddef>
#include <limits>
#include <string>
#include <type_traits>

namespace VESK {

// Convert a text that is a decimal number and nothing else. Return 1; or 0, with the value unchanged, for any other text,
// for null and for a number that does not fit. The decimal point is '.' in every locale. NaN and infinity are refused.
FWLIB_EXPORT int ParseNumber(const char* pchText, long long* pllValue);
FWLIB_EXPORT int ParseNumber(const char* pchText, unsigned long long* pullValue);
FWLIB_EXPORT int ParseReal(const char* pchText, double* pdValue);
FWLIB_EXPORT int ParseReal(const char* pchText, float* pfValue);
FWLIB_EXPORT int ParseFlag(const char* pchText, bool* pbValue); // 0 1 false true no yes off on

enum : unsigned int { NumberTextSize = 32 };

// Write the value into a buffer of NumberTextSize bytes, with the fewest digits that read back as the same value. Values
// below 0.00001 and from 1e15 on have an exponent. Return 0, with an empty text, for a value that is not finite.
FWLIB_EXPORT int FormatReal(double dValue, char* pchBuffer);
FWLIB_EXPORT int FormatReal(float fValue, char* pchBuffer);

// The value of a key in section "Standard", lent until the list changes; null when the key is missing or null.
FWLIB_EXPORT const char* FindValue(const PROPERTIES& cList, const char* pchKey);

// The list of an element or data object, or the list itself.
template <class Owner>
auto ListOf(Owner& cOwner, int) -> decltype((cOwner.m_cProperties)) {
    return cOwner.m_cProperties;
}
inline PROPERTIES& ListOf(PROPERTIES& cList, long) {
    return cList;
}
inline const PROPERTIES& ListOf(const PROPERTIES& cList, long) {
    return cList;
}

// StoreValue and ReadValue of each type. Char, enumerations, and pointers other than texts have no overload.
inline int StoreValue(PROPERTIES& cList, const char* pchKey, const char* pchValue) {
    return cList.SetProperty(Text(pchKey), Text(pchValue), Section::Standard);
}
inline int StoreValue(PROPERTIES& cList, const char* pchKey, const std::string& cValue) {
    return cValue.find('\0') == std::string::npos && StoreValue(cList, pchKey, cValue.c_str());
}
template <class Value>
typename std::enable_if<std::is_same<Value, bool>::value, int>::type
StoreValue(PROPERTIES& cList, const char* pchKey, Value bValue) {
    return StoreValue(cList, pchKey, bValue ? "1" : "0");
}
template <class Value>
typename std::enable_if<std::is_floating_point<Value>::value, int>::type
StoreValue(PROPERTIES& cList, const char* pchKey, Value Number) {
    char achText[NumberTextSize];
    return FormatReal(Number, achText) && StoreValue(cList, pchKey, achText);
}

// Whether numbers of that type are stored and read.
template <class Value>
struct IsNumber
    : std::integral_constant<bool, std::is_integral<Value>::value && !std::is_same<Value, bool>::value &&
                                       !std::is_same<Value, char>::value> {};
template <class Value>
struct Widest : std::conditional<std::is_signed<Value>::value, long long, unsigned long long> {};

FWLIB_EXPORT int StoreNumber(PROPERTIES& cList, const char* pchKey, long long llValue);
FWLIB_EXPORT int StoreNumber(PROPERTIES& cList, const char* pchKey, unsigned long long ullValue);

template <class Value>
typename std::enable_if<IsNumber<Value>::value, int>::type StoreValue(PROPERTIES& cList, const char* pchKey,
                                                                      Value Number) {
    return StoreNumber(cList, pchKey, static_cast<typename Widest<Value>::type>(Number));
}

inline int ReadValue(const char* pchText, std::string& cValue) {
    cValue = pchText;
    return 1;
}
inline int ReadValue(const char* pchText, bool& bValue) {
    return ParseFlag(pchText, &bValue);
}
template <class Value>
typename std::enable_if<std::is_floating_point<Value>::value, int>::type ReadValue(const char* pchText,
                                                                                   Value& Number) {
    return ParseReal(pchText, &Number);
}
template <class Value>
typename std::enable_if<IsNumber<Value>::value, int>::type ReadValue(const char* pchText, Value& Number) {
    typename Widest<Value>::type Wide;
    if (!ParseNumber(pchText, &Wide) || Wide > std::numeric_limits<Value>::max() ||
        Wide < std::numeric_limits<Value>::min()) {
        return 0;
    }
    Number = static_cast<Value>(Wide);
    return 1;
}

// Stores a text, number or bool (1 or 0). Returns 0, with the list unchanged, when there is not enough memory, for a text
// that contains a zero byte and for a real number that is not finite.
template <class Target, class Value>
int SetValue(Target& cTarget, const char* pchKey, const Value& cValue) {
    return StoreValue(ListOf(cTarget, 0), pchKey, cValue);
}

// Reads a text, number or bool. Returns 0, with the value unchanged, when the key is missing, or when its text is not
// exactly one value of that type.
template <class Source, class Value>
int GetValue(const Source& cSource, const char* pchKey, Value& cValue) {
    const char* const pchText = FindValue(ListOf(cSource, 0), pchKey);
    return pchText && ReadValue(pchText, cValue);
}

struct Entry {
    const char* pchSection; // all three are lent until the list changes
    const char* pchKey;
    const char* pchValue;
};

// For a range-based loop over the entries that the list has when the loop begins. The loop ends early if entries are
// removed meanwhile. The list must exist until the loop ends.
class Entries {
public:
    class Iterator {
    public:
        Iterator(const PROPERTIES& cList, Byte4Type b4Index, Byte4Type b4End)
            : m_cList(cList), m_b4Index(b4Index), m_b4End(b4End) {}

        Entry operator*() const {
            return {m_cList.m_pachSections[m_b4Index], m_cList.m_pachKeys[m_b4Index],
                    m_cList.m_pachValues[m_b4Index]};
        }
        Iterator& operator++() {
            ++m_b4Index;
            return *this;
        }
        bool operator!=(const Iterator&) const {
            return m_b4Index < m_b4End && m_b4Index < m_cList.m_b2PropertyCount;
        }

    private:
        const PROPERTIES& m_cList;
        Byte4Type m_b4Index;
        Byte4Type m_b4End;
    };

    explicit Entries(const PROPERTIES& cList) : m_cList(cList) {}

    Iterator begin() const { return {m_cList, 0, m_cList.m_b2PropertyCount}; }
    Iterator end() const { return {m_cList, 0, 0}; }

private:
    const PROPERTIES& m_cList;
};

} // namespace VESK

#endif
