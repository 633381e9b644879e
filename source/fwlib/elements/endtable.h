// SPDX-License-Identifier: MIT
// The process's table of elements that want to know of the end of the runs, and of elements whose turn a call of
// EPipeline::EndRuns determines.
//
// An entry is a block of its own: its address does not change. The destructor of an element removes its entry. While
// EndRuns holds the entry, the destructor only clears its element, and EndRuns deletes it.
#ifndef FWLIB_ELEMENTS_ENDTABLE_H
#define FWLIB_ELEMENTS_ENDTABLE_H

#include "fwlib/internal/hidden.h"
#include "fwlib/types.h"

#include <atomic>

namespace FWLIB_HIDDEN VESK {

// What EndRuns stores about an element. All pointers are lent.
struct EndTurn {
    const void* pHolder; // the call that holds the entry, or null
    struct EndEntry* pNextHeld;
    bool bOutside;         // reached by a connection, but in no pipeline that ends: not told
    Byte4Type b4Number;    // in the order of visits, from 1; 0 before the visit
    Byte4Type b4Lowest;    // the least number of an open element that is reached from here
    Byte4Type b4Pad;       // the number of source pads that were not followed yet
    bool bOpen;            // visited, and the loop that it belongs to is not complete
    EndEntry* pFrom;       // the element that it was reached from
    EndEntry* pNextOpen;   // the one that was opened before
    EndEntry* pLoop;       // represents all elements of its loop; itself without a loop
    EndEntry* pFirst;      // of a loop, in the order of the file
    EndEntry* pNextInLoop; // after this element
    EndEntry* pNextLoop;   // told after this loop
};

struct EndEntry {
    EObject* pElement;               // null after its destruction
    int (*pCall)(EObject& cElement); // null if the element does not want to know
    EndEntry* pNextInBucket;
    EndTurn cTurn;
};

extern std::atomic<Byte4Type> b4EndEntries;

// See EndingElement. The loader reserves its memory (initial-exec), so that no use allocates.
extern __thread EObject* pEndingElement __attribute__((tls_model("initial-exec")));

// Return the element's entry, also a new one without a function. Null when there is none, or not enough memory.
EndEntry* FindEndEntry(const EObject* pElement);
EndEntry* MakeEndEntry(EObject* pElement);

// Deletes the entry if it is held by no call, and has no element or no function.
void DropEndEntry(EndEntry* pEntry);

void RemoveEndEntry(const EObject* pElement);

// Call this before an element is destroyed.
inline void ForgetEnd(const EObject* pElement) {
    if (b4EndEntries.load(std::memory_order_relaxed) > 0) {
        RemoveEndEntry(pElement);
    }
}

} // namespace VESK

#endif
