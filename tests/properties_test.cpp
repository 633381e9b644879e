// SPDX-License-Identifier: MIT
// Property lists: their order and limits, and how they are saved. What they hold after any operations, which
// numbers they give and what is read from a configuration file, the fuzz targets and the language tests tell.
#include "support/support.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

char* const Standard = Section::Standard;

TEST(Properties, StandInTheOrderOfTheirFirstSetting) {
    PROPERTIES list, copy;
    std::string all, got;
    for (const char* value : {"old", "new"}) {
        all.clear();
        for (int i = 0; i < 34; ++i) {
            const std::string key = std::to_string(i / 2), section = i % 2 ? "Camera" : "Standard";
            EXPECT_EQ(Set(list, key.c_str(), value, section.c_str()), 1);
            all += section + "." + key + "=" + value + " ";
        }
    }
    EXPECT_EQ(list.m_b2PropertyCapacity, 48);
    for (Byte2Type b2 = 0, index = 99; b2 < list.GetNumberOfProperties(); ++b2) {
        char name[8] = "", key[8] = "", value[8] = "", *const section = list.m_pachSections[b2];
        EXPECT_EQ(list.GetKeyValuePair(b2, Text("other"), key, value), 0);
        EXPECT_EQ(list.GetKeyValuePair(b2, section, nullptr, nullptr) + list.GetKeyName(b2, name) +
                      list.GetKeyValuePair(b2, section, key, value) + list.FindProperty(key, &index, section),
                  4);
        EXPECT_TRUE(index == b2 && std::string(name) == key);
        got += section + ("." + std::string(key)) + "=" + value + " ";
    }
    Set(copy, "0", "before");
    EXPECT_EQ(list.Copy(&list) + list.Copy(nullptr) + copy.Copy(&list), 3);
    EXPECT_EQ(EntriesOf(list) + " ", all);
    EXPECT_EQ(got, all);
    EXPECT_EQ(EntriesOf(copy) + " ", all);
    EXPECT_EQ(list.Reset(), 1);
    EXPECT_TRUE(list.m_b2PropertyCapacity + list.m_b2PropertyCount == 0 && !list.m_pachKeys);
}

TEST(Properties, NullsAndMissingEntriesLeaveEverythingAsItWas) {
    PROPERTIES list;
    char buffer[8] = "?";
    Byte2Type number = 77;
    list.SetProperty(Key::Name, static_cast<char*>(nullptr), Standard); // stored as the empty text
    EXPECT_EQ(list.SetProperty(nullptr, Text("x"), Standard) + list.SetProperty(Key::Name, 1, nullptr) +
                  list.FindProperty(nullptr, &number, Standard) +
                  list.FindProperty(Key::Name, nullptr, Standard) +
                  list.FindProperty(Key::Debug, &number, Standard) +
                  list.FindProperty(Key::Name, &number, nullptr) +
                  list.GetPropertyLength(nullptr, &number, Standard) +
                  list.GetPropertyLength(Key::Name, &number, nullptr) +
                  list.GetPropertyLength(Key::Name, nullptr, Standard) + list.GetKeyName(0, nullptr) +
                  list.GetKeyName(1, buffer) + list.GetKeyValuePair(0, nullptr, buffer, buffer) +
                  list.GetKeyValuePair(1, Standard, buffer, buffer),
              0);
    EXPECT_EQ(list.AddKeyValuePair(Standard, nullptr) +
                  list.GetProperty(Key::Name, static_cast<int*>(nullptr), 5, Standard) +
                  list.GetProperty(Key::Name, nullptr, 8, nullptr, Standard) +
                  list.GetProperty(Key::Name, buffer, 0, nullptr, Standard),
              4);
    void* pointer = &list; // left alone, since the value is none
    EXPECT_EQ(list.GetProperty(Key::Name, &pointer, nullptr, Standard), 1);
    EXPECT_EQ(buffer + std::to_string(number) + EntriesOf(list), "?77Standard.Name=");
    EXPECT_EQ(list.GetProperty(Key::Debug, buffer, 8, nullptr, Standard), 0);
    EXPECT_TRUE(buffer[0] == '\0' && pointer == &list);
    for (const std::size_t length : {65534u, 65535u, 70000u}) {
        Set(list, "Name", std::string(length, 'x'));
        EXPECT_EQ(list.GetPropertyLength(Key::Name, &number, Standard), 1);
        EXPECT_EQ(number, std::min<std::size_t>(length, 65535));
    }
}

