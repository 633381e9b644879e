// SPDX-License-Identifier: MIT
// Reports which element threw an exception or ended the process by a fault.
#ifndef FWPIPE_FAILURE_H
#define FWPIPE_FAILURE_H

#include <functional>

namespace VESK {
class EPipeline;
}

namespace FwPipe {

// Reports faults (SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT) on standard error from now on, with the element that had
// the object. Each then has its former effect.
void CatchFaults();

// Call this before the pipeline runs: faults of its elements are then reported with their names.
void WatchElements(VESK::EPipeline& cPipeline);

// Calls the function. Returns false, after a line on standard error, if an element threw an exception.
bool Guarded(const std::function<void()>& cCall);

} // namespace FwPipe

#endif
