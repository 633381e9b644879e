// SPDX-License-Identifier: MIT
// Finds out from the stack alone which element had the object when something failed. So deliveries have no extra cost.
//
// Stack frames are compared with the code of the elements' classes and with the connections: an element that delivers
// with a tail call leaves no frame. If a class has several elements, registers decide, and in 32 bits arguments too. If
// more than one element remains possible, the result is unknown.
#ifndef FWPIPE_HOLDER_H
#define FWPIPE_HOLDER_H

#include "machinecode.h"

namespace FwPipe {

class KnownElements;
struct Label;

struct Holder {
    const Label* pLabel; // null: unknown
    bool bOrBehind;      // it may also be an element downstream of it
};

// uBottom: the outermost function that matters. Allocates nothing; safe in signal handlers, on one thread at a time.
Holder FindHolder(KnownElements& cKnown, Address uBottom);

} // namespace FwPipe

#endif
