// SPDX-License-Identifier: MIT
#include "fwlib/properties/values.h"

#include "fwlib/internal/decimal.h"
#include "fwlib/properties/list.h"

#include <charconv>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace VESK {

namespace {

bool IsDigit(char ch) {
    return ch >= '0' && ch <= '9';
}

const char* SkipSign(const char* pch) {
    return pch + (*pch == '-' || *pch == '+');
}

// Skips digits and counts them.
const char* SkipDigits(const char* pch, std::size_t& uDigits) {
    for (; IsDigit(*pch); ++pch) {
        ++uDigits;
    }
    return pch;
}

// Reads a text of an optional sign and digits only.
int ParseMagnitude(const char* pchText, unsigned long long& ullMagnitude, bool& bNegative) {
    if (!pchText) {
        return 0;
    }
    bNegative = *pchText == '-';
    const char* pch = SkipSign(pchText);
    if (!IsDigit(*pch)) {
        return 0;
    }
    for (ullMagnitude = 0; IsDigit(*pch); ++pch) {
        const auto uDigit = static_cast<unsigned int>(*pch - '0');
        if (ullMagnitude > (ULLONG_MAX - uDigit) / 10) {
            return 0;
        }
        ullMagnitude = ullMagnitude * 10 + uDigit;
    }
    return *pch == '\0';
}

// Whether the text is a sign, digits with a point, and an exponent, where all but one digit are optional.
bool LooksReal(const char* pchText) {
    std::size_t uDigits = 0;
    const char* pch = SkipDigits(SkipSign(pchText), uDigits);
    if (*pch == '.') {
        pch = SkipDigits(pch + 1, uDigits);
    }
    if (uDigits > 0 && (*pch == 'e' || *pch == 'E')) {
        uDigits = 0;
        pch = SkipDigits(SkipSign(pch + 1), uDigits);
    }
    return uDigits > 0 && *pch == '\0';
}

template <class Value>
int ParseWith(Value (*pConvert)(const char*, char**, locale_t), const char* pchText, Value* pValue) {
    static const locale_t Plain = newlocale(LC_ALL_MASK, "C", nullptr);
    if (!pchText || !LooksReal(pchText) || !Plain) {
        return 0;
    }
    const Value Number = pConvert(pchText, nullptr, Plain);
    if (!std::isfinite(Number)) {
        return 0;
    }
    *pValue = Number;
    return 1;
}

// The fewest digits that identify the value; with an exponent only where the plain form has many zeros, since the getters
// of PROPERTIES read a number up to its exponent.
template <class Value>
int FormatShortest(Value Number, char* pchBuffer) {
    constexpr Value Small = Value(1e-5);
    constexpr Value Large = Value(1e15);
    *pchBuffer = '\0';
    if (!std::isfinite(Number)) {
        return 0;
    }
    const Value Size = std::fabs(Number);
    const bool bPlain = Size == 0 || (Size >= Small && Size < Large);
    *std::to_chars(pchBuffer, pchBuffer + NumberTextSize - 1, Number,
                   bPlain ? std::chars_format::fixed : std::chars_format::scientific)
         .ptr = '\0';
    return 1;
}

} // namespace

int ParseNumber(const char* pchText, long long* pllValue) {
    unsigned long long ull;
    bool bNegative;
    if (!ParseMagnitude(pchText, ull, bNegative) ||
        ull > static_cast<unsigned long long>(LLONG_MAX) + bNegative) {
        return 0;
    }
    *pllValue = static_cast<long long>(bNegative ? 0 - ull : ull);
    return 1;
}

int ParseNumber(const char* pchText, unsigned long long* pullValue) {
    unsigned long long ull;
    bool bNegative;
    if (!ParseMagnitude(pchText, ull, bNegative) || (bNegative && ull != 0)) {
        return 0;
    }
    *pullValue = ull;
    return 1;
}

int ParseReal(const char* pchText, double* pdValue) {
    return ParseWith(strtod_l, pchText, pdValue);
}

int ParseReal(const char* pchText, float* pfValue) {
    return ParseWith(strtof_l, pchText, pfValue);
}

int ParseFlag(const char* pchText, bool* pbValue) {
    constexpr const char* Words[] = {"0", "1", "false", "true", "no", "yes", "off", "on"};
    bool bTrue = false;
    for (const char* const pchWord : Words) {
        if (pchText && std::strcmp(pchText, pchWord) == 0) {
            *pbValue = bTrue;
            return 1;
        }
        bTrue = !bTrue;
    }
    return 0;
}

int FormatReal(double dValue, char* pchBuffer) {
    return FormatShortest(dValue, pchBuffer);
}

int FormatReal(float fValue, char* pchBuffer) {
    return FormatShortest(fValue, pchBuffer);
}

const char* FindValue(const PROPERTIES& cList, const char* pchKey) {
    if (!pchKey) {
        return nullptr;
    }
    const char* const pchValue = FindStandard(cList, SoughtText(pchKey));
    return pchValue ? pchValue : ReportMissing(cList, pchKey, Section::Standard);
}

int StoreNumber(PROPERTIES& cList, const char* pchKey, long long llValue) {
    return cList.SetProperty(Text(pchKey), llValue, Section::Standard);
}

int StoreNumber(PROPERTIES& cList, const char* pchKey, unsigned long long ullValue) {
    const DecimalText cText(ullValue);
    return SetEntry(cList, pchKey, cText.Begin(), cText.Length(), Section::Standard);
}

} // namespace VESK
