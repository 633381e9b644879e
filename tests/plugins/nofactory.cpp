// SPDX-License-Identifier: MIT
// A shared object without an entry point.
extern "C" __attribute__((visibility("default"))) int fwlib_test_nothing() {
    return 0;
}
