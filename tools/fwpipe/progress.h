// SPDX-License-Identifier: MIT
// One line on standard error that tells how far a long run is: "123456 objects, 41152/s, 37%". Only on a terminal.
#ifndef FWPIPE_PROGRESS_H
#define FWPIPE_PROGRESS_H

#include <chrono>

namespace FwPipe {

class Progress {
public:
    // pchUnit is lent: what is counted. Without bWanted it stays silent.
    Progress(bool bWanted, const char* pchUnit);
    ~Progress(); // clears the line
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Whether the line should be drawn again: at most ten times a second, and not in the first tenth.
    bool Due();

    // Draws the line, with the share that ullDone is of ullSize unless that is 0. The cursor then stands at the
    // line's begin, so that what others print there takes its place.
    void Show(unsigned long long ullCount, unsigned long long ullDone, unsigned long long ullSize);

    void Stop(); // clears the line and stays silent

private:
    using Clock = std::chrono::steady_clock;

    bool m_bShown;
    const char* const m_pchUnit;
    const Clock::time_point m_Start;
    Clock::time_point m_Last;
    int m_iWidth = 0; // of what stands on the terminal
};

} // namespace FwPipe

#endif
