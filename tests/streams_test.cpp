// SPDX-License-Identifier: MIT
// Records, objects and lists in streams, and streams in files.
#include "support/capture.h"
#include "support/support.h"

#include <climits>
#include <fcntl.h>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

TEST(Streams, EveryTypeIsWrittenAsOneDecimalRecord) {
    MemoryWrite writer;
    const std::string key(400, 'k');
    EXPECT_EQ(writer.Serialize(Text("i"), INT_MIN) + writer.Serialize(Text(""), 7) +
                  writer.Serialize(nullptr, 7) + writer.Serialize(Text("n"), static_cast<short>(-1)) +
                  writer.Serialize(Text("n"), static_cast<unsigned short>(65535)) +
                  writer.Serialize(Text("c"), static_cast<char>(0xC8)) +
                  writer.Serialize(Text("c"), static_cast<unsigned char>(0xC8)) +
                  writer.Serialize(Text("u"), UINT_MAX) + writer.Serialize(Text(key.c_str()), 1),
              9);
    EXPECT_EQ(writer.pieces.size(), 9u);
    EXPECT_EQ(writer.all,
              "i=-2147483648\n=7\n=7\nn=-1\nn=65535\nc=-56\nc=200\nu=4294967295\n" + key + "=1\n");
}

TEST(Streams, LinesWithoutASignLeaveTheValueAlone) {
    const auto read = [](auto value) {
        MemoryRead reader("abc\n\nk=7\nk=8\n");
        int answers = reader.Deserialize(&value) + reader.Deserialize(&value);
        EXPECT_EQ(std::to_string(value), "99");
        answers += reader.Deserialize(static_cast<decltype(value)*>(nullptr)); // the wide forms take the line
        EXPECT_EQ(answers, 0);
        answers = reader.Deserialize(&value);
        return std::to_string(answers) + std::to_string(value);
    };
    EXPECT_EQ(read(99) + read(99u), "1818");
    EXPECT_EQ(read(short{99}) + read(Byte2Type{99}) + read('c') + read(static_cast<unsigned char>(99)),
              "17171717");
}

TEST(Streams, AnObjectIsItsTypeAndItsList) {
    const std::string value(5000, 'x'), type(40, 'T');
    QObject object;
    object.m_cProperties.SetProperty(Key::Count, 3, Section::Standard);
    Set(object.m_cProperties, "Count", "4", "Camera");
    Set(object.m_cProperties, "expr", "a=b");
    Set(object.m_cProperties, "long", value);
    MemoryWrite writer, cut;
    EXPECT_EQ(object.Write(&writer), 1);
    EXPECT_EQ(writer.all, "");
    EXPECT_EQ(object.Serialize(&writer), 1);
    const std::string lines = "QObjectType=QObject\nCount=3\nCount=4\nexpr=a=b\nlong=" + value + "\n";
    EXPECT_EQ(writer.all, "QObject\nm_b2PropertyCount=5\n" + lines);
    EXPECT_EQ(writer.pieces.back(), "long=" + value + "\n");
    MemoryRead reader(writer.all);
    EXPECT_STREQ(reader.ReadLine(), "QObject");
    QEOF read;
    Set(read.m_cProperties, "kept", "1");
    EXPECT_EQ(read.Deserialize(&reader), 1);
    EXPECT_EQ(Entries(read.m_cProperties), "Standard.QObjectType=QObject Standard.kept=1 Standard.Count=4 "
                                           "Standard.expr=a=b Standard.long=" +
                                               value);
    object.m_cProperties.Reset();
    object.Serialize(&cut);
    Set(object.m_cProperties, "QObjectType", type);
    Set(object.m_cProperties, "a\nb", "c\nd"); // written as it is: the format has no escape
    object.Serialize(&cut);
    EXPECT_EQ(cut.all, "\nm_b2PropertyCount=0\n" + type.substr(9) +
                           "\nm_b2PropertyCount=2\nQObjectType=" + type + "\na\nb=c\nd\n");
}

