// SPDX-License-Identifier: MIT
// Which element had the object when something failed, found from the stack alone, so that deliveries have no extra cost.
//
// The frames are compared with the code of the elements' classes, and with who sends to whom: an element that delivers in
// place of returning leaves no frame. Of several elements of one class the registers tell, and in 32 bits the arguments.
// What stays open is not guessed.
#ifndef FWPIPE_HOLDER_H
#define FWPIPE_HOLDER_H

#include "machinecode.h"

namespace FwPipe {

class KnownElements;
struct Label;

struct Holder {
    const Label* pLabel; // null when it is not known
    bool bOrBehind;      // or one downstream of it
};

// For a stack on which the function uBottom is the outermost that matters. Allocates nothing; may be called in signal
// handlers, on one thread at a time.
Holder FindHolder(KnownElements& cKnown, Address uBottom);

} // namespace FwPipe

#endif
