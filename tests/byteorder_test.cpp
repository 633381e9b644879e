// SPDX-License-Identifier: MIT
#include "support/support.h"

#include <cstdio>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

template <class Value>
struct Forms {
    void (*copyIn)(void*, Value*);
    void (*copyOut)(Value*, void*);
    int (*write)(char*, Value&);
    int (*read)(char*, Value&);
    bool little;
};

const Forms<unsigned short> Twos[] = {{CopyByte2TypeToMemoryInLittleEndian,
                                       CopyLittleEndianInMemoryToByte2Type, WriteByte2TypeLittleEndian,
                                       ReadByte2TypeLittleEndian, true},
                                      {CopyByte2TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte2Type,
                                       WriteByte2TypeBigEndian, ReadByte2TypeBigEndian, false},
                                      {CopyByte2TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte2Type,
                                       WriteByte2Type, ReadByte2Type, false}};
const Forms<unsigned int> Fours[] = {{CopyByte4TypeToMemoryInLittleEndian,
                                      CopyLittleEndianInMemoryToByte4Type, WriteByte4TypeLittleEndian,
                                      ReadByte4TypeLittleEndian, true},
                                     {CopyByte4TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte4Type,
                                      WriteByte4TypeBigEndian, ReadByte4TypeBigEndian, false},
                                     {CopyByte4TypeToMemoryInBigEndian, CopyBigEndianInMemoryToByte4Type,
                                      WriteByte4Type, ReadByte4Type, false}};

struct File {
    explicit File(const char* mode, const std::string& text = "") : stream(std::tmpfile()) {
        std::fwrite(text.data(), 1, text.size(), stream);
        std::rewind(stream);
        if (*mode == 'u') { // unbuffered, on a device that takes nothing
            std::fclose(stream);
            stream = std::fopen("/dev/full", "w");
            std::setvbuf(stream, nullptr, _IONBF, 0);
        }
    }
    ~File() { std::fclose(stream); }
    char* Handle() { return reinterpret_cast<char*>(stream); }
    std::FILE* stream;
};

template <class Value, std::size_t Count>
void Check(const Forms<Value> (&all)[Count], std::initializer_list<Value> values, const std::string& big) {
    for (const auto& forms : all) {
        const std::string bytes = forms.little ? std::string(big.rbegin(), big.rend()) : big;
        for (const Value value : values) {
            char memory[sizeof(Value) + 2] = {'<'}; // the field at an odd address
            Value given = value, read = 0, copied = 0;
            forms.copyIn(memory + 1, &given);
            memory[sizeof memory - 1] = '>';
            forms.copyOut(&copied, memory + 1);
            File file("w");
            EXPECT_EQ(forms.write(file.Handle(), given), 1);
            std::rewind(file.stream);
            EXPECT_EQ(forms.read(file.Handle(), read), 1);
            EXPECT_EQ(given, value);
            EXPECT_EQ(copied, value);
            EXPECT_EQ(read, value);
            if (value == *values.begin()) {
                EXPECT_EQ(std::string(memory, sizeof memory), "<" + bytes + ">");
                File stored("r", bytes);
                EXPECT_EQ(forms.read(stored.Handle(), read) && read == value, true);
            }
        }
        Value kept = 0x0A0B;
        File shortened("r", bytes.substr(1)), full("unbuffered");
        EXPECT_EQ(forms.read(shortened.Handle(), kept), 0);
        EXPECT_EQ(kept, 0x0A0B); // left alone
        EXPECT_EQ(std::ftell(shortened.stream), static_cast<long>(sizeof(Value) - 1));
        EXPECT_EQ(forms.write(full.Handle(), kept), 0);
    }
}

TEST(ByteOrder, FieldsHaveTheirBytesInOrderInMemoryAndInFiles) {
    Check<unsigned short>(Twos, {43981, 0, 1, 32768, 65535}, "\xAB\xCD");
    Check<unsigned int>(Fours, {305419896, 0, 1, 2147483648u, 4294967295u}, "\x12\x34\x56\x78");
}

// A device that takes nothing, and whose first reading fails; it tells the sizes of all that were tried.
struct Device {
    Device() : stream(fopencookie(this, "r+", {Read, Write, nullptr, nullptr})) {
        std::setvbuf(stream, nullptr, _IONBF, 0);
    }
    ~Device() { std::fclose(stream); }
    static ssize_t Read(void* cookie, char* buffer, std::size_t) {
        *buffer = 'x';
        Write(cookie, buffer, 1);
        return static_cast<Device*>(cookie)->tried.size() == 1 ? -1 : 1;
    }
    static ssize_t Write(void* cookie, const char*, std::size_t size) {
        static_cast<Device*>(cookie)->tried += std::to_string(size);
        return 0;
    }
    std::string tried;
    std::FILE* stream;
};

TEST(ByteOrder, LittleEndianFormsTryEveryByteAndBigEndianOnesTheFieldAtOnce) {
    for (const auto& forms : Fours) {
        Device read, written;
        unsigned int value = 5;
        EXPECT_EQ(forms.write(reinterpret_cast<char*>(written.stream), value), 0);
        EXPECT_EQ(written.tried, forms.little ? "1111" : "4");
        EXPECT_EQ(forms.read(reinterpret_cast<char*>(read.stream), value), 0);
        EXPECT_EQ(read.tried, forms.little ? "1111" : "1");
        EXPECT_EQ(value, 5u);
    }
}

TEST(ByteOrder, ArraysAndBytesAreAllOrNothing) {
    unsigned char bytes[10] = {}, byte = 7;
    File file("r", "abcd"), copy("w");
    EXPECT_EQ(ReadByteArray(file.Handle(), bytes, 10), 0);
    EXPECT_EQ(std::string(bytes, bytes + 5), std::string("abcd\0", 5));
    EXPECT_EQ(ReadByteType(file.Handle(), byte), 0);
    EXPECT_EQ(byte, 7);
    EXPECT_EQ(WriteByteArray(copy.Handle(), bytes, 4) + WriteByteType(copy.Handle(), byte), 2);
    std::rewind(copy.stream);
    EXPECT_EQ(ReadByteArray(copy.Handle(), bytes + 5, 5), 1);
    EXPECT_EQ(std::string(bytes + 5, bytes + 10), "abcd\x07");
    EXPECT_EQ(ReadByteArray(file.Handle(), bytes, 0) + WriteByteArray(copy.Handle(), bytes, 0), 2);
}

} // namespace
