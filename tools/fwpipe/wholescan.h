// SPDX-License-Identifier: MIT
// Where a damaged object stream holds complete objects, and the gaps between them. It looks at each line once and keeps of
// each only what tells whether objects are whole, for as many lines as two objects can have.
#ifndef FWPIPE_WHOLESCAN_H
#define FWPIPE_WHOLESCAN_H

#include "linescan.h"

#include <deque>
#include <string>

namespace FwPipe {

class WholeScan {
public:
    explicit WholeScan(int iFile); // lends the descriptor, which stands at the stream's begin

    // Takes the next complete object. False where there is none: in front of a gap, at the end of the stream, when reading
    // failed, and when a signal asked for an end.
    bool Next();

    // Why there was none: null at the end of the stream and after a read error.
    const char* Reason();

    // Skips to the next place where complete objects begin again, or to the end of the stream. A place counts when it is
    // the begin of a line, the object there is whole, its QObjectType, if it has one, is what its type line says, and
    // another complete object or the end follows. A line that was glued to the rest of a cut one makes no object so.
    void SkipGap();

    unsigned long long Offset(); // of what comes next
    unsigned long long Whole() const { return m_ullWhole; }
    int ReadError() const { return m_cScan.ReadError(); }

private:
    struct Line {
        unsigned long long ullOffset;
        const char* pchFault;      // of any line
        const char* pchCountFault; // as a count line
        unsigned long ulCount;
        bool bTypeFits;
        std::size_t uType;              // stands for its text as a type
        std::size_t uTold;              // for the type that a QObjectType line tells
        unsigned long ulRun;            // property lines up to it, without another between
        unsigned long long ullLastTold; // the number of the last QObjectType line up to it, plus 1
    };

    const Line* At(unsigned long long ullLine); // null behind the end
    bool Read();
    void Drop(unsigned long long ullLine);
    unsigned long long EndOf(unsigned long long ullLine); // of the complete object there, or 0
    bool IsTypeTold(unsigned long long ullLine, unsigned long long ullEnd);

    LineScan m_cScan;
    std::string m_cText;
    std::deque<Line> m_cLines; // from the line m_ullNext
    unsigned long long m_ullNext = 0;
    unsigned long long m_ullWhole = 0;
    bool m_bEnded = false;
};

} // namespace FwPipe

#endif
