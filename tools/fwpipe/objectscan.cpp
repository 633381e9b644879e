// SPDX-License-Identifier: MIT
#include "objectscan.h"

#include "interrupt.h"
#include "output.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace FwPipe {

namespace {

constexpr std::size_t BufferSize = 0x40000;
constexpr std::size_t KeptCapacity = 0x100000; // a larger object's memory goes with it

} // namespace

ObjectScan::ObjectScan(int iFile) : m_iFile(iFile), m_cBuffer(BufferSize) {
    struct stat Status = {};
    m_bFed = fstat(iFile, &Status) == 0 && !S_ISREG(Status.st_mode);
}

bool ObjectScan::Fill() {
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

bool ObjectScan::AppendLine() {
    m_cLines.push_back(m_cText.size());
    while (m_uNext < m_uFilled || Fill()) {
        const char* const pchFrom = m_cBuffer.data() + m_uNext;
        const std::size_t uAhead = m_uFilled - m_uNext;
        const void* const pEnd = std::memchr(pchFrom, '\n', uAhead);
        const std::size_t uLength =
            pEnd ? static_cast<std::size_t>(static_cast<const char*>(pEnd) - pchFrom) + 1 : uAhead;
        m_cText.append(pchFrom, uLength);
        m_uNext += uLength;
        if (pEnd) {
            return true;
        }
    }
    return m_cText.size() > m_cLines.back();
}

bool ObjectScan::Next() {
    m_ullOffset = End();
    m_cText.clear();
    m_cLines.clear();
    if (m_cText.capacity() > KeptCapacity) {
        m_cText.shrink_to_fit();
    }
    m_cState.Restart();
    while (m_cState.Now() != VESK::ObjectLines::Whole && m_cState.Now() != VESK::ObjectLines::Broken) {
        const bool bLine = AppendLine();
        if (m_iError != 0 || Interrupt()) {
            return false;
        }
        if (!bLine) {
            m_cState.End();
            return false;
        }
        const std::size_t uBegin = m_cLines.back();
        m_cState.Take(m_cText.c_str() + uBegin, m_cText.size() - uBegin);
    }
    const bool bWhole = m_cState.Now() == VESK::ObjectLines::Whole;
    m_ullWhole += bWhole;
    return bWhole;
}

std::string_view ObjectScan::Line(std::size_t uIndex) const {
    const std::size_t uEnd = uIndex + 1 < m_cLines.size() ? m_cLines[uIndex + 1] : m_cText.size();
    return std::string_view(m_cText).substr(m_cLines[uIndex], uEnd - 1 - m_cLines[uIndex]);
}

std::string_view ObjectScan::Type() const {
    return Line(0);
}

std::pair<std::string_view, std::string_view> ObjectScan::Property(std::size_t uIndex) const {
    const std::string_view cLine = Line(FirstProperty + uIndex);
    const std::size_t uEquals = cLine.find('=');
    return {cLine.substr(0, uEquals), cLine.substr(uEquals + 1)};
}

} // namespace FwPipe
