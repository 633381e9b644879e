// SPDX-License-Identifier: MIT
// The end of the runs, for elements that keep something until then: a batch, a connection, a sum.
//
// A host that will not run a pipeline again calls EPipeline::EndRuns, as fwpipe does. It calls the function that an
// element named here, once, in the order in which objects reach the elements. The element may still send objects, reports
// what it could not finish, and returns 1, or 0 on failure. Elements that derive from Element<T> (describe/element.h) only
// need a member function `int RunsEnded()`.
#ifndef FWLIB_ELEMENTS_RUNSEND_H
#define FWLIB_ELEMENTS_RUNSEND_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

// The function replaces an earlier one; null removes it, as the element's destructor does. Returns 0 with a report of the
// element when there is not enough memory. Usually called from Initialize.
FWLIB_EXPORT int AtRunsEnd(EObject& cElement, int (*pCall)(EObject& cElement));

// The element whose function EndRuns calls at present on this thread, lent; null for none. For hosts that report which
// element failed, also in signal handlers.
FWLIB_EXPORT EObject* EndingElement();

} // namespace VESK

#endif
