// SPDX-License-Identifier: MIT
// Calls of a plugin's factory. An exception must not leave them: it could be caught after the code of its class
// was unloaded.
#ifndef FWLIB_FRAMEWORK_GUARDED_H
#define FWLIB_FRAMEWORK_GUARDED_H

#include <cstdio>
#include <cxxabi.h>

namespace VESK {

// What the call returns; null or 0, after a report, when it throws. The name is what was asked of the plugin. A
// thread that ends within the call unwinds through it: where that is an exception, it is thrown on. It is
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
