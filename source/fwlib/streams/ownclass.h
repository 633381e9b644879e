// SPDX-License-Identifier: MIT
// Tells the library's own streams from those of hosts. dynamic_cast does not: it reads the type information of the
// object's class, which a host may leave out.
#ifndef FWLIB_STREAMS_OWNCLASS_H
#define FWLIB_STREAMS_OWNCLASS_H

#include "fwlib/internal/hidden.h"

#include <atomic>
#include <cstring>

namespace FWLIB_HIDDEN VESK {

// The table of virtual operations, to which every polymorphic object begins with a pointer.
inline const void* TableOf(const void* pObject) {
    const void* pTable;
    std::memcpy(&pTable, pObject, sizeof pTable);
    return pTable;
}

// Own is final, so that all its objects have one table. Its constructor calls Know.
template <class Own>
class OwnClass {
public:
    static void Know(const Own& cObject) { pKnown.store(TableOf(&cObject), std::memory_order_relaxed); }

    // The object as one of the class, or null.
    template <class Base>
    static Own* Of(Base* pObject) {
        return pObject && TableOf(pObject) == pKnown.load(std::memory_order_relaxed)
                   ? static_cast<Own*>(pObject)
                   : nullptr;
    }

private:
    inline static std::atomic<const void*> pKnown{nullptr}; // until the first object
};

} // namespace VESK

#endif
