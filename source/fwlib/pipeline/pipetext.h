// SPDX-License-Identifier: MIT
// The lines of a pipe file, or of a text in memory, which is read as a file with that content.
#ifndef FWLIB_PIPELINE_PIPETEXT_H
#define FWLIB_PIPELINE_PIPETEXT_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/types.h"

namespace FWLIB_HIDDEN VESK {

class PipeText {
public:
    explicit PipeText(char* pFile) : m_pFile(pFile), m_pchText(nullptr) {}           // lent
    explicit PipeText(const char* pchText) : m_pFile(nullptr), m_pchText(pchText) {} // lent

    // Reads the next line without its end. At most 255 characters: the rest of a longer line is the next one. Returns false
    // at the end and after a read error.
    bool Next(char (&achLine)[PipeLineSize]);

    Byte4Type Line() const { return m_b4Line; } // of the file, as an editor counts from 1

private:
    bool NextPiece(char (&achLine)[PipeLineSize]);

    char* const m_pFile;
    const char* m_pchText;
    Byte4Type m_b4Line = 0;
    bool m_bEnded = true; // the last piece ended its line
};

} // namespace VESK

#endif
