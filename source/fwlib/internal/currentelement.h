// SPDX-License-Identifier: MIT
// The element that `property` and `config` lines of pipe files act on: the process has one for each of the two
// building forms, the last one that a line of that form made. It stands here, below the pipeline, because an element
// that dies is forgotten by both.
//
// While a thread is building from a file, its lines act on the last one that it made itself in this build, if there
// is one. That is the same element, unless another thread is building with this form at the same time.
#ifndef FWLIB_INTERNAL_CURRENTELEMENT_H
#define FWLIB_INTERNAL_CURRENTELEMENT_H

#include "fwlib/internal/hidden.h"
#include "fwlib/types.h"

#include <atomic>

namespace FWLIB_HIDDEN VESK {

enum BuildForm { PlainForm, ConfiguredForm, BuildForms }; // without and with a configuration file

extern std::atomic<EObject*> apcCurrentElements[BuildForms]; // lent; null when there is none

// What a thread knows of the files it is building from, one within the other.
struct ThreadBuild {
    int iDepth; // of the files
    bool abMade[BuildForms];
    EObject* apcMade[BuildForms]; // lent
};

// Not thread_local, whose initialization each use would test. The loader makes its place when it loads the library,
// else the first use would take memory, and end the process when there is none.
extern __thread ThreadBuild cThreadBuild __attribute__((tls_model("initial-exec")));

// Stands for a pipe file while the thread is building from it.
class Nesting {
public:
    Nesting() { ++cThreadBuild.iDepth; }
    ~Nesting() {
        if (--cThreadBuild.iDepth == 0) {
            cThreadBuild = {};
        }
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
};

inline EObject* GetCurrentElement(BuildForm Form) {
    return cThreadBuild.abMade[Form] ? cThreadBuild.apcMade[Form] : apcCurrentElements[Form].load();
}

inline void SetCurrentElement(BuildForm Form, EObject* pElement) {
    cThreadBuild.abMade[Form] = cThreadBuild.iDepth > 0;
    cThreadBuild.apcMade[Form] = pElement;
    apcCurrentElements[Form].store(pElement);
}

inline void ForgetElement(const EObject* pElement) {
    for (int i = 0; i < BuildForms; ++i) {
        if (cThreadBuild.apcMade[i] == pElement) {
            cThreadBuild.apcMade[i] = nullptr;
        }
        EObject* pCurrent = apcCurrentElements[i].load(std::memory_order_relaxed);
        if (pCurrent == pElement) { // another thread may set it meanwhile, which then stays
            apcCurrentElements[i].compare_exchange_strong(pCurrent, nullptr);
        }
    }
}

} // namespace VESK

#endif
