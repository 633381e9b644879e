// SPDX-License-Identifier: MIT
// Debug builds list the existing elements and data objects, to detect when the code of one is unloaded.
//
// For each object, the address of some of its code or data is stored: first that of the caller of the base class's
// constructor, which is a constructor of the object's class unless that derives from another class of this library;
// after a factory has created the object, that of its virtual table. Objects are not read later, as their memory may be
// released already.
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

// Watches an object that a factory has created, which begins with a pointer to its virtual table. Accepts null.
template <class Object>
Object* Watched(Object* pObject) {
    if (pObject) {
        Watch(pObject, *reinterpret_cast<void* const*>(pObject));
    }
    return pObject;
}

} // namespace VESK

#endif
