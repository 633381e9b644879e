// SPDX-License-Identifier: MIT
#include "fwlib/elements/runsend.h"

#include "fwlib/elements/endtable.h"
#include "fwlib/elements/eobject.h"
#include "fwlib/internal/lock.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace VESK {

std::atomic<Byte4Type> b4EndEntries; // changed while the table is locked

__thread EObject* pEndingElement __attribute__((tls_model("initial-exec")));

namespace {

constexpr Byte4Type FirstBuckets = 64;

pthread_mutex_t Lock = PTHREAD_MUTEX_INITIALIZER;
EndEntry** ppBuckets = nullptr; // owned; null while the table is empty
Byte4Type b4Buckets = 0;        // a power of two

EndEntry*& BucketOf(const EObject* pElement) {
    const auto Address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(pElement));
    return ppBuckets[Address * 0x9E3779B97F4A7C15U >> 32 & (b4Buckets - 1)];
}

// The pointer to the element's entry, or to the null at the end of its bucket. The table must not be empty.
EndEntry** PlaceOf(const EObject* pElement) {
    EndEntry** ppEntry = &BucketOf(pElement);
    while (*ppEntry && (*ppEntry)->pElement != pElement) {
        ppEntry = &(*ppEntry)->pNextInBucket;
    }
    return ppEntry;
}

EndEntry* Find(const EObject* pElement) {
    return ppBuckets ? *PlaceOf(pElement) : nullptr;
}

void AddToBucket(EndEntry& cEntry) {
    EndEntry*& pFirst = BucketOf(cEntry.pElement);
    cEntry.pNextInBucket = pFirst;
    pFirst = &cEntry;
}

// Without enough memory, a table that has buckets keeps them.
bool MakeBuckets() {
    if (b4EndEntries < b4Buckets) {
        return true;
    }
    EndEntry** const ppOld = ppBuckets;
    const Byte4Type b4Old = b4Buckets;
    const Byte4Type b4New = b4Old > 0 ? 2 * b4Old : FirstBuckets;
    auto** const ppNew = static_cast<EndEntry**>(std::calloc(b4New, sizeof *ppBuckets));
    if (!ppNew) {
        return ppOld != nullptr;
    }
    ppBuckets = ppNew;
    b4Buckets = b4New;
    for (Byte4Type b4 = 0; b4 < b4Old; ++b4) {
        while (EndEntry* const pEntry = ppOld[b4]) {
            ppOld[b4] = pEntry->pNextInBucket;
            AddToBucket(*pEntry);
        }
    }
    std::free(ppOld);
    return true;
}

EndEntry* Make(EObject* pElement) {
    EndEntry* pEntry = Find(pElement);
    if (pEntry) {
        return pEntry;
    }
    pEntry = new (std::nothrow) EndEntry{};
    if (!pEntry || !MakeBuckets()) {
        delete pEntry;
        return nullptr;
    }
    pEntry->pElement = pElement;
    AddToBucket(*pEntry);
    ++b4EndEntries;
    return pEntry;
}

// Removes the entry from the table.
void Unlink(EndEntry& cEntry) {
    *PlaceOf(cEntry.pElement) = cEntry.pNextInBucket;
    cEntry.pElement = nullptr;
    if (--b4EndEntries == 0) {
        std::free(ppBuckets);
        ppBuckets = nullptr;
        b4Buckets = 0;
    }
}

void Drop(EndEntry* pEntry) {
    if (pEntry->cTurn.pHolder || (pEntry->pElement && pEntry->pCall)) {
        return;
    }
    if (pEntry->pElement) {
        Unlink(*pEntry);
    }
    delete pEntry;
}

} // namespace

EndEntry* FindEndEntry(const EObject* pElement) {
    const Locked cLocked(Lock);
    return Find(pElement);
}

EndEntry* MakeEndEntry(EObject* pElement) {
    const Locked cLocked(Lock);
    return Make(pElement);
}

void DropEndEntry(EndEntry* pEntry) {
    const Locked cLocked(Lock);
    Drop(pEntry);
}

void RemoveEndEntry(const EObject* pElement) {
    const Locked cLocked(Lock);
    if (EndEntry* const pEntry = Find(pElement)) {
        Unlink(*pEntry);
        Drop(pEntry);
    }
}

int AtRunsEnd(EObject& cElement, int (*pCall)(EObject& cElement)) {
    EndEntry* const pEntry = pCall ? MakeEndEntry(&cElement) : FindEndEntry(&cElement);
    if (!pEntry) {
        if (pCall) {
            cElement.ErrorMessage("AtRunsEnd(): No memory\n");
        }
        return !pCall;
    }
    pEntry->pCall = pCall;
    DropEndEntry(pEntry);
    return 1;
}

EObject* EndingElement() {
    return pEndingElement;
}

} // namespace VESK
