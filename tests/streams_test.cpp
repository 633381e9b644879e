// SPDX-License-Identifier: MIT
// Streams, what is written to them line by line, their files, and the examples of docs/formats.md, which are what the
// library writes and reads. What any lines are read as, the fuzz targets and the language tests tell.
#include "support/capture.h"
#include "support/support.h"

#include <climits>
#include <gtest/gtest.h>
#include <utility>

using namespace VESK;

namespace {

using Bytes = std::basic_string<unsigned char>;

using Lines = std::vector<std::string>;

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
    MemoryRead reader(Example("objects")), image(Example("block"));
    MemoryWrite objects, records;
    std::string entries;
    while (reader.ReadLine()) {
        QObject object;
        EXPECT_EQ(object.Deserialize(&reader) + object.Serialize(&objects), 2);
        entries += EntriesOf(object.m_cProperties) + "\n";
    }
    EXPECT_EQ(objects.all, Example("objects"));
    EXPECT_EQ(entries, "Standard.QObjectType=QObject Standard.Count=0\n"
                       "Standard.QObjectType=QObject Standard.expr=a=b Standard.note=\n");
    records.Serialize(Text("Width"), 4);
    records.Serialize(Text("Height"), 2);
    const std::string size = records.all;
    records.Serialize(Text("Offset"), INT_MIN);
    records.Serialize(Text("Level"), static_cast<char>(-56));
    records.Serialize(Text("Mask"), UINT_MAX);
    EXPECT_EQ(records.all, Example("records"));
    unsigned char pixels[] = {0, 64, 128, 192, 255, 10, 65, 66}, read[8];
    records.SerializeBlock(Text("Pixels"), pixels, 8);
    EXPECT_EQ(size + records.all.substr(Example("records").size()), Example("block"));
    int width = 0, height = 0;
    EXPECT_EQ(image.Deserialize(&width) + image.Deserialize(&height), 2);
    EXPECT_EQ(image.DeserializeBlock(read, width * height), 1);
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
    unsigned int size = 0;
    unsigned char* second = nullptr;
    ASSERT_EQ(table.SetFilename(Text(scratch.Path("colours").c_str())) + table.GetHeaderSize(&size) +
                  table.GetData(11, 3, 4, &second),
              3);
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(Bytes(second, 4), Bytes({0, 0, 0x40, 0xFF}));
    table.DeleteData(second);
}

TEST(Streams, EachLineIsOneRecordWrittenAtOnce) {
    const std::string value(5000, 'x'), key(400, 'k');
    QObject object;
    Set(object.m_cProperties, "Count", "3");
    Set(object.m_cProperties, "Count", "4", "Camera");
    Set(object.m_cProperties, "long", value);
    Set(object.m_cProperties, "a\nb", "c\nd"); // written as it is: the format has no escape
    MemoryWrite writer;
    EXPECT_EQ(object.Write(&writer) + object.Serialize(&writer) + writer.Serialize(nullptr, 7) +
                  writer.Serialize(Text("n"), static_cast<short>(-1)) +
                  writer.Serialize(Text("n"), static_cast<unsigned short>(65535)) +
                  writer.Serialize(Text("c"), static_cast<unsigned char>(0xC8)) +
                  writer.Serialize(Text(key.c_str()), 1),
              7);
    EXPECT_EQ(writer.pieces, (Lines{"QObject", "\n", "m_b2PropertyCount=5\n", "QObjectType=QObject\n",
                                    "Count=3\n", "Count=4\n", "long=" + value + "\n", "a\nb=c\nd\n", "=7\n",
                                    "n=-1\n", "n=65535\n", "c=200\n", key + "=1\n"}));
}

TEST(Streams, TheWideFormsTakeTheLineOfANullValue) {
    const auto read = [](auto value) {
        MemoryRead reader("k=7\nk=8\n");
        const int none = reader.Deserialize(static_cast<decltype(value)*>(nullptr));
        return none * 100 + reader.Deserialize(&value) * 10 + static_cast<int>(value);
    };
    EXPECT_EQ(read(99) + read(99u), 18 + 18);
    EXPECT_EQ(read(short{9}) + read(Byte2Type{9}) + read('c') + read(static_cast<unsigned char>(9)), 17 * 4);
}

