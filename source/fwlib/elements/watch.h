// SPDX-License-Identifier: MIT
// Debug builds list the existing elements and data objects, to detect when the code of one is unloaded.
//
// Each has an address in its code: at first the caller of the base class's constructor, which is a constructor of its
// class unless that class derives from another one of this library; once a factory has created it, its table of virtual
// operations. The objects are not read later: their memory may be released without a destructor call.
#ifndef FWLIB_ELEMENTS_WATCH_H
#define FWLIB_ELEMENTS_WATCH_H

#include "fwlib/internal/hidden.h"

namespace FWLIB_HIDDEN VESK {

#ifdef FWLIB_WATCH

void Watch(const void* pObject, const void* pCode); // adds the object, or replaces the one at its address
void Unwatch(const void* pObject);
unsigned int UnloadedObjects(); // the number of existing objects whose code was unloaded

#else

inline void Watch(const void*, const void*) {}
inline void Unwatch(const void*) {}
inline unsigned int UnloadedObjects() {
    return 0;
}

#endif

// Watches an object that a factory has created, or null: it begins with the pointer to its virtual operations.
template <class Object>
Object* Watched(Object* pObject) {
    if (pObject) {
        Watch(pObject, *reinterpret_cast<void* const*>(pObject));
    }
    return pObject;
}

} // namespace VESK

#endif
