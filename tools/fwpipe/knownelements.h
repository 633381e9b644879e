// SPDX-License-Identifier: MIT
// The elements of a pipeline and of nested ones, and their connections, at the time before the first run. Signal
// handlers read them, so everything is copied in advance.
#ifndef FWPIPE_KNOWNELEMENTS_H
#define FWPIPE_KNOWNELEMENTS_H

#include "machinecode.h"

#include <vector>

namespace VESK {
class EObject;
class EPipeline;
} // namespace VESK

namespace FwPipe {

// An element in messages.
struct Label {
    char achText[96]; // element "NAME" (TYPE)
};
Label LabelOf(VESK::EObject& cElement);
Label LabelOf(const char* pchName, const char* pchType); // a null name: without one

// Whether the element is a pipeline of the library's class. Compares tables of virtual operations, as elements may have
// been compiled without type information.
bool IsPipeline(const VESK::EObject& cElement, const VESK::EPipeline& cPipeline);

struct ElementClass {
    Address uTable; // of virtual operations
    Code cDataArrived;
    Code cRun;
    const void* pModule; // the address where the file with DataArrived was loaded
    bool bMayLeave;      // see MayLeave
};

struct KnownElement {
    const VESK::EObject* pElement;
    int iClass;
    int iFirstReceiver; // in Receivers; the list ends at the next element's first
    Label cLabel;
};

class KnownElements {
public:
    void Learn(VESK::EPipeline& cPipeline); // the pipeline must be initialized
    void Examine();                         // completes the classes after a failure

    // Sorted by address, with one more entry after the last element.
    const std::vector<KnownElement>& Elements() const { return m_cElements; }
    const std::vector<ElementClass>& Classes() const { return m_cClasses; }
    const std::vector<int>& Receivers() const { return m_cReceivers; }
    int Count() const { return static_cast<int>(m_cElements.size()) - 1; }
    int Find(const void* pElement) const;    // -1 for none
    int Origin() const { return m_iOrigin; } // the element that the pipeline's Run calls, or -1

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
