// SPDX-License-Identifier: MIT
// The wrappers, fields in a named byte order, and colour tables.
#include "support/support.h"

#include <climits>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace VESK;

namespace {

TEST(Stdc, SeekAnswersOneAndTakesEveryOtherOriginAsTheEnd) {
    const Scratch scratch;
    char* file = fwfopen(scratch.Write("ten", "0123456789").data(), Text("r"));
    const struct {
        int offset;
        unsigned char origin;
        int answer;
        long position;
    } moves[] = {{4, 0, 1, 4},    {3, 1, 1, 7},  {-2, 1, 1, 5},  {-1, 2, 1, 9}, {-2, 7, 1, 8},
                 {-3, 255, 1, 7}, {-1, 0, 0, 7}, {-99, 1, 0, 7}, {0, 2, 1, 10}};
    for (const auto& move : moves) {
        EXPECT_EQ(fwfseek(file, move.offset, move.origin), move.answer) << move.offset << "," << +move.origin;
        EXPECT_EQ(fwftell(file), move.position) << move.offset << "," << +move.origin;
    }
    EXPECT_EQ(fwfgetc(file), -1);
    EXPECT_NE(fwfeof(file), 0);
    fwfseek(file, 0, 0);
    char buffer[16] = {};
    EXPECT_EQ(fwfread(buffer, 4, 4, file), 2u); // ten bytes hold two whole items of four
    EXPECT_EQ(fwfclose(file), 0);
}

TEST(Stdc, FormattedPrintWritesLongTextsWhole) {
    const Scratch scratch;
    for (const int length : {0, 1, 511, 512, 5000}) {
        char* file = fwfopen(scratch.Path("f").data(), Text("w"));
        EXPECT_EQ(fwfprintf(file, "%*s", length, ""), length);
        fwfclose(file);
        EXPECT_EQ(FileText(scratch.Path("f")), std::string(static_cast<std::size_t>(length), ' '));
    }
}

TEST(Stdc, FilesBeyondTwoGiBOpenAndGrow) {
    constexpr std::uintmax_t ThreeGiB = std::uintmax_t{3} << 30;
    const Scratch scratch;
    const std::string path = scratch.Write("big", "[Standard]\nbig=1\n[end]\n");
    std::filesystem::resize_file(path, ThreeGiB);
    PROPERTIES list;
    EXPECT_EQ(list.ReadConfig(Text(path.c_str()), Section::Standard), 1);
    char* file = fwfopen(Text(path.c_str()), Text("r+"));
    EXPECT_EQ(fwfseek(file, 0, 2), 1);
    EXPECT_EQ(fwftell(file), sizeof(long) == 8 ? static_cast<long>(ThreeGiB) : -1);
    EXPECT_GE(fwfputs(Text("tail"), file), 0);
    EXPECT_EQ(fwfclose(file), 0);
    EXPECT_EQ(std::filesystem::file_size(path), ThreeGiB + 4);
}

TEST(Stdc, MemoryAndTextsChangeInPlace) {
    EXPECT_EQ(fwrealloc(nullptr, 0, 16), 0);
    void* block = nullptr;
    ASSERT_EQ(fwrealloc(&block, 99, 16), 1);
    fwmemcpy(block, Text("0123456789abcdef"), 16);
    for (const unsigned int size : {32u, 32u, 8u}) { // grown, of the same size, shrunk
        void* const before = block;
        ASSERT_EQ(fwrealloc(&block, 16, size), 1);
        EXPECT_NE(block, before);
        EXPECT_EQ(std::string(static_cast<char*>(block), size < 16 ? size : 16),
                  std::string("0123456789abcdef").substr(0, size));
    }
    fwfree(block);
    EXPECT_TRUE(fwstricmp("Standard", "STANDARD") == 0 && fwstrcmp("Standard", "STANDARD") != 0);
    char mixed[] = "aB3-z", buffer[8] = "#######";
    EXPECT_STREQ(fwstrupr(mixed), "AB3-Z");
    EXPECT_STREQ(fwstrncpy(buffer, Text("abc"), 3), "abc####"); // as long as the count: no terminator
    buffer[3] = '\0';
    EXPECT_STREQ(fwstrncat(buffer, Text("wxyz"), 2), "abcwx");
    EXPECT_TRUE(fwstrchr(buffer, 'w') == buffer + 3 && fwstrstr(buffer, "cw") == buffer + 2);
    EXPECT_EQ(fwsprintf(buffer, "%d%s", 42, "x"), 3);
    EXPECT_STREQ(buffer, "42x");
    EXPECT_EQ(fwgetclockspersec(), 1000000);
}

TEST(StdcDeathTest, AssertReportsInEveryBuild) {
    fwassert(0x80000000u);
    EXPECT_EXIT(fwassert(0), testing::KilledBySignal(SIGABRT),
                "source/fwlib/stdc/stdc/fwstdcstring:71: void VESK::fwassert\\(Byte4Type\\): "
                "Assertion .b4Expression. failed\\.\n");
}

// A file in memory, which may take nothing, and whose first reading may fail; it tells the sizes of all that were tried.
struct Device {
    explicit Device(const std::string& text, bool good = true)
        : held(text), works(good), stream(fopencookie(this, "r+", {Read, Write, nullptr, nullptr})) {
        std::setvbuf(stream, nullptr, _IONBF, 0);
    }
    ~Device() { std::fclose(stream); }
    static ssize_t Read(void* cookie, char* buffer, std::size_t size) {
        auto& own = *static_cast<Device*>(cookie);
        own.tried += std::to_string(size);
        if (!own.works || own.held.empty()) {
            *buffer = 'x';
            return own.works ? 0 : own.tried.size() == 1 ? -1 : 1;
        }
        *buffer = own.held[0];
        own.held.erase(0, 1);
        return 1;
    }
    static ssize_t Write(void* cookie, const char* bytes, std::size_t size) {
        auto& own = *static_cast<Device*>(cookie);
        own.tried += std::to_string(size);
        own.held.append(own.works ? bytes : "", own.works ? size : 0);
        return own.works ? static_cast<ssize_t>(size) : 0;
    }
    char* Handle() { return reinterpret_cast<char*>(stream); }

