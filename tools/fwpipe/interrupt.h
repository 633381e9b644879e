// SPDX-License-Identifier: MIT
// SIGINT, SIGTERM and SIGHUP as a request to end a loop in good order.
#ifndef FWPIPE_INTERRUPT_H
#define FWPIPE_INTERRUPT_H

namespace FwPipe {

// From here on the first of these signals is remembered, and ends a read or write that it finds waiting; the next one
// kills at once. What comes within a tenth of a second of the first is the same request, since some programs signal a
// process and then its group. Also when SIGINT or SIGTERM was ignored at the start, as a shell does for commands in the
// background: it was sent to this process on purpose. An ignored SIGHUP stays ignored: the user asked for that.
void CatchInterrupts();

// The signal that came, or 0.
int Interrupt();

} // namespace FwPipe

#endif
