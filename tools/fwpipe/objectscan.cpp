// SPDX-License-Identifier: MIT
#include "objectscan.h"

#include "interrupt.h"

namespace FwPipe {

namespace {

constexpr std::size_t KeptCapacity = 0x100000; // the memory of a larger object is released

} // namespace

bool ObjectScan::Next() {
    m_ullOffset = End();
    m_cText.clear();
    m_cLines.clear();
    if (m_cText.capacity() > KeptCapacity) {
        m_cText.shrink_to_fit();
    }
    m_cState.Restart();
    while (m_cState.Now() != VESK::ObjectLines::Whole && m_cState.Now() != VESK::ObjectLines::Broken) {
        const std::size_t uBegin = m_cText.size();
        m_cLines.push_back(uBegin);
        const bool bLine = m_cScan.Append(m_cText);
        if (ReadError() != 0 || Interrupt()) {
            return false;
        }
        if (!bLine) {
            m_cState.End();
            return false;
        }
        const char* const pchLine = m_cText.c_str() + uBegin;
        const std::size_t uLength = m_cText.size() - uBegin;
        const bool bCount = m_cState.Now() == VESK::ObjectLines::CountNext;
        m_cState.Take(pchLine, uLength);
        unsigned long ulCount;
        if (bCount && !VESK::ObjectLines::LineFault(pchLine, uLength) &&
            m_cState.Now() == VESK::ObjectLines::Broken) {
            m_cState.Break(CountFaultOf(pchLine, uLength, &ulCount));
        }
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
