// SPDX-License-Identifier: MIT
#include "fwlib/elements/watch.h"

#ifdef FWLIB_WATCH

#include <dlfcn.h>
#include <map>
#include <mutex>
#include <new>

namespace VESK {

namespace {

struct Address { // a type of this file's own, which keeps the map's code out of what the library exports
    const void* p;
    bool operator<(const Address& cOther) const { return p < cOther.p; }
};

struct Living {
    std::mutex cMutex;                // threads that share no object may each have their own
    std::map<Address, Address> cCode; // by object
};

// Never destroyed: objects of static storage may die later than anything of this file.
Living& TheLiving() {
    alignas(Living) static unsigned char abLiving[sizeof(Living)];
    static auto* const pLiving = new (abLiving) Living;
    return *pLiving;
}

} // namespace

void Watch(const void* pObject, const void* pCode) {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    try {
        TheLiving().cCode[{pObject}] = {pCode};
    } catch (const std::bad_alloc&) {
        TheLiving().cCode.erase({pObject}); // not watched, which nobody needs for going on
    }
}

void Unwatch(const void* pObject) {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    TheLiving().cCode.erase({pObject});
}

unsigned int UnloadedObjects() {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    unsigned int uUnloaded = 0;
    for (const auto& cPair : TheLiving().cCode) {
        Dl_info Info;
        uUnloaded += dladdr(cPair.second.p, &Info) == 0;
    }
    return uUnloaded;
}

} // namespace VESK

#endif
