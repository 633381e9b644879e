// SPDX-License-Identifier: MIT
// The current elements, which `property` and `config` lines of pipe files act on. The process has one for each of the
// two building forms: the last element that a line of this form created. The destructor of an element resets the
// entries for it.
//
// While a thread builds from a file, its lines act on the last element that this thread created in this build, if any.
// This matters only while another thread builds with the same form.
#ifndef FWLIB_INTERNAL_CURRENTELEMENT_H
#define FWLIB_INTERNAL_CURRENTELEMENT_H

#include "fwlib/internal/hidden.h"
#include "fwlib/types.h"

#include <atomic>

namespace FWLIB_HIDDEN VESK {

enum BuildForm { PlainForm, ConfiguredForm, BuildForms }; // without and with a configuration file

extern std::atomic<EObject*> apcCurrentElements[BuildForms]; // lent; null when there is none

// The build of a thread: one pipe file, or several nested ones.
struct ThreadBuild {
    int iDepth; // number of nested files; 0 while the thread builds nothing
    bool abMade[BuildForms];
    EObject* apcMade[BuildForms]; // lent
};

// Not thread_local, which would test at each use whether it is initialized. With the initial-exec model the loader
// reserves the memory when it loads the library. Otherwise the first use would allocate it, and end the process when
// there is not enough memory.
extern __thread ThreadBuild cThreadBuild __attribute__((tls_model("initial-exec")));

// Exists while the thread builds from a pipe file.
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
        if (pCurrent == pElement) { // an element that another thread sets meanwhile is kept
            apcCurrentElements[i].compare_exchange_strong(pCurrent, nullptr);
        }
    }
}

} // namespace VESK

#endif
