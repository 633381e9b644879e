// SPDX-License-Identifier: MIT
// The lines of a stream, of which no line costs more memory than what is to be kept of it.
#ifndef FWPIPE_LINESCAN_H
#define FWPIPE_LINESCAN_H

#include <string>
#include <vector>

namespace FwPipe {

class LineScan {
public:
    // Lends the descriptor. When other programs feed it, what was printed so far is sent on before each wait. Of each
    // line at most uKept bytes are kept.
    explicit LineScan(int iFile, std::size_t uKept = std::string::npos);

    // Appends the next line. What is left out of it stands before its newline: what is behind a zero byte, since such a
    // line cannot be a part of an object, and what is beyond the limit. False at the end of the stream, when reading
    // failed, and when a signal asked for an end.
    bool Append(std::string& cText);

    unsigned long long Taken() const { return m_ullTaken; } // bytes, those left out included
    int ReadError() const { return m_iError; }              // 0, or an error number

private:
    bool Fill();
    void Keep(const char* pchFrom, std::size_t uLength, std::size_t uBegin, std::string& cText);
    void SkipHole();

    const int m_iFile;
    const std::size_t m_uKept;
    bool m_bFed = false;
    int m_iError = 0;
    std::vector<char> m_cBuffer; // bytes read ahead lie from m_uNext to m_uFilled
    std::size_t m_uNext = 0;
    std::size_t m_uFilled = 0;
    unsigned long long m_ullTaken = 0;
};

// A fault of the line as a count line, as the library has it, or that it would be a right one without a CR.
const char* CountFaultOf(const char* pchLine, std::size_t uLength, unsigned long* pulCount);

} // namespace FwPipe

#endif
