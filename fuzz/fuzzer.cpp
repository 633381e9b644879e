// SPDX-License-Identifier: MIT
// What libFuzzer calls. The environment variable FWLIB_FUZZ names the target; ./dev fuzz sets it.
#include "targets.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* piCount, char*** pppchArguments);
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);
extern "C" const char* __asan_default_options();

namespace {

void (*pRun)(fuzz::Input&);

} // namespace

// Without the stacks of allocations an input takes half the time; ASAN_OPTIONS=malloc_context_size=30 shows those
// of a find.
const char* __asan_default_options() {
    return "malloc_context_size=0:quarantine_size_mb=1";
}

int LLVMFuzzerInitialize(int*, char***) {
    const fuzz::Target* const pTarget = fuzz::FindTarget(std::getenv("FWLIB_FUZZ"));
    if (!pTarget) {
        std::fputs("FWLIB_FUZZ names no target\n", stderr);
        std::exit(2);
    }
    pRun = pTarget->pRun;
    return 0;
}

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const fuzz::World world;
    fuzz::Input in(data, size);
    pRun(in);
    return 0;
}
