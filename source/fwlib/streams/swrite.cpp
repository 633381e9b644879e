// SPDX-License-Identifier: MIT
#include "fwlib/streams/swrite.h"

#include "fwlib/internal/decimal.h"
#include "fwlib/streams/record.h"

namespace VESK {

namespace {

int WriteNumber(SWrite& cWriter, const char* pchKey, const DecimalText& cNumber) {
    const char* const pchText = pchKey ? pchKey : "";
    WriteRecord<RecordSize>(cWriter, pchText, std::strlen(pchText), cNumber.Begin(), cNumber.Length());
    return 1;
}

} // namespace

SWrite::SWrite() = default;

SWrite::~SWrite() = default;

int SWrite::Serialize(char* pchKey, int iValue) {
    return WriteNumber(*this, pchKey, DecimalText(iValue));
}

int SWrite::Serialize(char* pchKey, short sValue) {
    return Serialize(pchKey, int{sValue});
}

int SWrite::Serialize(char* pchKey, char chValue) {
    return Serialize(pchKey, int{static_cast<signed char>(chValue)});
}

int SWrite::Serialize(char* pchKey, unsigned int uValue) {
    return WriteNumber(*this, pchKey, DecimalText(uValue));
}

int SWrite::Serialize(char* pchKey, unsigned short usValue) {
    return Serialize(pchKey, static_cast<unsigned int>(usValue));
}

int SWrite::Serialize(char* pchKey, unsigned char bValue) {
    return Serialize(pchKey, static_cast<unsigned int>(bValue));
}

} // namespace VESK
