// SPDX-License-Identifier: MIT
// The plugin wanting.so, which cannot be loaded: nobody defines a function that it calls.
namespace Absent {
int Give(int i);
}

extern "C" __attribute__((visibility("default"))) int GetFactory() {
    return Absent::Give(1);
}