TEST(Streams, ABrokenListKeepsWhatArrived) {
    const struct {
        const char* text;
        int answer;
        const char* entries;
    } readings[] = {{"Anything=2\nA=1\nB=2\nC=3", 1, "Standard.A=1 Standard.B=2"},
                    {"m_b2PropertyCount=2\nA=1\n", 0, "Standard.A=1"},
                    {"n=3\nA=1\nno sign\nC=3\n", 0, "Standard.A=1"},
                    {"n=3\nA=1\n\nC=3\n", 0, "Standard.A=1"},
                    {"n=65537\nA=1\nB=2\n", 1, "Standard.A=1"}, // the low 16 bits
                    {"n=x\nA=1\n", 1, ""},
                    {"no sign\nA=1", 0, ""},
                    {"", 0, ""}};
    for (const auto& reading : readings) {
        MemoryRead reader(reading.text), again(reading.text);
        PROPERTIES list;
        EXPECT_EQ(list.Deserialize(&reader), reading.answer) << reading.text;
        EXPECT_EQ(Entries(list), reading.entries);
        QObject object;
        EXPECT_EQ(object.Deserialize(&again), 1); // tells nothing
    }
}

// Keys of every length, many alike at both ends, among them ones that come again: each is held once, where it first
// stood, with its last value.
TEST(Streams, ALongListIsMergedByItsKeys) {
    PROPERTIES list, model;
    for (PROPERTIES* each : {&list, &model}) {
        Set(*each, "first", "old");
        Set(*each, "key.17.yek", "old", "Camera");
    }
    std::string text = "n=6000\n";
    for (int i = 0; i < 6000; ++i) {
        const std::string key = i % 3 == 0 ? "first" : "key." + std::to_string(i * 7 % 2500) + ".yek";
        text += key + "=" + std::to_string(i) + "\n";
        Set(model, key.c_str(), std::to_string(i));
    }
    MemoryRead reader(text);
    EXPECT_EQ(list.Deserialize(&reader), 1);
    EXPECT_EQ(Entries(list), Entries(model));
}

int DescriptorOf(char* handle) {
    return fileno(reinterpret_cast<std::FILE*>(handle));
}

bool IsOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) >= 0;
}

TEST(Files, AWriterFlushesEveryPieceAndClosesItsFile) {
    const Scratch scratch;
    for (const unsigned int binary : {0u, 1u}) {
        const std::string path = scratch.Write("out", "what was there before");
        int descriptor;
        {
            SFileWrite writer(Text(path.c_str()), binary);
            EXPECT_EQ(std::string(writer.m_achFileName, 256), path + std::string(256 - path.size(), '\0'));
            EXPECT_EQ(FileText(path), "");
            EXPECT_EQ(writer.WriteData(Text("a\0\n"), 3) + writer.WriteData(Text("b"), 0), 3u);
            EXPECT_EQ(writer.Serialize(Text("n"), -1), 1);
            EXPECT_EQ(FileText(path), std::string("a\0\nn=-1\n", 8));
            descriptor = DescriptorOf(writer.m_pFile);
        }
        EXPECT_FALSE(IsOpen(descriptor));
    }
    SFileWrite full(Text("/dev/full"), 0), missing(Text(scratch.Path("no/such").c_str()), 0), none;
    EXPECT_EQ(full.WriteData(Text("abc"), 3), 3u); // the library's own buffer took it
    EXPECT_EQ(missing.m_pFile, nullptr);
    EXPECT_EQ(missing.WriteData(Text("abc"), 3) + none.WriteData(Text("abc"), 3), 0u);
}

