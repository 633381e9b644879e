// SPDX-License-Identifier: MIT
// SIGINT, SIGTERM and SIGHUP as a request to end the runs.
#ifndef FWPIPE_INTERRUPT_H
#define FWPIPE_INTERRUPT_H

#include <atomic>

namespace VESK {
class FRAMEWORK;
}

namespace FwPipe {

// Catches these signals from now on. The first is stored and ends a read or write that waits; the next one kills the
// process. Further signals within a tenth of a second count as the same request, since some programs signal a process
// and then its group. SIGINT and SIGTERM are caught even if they were ignored at the start, as in a shell's background
// commands: such a signal was sent on purpose. An ignored SIGHUP stays ignored, as the user requested that.
void CatchInterrupts();

// The number of the signal received first, or 0.
int Interrupt();

// Requests of a framework's elements to end the runs, and their questions whether the host wants that: it does after a
// signal. Signals are caught from the first question on, so that a run without questions is ended by a signal at once.
class EndRequests {
public:
    explicit EndRequests(VESK::FRAMEWORK& cFramework); // lent
    ~EndRequests();
    EndRequests(const EndRequests&) = delete;
    EndRequests& operator=(const EndRequests&) = delete;

    bool Any(); // whether an element has requested the end, or a signal has arrived

private:
    static int Answer(void* pThis);

    VESK::FRAMEWORK& m_cFramework;
    std::atomic<bool> m_bOwnQuestion = false;
};

} // namespace FwPipe

#endif
