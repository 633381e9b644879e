// SPDX-License-Identifier: MIT
// Message handlers, for hosts that show the lines of a framework, its elements and the building of its pipelines
// themselves. Also the reason why building or initializing a pipeline failed.
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
    const char* pchFile; // the pipe file that is being built; null outside of a build
    Byte4Type b4Line;    // the line in the file, counted from 1; 0 outside of a build
    // The complete line as it is printed without a handler, but without its newline. If there is not enough memory, only the
    // first 511 characters of the message that contains it.
    const char* pchText;
};

// Called by the thread that reports, once for each line. The handler must not throw, and must not destroy the framework or
// an element. Messages that the handler itself causes are printed, as without a handler.
using MessageHandler = void (*)(void* pContext, const MessageLine& cLine);

// The last failure of BuildPipe, BuildPipeText, ProcessTokens or EPipeline::Initialize on this thread.
struct Failure {
    const char* pchFile; // the innermost pipe file; empty if no line of a file failed, as in Initialize
    Byte4Type b4Line;    // counted from 1; 0 if no line of a file failed
    const char* pchText; // the first error that this line or call reported, without its newline; never null
};

// Returns the failure, lent until the thread's next failure or its end; null if there was none. Texts are truncated to
// 1,023 characters. If there was not enough memory for them, pchText states this.
FWLIB_EXPORT const Failure* LastFailure();

} // namespace VESK

#endif
