// SPDX-License-Identifier: MIT
#ifndef FWLIB_INTERNAL_HIDDEN_H
#define FWLIB_INTERNAL_HIDDEN_H

// Hides all declarations of a namespace block. A call of a hidden function does not need the procedure linkage table,
// whose register set-up costs time in 32-bit code.
#define FWLIB_HIDDEN [[gnu::visibility("hidden")]]

#endif
