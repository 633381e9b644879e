// SPDX-License-Identifier: MIT
#include "fwlib/elements/endtable.h"
#include "fwlib/elements/pad.h"
#include "fwlib/framework/say.h"
#include "fwlib/pipeline/epipeline.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>

namespace VESK {

namespace {

// Positions in an element's table of virtual operations; the two destructors come first.
enum Slot { InitializeSlot = 2, RunSlot = 4 };

using Table = const void* const*;

Table TableOf(const EObject& cElement) {
    Table pTable;
    std::memcpy(&pTable, static_cast<const void*>(&cElement), sizeof pTable);
    return pTable;
}

// An operation of EPipeline may have two addresses: in the library, and in a program that is not position-independent and
// has a stand-in for it, which the tables of the program's own classes contain.
class Operation {
public:
    Operation(Slot Position, const char* pchSymbol)
        : m_Position(Position),
          m_pOwn(TableOf(EPipeline())[Position]),
          m_pShared(dlsym(RTLD_DEFAULT, pchSymbol)) {}
    bool IsIn(Table pTable) const { return pTable[m_Position] == m_pOwn || pTable[m_Position] == m_pShared; }

private:
    const Slot m_Position;
    const void* const m_pOwn;
    const void* const m_pShared; // null if only a plugin loaded the library
};

// Objects reach the inner elements of a pipeline directly. So only pads of its own count, not those that it lends.
bool LendsPads(EObject* pElement) {
    return EPipeline::From(pElement) != nullptr;
}

Byte2Type SourcePads(EObject& cElement) {
    return LendsPads(&cElement) ? cElement.EObject::GetSourcePadCount() : cElement.GetSourcePadCount();
}

// The element that the source pad sends to, or null.
EObject* Receiver(EObject& cElement, Byte2Type b2Pad) {
    const SOURCEPAD* const pPad =
        LendsPads(&cElement) ? cElement.EObject::GetSourcePad(b2Pad) : cElement.GetSourcePad(b2Pad);
    return pPad && pPad->m_pSinkPad ? pPad->m_pSinkPad->m_pElement : nullptr;
}

int Call(const EndEntry& cEntry) {
    struct Restorer { // also when the element throws
        EObject* const pOuter = pEndingElement;
        ~Restorer() { pEndingElement = pOuter; }
    } const cRestorer;
    pEndingElement = cEntry.pElement;
    return cEntry.pCall(*cEntry.pElement);
}

// One call of EndRuns. It finds the loops (strongly connected components) with Tarjan's algorithm, which completes a loop
// after all loops that it sends to. Elements are visited from the last one in the file, and pads from the last one, so
// that a file in which senders come first is told in its order. Nothing is recursive but the nesting of pipelines, as in
// Initialize. All data is in the entries.
class Ending {
public:
    Ending() = default;
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;
    ~Ending() { // also when an element throws
        while (EndEntry* const pEntry = m_pHeld) {
            m_pHeld = pEntry->cTurn.pNextHeld;
            pEntry->cTurn = {};
            DropEndEntry(pEntry);
        }
    }

    void Gather(EPipeline& cPipeline) {
        for (int i = 0; i < cPipeline.m_iElementCount; ++i) {
            EObject* const pElement = cPipeline.m_ppElements[i];
            if (EPipeline* const pInner = EPipeline::From(pElement)) {
                Gather(*pInner);
            }
            if (pElement) {
                Hold(pElement, false);
            }
        }
    }

    // Returns false, with the order of the file, when there is not enough memory.
    bool Order() {
        for (EndEntry* p = m_pHeld; p && m_bComplete; p = p->cTurn.pNextHeld) {
            if (!p->cTurn.b4Number) {
                Follow(p);
            }
        }
        if (m_pHeld && !m_bComplete) {
            MakeOneLoop();
        }
        for (EndEntry* p = m_pHeld; p; p = p->cTurn.pNextHeld) {
            EndEntry*& pFirst = p->cTurn.pLoop->cTurn.pFirst;
            p->cTurn.pNextInLoop = pFirst;
            pFirst = p;
        }
        return m_bComplete;
    }

