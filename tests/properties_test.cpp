// SPDX-License-Identifier: MIT
#include "support/support.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <tuple>

using namespace VESK;

namespace {

char* const Standard = Section::Standard;

TEST(Properties, ValuesAndDefaultsAreCutToTheBuffer) {
    PROPERTIES list;
    EXPECT_EQ(list.GetNumberOfProperties(), 0);
    char buffer[64];
    EXPECT_EQ(list.GetProperty(Key::Name, buffer, 64, Text("x"), Standard), 0);
    EXPECT_STREQ(buffer, "x");
    EXPECT_EQ(list.GetProperty(Key::Name, buffer, 64, nullptr, Standard), 0);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(Set(list, "Name", "0123456789"), 1);
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(list.GetProperty(Key::Name, buffer, 4, Text("abcdefghij"), Standard), 1);
    EXPECT_EQ(std::string(buffer, 5), std::string("012\0#", 5));
    EXPECT_EQ(list.GetProperty(Text("name"), buffer, 4, Text("abcdefghij"), Standard), 0);
    EXPECT_EQ(std::string(buffer, 5), std::string("abc\0#", 5));
    EXPECT_EQ(list.GetProperty(Key::Name, buffer, 1, nullptr, Standard), 1);
    EXPECT_STREQ(buffer, "");
}

TEST(Properties, NullsAndMissingEntriesLeaveEverythingAsItWas) {
    PROPERTIES list;
    list.SetProperty(Key::Name, static_cast<char*>(nullptr), Standard); // stored as the empty text
    Byte2Type number = 77;
    EXPECT_EQ(list.SetProperty(nullptr, Text("x"), Standard), 0);
    EXPECT_EQ(list.SetProperty(nullptr, 1, Standard), 0);
    EXPECT_EQ(list.FindProperty(nullptr, &number, Standard), 0);
    EXPECT_EQ(list.FindProperty(Key::Name, nullptr, Standard), 0);
    EXPECT_EQ(list.FindProperty(Key::Name, &number, Text("standard")), 0);
    EXPECT_EQ(
        list.FindProperty(Key::Name, &number, nullptr) + list.SetProperty(Key::Name, Text("x"), nullptr), 0);
    EXPECT_EQ(list.GetPropertyLength(Key::Debug, &number, Standard), 0);
    EXPECT_EQ(number, 77);
    EXPECT_EQ(list.GetPropertyLength(Key::Name, &number, Standard), 1);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(Entries(list), "Standard.Name=");
    Set(list, "Name", std::string(70000, 'x').c_str());
    EXPECT_EQ(list.GetPropertyLength(Key::Name, &number, Standard), 1);
    EXPECT_EQ(number, 65535);
}

// Sets texts and numbers at random, with keys that share their first seven, eight and nine characters, and compares with
// a list kept in the plainest way.
TEST(Properties, AgreesWithAPlainListOnRandomKeys) {
    std::mt19937 random(1);
    const auto pick = [&](std::size_t count) { return random() % count; };
    std::vector<std::string> keys = {""};
    for (std::size_t length = 1; length <= 18; ++length) {
        keys.push_back(std::string(length, 'k'));
        keys.push_back(std::string(length - 1, 'k') + "K");
    }
    const std::string sections[] = {"Standard", "standard", "", "Standards", "Camera"};
    PROPERTIES list;
    std::vector<std::tuple<std::string, std::string, std::string>> plain;
    for (int step = 0; step < 2000; ++step) {
        const std::string &key = keys[pick(keys.size())], &section = sections[pick(5)];
        const int number = static_cast<int>(random()) >> pick(32);
        const std::string value = pick(2) ? std::string(pick(20), 'v') : std::to_string(number);
        ASSERT_EQ(value[0] == 'v' || value.empty()
                      ? Set(list, key.c_str(), value, section.c_str())
                      : list.SetProperty(Text(key.c_str()), number, Text(section.c_str())),
                  1);
        const auto known = std::find_if(plain.begin(), plain.end(), [&](const auto& entry) {
            return std::get<0>(entry) == section && std::get<1>(entry) == key;
        });
        if (known == plain.end()) {
            plain.emplace_back(section, key, value);
        } else {
            std::get<2>(*known) = value;
        }
        ASSERT_EQ(list.m_b2PropertyCapacity, (plain.size() + 15) / 16 * 16);
    }
    ASSERT_EQ(list.GetNumberOfProperties(), plain.size());
    PROPERTIES copy; // holds the first half with other values
    for (std::size_t u = 0; u < plain.size(); ++u) {
        auto& [section, key, value] = plain[u];
        Byte2Type index = 0;
        char ownKey[32], ownValue[32];
        EXPECT_EQ(list.FindProperty(key.data(), &index, section.data()), 1);
        EXPECT_EQ(index, u);
        EXPECT_EQ(list.GetKeyValuePair(index, section.data(), ownKey, ownValue), 1);
        EXPECT_EQ(std::make_pair(key, value), std::make_pair(std::string(ownKey), std::string(ownValue)));
        if (u < plain.size() / 2) {
            Set(copy, key.c_str(), value + "-", section.c_str());
        }
    }
    EXPECT_EQ(copy.Copy(&list), 1);
    EXPECT_EQ(Entries(copy), Entries(list));
    list.Reset();
    EXPECT_EQ(list.m_b2PropertyCapacity + list.m_b2PropertyCount, 0);
    EXPECT_EQ(list.m_pachKeys, nullptr);
    Set(list, "a", "1");
    EXPECT_EQ(list.m_b2PropertyCapacity, 16);
}

TEST(Properties, EveryTypeReadsEveryText) {
    const struct {
        const char* text;
        int asInt;
        unsigned int asUnsigned;
        Byte2Type asByte2;
        long long asLong;
        unsigned long long asUnsignedLong;
    } readings[] = {
        {"12abc", 12, 12, 12, 12, 12},
        {"abc", 0, 0, 0, 0, 0},
        {"-1", -1, UINT_MAX, 65535, -1, ULLONG_MAX},
        {"70000", 70000, 70000, 4464, 70000, 70000},
        {"4294967295", INT_MAX, INT_MAX, 65535, 4294967295, 4294967295},
        {"-5000000000", INT_MIN, 0x80000000u, 0, -5000000000, 0 - 5000000000ull},
        {"99999999999999999999", INT_MAX, INT_MAX, 65535, LLONG_MAX, LLONG_MAX},
        {"-99999999999999999999", INT_MIN, 0x80000000u, 0, LLONG_MIN, 0x8000000000000000ull},
    };
    PROPERTIES list;
    char* const key = Text("n");
    for (const auto& reading : readings) {
        Set(list, "n", reading.text);
        int i;
        unsigned int u;
        Byte2Type b2;
        long long ll;
        unsigned long long ull;
        EXPECT_EQ(list.GetProperty(key, &i, 5, Standard) + list.GetProperty(key, &u, 5u, Standard) +
                      list.GetProperty(key, &b2, Byte2Type{5}, Standard) +
                      list.GetProperty(key, &ll, 5ll, Standard) + list.GetProperty(key, &ull, 5ull, Standard),
                  5);
        EXPECT_EQ(std::make_tuple(i, u, b2, ll, ull),
                  std::make_tuple(reading.asInt, reading.asUnsigned, reading.asByte2, reading.asLong,
                                  reading.asUnsignedLong))
            << reading.text;
    }
    Byte2Type missing = 0;
    EXPECT_EQ(list.GetProperty(Key::Debug, &missing, Byte2Type{9}, Standard), 0);
    EXPECT_EQ(missing, 9);
}

TEST(Properties, NumbersStandAsDecimalTextAndPointersComeBack) {
    PROPERTIES list;
    list.SetProperty(Text("i"), INT_MIN, Standard);
    list.SetProperty(Text("u"), 4294967295u, Standard);
    list.SetProperty(Text("b"), Byte2Type{65535}, Standard);
    list.SetProperty(Text("m"), LLONG_MIN, Standard);
    EXPECT_EQ(Entries(list),
              "Standard.i=-2147483648 Standard.u=-1 Standard.b=65535 Standard.m=-9223372036854775808");
    void* read = nullptr;
    for (void* const pointer :
         {static_cast<void*>(&list), static_cast<void*>(nullptr), reinterpret_cast<void*>(-1)}) {
        list.SetProperty(Text("i"), pointer, Standard);
        read = &read;
        EXPECT_EQ(list.GetProperty(Text("i"), &read, nullptr, Standard), 1);
        EXPECT_EQ(read, pointer);
    }
    Set(list, "i", "nowhere");
    EXPECT_EQ(list.GetProperty(Text("i"), &read, nullptr, Standard), 1);
    EXPECT_EQ(read, reinterpret_cast<void*>(-1)); // left alone
    EXPECT_EQ(list.GetProperty(Text("q"), &read, &list, Standard), 0);
    EXPECT_EQ(read, &list);
}

TEST(Properties, PairsSplitAtTheFirstEqualsSign) {
    PROPERTIES list;
    char pairs[][8] = {"a=b=c", "=x", "abc", "", " k = v ", "a="};
    for (char* pair : pairs) {
        EXPECT_EQ(list.AddKeyValuePair(Text("S"), pair), 1);
    }
    EXPECT_EQ(Entries(list), "S.a= S.=x S. k = v ");
    EXPECT_EQ(std::string(pairs[0], 5), std::string("a\0b=c", 5));
}

TEST(Properties, WalkingOneSectionSkipsTheOthers) {
    PROPERTIES list;
    Set(list, "Name", "src");
    Set(list, "Name", "cam", "Camera");
    char key[8] = "-", value[8] = "-";
    EXPECT_EQ(list.GetKeyValuePair(1, Standard, key, value), 0);
    EXPECT_EQ(list.GetKeyValuePair(2, Standard, key, value), 0);
    EXPECT_EQ(list.GetKeyName(2, key), 0);
    EXPECT_STREQ(key, "-");
    EXPECT_STREQ(value, "-");
    EXPECT_EQ(list.GetKeyValuePair(1, Text("Camera"), nullptr, nullptr), 1);
    EXPECT_EQ(list.GetKeyValuePair(1, Text("Camera"), nullptr, value), 1);
    EXPECT_EQ(list.GetKeyName(1, key), 1);
    EXPECT_EQ(std::string(key) + value, "Namecam");
}

TEST(Properties, CopyReplacesInPlaceAndAppendsInOrder) {
    PROPERTIES source, target;
    Set(source, "b", "2");
    Set(source, "a", "1");
    Set(source, "a", "3", "Camera");
    Set(target, "x", "9");
    Set(target, "a", "0");
    EXPECT_EQ(target.Copy(&source), 1);
    EXPECT_EQ(Entries(target), "Standard.x=9 Standard.a=1 Standard.b=2 Camera.a=3");
    EXPECT_EQ(target.Copy(&target) + target.Copy(nullptr), 2);
    EXPECT_EQ(Entries(target), "Standard.x=9 Standard.a=1 Standard.b=2 Camera.a=3");
    EXPECT_EQ(Entries(source), "Standard.b=2 Standard.a=1 Camera.a=3");
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
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(Set(list, std::to_string(i).c_str(), "x"), 1);
    }
    char** const keys = list.m_pachKeys;
    EXPECT_EQ(Set(list, "one more", "x"), 0);
    EXPECT_EQ(Set(list, "15", "replaced"), 1);
    EXPECT_EQ(list.m_b2PropertyCount, Limit);
    EXPECT_EQ(list.m_b2PropertyCapacity, Limit);
    EXPECT_EQ(list.m_pachKeys, keys);
    EXPECT_STREQ(list.m_pachValues[Limit - 1], "replaced");
    for (char*** table : tables) {
        std::fill_n(*table, Limit - 16, static_cast<char*>(nullptr));
    }
}

} // namespace
