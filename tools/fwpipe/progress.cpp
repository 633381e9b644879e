// SPDX-License-Identifier: MIT
#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace FwPipe {

namespace {

constexpr std::chrono::milliseconds Interval(100);

} // namespace

Progress::Progress(bool bWanted, const char* pchUnit)
    : m_bShown(bWanted && isatty(STDERR_FILENO)),
      m_pchUnit(pchUnit),
      m_Start(Clock::now()),
      m_Last(m_Start) {}

Progress::~Progress() {
    Stop();
}

bool Progress::Due() {
    if (!m_bShown) {
        return false;
    }
    const Clock::time_point Now = Clock::now();
    const bool bDue = Now - m_Last >= Interval;
    m_Last = bDue ? Now : m_Last;
    return bDue;
}

void Progress::Show(unsigned long long ullCount, unsigned long long ullDone, unsigned long long ullSize) {
    char achLine[80];
    const double dSeconds = std::chrono::duration<double>(m_Last - m_Start).count();
    int iWidth = std::snprintf(achLine, sizeof achLine, "%llu %s, %.0f/s", ullCount, m_pchUnit,
                               static_cast<double>(ullCount) / dSeconds);
    if (ullSize > 0) {
        const double dShare = static_cast<double>(ullDone) / static_cast<double>(ullSize);
        iWidth += std::snprintf(achLine + iWidth, sizeof achLine - static_cast<std::size_t>(iWidth),
                                ", %.0f%%", 100 * std::min(dShare, 1.0));
    }
    std::fprintf(stderr, "\r%-*s\r", m_iWidth, achLine);
    m_iWidth = iWidth;
}

void Progress::Stop() {
    if (m_iWidth > 0) {
        std::fprintf(stderr, "\r%*s\r", m_iWidth, "");
        m_iWidth = 0;
    }
    m_bShown = false;
}

} // namespace FwPipe
