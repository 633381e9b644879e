// SPDX-License-Identifier: MIT
// Functions as the processor sees them, for telling from a stack which element runs. All of it may be called in signal
// handlers: it reads code and unwind tables only.
#ifndef FWPIPE_MACHINECODE_H
#define FWPIPE_MACHINECODE_H

#include <cstdint>

namespace FwPipe {

using Address = std::uintptr_t;

// Whether the instructions of this processor are known. Otherwise nothing is read from code, and what it would tell counts
// as possible: fewer elements are named, and none wrongly.
#if (defined(__x86_64__) || defined(__i386__)) && !defined(FWPIPE_UNKNOWN_PROCESSOR)
#define FWPIPE_X86
constexpr bool KnowsInstructions = true;
#else
constexpr bool KnowsInstructions = false;
#endif

// A function, or the part of one that the compiler moved away because it seldom runs.
struct Code {
    Address uBegin = 0; // 0 for none
    Address uEnd = 0;

    bool Has(Address uAddress) const { return uAddress >= uBegin && uAddress < uEnd; }
};

Code CodeAt(Address uAddress);

// Where the file was loaded that the code comes from; null for none.
const void* ModuleOf(const Code& cCode);

// Whether the one goes on in the other: as its seldom part, or in place of returning, within two jumps.
bool Continues(const Code& cFrom, const Code& cTo);

// Whether the function may deliver an object in place of returning, and so leave no trace on the stack.
bool MayLeave(const Code& cCode);

enum class Call {
    Other,
    Direct,  // to a fixed address
    Delivery // through a register or the slot of DataArrived
};

// The call that returns to this address.
Call CallBefore(Address uReturn);

// Where a direct call leads, also through a linkage table; 0 when that is not known.
Address TargetOf(Address uReturn);

} // namespace FwPipe

#endif
