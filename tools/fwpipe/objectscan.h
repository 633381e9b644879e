// SPDX-License-Identifier: MIT
// Reads the complete objects of a stream one after the other. Only one object is in memory at a time.
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
    explicit ObjectScan(int iFile) : m_cScan(iFile) {} // the descriptor is lent

    // Reads the next object. Returns false at the end of the stream, at a broken object, at an error, and after a
    // signal; no objects follow then.
    bool Next();

    // The current object.
    const std::string& Text() const { return m_cText; } // its lines, each with its newline
    std::string_view Type() const;
    std::size_t Properties() const { return m_cLines.size() - FirstProperty; }
    std::pair<std::string_view, std::string_view> Property(std::size_t uIndex) const; // key and value

    unsigned long long Offset() const { return m_ullOffset; }  // of the object's first byte
    unsigned long long End() const { return m_cScan.Taken(); } // the offset after the object
    unsigned long long Whole() const { return m_ullWhole; }    // complete objects read so far

    // Why there is no further object; null at the end of the stream after a complete object.
    const char* Reason() const { return m_cState.Reason(); }
    int ReadError() const { return m_cScan.ReadError(); } // 0, or an error number

private:
    static constexpr std::size_t FirstProperty = 2; // after the type line and the count line

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
