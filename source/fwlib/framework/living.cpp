// SPDX-License-Identifier: MIT
#include "fwlib/framework/living.h"

#include "fwlib/internal/lock.h"

#include <new>

namespace VESK {

namespace {

pthread_mutex_t Lock = PTHREAD_MUTEX_INITIALIZER;
// Owned; only changed while locked. An entry is used again for other frameworks. All are deleted with the last framework,
// as others may search without the lock until then.
std::atomic<FrameworkExtras*> pcExtras = nullptr;
unsigned int uLiving = 0; // frameworks

FrameworkExtras* Find(const FRAMEWORK* pFramework) {
    FrameworkExtras* p = pcExtras.load(std::memory_order_acquire);
    while (p && p->pFramework.load(std::memory_order_acquire) != pFramework) {
        p = p->pNext;
    }
    return p;
}

void DeleteAll() {
    while (FrameworkExtras* const p = pcExtras) {
        pcExtras = p->pNext;
        delete p;
    }
}

void Exchange(FrameworkExtras& cExtras, MessageHandler pHandler, void* pContext) {
    uHandlers += (pHandler ? 1U : 0U) - (cExtras.pHandler ? 1U : 0U);
    cExtras.pHandler = pHandler;
    cExtras.pHandlerContext = pContext;
}

} // namespace

std::atomic<unsigned int> uHandlers = 0;

void BeginLife(const FRAMEWORK* pFramework) {
    const Locked cLocked(Lock);
    ++uLiving;
    FrameworkExtras* p = Find(nullptr);
    if (!p) {
        p = new (std::nothrow) FrameworkExtras{};
        if (!p) {
            return;
        }
        p->pNext = pcExtras;
        pcExtras.store(p, std::memory_order_release);
    }
    p->iEndRequested = 0;
    p->pEndQuery = nullptr;
    p->pFramework.store(pFramework, std::memory_order_release);
}

void EndLife(const FRAMEWORK* pFramework) {
    const Locked cLocked(Lock);
    if (FrameworkExtras* const p = Find(pFramework)) {
        Exchange(*p, nullptr, nullptr);
        p->pFramework = nullptr;
    }
    if (--uLiving == 0) {
        DeleteAll();
    }
}

bool Living(const FRAMEWORK* pFramework) {
    const Locked cLocked(Lock);
    return Find(pFramework) != nullptr;
}

int SetHandler(const FRAMEWORK* pFramework, MessageHandler pHandler, void* pContext) {
    FrameworkExtras* const p = Find(pFramework);
    if (p) {
        Exchange(*p, pHandler, pContext);
    }
    return p != nullptr;
}

FrameworkExtras* ExtrasOf(const FRAMEWORK* pFramework) {
    return Find(pFramework);
}

} // namespace VESK
