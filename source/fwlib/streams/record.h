// SPDX-License-Identifier: MIT
// A line key=value of a stream: composed and written in one WriteData call, and split when it is read.
#ifndef FWLIB_STREAMS_RECORD_H
#define FWLIB_STREAMS_RECORD_H

#include "fwlib/internal/textcopy.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/swrite.h"
#include "fwlib/text.h"

namespace VESK {

constexpr std::size_t RecordSize = 256;        // buffer for a typed record; a longer one uses the heap
constexpr std::size_t PropertyLineSize = 1024; // the same for a property's line

// Writes a text that may be longer than one WriteData call accepts.
inline void WriteText(SWrite& cWriter, const char* pchText, std::size_t uLength) {
    while (uLength > UINT32_MAX) {
        cWriter.WriteData(Text(pchText), UINT32_MAX);
        pchText += UINT32_MAX;
        uLength -= UINT32_MAX;
    }
    cWriter.WriteData(Text(pchText), static_cast<Byte4Type>(uLength));
}

// Composes key=value and a newline, without a terminator.
inline void ComposeRecord(char* pchLine, const char* pchKey, std::size_t uKeyLength, const char* pchValue,
                          std::size_t uValueLength) {
    CopyShort(pchLine, pchKey, uKeyLength);
    pchLine[uKeyLength] = '=';
    CopyShort(pchLine + uKeyLength + 1, pchValue, uValueLength);
    pchLine[uKeyLength + 1 + uValueLength] = '\n';
}

// Composes the line in a buffer of Size bytes, or on the heap if it is longer, and writes it in one call. Without
// memory for it, or if it is longer than one call accepts, writes the same line in several calls.
template <std::size_t Size>
void WriteRecord(SWrite& cWriter, const char* pchKey, std::size_t uKeyLength, const char* pchValue,
                 std::size_t uValueLength) {
    const std::size_t uLength = uKeyLength + 1 + uValueLength + 1;
    char achLine[Size];
    char* const pchHeap = uLength < Size || uLength > UINT32_MAX
                              ? nullptr
                              : static_cast<char*>(fwmalloc(static_cast<unsigned int>(uLength)));
    char* const pchLine = uLength < Size ? achLine : pchHeap;
    if (!pchLine) {
        WriteText(cWriter, pchKey, uKeyLength);
        WriteText(cWriter, "=", 1);
        WriteText(cWriter, pchValue, uValueLength);
        WriteText(cWriter, "\n", 1);
        return;
    }
    ComposeRecord(pchLine, pchKey, uKeyLength, pchValue, uValueLength);
    cWriter.WriteData(pchLine, static_cast<Byte4Type>(uLength));
    if (pchHeap) { // rare: without the test, the call takes a tenth of the time of a short line
        fwfree(pchHeap);
    }
}

// Terminates the key at the line's first "=" and returns the text after it; null if there is none.
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
