// SPDX-License-Identifier: MIT
// The library's only macros: the mark of what users may link against, and printf checking.
#ifndef FWLIB_EXPORT_H
#define FWLIB_EXPORT_H

// Everything in the library is hidden unless it carries this mark; packaging/fwlib.symbols lists what does.
#define FWLIB_EXPORT __attribute__((visibility("default")))

// Lets the compiler check a printf-style call: the positions (from 1, `this` included) of the format and of
// its first value; 0 for the values when they come as a va_list.
#define FWLIB_PRINTF(position, values) __attribute__((format(printf, position, values)))

// An inline function of a header on a road that is hardly ever taken, which every program and every shared
// object keeps as its own. It stands between inline code and an exported function: a 32-bit
// position-independent program sets up a register before it calls through the procedure table, and would do
// so on the common road too.
#define FWLIB_COLD __attribute__((cold, noinline, visibility("hidden")))

#endif
