// SPDX-License-Identifier: MIT
// The calls through which the system can fail the library, made to fail or to be the last. The linker hands the
// library's calls to this room; see CMakeLists.txt.
#ifndef FWLIB_TESTS_FAILURES_CALLS_H
#define FWLIB_TESTS_FAILURES_CALLS_H

#include <cstddef>
#include <cstdint>

struct Calls {
    bool watched = false;         // what is taken from now on has to be given back
    int untilFailure = 0;         // 0 while no call is to fail
    bool lasting = false;         // all later ones fail too
    const char* failed = nullptr; // the last that failed
    std::size_t room = SIZE_MAX;  // bytes that the disk takes
    int untilDeath = 0;           // writing calls; 0 while the process is to live
    unsigned int moment = 0;      // 0 before that call, 1 within, 2 behind it
    int stored = 0; // objects for which 1 was returned; a process that dies has 1 more for its status
};
inline Calls now;

inline int held = 0; // blocks, files and shared objects that were taken while watched and are not given back

#endif
