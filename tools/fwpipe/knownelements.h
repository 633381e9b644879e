// SPDX-License-Identifier: MIT
// The elements of a pipeline and of those within it, and who sends to whom, as they were when it was about to run.
// Signal handlers look here, so all of it is copied beforehand.
#ifndef FWPIPE_KNOWNELEMENTS_H
#define FWPIPE_KNOWNELEMENTS_H

#include "machinecode.h"

#include <vector>

namespace VESK {
class EObject;
class EPipeline;
} // namespace VESK

namespace FwPipe {

// What messages call an element.
struct Label {
    char achText[96]; // element "NAME" (TYPE)
};
Label LabelOf(VESK::EObject& cElement);

// Whether it is one of the library's own pipelines. Elements may have been compiled without type information, so their
// tables of virtual operations are compared.
bool IsPipeline(const VESK::EObject& cElement, const VESK::EPipeline& cPipeline);

struct ElementClass {
    Address uTable; // of virtual operations
    Code cDataArrived;
    Code cRun;
    const void* pModule; // where the code of DataArrived was loaded
    bool bMayLeave;      // see MayLeave
};

struct KnownElement {
    const VESK::EObject* pElement;
    int iClass;
    int iFirstReceiver; // in Receivers; the next element's ends them
    Label cLabel;
};

class KnownElements {
public:
    void Learn(VESK::EPipeline& cPipeline); // once it is initialized
    void Examine();                         // fills in what is reported about classes after a failure

    const std::vector<KnownElement>& Elements() const {
        return m_cElements;
    } // by address; one more behind the last
    const std::vector<ElementClass>& Classes() const { return m_cClasses; }
    const std::vector<int>& Receivers() const { return m_cReceivers; }
    int Count() const { return static_cast<int>(m_cElements.size()) - 1; }
    int Find(const void* pElement) const;    // -1 for none
    int Origin() const { return m_iOrigin; } // whose Run the pipeline's leads to, or -1

private:
    void Gather(VESK::EPipeline& cPipeline, const VESK::EPipeline& cOuter);
    int ClassOf(const VESK::EObject& cElement);

    std::vector<KnownElement> m_cElements;
    std::vector<ElementClass> m_cClasses;
    std::vector<int> m_cReceivers;
    int m_iOrigin = -1;
};

} // namespace FwPipe

#endif
