// SPDX-License-Identifier: MIT
// What a framework, its elements and the building of its pipelines print, for hosts that show it themselves; and the last
// failure of a build.
//
//   void Show(void* pLog, const MessageLine& cLine);
//   cFramework.SetMessageHandler(Show, &cLog);       nothing is printed from now on
//   if (!cPipeline.BuildPipe(Text("lab.pipe"))) { const Failure* p = LastFailure(); ... p->pchFile, p->b4Line, p->pchText }
#ifndef FWLIB_FRAMEWORK_MESSAGES_H
#define FWLIB_FRAMEWORK_MESSAGES_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

enum MessageKind {
    ProgressMessage = 0, // a step of building
    TraceMessage = 1,    // EObject::Message
    OutputMessage = 2,   // what an element prints as its output: a line of ESink
    WarningMessageKind = 3,
    ErrorMessageKind = 4, // EObject::ErrorMessage, and why a step failed
};

// A later version only appends fields. All texts are lent for the call.
struct MessageLine {
    Byte4Type b4Kind;    // a MessageKind
    int iStream;         // the file descriptor that it is printed on without a handler: 1 or 2
    int iLevel;          // of a trace line; otherwise 0
    EObject* pElement;   // the element that the line is about, lent; null if there is none
    const char* pchType; // its type and name; null without an element, or when it has none
    const char* pchName;
    const char*
        pchFile; // the pipe file that is being built, and the line in it, counted from 1; null and 0 otherwise
    Byte4Type b4Line;
    const char* pchText; // the whole line as it is printed without a handler, without its newline
};

// Called by the thread that reports, for one line at a time; a text of several lines is several calls. It must not throw,
// and must not destroy the framework or an element. It may report itself: that is printed as without a handler.
using MessageHandler = void (*)(void* pContext, const MessageLine& cLine);

// Why the last BuildPipe, BuildPipeText, ProcessTokens or EPipeline::Initialize of this thread that failed did so.
struct Failure {
    const char* pchFile; // the innermost pipe file; empty when the failure is not a line's, as in Initialize
    Byte4Type b4Line;    // counted from 1; 0 when the failure is not a line's
    const char* pchText; // the first error that was reported meanwhile, without its newline; never null
};

// Lent until the thread's next failure, or its end; null when it had none. Texts are truncated to 1,023 characters. When
// there is not enough memory for them, pchText says so.
FWLIB_EXPORT const Failure* LastFailure();

} // namespace VESK

#endif
