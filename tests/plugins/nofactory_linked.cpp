// SPDX-License-Identifier: MIT
// A shared object without an entry point that is linked to the library, which has one.
#include "fwlib/fwlib.h"

extern "C" FWLIB_EXPORT long fwlib_test_ticks() {
    return VESK::fwgetclockspersec();
}
