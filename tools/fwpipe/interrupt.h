// SPDX-License-Identifier: MIT
// SIGINT and SIGTERM as a request to end a loop in good order.
#ifndef FWPIPE_INTERRUPT_H
#define FWPIPE_INTERRUPT_H

namespace FwPipe {

// From here on the first SIGINT or SIGTERM is remembered, and ends a read or write that it finds waiting; the
// next one kills at once. Also when the signal was ignored at the start, as a shell does for commands in the
// background: whoever sends it to this process means it.
void CatchInterrupts();

// The signal that came, or 0.
int Interrupt();

} // namespace FwPipe

#endif
