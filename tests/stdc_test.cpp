// SPDX-License-Identifier: MIT
// The wrappers, fields in a named byte order, and colour tables.
#include "support/capture.h"
#include "support/support.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

TEST(Stdc, FilesBeyondTwoGiBArePrintedToReadAndSought) {
    constexpr std::uintmax_t ThreeGiB = std::uintmax_t{3} << 30;
    const Scratch scratch;
    std::string path = scratch.Write("big", "0123456789"), read(12000, '\0');
    std::filesystem::resize_file(path, ThreeGiB);
    char* const file = fwfopen(path.data(), Text("r+"));
    EXPECT_EQ(fwfseek(file, 0, 2), 1);
    EXPECT_EQ(fwftell(file), sizeof(long) == 8 ? static_cast<long>(ThreeGiB) : -1);
    for (const int length : {0, 511, 512, 5000}) { // long texts come whole
        EXPECT_EQ(fwfprintf(file, "%*s", length, ""), length);
    }
    EXPECT_EQ(fwfprintf(file, "x%ls", L"\x20AC"), -1); // no text in the locale that programs begin with
    EXPECT_EQ(fwfseek(file, -6023, 1), 1);
    EXPECT_EQ(fwfread(read.data(), 2, 6000, file), 3011u); // whole items
    EXPECT_EQ(read.substr(0, 6024), std::string(6023, ' ') + '\0');
    EXPECT_TRUE(fwfgetc(file) == -1 && fwfeof(file));
    EXPECT_GE(fwfputs(Text("ab\xC8"), file), 0);
    constexpr int moves[][4] = {{2, 0, 1, '2'},  {-1, 0, 0, '3'}, {3, 1, 1, '7'},
                                {-1, 2, 1, -56}, {-2, 7, 1, 'b'}, {-3, 255, 1, 'a'}};
    for (const auto& [offset, origin, answer, next] : moves) {
        EXPECT_EQ(fwfseek(file, offset, static_cast<unsigned char>(origin)), answer) << origin;
        EXPECT_EQ(fwfgetc(file), next) << origin;
    }
    EXPECT_EQ(fwfclose(file), 0);
}

TEST(Stdc, MemoryMovesAndTextsChangeInPlace) {
    void* block = nullptr;
    ASSERT_EQ(fwrealloc(&block, 99, 16) - fwrealloc(nullptr, 0, 16), 1);
    fwmemcpy(block, Text("0123456789abcdef"), 16);
    for (const unsigned int size : {32u, 32u, 8u}) { // grown, of the same size, shrunk
        void* const before = block;
        ASSERT_EQ(fwrealloc(&block, 16, size), 1);
        EXPECT_NE(block, before);
        EXPECT_EQ(std::memcmp(block, "0123456789abcdef", size < 16 ? size : 16), 0);
    }
    fwfree(block);
    EXPECT_TRUE(fwstricmp("Standard", "STANDARD") == 0 && fwstrcmp("Standard", "STANDARD") != 0);
    char buffer[] = "#######";
    EXPECT_STREQ(fwstrncpy(buffer, Text("aB3-z"), 3), "aB3####"); // as long as the count: no terminator
    buffer[3] = '\0';
    EXPECT_STREQ(fwstrupr(fwstrncat(buffer, Text("-zxy"), 2)), "AB3-Z");
    EXPECT_TRUE(fwstrchr(buffer, '-') == buffer + 3 && fwstrstr(buffer, "3-") == buffer + 2);
    EXPECT_EQ(fwsprintf(buffer, "%d%s", 42, "x"), 3);
    EXPECT_STREQ(buffer, "42x");
    errno = 0;
    EXPECT_TRUE(fwstrtoul("7", nullptr, 1) == 0 && errno == EINVAL); // the platform's error stays
    const long before = std::clock(), told = fwclock();
    EXPECT_TRUE(before <= told && told <= std::clock() && fwgetclockspersec() == CLOCKS_PER_SEC);
}

TEST(Stdc, FormatsOfCallersMeanWhatThePlatformMakesOfThem) {
    char lone[] = "%2$d\n", counting[] = "abc%n\n", buffer[16];
    FRAMEWORK framework;
    Probe element("e");
    element.m_pFramework = &framework;
    int counts[4] = {};
    EXPECT_EQ(fwsprintf(buffer, lone, 5, 6) + fwsprintf(buffer + 2, counting, &counts[0]), 6);
    EXPECT_STREQ(buffer, "6\nabc\n");
    EXPECT_EQ(Told([&] {
                  char* const out = reinterpret_cast<char*>(stdout);
                  element.Message(0, lone, 5, 6);
                  element.Message(0, counting, &counts[1]);
                  element.ErrorMessage(lone, 5, 6);
                  element.ErrorMessage(counting, &counts[2]);
                  return fwfprintf(out, lone, 5, 6) + fwfprintf(out, counting, &counts[3]);
              }),
              "6 [No Element Type] - e: 6\n[No Element Type] - e: abc\n6\nabc\n"
              "! ERROR: [No Element Type] - e: 6\nERROR: [No Element Type] - e: abc\n");
    EXPECT_EQ(counts[0] * 1000 + counts[1] * 100 + counts[2] * 10 + counts[3], 3333);
}

