// SPDX-License-Identifier: MIT
#ifndef FWLIB_INTERNAL_HIDDEN_H
#define FWLIB_INTERNAL_HIDDEN_H

// Of a namespace block: nothing in it is exported. Hidden before it is called, a function needs no procedure table, whose
// register costs 32-bit code.
#define FWLIB_HIDDEN [[gnu::visibility("hidden")]]

#endif
