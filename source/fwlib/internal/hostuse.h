// SPDX-License-Identifier: MIT
// A class that serializes itself may use the recorder's stream, to write its length where it began for instance. The
// recorder is informed here, before the wrapper that the class calls does its work.
#ifndef FWLIB_INTERNAL_HOSTUSE_H
#define FWLIB_INTERNAL_HOSTUSE_H

#include "fwlib/internal/hidden.h"

namespace FWLIB_HIDDEN VESK {

class ObjectFileWrite;

struct ObjectAtHand;

// Lent: the innermost on this thread; null when there is none. The loader makes its place, so that no use takes memory.
extern __thread ObjectAtHand* pObjectAtHand __attribute__((tls_model("initial-exec")));

// One for each object that is being serialized, while it is.
struct ObjectAtHand {
    using BeforeUse = void (*)(ObjectFileWrite& cWriter, char* pFile);

    ObjectAtHand(ObjectFileWrite* pRecorder, BeforeUse pTold)
        : pWriter(pRecorder), pBeforeUse(pTold), pOuter(pObjectAtHand) {
        pObjectAtHand = this;
    }
    ~ObjectAtHand() { pObjectAtHand = pOuter; }
    ObjectAtHand(const ObjectAtHand&) = delete;
    ObjectAtHand& operator=(const ObjectAtHand&) = delete;

    ObjectFileWrite* pWriter; // lent; null when it is none of the library's, and once it is destroyed
    const BeforeUse pBeforeUse;
    ObjectAtHand* const pOuter; // lent: of the object around this one; null when there is none
};

inline void BeforeHostUse(char* pFile) {
    for (ObjectAtHand* p = pObjectAtHand; p; p = p->pOuter) {
        if (p->pWriter) {
            p->pBeforeUse(*p->pWriter, pFile);
        }
    }
}

} // namespace VESK

#endif
