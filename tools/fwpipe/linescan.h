// SPDX-License-Identifier: MIT
// Reads the lines of a stream with limited memory for each.
#ifndef FWPIPE_LINESCAN_H
#define FWPIPE_LINESCAN_H

#include <string>
#include <vector>

namespace FwPipe {

class LineScan {
public:
    // The descriptor is lent. If it is not a regular file, printed output is flushed before each read. At most uKept
    // bytes of each line are kept.
    explicit LineScan(int iFile, std::size_t uKept = std::string::npos);

    // Appends the next line with its newline. Omits the bytes after a zero byte, as such a line is not valid anyway,
    // and those beyond the limit. Returns false at the end of the stream, at an error, and after a signal.
    bool Append(std::string& cText);

    unsigned long long Taken() const { return m_ullTaken; } // bytes read, omitted ones included
    int ReadError() const { return m_iError; }              // 0, or an error number

private:
    bool Fill();
    void Keep(const char* pchFrom, std::size_t uLength, std::size_t uBegin, std::string& cText);
    void SkipHole();

    const int m_iFile;
    const std::size_t m_uKept;
    bool m_bFed = false;
    int m_iError = 0;
    std::vector<char> m_cBuffer; // has unread bytes from m_uNext to m_uFilled
    std::size_t m_uNext = 0;
    std::size_t m_uFilled = 0;
    unsigned long long m_ullTaken = 0;
};

// The fault of a count line as ObjectLines has it, or that it would be valid without a CR.
const char* CountFaultOf(const char* pchLine, std::size_t uLength, unsigned long* pulCount);

} // namespace FwPipe

#endif
