// SPDX-License-Identifier: MIT
// A class that serializes itself may use the recorder's stream, for example to go back and store its length. The fw
// function that it calls notifies the recorder first, through this header.
#ifndef FWLIB_INTERNAL_HOSTUSE_H
#define FWLIB_INTERNAL_HOSTUSE_H

#include "fwlib/internal/hidden.h"

namespace FWLIB_HIDDEN VESK {

class ObjectFileWrite;

struct ObjectAtHand;

// The innermost object of this thread; lent, null if there is none. The loader reserves its memory (initial-exec), so
// that no use allocates.
extern __thread ObjectAtHand* pObjectAtHand __attribute__((tls_model("initial-exec")));

// Exists while an object is being serialized.
struct ObjectAtHand {
    using BeforeUse = void (*)(ObjectFileWrite& cWriter, char* pFile);

    ObjectAtHand(ObjectFileWrite* pRecorder, BeforeUse pTold)
        : pWriter(pRecorder), pBeforeUse(pTold), pOuter(pObjectAtHand) {
        pObjectAtHand = this;
    }
    ~ObjectAtHand() { pObjectAtHand = pOuter; }
    ObjectAtHand(const ObjectAtHand&) = delete;
    ObjectAtHand& operator=(const ObjectAtHand&) = delete;

    ObjectFileWrite* pWriter; // lent; null for a host's writer, and after the recorder was destroyed
    const BeforeUse pBeforeUse;
    ObjectAtHand* const pOuter; // lent: the object whose serialization contains this one; or null
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
