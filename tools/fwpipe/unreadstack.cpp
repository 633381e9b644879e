// SPDX-License-Identifier: MIT
// In place of holder.cpp and machinecode.cpp on 32-bit ARM, whose unwind tables have another form than those that these
// read: a failure is reported without the element.
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
