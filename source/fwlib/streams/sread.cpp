// SPDX-License-Identifier: MIT
#include "fwlib/streams/sread.h"

#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/record.h"

#include <cctype>
#include <cstdint>

namespace VESK {

namespace {

int ToSigned(char* pchText) {
    return fwatoi(pchText);
}

// Like strtoul with a long of 32 bits.
unsigned int ToUnsigned(char* pchText) {
    const char* pch = pchText;
    while (std::isspace(static_cast<unsigned char>(*pch))) {
        ++pch;
    }
    const bool bNegative = *pch == '-';
    pch += *pch == '-' || *pch == '+';
    std::uint64_t uMagnitude = 0;
    for (; *pch >= '0' && *pch <= '9' && uMagnitude <= UINT32_MAX; ++pch) {
        uMagnitude = uMagnitude * 10 + static_cast<unsigned int>(*pch - '0');
    }
    return uMagnitude > UINT32_MAX ? UINT32_MAX
                                   : static_cast<unsigned int>(bNegative ? 0 - uMagnitude : uMagnitude);
}

// Reads a line even if pValue is null.
template <class Value>
int ReadNumber(SRead& cReader, Value* pValue, Value (*pConvert)(char*)) {
    char* const pchLine = cReader.ReadLine();
    char* const pchText = pchLine && pValue ? SplitRecord(pchLine) : nullptr;
    if (!pchText) {
        return 0;
    }
    *pValue = pConvert(pchText);
    return 1;
}

template <class Wide, class Narrow>
int ReadNarrow(SRead& cReader, Narrow* pValue) {
    Wide Number;
    if (!pValue || !cReader.Deserialize(&Number)) {
        return 0;
    }
    *pValue = static_cast<Narrow>(Number);
    return 1;
}

} // namespace

SRead::SRead() = default;

SRead::~SRead() = default;

int SRead::Deserialize(int* piValue) {
    return ReadNumber(*this, piValue, ToSigned);
}

int SRead::Deserialize(unsigned int* puValue) {
    return ReadNumber(*this, puValue, ToUnsigned);
}

int SRead::Deserialize(short* psValue) {
    return ReadNarrow<int>(*this, psValue);
}

int SRead::Deserialize(char* pchValue) {
    return ReadNarrow<int>(*this, pchValue);
}

int SRead::Deserialize(unsigned short* pusValue) {
    return ReadNarrow<unsigned int>(*this, pusValue);
}

int SRead::Deserialize(unsigned char* pbValue) {
    return ReadNarrow<unsigned int>(*this, pbValue);
}

} // namespace VESK