    std::string held, tried;
    bool works;
    std::FILE* stream;
};

template <class Value>
void Check(Value value, std::string bytes, bool little, void (*copyIn)(void*, Value*),
           void (*copyOut)(Value*, void*), int (*write)(char*, Value&), int (*read)(char*, Value&)) {
    bytes = little ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
    char memory[sizeof(Value) + 2] = {'<'}; // the field at an odd address
    Value given = value, other = 0;
    copyIn(memory + 1, &given);
    memory[sizeof memory - 1] = '>';
    EXPECT_EQ(std::string(memory, sizeof memory), "<" + bytes + ">");
    copyOut(&other, memory + 1);
    EXPECT_EQ(other, value);
    Device file(""), stored(bytes), cut(bytes.substr(1)), full("", false), broken("", false);
    EXPECT_EQ(write(file.Handle(), given), 1);
    EXPECT_EQ(file.held, bytes);
    EXPECT_EQ(read(stored.Handle(), other = 0), 1);
    EXPECT_EQ(other, value);
    EXPECT_EQ(read(cut.Handle(), other) + write(full.Handle(), other) + read(broken.Handle(), other), 0);
    EXPECT_EQ(other, value); // left alone
    EXPECT_EQ(full.tried, little ? std::string(sizeof(Value), '1') : std::to_string(sizeof(Value)));
    EXPECT_EQ(broken.tried.size(), little ? sizeof(Value) : 1u); // little-endian forms try every byte
}

TEST(ByteOrder, FieldsHaveTheirBytesInOrderInMemoryAndInFiles) {
    for (const auto& [value, bytes] : {std::pair<unsigned int, std::string>{0x12345678, "\x12\x34\x56\x78"},
                                       {0x80000000, std::string("\x80\0\0\0", 4)},
                                       {UINT_MAX, "\xFF\xFF\xFF\xFF"}}) {
        const auto half = static_cast<unsigned short>(value >> 16);
        const std::string two = bytes.substr(0, 2);
        Check(half, two, true, CopyByte2TypeToMemoryInLittleEndian, CopyLittleEndianInMemoryToByte2Type,
              WriteByte2TypeLittleEndian, ReadByte2TypeLittleEndian);
        Check(half, two, false, CopyByte2TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte2Type,
              WriteByte2TypeBigEndian, ReadByte2TypeBigEndian);
        Check(half, two, false, CopyByte2TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte2Type,
              WriteByte2Type, ReadByte2Type);
        Check(value, bytes, true, CopyByte4TypeToMemoryInLittleEndian, CopyLittleEndianInMemoryToByte4Type,
              WriteByte4TypeLittleEndian, ReadByte4TypeLittleEndian);
        Check(value, bytes, false, CopyByte4TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte4Type,
              WriteByte4TypeBigEndian, ReadByte4TypeBigEndian);
        Check(value, bytes, false, CopyByte4TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte4Type,
              WriteByte4Type, ReadByte4Type);
    }
    unsigned char bytes[10] = {}, byte = 7;
    Device file("abcd"), copy("");
    EXPECT_EQ(ReadByteArray(file.Handle(), bytes, 10) + ReadByteType(file.Handle(), byte), 0);
    EXPECT_EQ(std::string(bytes, bytes + 5), std::string("abcd\0", 5));
    EXPECT_EQ(WriteByteArray(copy.Handle(), bytes, 4) + WriteByteType(copy.Handle(), byte), 2);
    EXPECT_EQ(copy.held, "abcd\x07");
    EXPECT_EQ(ReadByteArray(copy.Handle(), bytes + 5, 5), 1);
    EXPECT_EQ(std::string(bytes + 5, bytes + 10), "abcd\x07");
    EXPECT_EQ(ReadByteArray(file.Handle(), bytes, 0) + WriteByteArray(copy.Handle(), bytes, 0), 2);
}

// The block that GetData hands out, "untouched" or "null" when it hands out none. A size of -1 is the form without.
std::string Data(MFColorTable& table, int offset, int count, int size = -1) {
    unsigned char untouched, *data = &untouched;
    const int answer =
        size < 0 ? table.GetData(offset, count, &data) : table.GetData(offset, count, size, &data);
    const auto length = static_cast<std::size_t>(size < 0 ? count : size);
    const std::string text = answer ? std::string(data, data + length) : data ? "untouched" : "null";
    answer ? table.DeleteData(data) : void();
    return text;
}

TEST(ColorTable, BlocksComeFromTheirPlacesInTheFile) {
    const Scratch scratch;
    scratch.Write("colours.lut", std::string("\x10\x32\x54\x76", 4) + "0123456789AB");
    scratch.Write("short.lut", "abc");
    const std::string path = scratch.Path("colours");
    MFColorTable table;
    const auto opens = [&](const std::string& name) { return table.SetFilename(Text(name.c_str())); };
    unsigned char block[5] = "";
    unsigned int size = 0;
    const int free = dup(0); // the next descriptor
    close(free);
    EXPECT_EQ(opens(path) + opens(path), 2);
    EXPECT_EQ(fileno(reinterpret_cast<std::FILE*>(table.m_pFile)), free); // the file before is closed
    EXPECT_EQ(table.m_achFileName, path + ".lut");
    const struct {
        int offset, count, size;
        std::string data;
    } cases[] = {{4, 12, -1, "0123456789AB"},
                 {14, 2, 4, std::string("\0\0AB", 4)},
                 {14, 2, 2, "AB"},
                 {16, 0, -1, ""},
                 {4, 13, -1, "null"},
                 {99, 1, 8, "null"},
                 {4, 12, 8, "untouched"},
                 {4, -1, -1, "null"},
                 {4, -2, 8, "null"},
                 {-1, 1, -1, "untouched"}};
    for (const auto& c : cases) {
        EXPECT_EQ(Data(table, c.offset, c.count, c.size), c.data)
            << c.offset << " " << c.count << " " << c.size;
    }
    EXPECT_EQ(table.GetHeaderSize(&size) == 1 && size == 0x76543210, true);
    EXPECT_EQ(table.SetPosition(13) + table.GetBlock(block, 2) + table.GetBlock(block + 2, 0), 3);
    EXPECT_STREQ(reinterpret_cast<char*>(block), "9A");
    EXPECT_EQ(table.GetBlock(block, 2) + table.SetPosition(-1) + table.GetBlock(block, -1) +
                  table.GetBlock(nullptr, 1) + table.GetHeaderSize(nullptr) + table.GetData(4, 1, nullptr) +
                  table.GetData(4, 1, 1, nullptr),
              0);
    const std::string longest =
        path.substr(0, path.rfind('/')) + std::string(251 - path.size(), '/') + "/colours";
    EXPECT_EQ(opens(scratch.Path("short")) - table.GetHeaderSize(&size) + opens(longest), 2);
    for (const std::string& name :
         {path + ".lut", std::string(252, 'n'), std::string(5000, 'n'), std::string()}) {
        EXPECT_EQ(name.empty() ? table.SetFilename(nullptr) : opens(name), 0) << name;
        EXPECT_EQ(table.SetPosition(0) + table.GetBlock(block, 0) + table.GetHeaderSize(&size), 0);
        EXPECT_EQ(Data(table, 0, 0) + Data(table, 0, 1, 2), "untoucheduntouched");
        EXPECT_EQ(opens(path), 1);
    }
}

} // namespace
