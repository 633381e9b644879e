// SPDX-License-Identifier: MIT
// How every table of the library grows: by 16 slots, up to the limit of its counter. Tables never shrink.
#ifndef FWLIB_INTERNAL_GROWTH_H
#define FWLIB_INTERNAL_GROWTH_H

#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/types.h"

namespace VESK {

constexpr Byte4Type GrowthStep = 16;
constexpr Byte4Type LargestCapacity = 0x10000 - GrowthStep; // 65,520: the last multiple of 16 in a Byte2Type

// Moves the table's entries into a block of b4NewCapacity slots. Returns 0, with the table unchanged, when there is not
// enough memory.
template <class Entry>
int Regrow(Entry*& pTable, Byte4Type b4Count, Byte4Type b4NewCapacity) {
    constexpr Byte4Type Size = sizeof(Entry);
    void* pBlock = pTable;
    if (!fwrealloc(&pBlock, b4Count * Size, b4NewCapacity * Size)) {
        return 0;
    }
    pTable = static_cast<Entry*>(pBlock);
    return 1;
}

// Gives tables of the same capacity a slot for one more entry. Returns 0, with entries, capacity and count unchanged,
// when there is not enough memory or the new capacity would be over b4Largest.
template <class Counter, class Count, class... Entry>
int MakeRoom(Counter& Capacity, Count Used, Byte4Type b4Largest, Entry*&... pTables) {
    const auto b4Used = static_cast<Byte4Type>(Used);
    const auto b4Capacity = static_cast<Byte4Type>(Capacity);
    if (b4Used < b4Capacity) {
        return 1;
    }
    const Byte4Type b4NewCapacity = b4Capacity + GrowthStep;
    if (b4NewCapacity > b4Largest || !(Regrow(pTables, b4Used, b4NewCapacity) && ...)) {
        return 0;
    }
    Capacity = static_cast<Counter>(b4NewCapacity);
    return 1;
}

// Appends an entry to a table of pointers. Returns 1; or 0 with the table unchanged.
template <class Counter, class Pointer>
int Append(Pointer*& ppTable, Counter& Capacity, Counter& Count, Pointer pEntry) {
    if (!MakeRoom(Capacity, Count, LargestCapacity, ppTable)) {
        return 0;
    }
    ppTable[Count] = pEntry;
    Count = static_cast<Counter>(Count + 1);
    return 1;
}

} // namespace VESK

#endif
