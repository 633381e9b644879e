// SPDX-License-Identifier: MIT
// Tells which element it was when one throws an exception or ends the process by a fault.
#ifndef FWPIPE_FAILURE_H
#define FWPIPE_FAILURE_H

#include <functional>

namespace VESK {
class EPipeline;
}

namespace FwPipe {

// From here on a fault (SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT) is reported on standard error, with the element that had the
// object, before it has the effect that it had without this.
void CatchFaults();

// Before the pipeline runs: its elements may fail now.
void WatchElements(VESK::EPipeline& cPipeline);

// Calls the function. False, after a line on standard error, when an element threw.
bool Guarded(const std::function<void()>& cCall);

} // namespace FwPipe

#endif
