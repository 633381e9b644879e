// SPDX-License-Identifier: MIT
// Standard output, and whether it could be written. The library prints with stdio, so these functions use the stream
// `stdout` and its descriptor.
#ifndef FWPIPE_OUTPUT_H
#define FWPIPE_OUTPUT_H

#include <string>

namespace FwPipe {

// Prepares the standard streams; call this first. Writing to a closed pipe becomes an error of the stream instead of a
// signal. A stream that was closed at the start is occupied, so that no file of the pipeline gets its descriptor and
// receives printed lines. If both output streams go to one file, they are flushed after each line.
void PrepareStreams();

// Print prints the text, SendOn flushes it. They return false once standard output has failed; OutputArrived then
// reports the reason.
bool Print(const std::string& cText);
bool SendOn();

// Flushes standard output. Returns false if not everything could be written; the first time with a line on standard
// error.
bool OutputArrived();

// Whether something was printed since the last call, if standard output is a terminal; otherwise false.
bool PrintedOnTerminal();

} // namespace FwPipe

#endif
