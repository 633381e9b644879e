// SPDX-License-Identifier: MIT
// The examples of docs/formats.md are what the library writes and reads.
#include "support/fenced.h"
#include "support/support.h"

#include <climits>
#include <gtest/gtest.h>
#include <sstream>

using namespace VESK;

namespace {

// The example between "```text NAME" and "```".
std::string Example(const std::string& name) {
    const std::string text = FileText(FWLIB_TEST_DOCS "/formats.md"), opening = "\n```text " + name + "\n";
    const std::size_t begin = text.find(opening);
    EXPECT_NE(begin, std::string::npos) << name;
    return begin == std::string::npos
               ? ""
               : text.substr(begin + opening.size(), text.find("```\n", begin + 5) - begin - opening.size());
}

std::string Hexadecimal(const Bytes& bytes) {
    std::string text;
    char digits[4];
    for (const unsigned char byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02X ", byte);
        text += digits;
    }
    return text;
}

// The numbers of a text, whatever lies between them.
std::vector<unsigned int> Numbers(const std::string& text, bool hexadecimal) {
    std::istringstream stream(text);
    std::vector<unsigned int> numbers;
    for (unsigned int number; stream >> (hexadecimal ? std::hex : std::dec) >> number;) {
        numbers.push_back(number);
    }
    return numbers;
}

TEST(Formats, ObjectsAndRecordsAreAsShown) {
    MemoryWrite objects, records;
    QObject first, second;
    Set(first.m_cProperties, "Count", "0");
    Set(second.m_cProperties, "expr", "a=b");
    Set(second.m_cProperties, "note", "");
    first.Serialize(&objects);
    second.Serialize(&objects);
    EXPECT_EQ(objects.all, Example("objects"));
    MemoryRead reader(Example("objects"));
    for (const QObject* written : {&first, &second}) {
        QObject read;
        EXPECT_STREQ(reader.ReadLine(), "QObject");
        read.Deserialize(&reader);
        EXPECT_EQ(Entries(read.m_cProperties), Entries(written->m_cProperties));
    }
    records.Serialize(Text("Width"), 4);
    records.Serialize(Text("Height"), 2);
    records.Serialize(Text("Offset"), INT_MIN);
    records.Serialize(Text("Level"), static_cast<char>(-56));
    records.Serialize(Text("Mask"), UINT_MAX);
    EXPECT_EQ(records.all, Example("records"));
}

TEST(Formats, TheImageIsAsShown) {
    unsigned char pixels[] = {0, 64, 128, 192, 255, 10, 65, 66}, read[8];
    MemoryWrite writer;
    writer.Serialize(Text("Width"), 4);
    writer.Serialize(Text("Height"), 2);
    writer.SerializeBlock(Text("Pixels"), pixels, 8);
    EXPECT_EQ(writer.all, Example("block"));
    MemoryRead reader(Example("block"));
    int width = 0, height = 0;
    EXPECT_EQ(reader.Deserialize(&width) + reader.Deserialize(&height), 2);
    EXPECT_EQ(reader.DeserializeBlock(read, width * height), 1);
    EXPECT_EQ(Bytes(read, 8), Bytes(pixels, 8));
}

TEST(Formats, CompressedBlocksAreAsShown) {
    Bytes source;
    for (const unsigned int word : Numbers(Example("source"), false)) {
        for (int shift = 0; shift < 32; shift += 8) {
            source += static_cast<unsigned char>(word >> shift);
        }
    }
    ASSERT_EQ(source.size(), 240u);
    for (const bool backward : {false, true}) {
        const unsigned char flag = backward ? 2 : 0;
        Bytes coded(239, 0), back(240, 0);
        MemoryWrite writer;
        coded.resize(writer.Compress(coded.data(), source.data(), 240, flag));
        Bytes shown;
        for (const unsigned int byte : Numbers(Example(backward ? "backward" : "forward"), true)) {
            shown += static_cast<unsigned char>(byte);
        }
        EXPECT_EQ(Hexadecimal(coded), Hexadecimal(shown));
        const auto size = static_cast<Byte4Type>(shown.size());
        EXPECT_EQ(SRead::Decompress(back.data(), 240, shown.data(), size, flag), 240u);
        EXPECT_EQ(back, source);
    }
}

TEST(Formats, TheColourTableIsReadAsTold) {
    const Scratch scratch;
    std::string bytes;
    for (const unsigned int byte : Numbers(Example("lut"), true)) {
        bytes += static_cast<char>(byte);
    }
    scratch.Write("colours.lut", bytes);
    MFColorTable table;
    EXPECT_EQ(table.SetFilename(Text(scratch.Path("colours").c_str())), 1);
    unsigned int size = 0;
    EXPECT_EQ(table.GetHeaderSize(&size) == 1 && size == 8, true);
    unsigned char *all, *second;
    ASSERT_EQ(table.GetData(8, 6, &all) + table.GetData(11, 3, 4, &second), 2);
    EXPECT_EQ(Hexadecimal(Bytes(all, 6)), "FF 80 00 00 40 FF ");
    EXPECT_EQ(Hexadecimal(Bytes(second, 4)), "00 00 40 FF ");
    table.DeleteData(all);
    table.DeleteData(second);
}

} // namespace
