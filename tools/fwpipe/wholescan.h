// SPDX-License-Identifier: MIT
// Finds the complete objects in a damaged object stream, and the gaps between them. Each line is read once. Only facts
// about lines are kept in memory, for at most as many lines as two objects can have.
#ifndef FWPIPE_WHOLESCAN_H
#define FWPIPE_WHOLESCAN_H

#include "linescan.h"

#include <deque>
#include <string>

namespace FwPipe {

class WholeScan {
public:
    explicit WholeScan(int iFile); // the descriptor is lent; it is at the start of the stream

    // Moves to the end of the next object. Returns false if none begins here: at a gap, at the end of the stream, after
    // a read error, and after a signal.
    bool Next();

    // Why Next returned false; null at the end of the stream and after a read error.
    const char* Reason();

    // Skips to the next line where complete objects begin again, or to the end of the stream. The object there must be
    // complete, its QObjectType, if present, must equal its type line, and another complete object or the end must
    // follow. So a line that was joined to the rest of a truncated one does not count.
    void SkipGap();

    unsigned long long Offset(); // of the next line
    unsigned long long Whole() const { return m_ullWhole; }
    int ReadError() const { return m_cScan.ReadError(); }

private:
    struct Line {
        unsigned long long ullOffset;
        const char* pchFault;      // as any line
        const char* pchCountFault; // as a count line
        unsigned long ulCount;
        bool bTypeFits;
        std::size_t uType;              // hash of its text as a type
        std::size_t uTold;              // hash of the type in a QObjectType line
        unsigned long ulRun;            // number of consecutive property lines that end with it
        unsigned long long ullLastTold; // number of the last QObjectType line up to it, plus 1
    };

    const Line* At(unsigned long long ullLine); // null after the end
    bool Read();
    void Drop(unsigned long long ullLine);
    unsigned long long EndOf(unsigned long long ullLine); // the line after the complete object there, or 0
    bool IsTypeTold(unsigned long long ullLine, unsigned long long ullEnd);

    LineScan m_cScan;
    std::string m_cText;
    std::deque<Line> m_cLines; // the first one is line m_ullNext
    unsigned long long m_ullNext = 0;
    unsigned long long m_ullWhole = 0;
    bool m_bEnded = false;
};

} // namespace FwPipe

#endif
