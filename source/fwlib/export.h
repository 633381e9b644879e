// SPDX-License-Identifier: MIT
// The macros of the public headers: exported symbols, checks of printf formats, slow paths.
#ifndef FWLIB_EXPORT_H
#define FWLIB_EXPORT_H

// Exports a class or function. Everything else in the library is hidden; packaging/fwlib.symbols lists the exports.
#define FWLIB_EXPORT __attribute__((visibility("default")))

// Lets the compiler check the arguments of a printf-style function. position: the number of the format's parameter,
// where `this` is 1. values: the number of the first value, or 0 for a va_list.
#define FWLIB_PRINTF(position, values) __attribute__((format(printf, position, values)))

// Out-of-line slow path of a public header; each binary gets its own hidden copy, which calls the exported function. A
// direct call of the exported function would make 32-bit position-independent code set up the register of the procedure
// linkage table on the fast path too.
#define FWLIB_COLD __attribute__((cold, noinline, visibility("hidden")))

#endif
