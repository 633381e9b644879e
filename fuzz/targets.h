// SPDX-License-Identifier: MIT
// The targets: each reads an input as it likes and ends the process when a claim does not hold.
#ifndef FWLIB_FUZZ_TARGETS_H
#define FWLIB_FUZZ_TARGETS_H

#include "support.h"
#include "world.h"

namespace fuzz {

void Blocks(Input& in);     // block records, back and forth
void Compress(Input& in);   // the compressor and its inverse
void Config(Input& in);     // configuration files
void Decompress(Input& in); // any bytes as compressed blocks
void Lut(Input& in);        // colour lookup tables
void Messages(Input& in);   // what is printed of texts from outside
void Numbers(Input& in);    // numbers in lists and texts, back and forth
void Objects(Input& in);    // object streams into a list
void Pipe(Input& in);       // pipe files, with all they name
void Properties(Input& in); // operations of lists and objects
void Records(Input& in);    // typed records, back and forth
void Replay(Input& in);     // object streams through the elements

struct Target {
    const char* name; // that of its file, and of its folder in corpus/
    void (*pRun)(Input&);
};
constexpr Target Targets[] = {{"blocks", Blocks},         {"compress", Compress}, {"config", Config},
                              {"decompress", Decompress}, {"lut", Lut},           {"messages", Messages},
                              {"numbers", Numbers},       {"objects", Objects},   {"pipe", Pipe},
                              {"properties", Properties}, {"records", Records},   {"replay", Replay}};

inline const Target* FindTarget(const char* name) {
    for (const Target& target : Targets) {
        if (name && std::strcmp(name, target.name) == 0) {
            return &target;
        }
    }
    return nullptr;
}

} // namespace fuzz

#endif
