// SPDX-License-Identifier: MIT
// Holds printed lines back until it is known whether they are to be shown.
#ifndef FWPIPE_HELDOUTPUT_H
#define FWPIPE_HELDOUTPUT_H

namespace FwPipe {

// While it exists, what is printed on standard output or on the streams of standard error is kept in memory, in the
// order of printing. Bytes written to the descriptor of standard error are shown at once. Only one may exist.
class HeldOutput {
public:
    HeldOutput();
    ~HeldOutput(); // restores both, and shows what is held of standard error
    HeldOutput(const HeldOutput&) = delete;
    HeldOutput& operator=(const HeldOutput&) = delete;

    bool Holds() const; // false, with the reason in errno, when nothing can be held back
    void ShowAll();     // shows what was held so far on standard error, once
};

// Shows everything held, before the process ends by a signal. Safe in signal handlers.
void ShowHeldAtEnd();

} // namespace FwPipe

#endif
