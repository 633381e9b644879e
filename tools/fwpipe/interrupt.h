// SPDX-License-Identifier: MIT
// SIGINT, SIGTERM and SIGHUP as a request to end a loop.
#ifndef FWPIPE_INTERRUPT_H
#define FWPIPE_INTERRUPT_H

namespace FwPipe {

// Catches these signals from now on. The first is stored and ends a read or write that waits; the next one kills the
// process. Further signals within a tenth of a second count as the same request, since some programs signal a process
// and then its group. SIGINT and SIGTERM are caught even if they were ignored at the start, as in a shell's background
// commands: such a signal was sent on purpose. An ignored SIGHUP stays ignored, as the user requested that.
void CatchInterrupts();

// The number of the signal received first, or 0.
int Interrupt();

} // namespace FwPipe

#endif
