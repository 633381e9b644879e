// SPDX-License-Identifier: MIT
// An object stream, one complete object after the other. It holds one object at a time, whatever the size of the stream.
#ifndef FWPIPE_OBJECTSCAN_H
#define FWPIPE_OBJECTSCAN_H

#include "linescan.h"

#include <fwlib/fwlib.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace FwPipe {

class ObjectScan {
public:
    explicit ObjectScan(int iFile) : m_cScan(iFile) {} // lends the descriptor

    // Takes the next object. False at the end of the stream, at a broken object, when reading failed, and when a
    // signal asked for an end; there is nothing more then.
    bool Next();

    // The object at hand.
    const std::string& Text() const { return m_cText; } // its lines, each with its newline
    std::string_view Type() const;
    std::size_t Properties() const { return m_cLines.size() - FirstProperty; }
    std::pair<std::string_view, std::string_view> Property(std::size_t uIndex) const; // key and value

    unsigned long long Offset() const { return m_ullOffset; }  // of its first byte
    unsigned long long End() const { return m_cScan.Taken(); } // the offset behind it
    unsigned long long Whole() const { return m_ullWhole; }    // objects taken so far

    // Why there is no further object: null for the end of the stream behind a whole one.
    const char* Reason() const { return m_cState.Reason(); }
    int ReadError() const { return m_cScan.ReadError(); } // 0, or an error number

private:
    static constexpr std::size_t FirstProperty = 2; // behind the type line and the count line

    std::string_view Line(std::size_t uIndex) const;

    LineScan m_cScan;
    std::string m_cText;               // the object's lines, each with its newline
    std::vector<std::size_t> m_cLines; // where each begins
    unsigned long long m_ullOffset = 0;
    unsigned long long m_ullWhole = 0;
    VESK::ObjectLines m_cState;
};

} // namespace FwPipe

#endif