// The blocks end with their terminators, which a checker of memory watches.
TEST(Properties, TextsPutInByHandEndAtTheirFirstZeroByte) {
    const auto put = [](char*& slot, const std::string& text) {
        std::free(slot);
        slot = strdup(text.c_str());
    };
    for (std::size_t length = 0; length < 20; ++length) {
        const std::string all = "abcdefghijklmnopqrstuvwxyz", key = all.substr(0, length);
        PROPERTIES list, copy;
        for (int i = 0; i < 20; ++i) {
            Set(list, std::to_string(i).c_str(), all);
        }
        put(list.m_pachKeys[3], key);
        put(list.m_pachSections[3], key);
        put(list.m_pachValues[3], key);
        put(list.m_pachKeys[4], "_" + all);
        list.m_pachKeys[4][length + 1] = list.m_pachValues[4][length] = '\0'; // shortened in place
        list.m_pachSections[4][length % 8] = '\0';
        alignas(8) char odd[32] = " +";
        char* lent = odd + 1;
        std::strcat(odd, key.c_str());
        std::swap(lent, list.m_pachKeys[5]);
        std::vector<std::string> others = {key + "0", all.substr(0, length + 1), "-" + key};
        for (std::size_t at = 0; at < length; ++at) {
            others.push_back(key);
            others.back()[at] = '!';
        }
        Byte2Type index = 0;
        EXPECT_EQ(list.FindProperty(odd + 1, &index, Standard), 1);
        EXPECT_EQ(index, 5);
        std::swap(lent, list.m_pachKeys[5]);
        for (const std::string& other : others) {
            EXPECT_EQ(list.FindProperty(Text(other.c_str()), &index, Text(key.c_str())), 0);
            EXPECT_EQ(list.FindProperty(Text(key.c_str()), &index, Text(other.c_str())), 0);
        }
        const std::string section = std::string("Standard").substr(0, length % 8);
        char value[32] = "?";
        const std::string cut = "_" + key;
        EXPECT_EQ(list.GetProperty(Text(cut.c_str()), value, sizeof value, nullptr, Text(section.c_str())),
                  1);
        EXPECT_EQ(value, key);
        EXPECT_EQ(list.GetProperty(Text(key.c_str()), value, sizeof value, nullptr, Text(key.c_str())), 1);
        EXPECT_EQ(value, key);
        list.SetProperty(Text(key.c_str()), list.m_pachValues[3], Text(key.c_str())); // its own value
        MemoryWrite writer;
        EXPECT_EQ(list.Serialize(&writer) + copy.Copy(&list), 2);
        EXPECT_EQ(writer.pieces[4] + writer.pieces[5], key + "=" + key + "\n" + cut + "=" + key + "\n");
        EXPECT_EQ(EntriesOf(copy), EntriesOf(list));
        for (const int number : {-7, 123456, 1234567890}) {
            EXPECT_EQ(list.SetProperty(Text(key.c_str()), number, Text(key.c_str())), 1);
            EXPECT_EQ(list.m_pachValues[3], std::to_string(number));
        }
    }
}

