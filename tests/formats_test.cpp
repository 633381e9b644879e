// SPDX-License-Identifier: MIT
// The examples of docs/formats.md are what the library writes and reads.
#include "support/support.h"

#include <climits>
#include <gtest/gtest.h>
#include <sstream>

using namespace VESK;

namespace {

using Bytes = std::basic_string<unsigned char>;

// The example between "```text NAME" and "```".
std::string Example(const std::string& name) {
    const std::string text = FileText(FWLIB_TEST_DOCS "/formats.md"), opening = "\n```text " + name + "\n";
    const std::size_t begin = text.find(opening) + opening.size();
    EXPECT_GE(begin, opening.size()) << name;
    return text.substr(begin, text.find("```\n", begin) - begin);
}

// The numbers of an example, whatever lies between them, in so many bytes each.
Bytes Numbers(const std::string& name, int size) {
    std::istringstream stream(Example(name));
    Bytes bytes;
    for (unsigned int number; stream >> (size == 1 ? std::hex : std::dec) >> number;) {
        for (int shift = 0; shift < size * 8; shift += 8) {
            bytes += static_cast<unsigned char>(number >> shift);
        }
    }
    return bytes;
}

TEST(Formats, ObjectsAndRecordsAreAsShown) {
    MemoryWrite objects, records, image;
    MemoryRead reader(Example("objects")), imageReader(Example("block"));
    QObject first, second;
    Set(first.m_cProperties, "Count", "0");
    Set(second.m_cProperties, "expr", "a=b");
    Set(second.m_cProperties, "note", "");
    for (QObject* object : {&first, &second}) {
        QObject read;
        object->Serialize(&objects);
        EXPECT_STREQ(reader.ReadLine(), "QObject");
        read.Deserialize(&reader);
        EXPECT_EQ(Entries(read.m_cProperties), Entries(object->m_cProperties));
    }
    EXPECT_EQ(objects.all, Example("objects"));
    records.Serialize(Text("Width"), 4);
    records.Serialize(Text("Height"), 2);
    records.Serialize(Text("Offset"), INT_MIN);
    records.Serialize(Text("Level"), static_cast<char>(-56));
    records.Serialize(Text("Mask"), UINT_MAX);
    EXPECT_EQ(records.all, Example("records"));
    unsigned char pixels[] = {0, 64, 128, 192, 255, 10, 65, 66}, read[8];
    image.Serialize(Text("Width"), 4);
    image.Serialize(Text("Height"), 2);
    image.SerializeBlock(Text("Pixels"), pixels, 8);
    EXPECT_EQ(image.all, Example("block"));
    int width = 0, height = 0;
    EXPECT_EQ(imageReader.Deserialize(&width) + imageReader.Deserialize(&height), 2);
    EXPECT_EQ(imageReader.DeserializeBlock(read, width * height), 1);
    EXPECT_EQ(Bytes(read, 8), Bytes(pixels, 8));
}

TEST(Formats, CompressedBlocksAreAsShown) {
    Bytes source = Numbers("source", 4), back(240, 0);
    ASSERT_EQ(source.size(), 240u);
    for (const unsigned int layout : {0u, 2u}) {
        const auto flag = static_cast<unsigned char>(layout);
        Bytes coded(239, 0), shown = Numbers(flag ? "backward" : "forward", 1);
        coded.resize(MemoryWrite().Compress(coded.data(), source.data(), 240, flag));
        EXPECT_EQ(coded, shown);
        const auto size = static_cast<Byte4Type>(shown.size());
        EXPECT_EQ(SRead::Decompress(back.data(), 240, shown.data(), size, flag), 240u);
        EXPECT_EQ(back, source);
    }
}

TEST(Formats, TheColourTableIsReadAsTold) {
    const Scratch scratch;
    const Bytes bytes = Numbers("lut", 1);
    scratch.Write("colours.lut", std::string(bytes.begin(), bytes.end()));
    MFColorTable table;
    EXPECT_EQ(table.SetFilename(Text(scratch.Path("colours").c_str())), 1);
    unsigned int size = 0;
    EXPECT_TRUE(table.GetHeaderSize(&size) == 1 && size == 8);
    unsigned char *all, *second;
    ASSERT_EQ(table.GetData(8, 6, &all) + table.GetData(11, 3, 4, &second), 2);
    EXPECT_EQ(Bytes(all, 6), Bytes({0xFF, 0x80, 0, 0, 0x40, 0xFF}));
    EXPECT_EQ(Bytes(second, 4), Bytes({0, 0, 0x40, 0xFF}));
    table.DeleteData(all);
    table.DeleteData(second);
}

} // namespace
