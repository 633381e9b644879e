// SPDX-License-Identifier: MIT
// One line of a stream, key=value, composed and handed over in a single WriteData call; and its way back.
#ifndef FWLIB_INTERNAL_RECORD_H
#define FWLIB_INTERNAL_RECORD_H

#include "fwlib/internal/texts.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/swrite.h"
#include "fwlib/text.h"

namespace VESK {

constexpr std::size_t RecordSize = 256;        // a typed record that is composed without the heap
constexpr std::size_t PropertyLineSize = 1024; // a property's line likewise

// Composes the line in a buffer of Size bytes, or on the heap when it is longer, and writes it in one call. When
// the memory for a longer line cannot be had the line goes out in its four pieces: it is whole all the same.
template <std::size_t Size>
void WriteRecord(SWrite& cWriter, const char* pchKey, const char* pchValue, std::size_t uValueLength) {
    const std::size_t uKeyLength = std::strlen(pchKey);
    const std::size_t uLength = uKeyLength + 1 + uValueLength + 1;
    char achLine[Size];
    char* pchHeap = nullptr;
    if (uLength >= Size) {
        pchHeap = static_cast<char*>(fwmalloc(static_cast<Byte4Type>(uLength)));
        if (!pchHeap) {
            cWriter.WriteData(Text(pchKey), static_cast<Byte4Type>(uKeyLength));
            cWriter.WriteData(Text("="), 1);
            cWriter.WriteData(Text(pchValue), static_cast<Byte4Type>(uValueLength));
            cWriter.WriteData(Text("\n"), 1);
            return;
        }
    }
    char* const pchLine = pchHeap ? pchHeap : achLine;
    std::memcpy(pchLine, pchKey, uKeyLength);
    pchLine[uKeyLength] = '=';
    std::memcpy(pchLine + uKeyLength + 1, pchValue, uValueLength);
    pchLine[uLength - 1] = '\n';
    cWriter.WriteData(pchLine, static_cast<Byte4Type>(uLength));
    fwfree(pchHeap);
}

// Ends the key at the line's first "=" and answers the text behind it, or null when there is none.
inline char* SplitRecord(char* pchLine) {
    char* const pchEquals = fwstrchr(pchLine, '=');
    if (!pchEquals) {
        return nullptr;
    }
    *pchEquals = '\0';
    return pchEquals + 1;
}

} // namespace VESK

#endif
