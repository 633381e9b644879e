// SPDX-License-Identifier: MIT
// The world of one input: while it stands, the library opens files of memory only, loads nothing but itself,
// prints into a text and reads nothing from standard input. The linker leads fopen and dlopen here
// (CMakeLists.txt).
#ifndef FWLIB_FUZZ_WORLD_H
#define FWLIB_FUZZ_WORLD_H

#include <cstdio>
#include <map>
#include <string>

namespace fuzz {

class World {
public:
    World();
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;
};

// The files by name. One that is missing cannot be opened for reading.
extern std::map<std::string, std::string> files;

std::FILE* OpenFile(const std::string& name, const char* mode);

// What was printed so far on both standard streams, in its order.
const std::string& Printed();

} // namespace fuzz

#endif
