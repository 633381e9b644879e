// SPDX-License-Identifier: MIT
#include "linescan.h"

#include "interrupt.h"
#include "output.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fwlib/fwlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FwPipe {

namespace {

constexpr std::size_t BufferSize = 0x40000;

} // namespace

LineScan::LineScan(int iFile, std::size_t uKept) : m_iFile(iFile), m_uKept(uKept), m_cBuffer(BufferSize) {
    struct stat Status = {};
    m_bFed = fstat(iFile, &Status) == 0 && !S_ISREG(Status.st_mode);
}

bool LineScan::Fill() {
    if (m_bFed) {
        SendOn();
    }
    ssize_t iRead;
    do {
        iRead = Interrupt() ? 0 : read(m_iFile, m_cBuffer.data(), m_cBuffer.size());
    } while (iRead < 0 && errno == EINTR);
    m_iError = iRead < 0 ? errno : 0;
    m_uNext = 0;
    m_uFilled = iRead > 0 ? static_cast<std::size_t>(iRead) : 0;
    return iRead > 0;
}

// Skips a hole in a file: its zeros are part of no object and contain no newline. After the last data, skips to the
// end.
void LineScan::SkipHole() {
    const off_t iAt = m_bFed ? -1 : lseek(m_iFile, 0, SEEK_CUR);
    if (iAt < 0) {
        return;
    }
    off_t iData = lseek(m_iFile, iAt, SEEK_DATA);
    if (iData < 0 && errno == ENXIO) {
        iData = lseek(m_iFile, 0, SEEK_END);
    }
    if (iData > iAt) {
        m_ullTaken += static_cast<unsigned long long>(iData - iAt);
    } else {
        lseek(m_iFile, iAt, SEEK_SET); // not supported, or the file was truncated
    }
}

void LineScan::Keep(const char* pchFrom, std::size_t uLength, std::size_t uBegin, std::string& cText) {
    const void* const pZero = std::memchr(pchFrom, '\0', uLength);
    const std::size_t uUseful =
        pZero ? static_cast<std::size_t>(static_cast<const char*>(pZero) - pchFrom) : uLength;
    cText.append(pchFrom, std::min(uUseful, m_uKept - std::min(m_uKept, cText.size() - uBegin)));
    cText.append(pZero ? 1 : 0, '\0'); // even beyond the limit
}

bool LineScan::Append(std::string& cText) {
    const std::size_t uBegin = cText.size();
    bool bAny = false;
    while (m_uNext < m_uFilled || Fill()) {
        const bool bZero = cText.size() > uBegin && cText.back() == '\0';
        const char* const pchFrom = m_cBuffer.data() + m_uNext;
        const std::size_t uAhead = m_uFilled - m_uNext;
        const void* const pEnd = std::memchr(pchFrom, '\n', uAhead);
        const std::size_t uLength =
            pEnd ? static_cast<std::size_t>(static_cast<const char*>(pEnd) - pchFrom) : uAhead;
        if (!bZero) {
            Keep(pchFrom, uLength, uBegin, cText);
        }
        bAny = true;
        m_uNext += uLength + (pEnd ? 1 : 0);
        m_ullTaken += uLength + (pEnd ? 1 : 0);
        if (pEnd) {
            cText += '\n';
            return true;
        }
        if (bZero) {
            SkipHole();
        }
    }
    return bAny;
}

const char* CountFaultOf(const char* pchLine, std::size_t uLength, unsigned long* pulCount) {
    const char* const pchFault = VESK::ObjectLines::CountFault(pchLine, pulCount);
    if (pchFault && uLength > 1 && pchLine[uLength - 2] == '\r') {
        const std::string cWithoutCr = std::string(pchLine, uLength - 2) + '\n';
        return VESK::ObjectLines::CountFault(cWithoutCr.c_str(), pulCount) ? pchFault
                                                                           : "its lines end in CR LF";
    }
    return pchFault;
}

} // namespace FwPipe
