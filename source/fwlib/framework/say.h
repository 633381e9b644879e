// SPDX-License-Identifier: MIT
// The one place through which the library prints on behalf of a framework: to its message handler, or, without one, with
// stdio.
#ifndef FWLIB_FRAMEWORK_SAY_H
#define FWLIB_FRAMEWORK_SAY_H

#include "fwlib/export.h"
#include "fwlib/framework/messages.h"
#include "fwlib/internal/hidden.h"

#include <cstdarg>

namespace FWLIB_HIDDEN VESK {

// What a line is and where it comes from. The framework and the element may be null.
struct Saying {
    const FRAMEWORK* pFramework;
    MessageKind Kind;
    int iStream; // 1 or 2
    EObject* pElement;
    int iLevel;
    const char* pchBegin;  // of the line, before the formatted text; "" for none
    const char* pchBegin2; // the rest of the beginning
    bool bEndLine;         // append a newline if the text has none
};

// Print or pass on a formatted text.
void Say(const Saying& cSaying, const char* pchFormat, va_list Values) FWLIB_PRINTF(2, 0);

// The short forms: a step of building, on standard output; why a step failed, on standard error or, as with some texts,
// on standard output.
void SayStep(const FRAMEWORK* pFramework, const char* pchFormat, ...) FWLIB_PRINTF(2, 3);
void SayError(const FRAMEWORK* pFramework, const char* pchFormat, ...) FWLIB_PRINTF(2, 3);
void SayWarning(const FRAMEWORK* pFramework, const char* pchFormat, ...) FWLIB_PRINTF(2, 3);
void SayErrorOnOutput(const FRAMEWORK* pFramework, const char* pchFormat, ...) FWLIB_PRINTF(2, 3);

// What an element prints as its output: a complete line.
void SayOutputLine(EObject& cElement, const char* pchLine); // without its newline
void SayOutput(EObject& cElement, const char* pchFormat, ...) FWLIB_PRINTF(2, 3);

} // namespace VESK

#endif
