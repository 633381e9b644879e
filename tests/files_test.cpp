// SPDX-License-Identifier: MIT
#include "support/capture.h"
#include "support/support.h"

#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

std::FILE* StreamOf(char* handle) {
    return reinterpret_cast<std::FILE*>(handle);
}

char* Opened(const std::string& path, const char* mode) {
    return fwfopen(Text(path.c_str()), Text(mode));
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
            EXPECT_EQ(writer.m_achFileName, path);
            EXPECT_EQ(std::string(writer.m_achFileName + path.size(), writer.m_achFileName + 256),
                      std::string(256 - path.size(), '\0'));
            EXPECT_EQ(FileText(path), "");
            EXPECT_EQ(writer.WriteData(Text("a\0\n"), 3), 3u);
            EXPECT_EQ(FileText(path), std::string("a\0\n", 3));
            EXPECT_EQ(writer.WriteData(Text("b"), 0), 0u);
            EXPECT_EQ(writer.Serialize(Text("n"), -1) + writer.SerializeBlock(Text("k"), nullptr, 0), 2);
            EXPECT_EQ(FileText(path), std::string("a\0\nn=-1\nk=\n", 11));
            descriptor = fileno(StreamOf(writer.m_pFile));
        }
        EXPECT_FALSE(IsOpen(descriptor));
    }
    SFileWrite full(Text("/dev/full"), 0), missing(Text(scratch.Path("no/such").c_str()), 0), none;
    EXPECT_EQ(full.WriteData(Text("abc"), 3), 3u); // the library's own buffer took it
    EXPECT_TRUE(std::ferror(StreamOf(full.m_pFile)));
    EXPECT_EQ(missing.m_pFile, nullptr);
    EXPECT_EQ(missing.WriteData(Text("abc"), 3) + none.WriteData(Text("abc"), 3), 0u);
}

TEST(Files, NamesAreCutTo255CharactersBeforeTheFileIsOpened) {
    const Scratch scratch;
    std::string path = scratch.Path("");
    path.resize(300, 'n');
    const std::string cut = path.substr(0, 255);
    SFileWrite writer(Text(path.c_str()), 1);
    writer.Serialize(Text("n"), 7);
    EXPECT_EQ(writer.m_achFileName, cut);
    EXPECT_EQ(FileText(cut), "n=7\n");
    SFileRead reader(Text(path.c_str()));
    int value = 0;
    EXPECT_EQ(reader.Deserialize(&value) == 1 && value == 7, true);
    EXPECT_EQ(reader.m_achFileName, cut);
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
    char *const first = Opened(scratch.Path("first"), "w"), *const second =
                                                                Opened(scratch.Path("second"), "w+");
    const int descriptors[] = {fileno(StreamOf(first)), fileno(StreamOf(second))};
    {
        SFileWrite writer;
        writer.SetFile(first);
        writer.SetFile(second);
        EXPECT_EQ(writer.WriteData(Text("two"), 3), 3u);
    }
    EXPECT_TRUE(IsOpen(descriptors[0]));
    EXPECT_FALSE(IsOpen(descriptors[1]));
    EXPECT_EQ(fwfputs(Text("one"), first) >= 0 && fwfclose(first) == 0, true);
    EXPECT_EQ(FileText(scratch.Path("first")) + FileText(scratch.Path("second")), "onetwo");
}

TEST(Files, LinesComeAsTheyStand) {
    const Scratch scratch;
    constexpr std::size_t Most = 262143; // characters in one piece
    const std::string most(Most, 'x'), oneLess(Most - 1, 'y'), more(Most * 2 + 5, 'x');
    const struct {
        std::string text;
        std::vector<std::string> lines;
    } cases[] = {
        {"", {}},
        {"a\n\nb\r\n=last", {"a", "", "b\r", "=last"}},
        {std::string("a\0b\nc\n", 6), {"a", "c"}}, // a zero byte ends what can be seen of a line
        {oneLess + "\n" + "a\n", {oneLess, "a"}},
        {most + "\na\n", {most, "", "a"}},
        {more + "\n", {most, most, "xxxxx"}},
        {most, {most}},
    };
    for (const auto& c : cases) {
        SFileRead reader(Text(scratch.Write("lines", c.text).c_str()));
        EXPECT_EQ(reader.m_b4LineBufferSize, Most + 1);
        std::vector<std::string> lines;
        while (const char* const line = reader.ReadLine()) {
            lines.emplace_back(line);
            EXPECT_EQ(line, reader.m_pchLineBuffer);
        }
        EXPECT_TRUE(lines == c.lines) << c.text.substr(0, 20) << " of " << c.text.size();
        EXPECT_EQ(reader.ReadLine(), nullptr);
        EXPECT_EQ(reader.GetFileSize(), 0u);
    }
}

TEST(Files, AReaderMovesFromFileToFile) {
    const Scratch scratch;
    const std::string path = scratch.Write("a", "line\nabcdef"), other = scratch.Write("b", "other\n");
    SFileRead reader;
    char block[8] = "";
    EXPECT_TRUE(!reader.ReadLine() && reader.ReadBlock(block, 4) == 0);
    EXPECT_EQ(reader.OpenFile(Text(path.c_str())), 1);
    const int descriptor = fileno(StreamOf(reader.m_pFile));
    EXPECT_STREQ(reader.ReadLine(), "line");
    EXPECT_EQ(reader.ReadBlock(block, 4) + reader.ReadBlock(block + 4, 4), 6u);
    EXPECT_STREQ(block, "abcdef");
    EXPECT_EQ(reader.OpenFile(Text(other.c_str())), 1);
    EXPECT_EQ(fileno(StreamOf(reader.m_pFile)), descriptor); // the earlier file was closed first
    EXPECT_EQ(reader.m_achFileName, other);
    EXPECT_STREQ(reader.ReadLine(), "other");
    for (const std::string& missing : {scratch.Path("missing"), std::string()}) {
        EXPECT_EQ(reader.OpenFile(Text(path.c_str())), 1);
        EXPECT_EQ(reader.OpenFile(missing.empty() ? nullptr : Text(missing.c_str())), 0);
        EXPECT_TRUE(!reader.m_pFile && !IsOpen(descriptor));
        EXPECT_TRUE(!reader.ReadLine() && reader.ReadBlock(block, 4) == 0);
    }
    EXPECT_EQ(SFileRead(Text(scratch.Path("missing").c_str())).m_pFile, nullptr);
}

} // namespace
