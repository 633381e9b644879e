// SPDX-License-Identifier: MIT
// Replaces holder.cpp and machinecode.cpp on 32-bit ARM, whose unwind tables have a different form: failures are
// reported without the element.
#include "holder.h"

namespace FwPipe {

Holder FindHolder(KnownElements&, Address) {
    return {nullptr, false};
}

Code CodeAt(Address) {
    return {};
}

const void* ModuleOf(const Code&) {
    return nullptr;
}

bool MayLeave(const Code&) {
    return true;
}

} // namespace FwPipe
