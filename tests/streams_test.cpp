// SPDX-License-Identifier: MIT
#include "support/support.h"

#include <climits>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

TEST(Streams, EveryTypeIsWrittenAsOneDecimalRecord) {
    MemoryWrite writer;
    int answers = writer.Serialize(Text("i"), INT_MIN);
    answers += writer.Serialize(Text(""), 7);
    answers += writer.Serialize(nullptr, 7);
    answers += writer.Serialize(Text("n"), static_cast<short>(-1));
    answers += writer.Serialize(Text("n"), static_cast<unsigned short>(65535));
    answers += writer.Serialize(Text("c"), static_cast<char>(0xC8));
    answers += writer.Serialize(Text("c"), static_cast<unsigned char>(0xC8));
    answers += writer.Serialize(Text("u"), UINT_MAX);
    answers += writer.Serialize(Text(std::string(400, 'k').c_str()), 1);
    EXPECT_EQ(answers, 9);
    const std::vector<std::string> pieces = {
        "i=-2147483648\n", "=7\n",           "=7\n",
        "n=-1\n",          "n=65535\n",      "c=-56\n",
        "c=200\n",         "u=4294967295\n", std::string(400, 'k') + "=1\n"};
    EXPECT_EQ(writer.pieces, pieces);
}

// The value that a reader stores, or "-" when it answers 0 and leaves it as it was.
template <class Value>
std::string Read(const char* line) {
    MemoryRead reader(line);
    Value value = 99;
    const int answer = reader.Deserialize(&value);
    EXPECT_TRUE(answer == 1 || (answer == 0 && value == 99));
    EXPECT_TRUE(reader.rest.empty());
    return answer ? std::to_string(value) : "-";
}

TEST(Streams, EveryTypeReadsEveryLine) {
    const struct {
        const char* line;
        std::vector<std::string> values; // int, unsigned int, short, unsigned short, char, unsigned char
    } readings[] = {
        {"x= 42", {"42", "42", "42", "42", "42", "42"}},
        {"=12abc", {"12", "12", "12", "12", "12", "12"}},
        {"x=abc", {"0", "0", "0", "0", "0", "0"}},
        {"a=b=3", {"0", "0", "0", "0", "0", "0"}},
        {"x=70000", {"70000", "70000", "4464", "4464", "112", "112"}},
        {"x=-1", {"-1", "4294967295", "-1", "65535", "-1", "255"}},
        {"x=200", {"200", "200", "200", "200", "-56", "200"}},
        {"x=4294967295", {"2147483647", "4294967295", "-1", "65535", "-1", "255"}},
        {"x=99999999999", {"2147483647", "4294967295", "-1", "65535", "-1", "255"}},
        {"x=-99999999999", {"-2147483648", "4294967295", "0", "65535", "0", "255"}},
        {"abc", {"-", "-", "-", "-", "-", "-"}},
        {"\n", {"-", "-", "-", "-", "-", "-"}},
        {"", {"-", "-", "-", "-", "-", "-"}},
    };
    for (const auto& reading : readings) {
        const char* line = reading.line;
        const std::vector<std::string> values = {Read<int>(line),   Read<unsigned int>(line),
                                                 Read<short>(line), Read<unsigned short>(line),
                                                 Read<char>(line),  Read<unsigned char>(line)};
        EXPECT_EQ(values, reading.values) << line;
    }
}

TEST(Streams, OnlyTheWideFormsTakeALineForNothing) {
    MemoryRead reader("a=1\nb=2\nc=3\n");
    EXPECT_EQ(reader.Deserialize(static_cast<short*>(nullptr)) +
                  reader.Deserialize(static_cast<char*>(nullptr)),
              0);
    EXPECT_EQ(reader.Deserialize(static_cast<unsigned short*>(nullptr)), 0);
    EXPECT_EQ(reader.Deserialize(static_cast<unsigned char*>(nullptr)), 0);
    EXPECT_EQ(reader.Deserialize(static_cast<int*>(nullptr)), 0);
    EXPECT_EQ(reader.Deserialize(static_cast<unsigned int*>(nullptr)), 0);
    int value = 0;
    EXPECT_EQ(reader.Deserialize(&value), 1);
    EXPECT_EQ(value, 3);
}

TEST(Streams, AnObjectIsItsTypeAndItsList) {
    QObject object;
    object.m_cProperties.SetProperty(Key::Count, 3, Section::Standard);
    Set(object.m_cProperties, "Count", "4", "Camera");
    Set(object.m_cProperties, "expr", "a=b");
    Set(object.m_cProperties, "long", std::string(5000, 'x'));
    object.m_b2Reserved = 9;
    MemoryWrite writer;
    EXPECT_EQ(object.Write(&writer), 1);
    EXPECT_EQ(writer.all, "");
    EXPECT_EQ(object.Serialize(&writer), 1);
    const std::string longLine = "long=" + std::string(5000, 'x') + "\n";
    EXPECT_EQ(writer.all,
              "QObject\nm_b2PropertyCount=5\nQObjectType=QObject\nCount=3\nCount=4\nexpr=a=b\n" + longLine);
    EXPECT_EQ(writer.pieces.back(), longLine);

    MemoryRead reader(writer.all);
    EXPECT_STREQ(reader.ReadLine(), "QObject");
    QEOF read;
    Set(read.m_cProperties, "kept", "1");
    EXPECT_EQ(read.Deserialize(&reader), 1);
    EXPECT_EQ(Entries(read.m_cProperties), "Standard.QObjectType=QObject Standard.kept=1 Standard.Count=4 "
                                           "Standard.expr=a=b Standard.long=" +
                                               std::string(5000, 'x'));

    const std::string type(40, 'T');
    Set(object.m_cProperties, "QObjectType", type);
    MemoryWrite cut;
    object.Serialize(&cut);
    EXPECT_EQ(cut.pieces[0] + cut.pieces[1], std::string(31, 'T') + "\n");
    EXPECT_EQ(cut.pieces[3], "QObjectType=" + type + "\n");
    object.m_cProperties.Reset();
    MemoryWrite empty;
    object.Serialize(&empty);
    EXPECT_EQ(empty.all, "\nm_b2PropertyCount=0\n");
    Set(object.m_cProperties, "a\nb", "c\nd"); // written as it is: the format has no escape
    MemoryWrite broken;
    object.Serialize(&broken);
    EXPECT_EQ(broken.all, "\nm_b2PropertyCount=1\na\nb=c\nd\n");
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
                    {"n=0", 1, ""},
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

} // namespace
