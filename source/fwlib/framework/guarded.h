// SPDX-License-Identifier: MIT
// Calls of a plugin's factory. An exception must not leave them: whoever caught it later could do so when the code
// of its class is unloaded.
#ifndef FWLIB_FRAMEWORK_GUARDED_H
#define FWLIB_FRAMEWORK_GUARDED_H

#include <cstdio>
#include <cxxabi.h>

namespace VESK {

// What the call returns; null or 0, after a report, when it throws. The name tells what was wanted of the plugin. A
// thread that ends within the call unwinds through it: where that comes by as an exception, it has to be passed on. It is
// an exception without an object, which the sanitizer takes for a null reference.
template <class Call>
__attribute__((no_sanitize("undefined"))) auto Guarded(const char* pchName, Call cCall) -> decltype(cCall()) {
    try {
        return cCall();
#ifdef __GLIBCXX__
    } catch (abi::__forced_unwind&) {
        throw;
#endif
    } catch (...) {
        std::fprintf(stderr, "FRAMEWORK: Error: A plugin's factory threw an exception: %s\n", pchName);
        return {};
    }
}

} // namespace VESK

#endif
