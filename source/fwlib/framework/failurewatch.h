// SPDX-License-Identifier: MIT
// Where a thread is while it builds or initializes a pipeline, and why that failed: for LastFailure (messages.h).
#ifndef FWLIB_FRAMEWORK_FAILUREWATCH_H
#define FWLIB_FRAMEWORK_FAILUREWATCH_H

#include "fwlib/export.h"
#include "fwlib/internal/hidden.h"
#include "fwlib/types.h"

#include <cstdarg>

namespace FWLIB_HIDDEN VESK {

// The pipe file that the thread is building, and the line in it. The innermost is the present one.
class BuildPlace {
public:
    explicit BuildPlace(const char* pchFile); // lent
    ~BuildPlace();
    BuildPlace(const BuildPlace&) = delete;
    BuildPlace& operator=(const BuildPlace&) = delete;

    const char* const pchFile;
    Byte4Type b4Line;

private:
    BuildPlace* const m_pOuter;
};

// Exists while the thread executes a line or initializes a pipeline. Keeps the first error that is reported meanwhile, and
// makes it the thread's last failure if that ends with 0.
class FailureWatch {
public:
    FailureWatch();
    ~FailureWatch();
    FailureWatch(const FailureWatch&) = delete;
    FailureWatch& operator=(const FailureWatch&) = delete;

    // Returns the result; when it is 0, notes the failure, unless an inner watch has noted it: in the line that the thread
    // executes, or, outside of a file, in pchFile. pchText is used if no error was reported.
    int Judge(int iResult, const char* pchText, const char* pchFile = "");
};

const BuildPlace* PresentPlace(); // of the thread, lent; null outside of a build

// Keeps an error's text for the watch that exists, if it is the first one: the text before the formatted one, and that.
void NoteError(const char* pchBegin, const char* pchFormat, va_list Values) FWLIB_PRINTF(2, 0);

} // namespace VESK

#endif
