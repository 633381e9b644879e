// SPDX-License-Identifier: MIT
#include "fwlib/framework/living.h"

#include "fwlib/internal/lock.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace VESK {

namespace {

pthread_mutex_t Lock = PTHREAD_MUTEX_INITIALIZER;
// Owned; null if there is no framework. There are few, so the array is reallocated for each.
const FRAMEWORK** ppLiving = nullptr;
std::size_t uLiving = 0;

} // namespace

void BeginLife(const FRAMEWORK* pFramework) {
    const Locked cLocked(Lock);
    auto** const ppMore = static_cast<const FRAMEWORK**>(std::malloc((uLiving + 1) * sizeof *ppLiving));
    if (!ppMore) {
        return;
    }
    std::copy_n(ppLiving, uLiving, ppMore);
    std::free(ppLiving);
    ppLiving = ppMore;
    ppLiving[uLiving++] = pFramework;
}

void EndLife(const FRAMEWORK* pFramework) {
    const Locked cLocked(Lock);
    const FRAMEWORK** const pp = std::find(ppLiving, ppLiving + uLiving, pFramework);
    if (pp == ppLiving + uLiving) {
        return;
    }
    *pp = ppLiving[--uLiving];
    if (uLiving == 0) {
        std::free(ppLiving);
        ppLiving = nullptr;
    }
}

bool Living(const FRAMEWORK* pFramework) {
    const Locked cLocked(Lock);
    return std::find(ppLiving, ppLiving + uLiving, pFramework) != ppLiving + uLiving;
}

} // namespace VESK