    // Returns 1 if all elements returned 1.
    int Tell() const {
        int iAll = 1;
        for (const EndEntry* pLoop = m_pLoops; pLoop; pLoop = pLoop->cTurn.pNextLoop) {
            for (const EndEntry* p = pLoop->cTurn.pFirst; p; p = p->cTurn.pNextInLoop) {
                if (p->pElement && p->pCall && !p->cTurn.bOutside) {
                    iAll = Call(*p) == 1 && iAll;
                }
            }
        }
        return iAll;
    }

private:
    // Returns the element's entry; null when another call holds it, and when there is not enough memory.
    EndEntry* Hold(EObject* pElement, bool bOutside) {
        EndEntry* const pEntry = MakeEndEntry(pElement);
        if (!pEntry) {
            m_bComplete = false;
            return nullptr;
        }
        EndTurn& cTurn = pEntry->cTurn;
        if (!cTurn.pHolder) {
            cTurn.pHolder = this;
            cTurn.bOutside = bOutside;
            cTurn.pNextHeld = m_pHeld;
            m_pHeld = pEntry;
        }
        return cTurn.pHolder == this ? pEntry : nullptr;
    }

    void MakeOneLoop() {
        for (EndEntry* p = m_pHeld; p; p = p->cTurn.pNextHeld) {
            p->cTurn.pLoop = m_pHeld;
        }
        m_pLoops = m_pHeld;
        m_pLoops->cTurn.pNextLoop = nullptr;
    }

    void Open(EndEntry* pEntry, EndEntry* pFrom) {
        EndTurn& cTurn = pEntry->cTurn;
        cTurn.b4Number = cTurn.b4Lowest = ++m_b4Visited;
        cTurn.b4Pad = SourcePads(*pEntry->pElement);
        cTurn.bOpen = true;
        cTurn.pFrom = pFrom;
        cTurn.pNextOpen = m_pOpen;
        m_pOpen = pEntry;
    }

    // The receiver of the last pad that was not followed yet; null when there is none.
    EndEntry* NextReceiver(EndEntry& cEntry) {
        while (cEntry.cTurn.b4Pad > 0) {
            const auto b2Pad = static_cast<Byte2Type>(--cEntry.cTurn.b4Pad);
            EObject* const pReceiver = Receiver(*cEntry.pElement, b2Pad);
            EndEntry* const pFound = pReceiver ? Hold(pReceiver, true) : nullptr;
            if (pFound) {
                return pFound;
            }
        }
        return nullptr;
    }

    // Completes the loop of the element if it was the first one visited.
    void Close(EndEntry* pEntry) {
        if (pEntry->cTurn.b4Lowest != pEntry->cTurn.b4Number) {
            return;
        }
        pEntry->cTurn.pNextLoop = m_pLoops;
        m_pLoops = pEntry;
        while (pEntry->cTurn.bOpen) {
            EndTurn& cLast = m_pOpen->cTurn;
            cLast.pLoop = pEntry;
            cLast.bOpen = false;
            m_pOpen = cLast.pNextOpen;
        }
    }

    void Follow(EndEntry* pEntry) {
        Open(pEntry, nullptr);
        while (pEntry) {
            EndTurn& cTurn = pEntry->cTurn;
            EndEntry* const pNext = NextReceiver(*pEntry);
            if (pNext && !pNext->cTurn.b4Number) {
                Open(pNext, pEntry);
                pEntry = pNext;
            } else if (pNext) {
                cTurn.b4Lowest =
                    pNext->cTurn.bOpen ? std::min(cTurn.b4Lowest, pNext->cTurn.b4Number) : cTurn.b4Lowest;
            } else {
                Close(pEntry);
                pEntry = cTurn.pFrom;
                if (pEntry) {
                    pEntry->cTurn.b4Lowest = std::min(pEntry->cTurn.b4Lowest, cTurn.b4Lowest);
                }
            }
        }
    }

    EndEntry* m_pHeld = nullptr;  // the last one first
    EndEntry* m_pOpen = nullptr;  // the last one first
    EndEntry* m_pLoops = nullptr; // in the order of the deliveries
    Byte4Type m_b4Visited = 0;
    bool m_bComplete = true; // every element has an entry
};

} // namespace

EPipeline* EPipeline::From(EObject* pElement) {
    static const Operation cRun(RunSlot, "_ZN4VESK9EPipeline3RunEv");
    static const Operation cInitialize(InitializeSlot, "_ZN4VESK9EPipeline10InitializeEv");
    const Table pTable = pElement ? TableOf(*pElement) : nullptr;
    return pTable && (cRun.IsIn(pTable) || cInitialize.IsIn(pTable)) ? static_cast<EPipeline*>(pElement)
                                                                     : nullptr;
}

int EPipeline::EndRuns() {
    if (b4EndEntries.load(std::memory_order_relaxed) == 0) {
        return 1;
    }
    Ending cEnding;
    cEnding.Gather(*this);
    const bool bOrdered = cEnding.Order();
    if (!bOrdered) {
        SayError(m_pFramework, "EPipeline::EndRuns(): No memory: the order is that of the file\n");
    }
    return cEnding.Tell() && bOrdered;
}

} // namespace VESK
