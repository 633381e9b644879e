// SPDX-License-Identifier: MIT
// The element that `property` and `config` lines of pipe files act on: one for each of the two building
// forms. It stands here, below the pipeline, because an element that dies is forgotten by both.
#ifndef FWLIB_INTERNAL_CURRENTELEMENT_H
#define FWLIB_INTERNAL_CURRENTELEMENT_H

#include "fwlib/types.h"

#include <initializer_list>

#pragma GCC visibility push(hidden) // so that calls need no procedure table, whose register costs 32-bit code

namespace VESK {

struct CurrentElement {
    EObject* pcCurrentElement; // lent; null when there is none
};

extern CurrentElement cPlainBuild;      // of building without a configuration file
extern CurrentElement cConfiguredBuild; // of building with one

inline void ForgetElement(const EObject* pElement) {
    for (CurrentElement* pCurrent : {&cPlainBuild, &cConfiguredBuild}) {
        if (pCurrent->pcCurrentElement == pElement) {
            pCurrent->pcCurrentElement = nullptr;
        }
    }
}

} // namespace VESK

#pragma GCC visibility pop

#endif
