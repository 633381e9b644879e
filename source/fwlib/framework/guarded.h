// SPDX-License-Identifier: MIT
// Calls of a plugin's factory. Exceptions are caught here: elsewhere, one could be caught after the code of its class
// was unloaded.
#ifndef FWLIB_FRAMEWORK_GUARDED_H
#define FWLIB_FRAMEWORK_GUARDED_H

#include "fwlib/framework/say.h"

#include <cxxabi.h>

namespace VESK {

// Returns the result of the call; null or 0, after a report, if it throws. pchName is the requested type or path. A
// thread that ends within the call may unwind by an exception, which is rethrown. That exception has no object, so a
// sanitizer would report a null reference.
template <class Call>
__attribute__((no_sanitize("undefined"))) auto Guarded(const FRAMEWORK* pFramework, const char* pchName,
                                                       Call cCall) -> decltype(cCall()) {
    try {
        return cCall();
#ifdef __GLIBCXX__
    } catch (abi::__forced_unwind&) {
        throw;
#endif
    } catch (...) {
        SayError(pFramework, "FRAMEWORK: Error: A plugin's factory threw an exception: %s\n", pchName);
        return {};
    }
}

} // namespace VESK

#endif
