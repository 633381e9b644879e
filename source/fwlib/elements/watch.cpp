// SPDX-License-Identifier: MIT
#include "fwlib/elements/watch.h"

#ifdef FWLIB_WATCH

#include <cstdint>
#include <link.h>
#include <map>
#include <mutex>
#include <new>

namespace VESK {

namespace {

struct Address { // a local type, so that the map's code is not exported
    const void* p;
    bool operator<(const Address& cOther) const { return p < cOther.p; }
};

struct Living {
    std::mutex cMutex;                // threads with different objects share the map
    std::map<Address, Address> cCode; // by object
};

// Never destroyed: other static objects may be destroyed later than those of this file.
Living& TheLiving() {
    alignas(Living) static unsigned char abLiving[sizeof(Living)];
    static auto* const pLiving = new (abLiving) Living;
    return *pLiving;
}

// Adds the number of objects whose code is in this loaded file. dladdr would wait for a lock that the loader holds
// while another thread's plugin constructs or destroys its static objects, which wait for the mutex of this file.
int CountLoaded(dl_phdr_info* pInfo, std::size_t, void* pCount) {
    std::size_t& uCount = *static_cast<std::size_t*>(pCount);
    for (const ElfW(Phdr)* p = pInfo->dlpi_phdr; p < pInfo->dlpi_phdr + pInfo->dlpi_phnum; ++p) {
        for (const auto& cPair : TheLiving().cCode) {
            const auto uCode = reinterpret_cast<std::uintptr_t>(cPair.second.p);
            uCount += p->p_type == PT_LOAD && uCode - (pInfo->dlpi_addr + p->p_vaddr) < p->p_memsz;
        }
    }
    return 0;
}

} // namespace

void Watch(const void* pObject, const void* pCode) {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    try {
        TheLiving().cCode[{pObject}] = {pCode};
    } catch (const std::bad_alloc&) {
        TheLiving().cCode.erase({pObject}); // not watched, which has no other effect
    }
}

void Unwatch(const void* pObject) {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    TheLiving().cCode.erase({pObject});
}

unsigned int UnloadedObjects() {
    const std::lock_guard<std::mutex> cLock(TheLiving().cMutex);
    std::size_t uLoaded = 0;
    dl_iterate_phdr(CountLoaded, &uLoaded);
    return static_cast<unsigned int>(TheLiving().cCode.size() - uLoaded);
}

} // namespace VESK

#endif
