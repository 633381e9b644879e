// SPDX-License-Identifier: MIT
// Standard output: whether it arrives. The library writes there with stdio, so all of this works on the stream `stdout`
// and on the descriptor below it.
#ifndef FWPIPE_OUTPUT_H
#define FWPIPE_OUTPUT_H

#include <string>

namespace FwPipe {

// Prepares the standard streams, before anything else: a closed pipe becomes an error of the stream instead
// of a signal, and a stream that was closed at the start is occupied, so that no file the pipeline opens
// takes its place and receives what is printed. Where both go to one file, lines are written as they are printed.
void PrepareStreams();

// Prints the text; sends on what was printed. False once standard output fails, for which OutputArrived then tells the
// reason.
bool Print(const std::string& cText);
bool SendOn();

// Sends on what was printed. False, after a line on standard error, when not everything could be written.
bool OutputArrived();

// Whether something was printed since the last call, where standard output is a terminal; elsewhere false.
bool PrintedOnTerminal();

} // namespace FwPipe

#endif
