// SPDX-License-Identifier: MIT
// Standard output: whether it arrives, and holding it back for a while. The library writes there with stdio,
// so all of this works on the stream `stdout` and on the descriptor below it.
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

// While it lives, what is written on standard output is kept in memory.
class HeldOutput {
public:
    HeldOutput();
    ~HeldOutput(); // writes on standard output again
    HeldOutput(const HeldOutput&) = delete;
    HeldOutput& operator=(const HeldOutput&) = delete;

    bool Holds() const; // false, with the reason in errno, when nothing can be held back
    void Show() const;  // what was held so far, on standard error

private:
    int m_iHeld;   // the memory file; -1 for none
    int m_iOutput; // the descriptor that standard output had; -1 for none
};

} // namespace FwPipe

#endif
