// SPDX-License-Identifier: MIT
#include "fwlib/internal/watch.h"

#ifdef FWLIB_WATCH

#include <dlfcn.h>
#include <mutex>
#include <set>

namespace VESK {

namespace {

struct Watched { // a type of this file's own, which keeps the set's code out of what the library exports
    const void* pObject;
    bool operator<(const Watched& cOther) const { return pObject < cOther.pObject; }
};

struct Living {
    std::mutex cMutex; // threads that share no object may each have their own
    std::set<Watched> cObjects;
};

// Never destroyed: objects of static storage may die later than anything of this file.
Living& TheLiving() {
    static auto* const pLiving = new Living;
    return *pLiving;
}

} // namespace

void Watch(const void* pObject) {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    TheLiving().cObjects.insert({pObject});
}

void Unwatch(const void* pObject) {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    TheLiving().cObjects.erase({pObject});
}

unsigned int UnloadedObjects() {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    unsigned int uUnloaded = 0;
    for (const Watched& cWatched : TheLiving().cObjects) {
        Dl_info Info;
        uUnloaded += dladdr(*static_cast<void* const*>(cWatched.pObject), &Info) == 0;
    }
    return uUnloaded;
}

} // namespace VESK

#endif
