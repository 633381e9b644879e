// SPDX-License-Identifier: MIT
// Debug builds know every living element and data object, so that they can tell when the code of one is unloaded.
//
// What is known of an object is an address in its code: where its construction was asked for, which is a constructor of
// its class unless that class derives from one of this library's, and once a factory has made it, its class's table.
// The objects themselves are never read: their memory may be released without a destructor call.
#ifndef FWLIB_ELEMENTS_WATCH_H
#define FWLIB_ELEMENTS_WATCH_H

#include "fwlib/internal/hidden.h"

namespace FWLIB_HIDDEN VESK {

#ifdef FWLIB_WATCH

void Watch(const void* pObject, const void* pCode); // replaces what was known of one at this address
void Unwatch(const void* pObject);
unsigned int UnloadedObjects(); // how many objects that were not destroyed have their code unloaded

#else

inline void Watch(const void*, const void*) {}
inline void Unwatch(const void*) {}
inline unsigned int UnloadedObjects() {
    return 0;
}

#endif

// Of an object that a factory has made, or null: it begins with the pointer to its class's table.
template <class Object>
Object* Watched(Object* pObject) {
    if (pObject) {
        Watch(pObject, *reinterpret_cast<void* const*>(pObject));
    }
    return pObject;
}

} // namespace VESK

#endif
