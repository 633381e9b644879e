// SPDX-License-Identifier: MIT
// The pipe file language for programs that read or write it: its keywords, and the reader of its lines. BuildPipe and
// BuildPipeText use the same.
#ifndef FWLIB_PIPELINE_PIPELANGUAGE_H
#define FWLIB_PIPELINE_PIPELANGUAGE_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

enum class PipeWord : Byte4Type {
    Plugin,
    FrameworkProperty,
    Pipe,
    Element,
    Property,
    Sink,
    Source,
    Connect,
    Config
};

struct PipeKeyword {
    const char* pchWord; // as it is written
    PipeWord Word;
    unsigned int uArguments; // The line fails with fewer. More are ignored, up to MostPipeTokens.
};

enum : unsigned int {
    PipeKeywordCount = static_cast<unsigned int>(PipeWord::Config) + 1,
    MostPipeTokens = 14,     // of a line, the keyword included; a line with more fails
    DeepestPipeNesting = 64, // of files that contain others; a file that is nested deeper fails
    PipeLineSize = 256 // of a line with its terminator; the rest of a longer line is read as the next one
};

// The keywords in the order of PipeWord: PipeKeywordCount entries, static.
FWLIB_EXPORT const PipeKeyword* GetPipeKeywords();

// Returns the keyword, static. Returns null if there is none: case matters.
FWLIB_EXPORT const PipeKeyword* FindPipeKeyword(const char* pchWord);

struct PipeLine {
    Byte4Type b4Line;     // the file's line, from 1
    unsigned int uColumn; // of achText in it, in bytes from 1; more than 1 for the rest of a longer line
    unsigned int uTokens; // 0 for an empty line and a comment; at most one more than MostPipeTokens
    char* apchTokens[MostPipeTokens + 2]; // in achText, each closed by a zero byte; null behind the last
    char achText[PipeLineSize];

    // Of a token in the file's line, in bytes from 1.
    unsigned int Column(unsigned int uToken) const {
        return uColumn + static_cast<unsigned int>(apchTokens[uToken] - achText);
    }
};

// Reads the lines of a file, or of a text in memory as if it were a file's content. It allocates nothing.
class FWLIB_EXPORT PipeReader {
public:
    // A file that fwfopen opened for reading. Lent until the last call of Next.
    static PipeReader OfFile(char* pFile) { return PipeReader(pFile, nullptr); }
    // Up to its terminator. Lent until the last call of Next.
    static PipeReader OfText(const char* pchText) { return PipeReader(nullptr, pchText); }

    // Reads the next line, also an empty one or a comment, and splits it at blanks and tabs. A zero byte ends a line's
    // text. Returns false at the end and after a read error, which Failed tells apart; the line is undefined then.
    bool Next(PipeLine& cLine);

    // Whether a read of the file failed, as that of a directory does.
    bool Failed() const;

private:
    PipeReader(char* pFile, const char* pchText) : m_pFile(pFile), m_pchText(pchText) {}
    bool ReadPiece(PipeLine& cLine, unsigned int& uLength);

    char* m_pFile;         // lent; null for a text
    const char* m_pchText; // lent; null for a file
    Byte4Type m_b4Line = 0;
    unsigned int m_uRead = 0; // bytes of this line
    bool m_bEnded = true;     // the last piece ended its line
};

} // namespace VESK

#endif