// The writer and the reader change the list while they have a line.
TEST(Properties, ThatChangeUnderWayKeepTheirCountAndUniqueKeys) {
    struct Writer : MemoryWrite {
        Byte4Type WriteData(char* pchData, Byte4Type b4Length) override {
            reset ? list.Reset() : Set(list, std::to_string(pieces.size()).c_str(), "more");
            return MemoryWrite::WriteData(pchData, b4Length);
        }
        PROPERTIES list;
        bool reset = false;
    };
    struct Reader : MemoryRead {
        using MemoryRead::MemoryRead;
        char* ReadLine() override {
            char* const line = MemoryRead::ReadLine();
            if (line && ++lines % 16 == 0) {
                list.Reset();
            }
            return Set(list, std::string(line, std::strcspn(line, "=")).c_str(), "before"), line;
        }
        PROPERTIES list;
        int lines = 0;
    };
    for (const int entries : {2, 40, 400}) {
        for (const bool reset : {false, true}) {
            Writer writer;
            std::string lines = "m_b2PropertyCount=" + std::to_string(entries) + "\n", kept;
            for (int i = 0; i < entries; ++i) {
                lines += "k" + std::to_string(i) + "=v\n";
                Set(writer.list, ("k" + std::to_string(i)).c_str(), "v");
                kept += i + 1 < (entries + 1) / 16 * 16 - 1 ? "" : " Standard.k" + std::to_string(i) + "=v";
            }
            writer.reset = reset;
            EXPECT_EQ(writer.list.Serialize(&writer), 1);
            EXPECT_EQ(writer.all, lines);
            Reader reader(lines);
            EXPECT_EQ(reader.list.Deserialize(&reader), 1);
            EXPECT_EQ(EntriesOf(reader.list),
                      entries < 16 ? "Standard.m_b2PropertyCount=before" + kept : kept.substr(1));
        }
    }
    PROPERTIES twice, copy; // a key that a host put in by hand
    Set(twice, "a", "1");
    Set(twice, "b", "2");
    twice.m_pachKeys[1][0] = 'a';
    EXPECT_EQ(copy.Copy(&twice), 1);
    EXPECT_EQ(EntriesOf(copy), "Standard.a=2");
}

// The list is filled by hand with one text lent to every slot: appending that many would take a walk each.
TEST(Properties, TheEntryBeyondTheLimitIsRefused) {
    constexpr unsigned int Limit = 65520;
    PROPERTIES list;
    char lent[8] = "lent";
    char*** const tables[] = {&list.m_pachKeys, &list.m_pachValues, &list.m_pachSections};
    for (char*** table : tables) {
        *table = static_cast<char**>(fwmalloc((Limit - 16) * sizeof(char*)));
        std::fill_n(*table, Limit - 16, static_cast<char*>(lent));
    }
    list.m_b2PropertyCapacity = list.m_b2PropertyCount = Limit - 16;
    for (int i = 0; i < 17; ++i) {
        EXPECT_EQ(Set(list, std::to_string(i).c_str(), "x"), i < 16);
    }
    MemoryRead reader("n=2\n16=refused\n15=replaced\n");
    EXPECT_EQ(list.Deserialize(&reader), 1);
    EXPECT_TRUE(list.m_b2PropertyCount == Limit && list.m_b2PropertyCapacity == Limit);
    EXPECT_STREQ(list.m_pachValues[Limit - 1], "replaced");
    for (char*** table : tables) {
        std::fill_n(*table, Limit - 16, static_cast<char*>(nullptr));
    }
}

