// SPDX-License-Identifier: MIT
#include "machinecode.h"

#include <cstring>
#include <dlfcn.h>

// Declared in no header of the compilers' runtime: finds the unwind table's entry for an address, and the start of its
// code.
extern "C" {
struct dwarf_eh_bases { // NOLINT(readability-identifier-naming)
    void* pText;
    void* pData;
    void* pFunction;
};
// NOLINTNEXTLINE(bugprone-reserved-identifier)
const void* _Unwind_Find_FDE(void* pAddress, struct dwarf_eh_bases* pBases);
}

namespace FwPipe {

namespace {

constexpr bool Wide = sizeof(void*) == 8;
constexpr unsigned char SlotOfDataArrived = 3 * sizeof(void*); // after two destructors and Initialize
constexpr int MostJumps = 2;

const unsigned char* BytesAt(Address uAddress) {
    return reinterpret_cast<const unsigned char*>(uAddress); // NOLINT(performance-no-int-to-ptr)
}

template <class Number>
Number NumberAt(Address uAddress) {
    Number Value;
    std::memcpy(&Value, BytesAt(uAddress), sizeof Value);
    return Value;
}

// The target of a relative distance at this address.
Address Relative(Address uAddress) {
    return uAddress + 4 + static_cast<Address>(static_cast<std::intptr_t>(NumberAt<std::int32_t>(uAddress)));
}

// The target of an entry of a procedure linkage table; any other code is returned unchanged, and in 32 bits all code:
// there the table's address is in a register.
Address Linked(Address uAddress) {
    if (!Wide || !KnowsInstructions || !CodeAt(uAddress).uBegin) {
        return uAddress;
    }
    static constexpr unsigned char Landing[] = {0xf3, 0x0f, 0x1e, 0xfa};
    Address u = uAddress;
    u += std::memcmp(BytesAt(u), Landing, sizeof Landing) == 0 ? sizeof Landing : 0;
    u += *BytesAt(u) == 0xf2 ? 1 : 0;
    return BytesAt(u)[0] == 0xff && BytesAt(u)[1] == 0x25 ? NumberAt<Address>(Relative(u + 2)) : uAddress;
}

// The target of the jump at this address if it leaves the code, otherwise 0. A short jump counts only if it leads to
// the start of a function.
Address JumpAt(Address u, const Code& cCode) {
    const unsigned char* const puch = BytesAt(u);
    Address uTarget = 0;
    if (puch[0] == 0xeb && u + 2 <= cCode.uEnd) {
        uTarget = u + 2 + static_cast<Address>(static_cast<std::intptr_t>(NumberAt<std::int8_t>(u + 1)));
        uTarget = CodeAt(uTarget).uBegin == uTarget ? uTarget : 0;
    } else if (puch[0] == 0xe9 && u + 5 <= cCode.uEnd) {
        uTarget = Relative(u + 1);
    } else if (puch[0] == 0x0f && u + 6 <= cCode.uEnd && (puch[1] & 0xf0) == 0x80) {
        uTarget = Relative(u + 2);
    }
    return cCode.Has(uTarget) ? 0 : uTarget;
}

// Calls cSeen for each address outside the code that it may jump to, until cSeen returns true. Every byte is decoded as
// the start of an instruction: wrong targets are never those of functions that the callers compare.
template <class Seen>
bool AnyJump(const Code& cCode, Seen cSeen) {
    for (Address u = cCode.uBegin; KnowsInstructions && u < cCode.uEnd; ++u) {
        const Address uTarget = JumpAt(u, cCode);
        if (uTarget && cSeen(uTarget)) {
            return true;
        }
    }
    return false;
}

bool JumpsInto(const Code& cFrom, const Code& cTo, int iJumps) {
    return AnyJump(cFrom, [&](Address uTarget) {
        const Address uLinked = Linked(uTarget);
        if (cTo.Has(uTarget) || cTo.Has(uLinked)) {
            return true;
        }
        const Code cNext = iJumps > 1 ? CodeAt(uLinked) : Code();
        return cNext.uBegin && JumpsInto(cNext, cTo, iJumps - 1);
    });
}

} // namespace

Code CodeAt(Address uAddress) {
    struct dwarf_eh_bases Bases = {};
    const void* const pEntry = _Unwind_Find_FDE(const_cast<unsigned char*>(BytesAt(uAddress)), &Bases);
    if (!pEntry) {
        return {};
    }
    // The entry: its length, an offset to the common entry, the relative address of its code, and the code's length.
    const Address uBegins = reinterpret_cast<Address>(pEntry) + 8;
    const Address uBegin = reinterpret_cast<Address>(Bases.pFunction);
    const Address uDistance =
        static_cast<Address>(static_cast<std::intptr_t>(NumberAt<std::int32_t>(uBegins)));
    if (uBegins + uDistance != uBegin) {
        return {}; // an unknown form of entry
    }
    return {uBegin, uBegin + NumberAt<std::uint32_t>(uBegins + 4)};
}

const void* ModuleOf(const Code& cCode) {
    Dl_info Info = {};
    return cCode.uBegin && dladdr(BytesAt(cCode.uBegin), &Info) ? Info.dli_fbase : nullptr;
}

bool Continues(const Code& cFrom, const Code& cTo) {
    return cFrom.uBegin && cTo.uBegin && (cFrom.uBegin == cTo.uBegin || JumpsInto(cFrom, cTo, MostJumps));
}

bool MayLeave(const Code& cCode) {
    if (!KnowsInstructions) {
        return true;
    }
    for (Address u = cCode.uBegin; u + 2 <= cCode.uEnd; ++u) {
        const unsigned char* const puch = BytesAt(u);
        if (puch[0] == 0xff && (puch[1] & 0x38) == 0x20) { // a jump by a register or a table
            return true;
        }
    }
    return AnyJump(cCode, [](Address uTarget) { return CodeAt(uTarget).uBegin != 0; });
}

Call CallBefore(Address uReturn) {
    if (!KnowsInstructions) {
        return Call::Delivery;
    }
    const unsigned char* const puch = BytesAt(uReturn);
    if ((puch[-2] == 0xff && (puch[-1] & 0xf8) == 0xd0) ||
        (puch[-3] == 0xff && (puch[-2] & 0xf8) == 0x50 && puch[-1] == SlotOfDataArrived)) {
        return Call::Delivery;
    }
    return puch[-5] == 0xe8 || (puch[-6] == 0xff && puch[-5] == 0x15) ? Call::Direct : Call::Other;
}

Address TargetOf(Address uReturn) {
    const unsigned char* const puch = BytesAt(uReturn);
    if (puch[-5] == 0xe8) {
        return Linked(Relative(uReturn - 4));
    }
    return Wide ? NumberAt<Address>(Relative(uReturn - 4)) : 0;
}

} // namespace FwPipe