TEST(Files, StandardStreamsStayOpenAndHandlesAreAdopted) {
    const Scratch scratch;
    EXPECT_EQ(Told([] {
                  { SFileWrite(nullptr, 0).WriteData(Text("from the writer, "), 17); }
                  return std::printf("and after it") > 0 && IsOpen(STDOUT_FILENO);
              }),
              "1 from the writer, and after it");
    {
        const Input input("first\nsecond\nthird");
        { EXPECT_STREQ(SFileRead(nullptr).ReadLine(), "first"); }
        SFileRead reader(nullptr);
        EXPECT_STREQ(reader.ReadLine(), "second");
        EXPECT_EQ(reader.OpenFile(Text("/dev/null")), 1);
        EXPECT_EQ(reader.SetFile(reinterpret_cast<char*>(stdin)), 1); // leaves /dev/null open
        EXPECT_STREQ(reader.ReadLine(), "third");
        EXPECT_TRUE(IsOpen(STDIN_FILENO));
    }
    char* const first = fwfopen(scratch.Path("first").data(), Text("w"));
    char* const second = fwfopen(scratch.Path("second").data(), Text("w"));
    const int descriptor = DescriptorOf(second);
    {
        SFileWrite writer;
        writer.SetFile(first);
        writer.SetFile(second);
        EXPECT_EQ(writer.WriteData(Text("two"), 3), 3u);
    }
    EXPECT_FALSE(IsOpen(descriptor));
    EXPECT_TRUE(fwfputs(Text("one"), first) >= 0 && fwfclose(first) == 0);
    EXPECT_EQ(FileText(scratch.Path("first")) + FileText(scratch.Path("second")), "onetwo");
}

TEST(Files, LinesComeAsTheyStand) {
    const Scratch scratch;
    constexpr std::size_t Most = 262143; // characters in one piece
    const std::string most(Most, 'x'), oneLess(Most - 1, 'y'), more(Most * 2 + 5, 'x');
    const struct {
        std::string text;
        std::vector<std::string> lines;
    } cases[] = {{"", {}},
                 {"a\n\nb\r\n=last", {"a", "", "b\r", "=last"}},
                 {std::string("a\0b\nc\n", 6), {"a", "c"}}, // a zero byte ends what can be seen of a line
                 {oneLess + "\n" + "a\n", {oneLess, "a"}},
                 {most + "\na\n", {most, "", "a"}},
                 {more + "\n", {most, most, "xxxxx"}}};
    for (const auto& c : cases) {
        SFileRead reader(Text(scratch.Write("lines", c.text).c_str()));
        EXPECT_EQ(reader.m_b4LineBufferSize, Most + 1);
        std::vector<std::string> lines;
        while (const char* const line = reader.ReadLine()) {
            lines.emplace_back(line);
            EXPECT_EQ(line, reader.m_pchLineBuffer);
        }
        EXPECT_TRUE(lines == c.lines) << c.text.substr(0, 20) << " of " << c.text.size();
        EXPECT_TRUE(reader.ReadLine() == nullptr && reader.GetFileSize() == 0);
    }
}

TEST(Files, AReaderMovesFromFileToFile) {
    const Scratch scratch;
    const std::string path = scratch.Write("a", "line\nabcdef"), missing = scratch.Path("missing");
    std::string cut = scratch.Path("").append(300, 'n').substr(0, 255); // of names, before the file is opened
    SFileWrite(Text((cut + "nn").c_str()), 1).Serialize(Text("n"), 7);
    EXPECT_EQ(FileText(cut), "n=7\n");
    SFileRead reader;
    char block[8] = "";
    for (const char* next : {"", missing.c_str(), static_cast<const char*>(nullptr)}) {
        EXPECT_TRUE(!reader.ReadLine() && reader.ReadBlock(block, 4) == 0);
        EXPECT_EQ(reader.OpenFile(Text(path.c_str())), 1);
        const int descriptor = DescriptorOf(reader.m_pFile);
        EXPECT_STREQ(reader.ReadLine(), "line");
        EXPECT_EQ(reader.ReadBlock(block, 4) + reader.ReadBlock(block + 4, 4), 6u);
        EXPECT_STREQ(block, "abcdef");
        EXPECT_EQ(reader.OpenFile(Text((cut + "nn").c_str())), 1);
        EXPECT_EQ(DescriptorOf(reader.m_pFile), descriptor); // the earlier file was closed first
        EXPECT_EQ(reader.m_achFileName, cut);
        EXPECT_EQ(reader.OpenFile(Text(next)), 0);
        EXPECT_TRUE(!reader.m_pFile && !IsOpen(descriptor));
    }
    EXPECT_EQ(SFileRead(Text(missing.c_str())).m_pFile, nullptr);
}

} // namespace