TEST(Config, SavesABlockForEachSection) {
    const Scratch scratch;
    const std::string path = scratch.Path("saved"), section(1019, 's'), value(1017, 'v');
    PROPERTIES list;
    EXPECT_EQ(list.SaveConfig(Text(path.c_str())), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
    for (const char* key : {"Name", "Mode"}) {
        Set(list, key, " fast=1 ");
        Set(list, key, "", "Camera");
        Set(list, key, "lost", "");
        Set(list, key, value, section.c_str());
    }
    const std::string before = EntriesOf(list), longLine = "=" + value + "\n";
    EXPECT_EQ(list.SaveConfig(Text(path.c_str())), 1);
    EXPECT_EQ(FileText(path), "\n[Standard]\nName= fast=1 \nMode= fast=1 \n\n[Camera]\nName=\nMode=\n\n[" +
                                  section + "]\nName" + longLine + "Mode" + longLine);
    EXPECT_EQ(EntriesOf(list), before);
    EXPECT_EQ(list.SaveConfig(nullptr) + list.SaveConfig(scratch.Path("no/folder").data()), 0);
}

// Written tells whether the plain form takes the entry, which it leaves out when its section has no name.
TEST(Config, RefusesWhatWouldNotComeBack) {
    const Scratch scratch;
    const auto text = [](std::size_t length) { return std::string(length, 't'); };
    const struct {
        std::string section, key, value;
        bool written, whole;
    } rows[] = {
        {"S", "k", " v=[w]\r", true, true},  {"S", "", "", true, true},
        {"S", "k", text(253), true, true},   {"S", "k", text(254), true, false},
        {"S", text(253), "v", true, true},   {"S", text(254), "v", true, false},
        {"S", "k", text(1020), true, false}, {"S", "k", text(1021), false, false},
        {text(253), "k", "v", true, true},   {text(254), "k", "v", true, false},
        {text(1019), "k", "v", true, false}, {text(1020), "k", "v", false, false},
        {"S", "a=b", "v", true, false},      {"S", "[k", "v", true, false},
        {"", "k", "v", true, false},         {"S", "k", "v\nw", false, false},
        {"S", "k\nl", "v", false, false},    {"S\nT", "k", "v", false, false},
    };
    for (const auto& row : rows) {
        PROPERTIES list, read;
        Byte2Type lost = 99;
        const std::string path = scratch.Write("saved", "before");
        Set(list, "first", "1", "S");
        Set(list, row.key.c_str(), row.value, row.section.c_str());
        EXPECT_EQ(list.SaveConfig(Text(path.c_str()), &lost), row.whole) << row.section + row.key + row.value;
        EXPECT_EQ(lost, row.whole ? 2 : 1);
        if (row.whole) {
            EXPECT_EQ(read.ReadConfig(Text(path.c_str()), list.m_pachSections[0]) +
                          read.ReadConfig(Text(path.c_str()), list.m_pachSections[1]),
                      2);
            EXPECT_EQ(EntriesOf(read), EntriesOf(list));
            continue;
        }
        EXPECT_EQ(FileText(path), "before");
        EXPECT_EQ(list.SaveConfig(Text(path.c_str())), row.written);
        EXPECT_EQ(FileText(path) == "before", !row.written);
    }
}

TEST(Config, AnOpenFileIsReadByLinesAndSections) {
    const Scratch scratch;
    const std::string path = scratch.Write("c", "first\n[S]\nnext\nlast");
    char* const file = fwfopen(Text(path.c_str()), Text("r"));
    char line[8] = "?";
    PROPERTIES list;
    const auto read = [&](unsigned int size) {
        return std::to_string(list.ReadLine(file, line, size)) + line;
    };
    const auto find = [&](char* section) { return std::to_string(list.FindSection(file, section)); };
    const std::vector<std::string> told = {read(0),   read(5),       read(5), find(nullptr), find(Text("S")),
                                           read(~0u), find(nullptr), read(8), read(8),       find(Text("S"))};
    EXPECT_EQ(told,
              (std::vector<std::string>{"1?", "1firs", "1t", "0", "1", "1next", "0", "1last", "1", "0"}));
    EXPECT_EQ(fwfclose(file) + list.FindSection(nullptr, Text("S")), 0);
    EXPECT_EQ(list.ReadConfig(nullptr, Standard) + list.ReadConfig(Text(path.c_str()), nullptr), 0);
}

} // namespace
