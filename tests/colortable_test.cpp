// SPDX-License-Identifier: MIT
#include "support/support.h"

#include <climits>
#include <cstring>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

using Byte = unsigned char;

// The block that GetData hands out, "untouched" or "null" when it hands out none. A size of -1 is the form without.
std::string Data(MFColorTable& table, int offset, int count, int size = -1) {
    Byte untouched, *data = &untouched;
    const int answer =
        size < 0 ? table.GetData(offset, count, &data) : table.GetData(offset, count, size, &data);
    if (!answer) {
        return data == &untouched ? "untouched" : data ? "a block" : "null";
    }
    const std::string text(data, data + (size < 0 ? count : size));
    table.DeleteData(data);
    return text;
}

TEST(ColorTable, BlocksComeFromTheirPlacesInTheFile) {
    const Scratch scratch;
    scratch.Write("colours.lut", std::string("\x10\x32\x54\x76", 4) + "0123456789AB");
    MFColorTable table;
    EXPECT_EQ(table.SetFilename(Text(scratch.Path("colours").c_str())), 1);
    EXPECT_EQ(table.m_achFileName, scratch.Path("colours.lut"));
    const struct {
        int offset, count, size;
        std::string data;
    } cases[] = {{4, 12, -1, "0123456789AB"},
                 {4, 12, 16, std::string(4, '\0') + "0123456789AB"},
                 {14, 2, 2, "AB"},
                 {4, 0, 3, std::string(3, '\0')},
                 {16, 0, -1, ""},
                 {4, 13, -1, "null"},
                 {99, 1, 8, "null"},
                 {4, 12, 8, "untouched"},
                 {4, -1, -1, "null"},
                 {4, -2, 8, "null"},
                 {-1, 1, -1, "untouched"},
                 {INT_MIN, 1, 8, "untouched"}};
    for (const auto& c : cases) {
        EXPECT_EQ(Data(table, c.offset, c.count, c.size), c.data)
            << c.offset << " " << c.count << " " << c.size;
    }
    unsigned int size = 0;
    EXPECT_EQ(table.GetHeaderSize(&size) == 1 && size == 0x76543210, true);
    Byte block[5] = "";
    EXPECT_EQ(table.SetPosition(13) + table.GetBlock(block, 2) + table.GetBlock(block + 2, 0), 3);
    EXPECT_STREQ(reinterpret_cast<char*>(block), "9A");
    EXPECT_EQ(table.GetBlock(block, 2), 0); // one byte is left
    EXPECT_EQ(table.SetPosition(-1) + table.GetBlock(block, -1) + table.GetBlock(nullptr, 1), 0);
    EXPECT_EQ(table.GetHeaderSize(nullptr) + table.GetData(4, 1, nullptr) + table.GetData(4, 1, 1, nullptr),
              0);
    table.DeleteData(nullptr);
}

TEST(ColorTable, TheNameAndTheFileChangeTogether) {
    const Scratch scratch;
    const std::string path = scratch.Path("c");
    scratch.Write("c.lut", std::string("\x00\x01\x00\x00", 4));
    scratch.Write("short.lut", "abc");
    MFColorTable table;
    const auto closed = [&] {
        Byte block[1];
        unsigned int size;
        EXPECT_EQ(table.SetPosition(0) + table.GetBlock(block, 1) + table.GetBlock(block, 0) +
                      table.GetHeaderSize(&size),
                  0);
        EXPECT_EQ(Data(table, 0, 0) + Data(table, 0, 1, 2), "untoucheduntouched");
    };
    closed();
    const auto opens = [&](const std::string& name) { return table.SetFilename(Text(name.c_str())); };
    const int first = dup(0); // the next descriptor
    close(first);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(opens(path), 1);
    }
    EXPECT_EQ(fileno(reinterpret_cast<std::FILE*>(table.m_pFile)), first); // the earlier ones are closed
    unsigned int size = 0;
    EXPECT_EQ(table.GetHeaderSize(&size) == 1 && size == 256, true);
    EXPECT_EQ(opens(scratch.Path("short")), 1);
    EXPECT_EQ(table.GetHeaderSize(&size), 0);
    for (const std::string& name : {path + ".lut", std::string(252, 'n'), std::string(5000, 'n')}) {
        EXPECT_EQ(opens(path), 1);
        EXPECT_EQ(opens(name), 0) << name;
        closed();
    }
    EXPECT_EQ(table.SetFilename(nullptr), 0);
    const std::string longest = std::string(251 - path.size(), '/'); // slashes name the same file
    EXPECT_EQ(opens(path.substr(0, path.size() - 2) + longest + "/c"), 1);
    EXPECT_EQ(std::strlen(table.m_achFileName), 255u);
}

} // namespace
