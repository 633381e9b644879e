// SPDX-License-Identifier: MIT
// The macros of the public headers: what users may link against, printf checking, and slow paths.
#ifndef FWLIB_EXPORT_H
#define FWLIB_EXPORT_H

// Exports a class or function. Everything else in the library is hidden; packaging/fwlib.symbols lists the exports.
#define FWLIB_EXPORT __attribute__((visibility("default")))

// Lets the compiler check a printf-style call: the positions (from 1, `this` included) of the format and of
// its first value; 0 for the values when they come as a va_list.
#define FWLIB_PRINTF(position, values) __attribute__((format(printf, position, values)))

// Out-of-line slow path of a public header; each binary gets its own hidden copy. It calls the exported function for
// the inline code: a 32-bit position-independent program sets up a register before a call through the procedure table,
// and would do so on the fast path too.
#define FWLIB_COLD __attribute__((cold, noinline, visibility("hidden")))

#endif