TEST(StdcDeathTest, AssertReportsInEveryBuild) {
    fwassert(0x80000000u);
    // The end is an orderly one, at which a coverage build counts.
    EXPECT_EXIT((std::signal(SIGABRT, std::exit), fwassert(0)), testing::ExitedWithCode(SIGABRT),
                "source/fwlib/stdc/stdc/fwstdcstring:71: void VESK::fwassert\\(Byte4Type\\): "
                "Assertion .b4Expression. failed\\.\n");
}

// The field at an odd address, in a file, in one that is a byte too short, and on a device that transfers nothing.
template <class Value>
void Check(const std::string& bytes, void (*copyIn)(void*, Value*), void (*copyOut)(Value*, void*),
           int (*write)(char*, Value&), int (*read)(char*, Value&)) {
    Value given = static_cast<Value>(0x89ABCDEF >> (32 - 8 * sizeof(Value))), other = 0;
    std::string memory(sizeof(Value) + 2, '-');
    copyIn(&memory[1], &given);
    EXPECT_EQ(memory, "-" + bytes + "-");
    copyOut(&other, &memory[1]);
    EXPECT_EQ(other, given);
    std::size_t tries = 0;
    const auto get = [](void* count, char*, std::size_t) {
        return ++*static_cast<std::size_t*>(count), ssize_t{-1};
    };
    const auto put = [](void* count, const char*, std::size_t) {
        return ++*static_cast<std::size_t*>(count), ssize_t{0};
    };
    std::FILE* const files[] = {fmemopen(memory.data(), sizeof given, "r+"),
                                fmemopen(memory.data(), sizeof given - 1, "r+"),
                                fopencookie(&tries, "r+", {get, put, nullptr, nullptr})};
    for (std::FILE* const stream : files) {
        char* const file = reinterpret_cast<char*>(stream);
        std::setvbuf(stream, nullptr, _IONBF, 0);
        EXPECT_EQ(write(file, given), stream == files[0]);
        std::rewind(stream);
        EXPECT_EQ(read(file, other = 7), stream == files[0]);
        EXPECT_EQ(other, stream == files[0] ? given : 7); // else left alone
        std::fclose(stream);
    }
    EXPECT_EQ(memory.substr(0, sizeof given), bytes);
    EXPECT_EQ(tries, bytes.back() == '\x89' ? 2 * sizeof given : 2); // in little-endian order for each byte
}

TEST(ByteOrder, FieldsHaveTheirBytesInOrderInMemoryAndInFiles) {
    Check("\xAB\x89", CopyByte2TypeToMemoryInLittleEndian, CopyLittleEndianInMemoryToByte2Type,
          WriteByte2TypeLittleEndian, ReadByte2TypeLittleEndian);
    Check("\x89\xAB", CopyByte2TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte2Type, WriteByte2Type,
          ReadByte2Type);
    Check("\xEF\xCD\xAB\x89", CopyByte4TypeToMemoryInLittleEndian, CopyLittleEndianInMemoryToByte4Type,
          WriteByte4TypeLittleEndian, ReadByte4TypeLittleEndian);
    Check("\x89\xAB\xCD\xEF", CopyByte4TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte4Type,
          WriteByte4Type, ReadByte4Type);
}

TEST(ColorTable, OpensByNameAndRefusesWhatThereIsNot) {
    const Scratch scratch;
    scratch.Write("colours.lut", "\x10\x32\x54\x76\x98");
    const std::string path = scratch.Path("colours"), folder = scratch.Path("");
    const std::string longest = folder + std::string(244 - folder.size(), '/') + "colours";
    MFColorTable table;
    for (const std::string& name : {path + ".lut", "/" + longest, std::string(5000, 'n'), std::string()}) {
        unsigned int size = 0;
        unsigned char byte = 0, *data = &byte;
        EXPECT_EQ(table.SetPosition(0) + table.GetBlock(data, 0) + table.GetData(0, 0, &data), 0);
        EXPECT_EQ(table.SetFilename(Text(path.c_str())) + table.SetFilename(Text(longest.c_str())), 2);
        EXPECT_EQ(table.m_achFileName, longest + ".lut");
        std::FILE* const stream = reinterpret_cast<std::FILE*>(table.m_pFile);
        static const int descriptor = fileno(stream);
        EXPECT_EQ(fileno(stream), descriptor); // the files before are closed
        EXPECT_TRUE(table.GetHeaderSize(&size) && table.GetBlock(data, 1) && byte == 0x98);
        EXPECT_EQ(table.GetBlock(data, -1) + table.GetBlock(nullptr, 1) + table.GetData(4, 1, nullptr), 0);
        EXPECT_EQ(table.GetBlock(data, 0) + table.GetBlock(nullptr, 0), 2);
        EXPECT_EQ(table.GetHeaderSize(nullptr), 0);
        EXPECT_EQ(table.SetFilename(name.empty() ? nullptr : Text(name.c_str())), 0) << name;
    }
}

} // namespace
