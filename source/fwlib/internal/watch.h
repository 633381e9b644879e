// SPDX-License-Identifier: MIT
// Debug builds know every living element and data object, so that they can tell when the code of one is unloaded.
#ifndef FWLIB_INTERNAL_WATCH_H
#define FWLIB_INTERNAL_WATCH_H

#pragma GCC visibility push(hidden) // so that calls need no procedure table, whose register costs 32-bit code

namespace VESK {

#ifdef FWLIB_WATCH

void Watch(const void* pObject); // the object begins with the pointer to its class's table
void Unwatch(const void* pObject);
unsigned int UnloadedObjects(); // how many living objects have a class whose code is gone

#else

inline void Watch(const void*) {}
inline void Unwatch(const void*) {}
inline unsigned int UnloadedObjects() {
    return 0;
}

#endif

} // namespace VESK

#pragma GCC visibility pop

#endif
