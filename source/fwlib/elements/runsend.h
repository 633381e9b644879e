// SPDX-License-Identifier: MIT
// The end of the runs, for elements that keep something until then: a batch, a connection, a sum.
//
// A host that will not run a pipeline again calls EPipeline::EndRuns, as fwpipe does. EndRuns calls the functions that
// elements registered with AtRunsEnd, each once, in the order in which objects reach the elements. Such a function may
// still send objects. It reports what it could not finish, and returns 1, or 0 on failure. A class that derives from
// Element<T> (describe/element.h) only needs a member function `int RunsEnded()`.
#ifndef FWLIB_ELEMENTS_RUNSEND_H
#define FWLIB_ELEMENTS_RUNSEND_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

// Registers the element's function in place of an earlier one. Null removes it; the element's destructor removes it too.
// Returns 1; or 0, after an error message of the element, when there is not enough memory. Call it from Initialize.
FWLIB_EXPORT int AtRunsEnd(EObject& cElement, int (*pCall)(EObject& cElement));

// Returns the element whose function EndRuns is calling on this thread, lent; null if there is none. Hosts use it to report
// which element failed, also in signal handlers.
FWLIB_EXPORT EObject* EndingElement();

} // namespace VESK

#endif
