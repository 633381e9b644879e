// SPDX-License-Identifier: MIT
// A progress line on standard error, only on a terminal: "123456 objects, 41152/s, 37%".
#ifndef FWPIPE_PROGRESS_H
#define FWPIPE_PROGRESS_H

#include <chrono>

namespace FwPipe {

class Progress {
public:
    // pchUnit, lent: what is counted. If bWanted is false, nothing is shown.
    Progress(bool bWanted, const char* pchUnit);
    ~Progress(); // erases the line
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Whether the line should be updated: at most ten times a second, and not in the first tenth of a second.
    bool Due();

    // Shows the line, with ullDone as a percentage of ullSize unless that is 0. The cursor is then at the start of the
    // line, so that other output overwrites it.
    void Show(unsigned long long ullCount, unsigned long long ullDone, unsigned long long ullSize);

    void Stop(); // erases the line and shows nothing more

private:
    using Clock = std::chrono::steady_clock;

    bool m_bShown;
    const char* const m_pchUnit;
    const Clock::time_point m_Start;
    Clock::time_point m_Last;
    int m_iWidth = 0; // characters on the terminal
};

} // namespace FwPipe

#endif
