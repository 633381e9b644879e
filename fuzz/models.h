// SPDX-License-Identifier: MIT
// What the formats say, written down a second time and as plainly as can be: what targets compare the library
// with.
#ifndef FWLIB_FUZZ_MODELS_H
#define FWLIB_FUZZ_MODELS_H

#include "support.h"

namespace fuzz {

using Words = std::vector<unsigned int>;

// The words between this processor's byte order and that of the formats, whose lowest byte comes first.
Words InFileOrder(Words words);

// The bytes that a block record's characters hold of so many.
std::string DecodedBlock(const std::string& text, std::size_t count);

// The words of the forward layout, or none when it is not the coding of whole blocks.
Words ExpandedBlocks(const Words& coded);

// What the compressor makes of whole blocks before it looks at the length.
Words CodedBlocks(Words words, bool backward);

// The entries of a configuration file's section, and whether it stands there.
bool ExpectedSection(const std::string& text, const std::string& section, Entries& entries);

// What a pipe file makes when every line succeeds.
struct ExpectedPipe {
    explicit ExpectedPipe(const std::string& text);

    bool wellFormed = true; // each line is empty, a comment, or a keyword with as many arguments as it takes
    int elements = 0, connections = 0;
    std::string sink;

private:
    void Line(const std::vector<std::string>& tokens);
};

// The list that a stream makes, and whether it came whole.
bool ExpectedList(const std::string& text, Entries& entries);

// The complete objects that a stream begins with, up to the most, when every type is served.
int WholeObjects(std::string text, int most);

// A decimal number of any length, clamped to 32 bits or to 64.
struct Number {
    explicit Number(const char* text);
    int Signed() const;
    unsigned int Unsigned() const;
    long long Long() const;

    bool negative;
    unsigned long long magnitude = 0; // 2^63 stands for all beyond
};

} // namespace fuzz

#endif
