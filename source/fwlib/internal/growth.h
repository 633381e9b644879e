// SPDX-License-Identifier: MIT
// The growth of every table in the library: by 16 slots, never shrinking, never past its counter.
#ifndef FWLIB_INTERNAL_GROWTH_H
#define FWLIB_INTERNAL_GROWTH_H

#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/types.h"

namespace VESK {

constexpr Byte4Type GrowthStep = 16;
constexpr Byte4Type LargestCapacity = 0x10000 - GrowthStep; // 65,520: the last step that a Byte2Type counts

// Moves the table's entries into a block of b4NewCapacity slots. 0 with the table as it was when memory is
// out.
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

// Makes room for one more entry in tables that grow together. 0 with the tables' entries, the capacity and
// the count as they were when memory is out or the next step passes b4Largest.
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

// Appends to a table of pointers: 1, or 0 with all as it was.
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
