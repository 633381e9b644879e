// SPDX-License-Identifier: MIT
// Holding back what is printed, until it is known who wants to see it.
#ifndef FWPIPE_HELDOUTPUT_H
#define FWPIPE_HELDOUTPUT_H

namespace FwPipe {

// While it lives, what is written on standard output is kept in memory, and so is what the streams of standard error get,
// in the order in which it was printed. Bytes that are written to the descriptor of standard error pass at once. One at a
// time.
class HeldOutput {
public:
    HeldOutput();
    ~HeldOutput(); // writes on both again, and shows what is held of standard error
    HeldOutput(const HeldOutput&) = delete;
    HeldOutput& operator=(const HeldOutput&) = delete;

    bool Holds() const; // false, with the reason in errno, when nothing can be held back
    void ShowAll();     // what was held so far, on standard error; nothing of it is shown again
};

// Before the process ends by a signal: shows all that is held. May be called in signal handlers.
void ShowHeldAtEnd();

} // namespace FwPipe

#endif
