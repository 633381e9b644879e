// SPDX-License-Identifier: MIT
// Recognizes the library's own stream classes. dynamic_cast cannot: it reads the type information of the object's
// class, and a host may be compiled without it.
#ifndef FWLIB_STREAMS_OWNCLASS_H
#define FWLIB_STREAMS_OWNCLASS_H

#include "fwlib/internal/hidden.h"

#include <atomic>
#include <cstring>

namespace FWLIB_HIDDEN VESK {

// The table of virtual operations; every polymorphic object begins with a pointer to it.
inline const void* TableOf(const void* pObject) {
    const void* pTable;
    std::memcpy(&pTable, pObject, sizeof pTable);
    return pTable;
}

// Own is final, so all its objects have the same table. Its constructor calls Know.
template <class Own>
class OwnClass {
public:
    static void Know(const Own& cObject) { pKnown.store(TableOf(&cObject), std::memory_order_relaxed); }

    // The object as an Own, or null if it is of another class.
    template <class Base>
    static Own* Of(Base* pObject) {
        return pObject && TableOf(pObject) == pKnown.load(std::memory_order_relaxed)
                   ? static_cast<Own*>(pObject)
                   : nullptr;
    }

private:
    inline static std::atomic<const void*> pKnown{nullptr}; // null until the first object exists
};

} // namespace VESK

#endif
