// SPDX-License-Identifier: MIT
// Reads machine code and unwind tables, to find the element that is running from a stack. Safe in signal handlers.
#ifndef FWPIPE_MACHINECODE_H
#define FWPIPE_MACHINECODE_H

#include <cstdint>

namespace FwPipe {

using Address = std::uintptr_t;

// Whether this processor's instructions can be decoded. Otherwise no code is read, and everything that code could
// exclude counts as possible: fewer elements are reported, but none wrongly.
#if (defined(__x86_64__) || defined(__i386__)) && !defined(FWPIPE_UNKNOWN_PROCESSOR)
#define FWPIPE_X86
constexpr bool KnowsInstructions = true;
#else
constexpr bool KnowsInstructions = false;
#endif

// A function, or a part that the compiler moved away because it rarely runs.
struct Code {
    Address uBegin = 0; // 0 for none
    Address uEnd = 0;

    bool Has(Address uAddress) const { return uAddress >= uBegin && uAddress < uEnd; }
};

Code CodeAt(Address uAddress);

// The load address of the file that contains the code; null if unknown.
const void* ModuleOf(const Code& cCode);

// Whether execution may continue from the first function in the second by at most two jumps: a moved part or a tail
// call.
bool Continues(const Code& cFrom, const Code& cTo);

// Whether the function may deliver an object by a tail call, which leaves no frame on the stack.
bool MayLeave(const Code& cCode);

enum class Call {
    Other,
    Direct,  // to a fixed address
    Delivery // through a register or the slot of DataArrived
};

// The kind of call that returns to this address.
Call CallBefore(Address uReturn);

// The target of a direct call, also through a procedure linkage table; 0 if unknown.
Address TargetOf(Address uReturn);

} // namespace FwPipe

#endif
