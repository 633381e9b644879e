// SPDX-License-Identifier: MIT
// What the library stores about each existing framework, whose fields are fixed. An element that outlives its framework
// must not report to it.
#ifndef FWLIB_FRAMEWORK_LIVING_H
#define FWLIB_FRAMEWORK_LIVING_H

#include "fwlib/framework/messages.h"
#include "fwlib/internal/hidden.h"
#include "fwlib/types.h"

#include <atomic>

namespace FWLIB_HIDDEN VESK {

struct FrameworkExtras {
    std::atomic<const FRAMEWORK*> pFramework; // null while the entry is not used
    FrameworkExtras* pNext;
    std::atomic<int> iEndRequested;
    int (*pEndQuery)(void* pContext); // null for none
    void* pEndContext;
    MessageHandler pHandler; // null for none
    void* pHandlerContext;
};

void BeginLife(const FRAMEWORK* pFramework); // if there is not enough memory, it counts as destroyed
void EndLife(const FRAMEWORK* pFramework);
bool Living(const FRAMEWORK* pFramework);

// How many frameworks have a message handler. Nothing is searched while there is none.
extern std::atomic<unsigned int> uHandlers;

// Sets the handler, or removes it. Returns 0 when there is no entry for the framework.
int SetHandler(const FRAMEWORK* pFramework, MessageHandler pHandler, void* pContext);

// Of a framework that exists; null if there was not enough memory. Uses no lock, for signal handlers.
FrameworkExtras* ExtrasOf(const FRAMEWORK* pFramework);

} // namespace VESK

#endif