TEST(Files, AWriterFlushesEveryPieceAndAdoptsHandles) {
    const Scratch scratch;
    const std::string path = scratch.Path("out"), other = scratch.Write("other", "what was there before");
    SFileWrite writer(Text(path.c_str()), 0), second(Text(other.c_str()), 1), full(Text("/dev/full"), 0),
        missing(Text(scratch.Path("no/such").c_str()), 0), none;
    char* const own = second.m_pFile;
    second.SetFile(writer.m_pFile);
    EXPECT_EQ(second.WriteData(Text("a\0\n"), 3) + second.WriteData(Text("b"), 0), 3u);
    EXPECT_EQ(FileText(path) + FileText(other), std::string("a\0\n", 3));
    second.SetFile(own); // leaves the other one open
    EXPECT_EQ(writer.WriteData(Text("b"), 1) + second.WriteData(Text("c"), 1), 2u);
    EXPECT_EQ(FileText(path) + FileText(other), std::string("a\0\nbc", 5));
    EXPECT_EQ(full.WriteData(Text("abc"), 3), 3u); // the library's own buffer took it
    EXPECT_EQ(missing.WriteData(Text("abc"), 3) + none.WriteData(Text("abc"), 3), 0u);
}

TEST(Files, StandardStreamsStayOpen) {
    EXPECT_EQ(Told([] {
                  { SFileWrite(nullptr, 0).WriteData(Text("before "), 7); }
                  return std::printf("and after");
              }),
              "9 before and after");
    char given[] = "first\nsecond\nthird";
    std::FILE* const own = std::exchange(stdin, fmemopen(given, sizeof given - 1, "r"));
    { EXPECT_STREQ(SFileRead(nullptr).ReadLine(), "first"); }
    {
        SFileRead reader(nullptr);
        EXPECT_STREQ(reader.ReadLine(), "second");
        EXPECT_EQ(reader.OpenFile(Text("/dev/null")), 1);
        char* const null = reader.m_pFile;
        EXPECT_EQ(reader.SetFile(reinterpret_cast<char*>(stdin)), 1);
        EXPECT_STREQ(reader.ReadLine(), "third");
        EXPECT_EQ(fwfclose(null), 0);
    }
    EXPECT_EQ(std::fclose(std::exchange(stdin, own)), 0);
}

TEST(Files, AReaderGivesLinesAsTheyStandAndMovesFromFileToFile) {
    const Scratch scratch;
    const std::string most(262143, 'x'), less(262142, 'y'),
        missing = scratch.Path("missing"), // in one piece
        text = std::string("a\n\nb\r\n=\nc\0d\n", 12) + less + "\n" + most + "\n" + most + most + "end",
        cut = scratch.Path("").append(300, 'n').substr(0, 255), longer = cut + "nn",
        rest = scratch.Write("rest", "line\nabcdef");
    SFileWrite(Text(longer.c_str()), 1).WriteData(Text(text.data()), static_cast<Byte4Type>(text.size()));
    EXPECT_EQ(FileText(cut), text);
    SFileRead reader;
    const auto descriptor = [&] { return fileno(reinterpret_cast<std::FILE*>(reader.m_pFile)); };
    int first = -1;
    char block[8] = "";
    for (const char* next : {missing.c_str(), static_cast<const char*>(nullptr)}) {
        EXPECT_TRUE(!reader.ReadLine() && reader.ReadBlock(block, 4) == 0);
        EXPECT_EQ(reader.OpenFile(Text(longer.c_str())), 1);
        EXPECT_EQ(reader.m_achFileName, cut);
        first = first < 0 ? descriptor() : first;
        Lines lines;
        while (const char* const line = reader.ReadLine()) {
            lines.emplace_back(line);
        }
        EXPECT_TRUE(lines == (Lines{"a", "", "b\r", "=", "c", less, most, "", most, most, "end"}));
        EXPECT_EQ(reader.OpenFile(Text(rest.c_str())), 1);
        EXPECT_EQ(std::string(reader.m_achFileName, 256), rest + std::string(256 - rest.size(), '\0'));
        EXPECT_EQ(descriptor(), first); // each earlier file was closed
        EXPECT_STREQ(reader.ReadLine(), "line");
        EXPECT_EQ(reader.ReadBlock(block, 4) + reader.ReadBlock(block + 4, 4), 6u);
        EXPECT_STREQ(block, "abcdef");
        EXPECT_EQ(static_cast<int>(reader.GetFileSize()) + reader.OpenFile(Text(next)), 0);
        EXPECT_EQ(reader.m_pFile, nullptr);
    }
}

} // namespace
