// SPDX-License-Identifier: MIT
#include "support/support.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>

using namespace VESK;

namespace {

char* const Standard = Section::Standard;

using Plain = std::vector<std::array<std::string, 3>>; // section, key, value

auto Find(Plain& list, const std::string& section, const std::string& key) {
    return std::find_if(list.begin(), list.end(),
                        [&](const auto& entry) { return entry[0] == section && entry[1] == key; });
}

void Put(Plain& list, const std::array<std::string, 3>& entry) {
    const auto known = Find(list, entry[0], entry[1]);
    known == list.end() ? list.push_back(entry) : void((*known)[2] = entry[2]);
}

// Keys that share their first seven, eight and nine characters, in sections that nearly have the same name.
TEST(Properties, AgreesWithAPlainListOnRandomKeys) {
    std::mt19937 random(1);
    const auto pick = [&](std::size_t count) { return random() % count; };
    const std::string sections[] = {"Standard", "standard", "", "Standards", "Camera"};
    PROPERTIES lists[2];
    Plain plains[2];
    for (int step = 0; step < 4000; ++step) {
        const std::size_t at = pick(2), way = step % 500 == 499 ? 3 : pick(3);
        const int number = static_cast<int>(random()) >> pick(32);
        const std::string section = sections[pick(5)];
        std::string key = std::string(pick(18), 'k') + (pick(2) ? "K" : ""),
                    text = std::string(pick(20), 'v') + "=";
        std::string pair = key + "=" + text, missing = key.substr(0, pick(key.size() + 1));
        PROPERTIES& list = lists[at];
        ASSERT_EQ(way == 0   ? Set(list, key.c_str(), text, section.c_str())
                  : way == 1 ? list.AddKeyValuePair(Text(section.c_str()), pair.data())
                  : way == 2 ? list.SetProperty(key.data(), number, Text(section.c_str()))
                             : list.Copy(&lists[1 - at]),
                  1);
        for (const auto& entry : way < 3 ? Plain{{section, key, way == 2 ? std::to_string(number) : text}}
                                         : Plain(plains[1 - at])) {
            Put(plains[at], entry);
        }
        const auto found = Find(plains[at], section, missing);
        const bool known = found != plains[at].end();
        char buffer[40] = "";
        Byte2Type index = 999;
        const auto size = static_cast<Byte2Type>(1 + pick(20));
        ASSERT_EQ(list.GetProperty(missing.data(), buffer, size, pair.data(), Text(section.c_str())), known);
        ASSERT_EQ(buffer, (known ? (*found)[2] : std::string(pair.data())).substr(0, size - 1u));
        ASSERT_EQ(list.FindProperty(missing.data(), &index, Text(section.c_str())), known);
        ASSERT_EQ(index, known ? found - plains[at].begin() : 999);
        ASSERT_EQ(list.m_b2PropertyCapacity, (plains[at].size() + 15) / 16 * 16);
    }
    std::string all;
    for (std::size_t u = 0; u < plains[0].size(); ++u) {
        auto& [section, key, value] = plains[0][u];
        all += (u ? " " : "") + section + "." + key + "=" + value;
        char ownKey[32] = "", ownValue[32] = "", name[32] = "";
        EXPECT_EQ(lists[0].GetKeyValuePair(static_cast<Byte2Type>(u), Text("other"), ownKey, ownValue), 0);
        EXPECT_EQ(lists[0].GetKeyValuePair(static_cast<Byte2Type>(u), section.data(), nullptr, nullptr), 1);
        EXPECT_EQ(lists[0].GetKeyValuePair(static_cast<Byte2Type>(u), section.data(), ownKey, ownValue), 1);
        EXPECT_EQ(lists[0].GetKeyName(static_cast<Byte2Type>(u), name), 1);
        EXPECT_EQ((std::array{key, key, value}), (std::array<std::string, 3>{name, ownKey, ownValue}));
    }
    EXPECT_EQ(lists[0].GetKeyName(lists[0].GetNumberOfProperties(), nullptr), 0);
    EXPECT_EQ(lists[0].GetKeyValuePair(lists[0].GetNumberOfProperties(), Standard, nullptr, nullptr), 0);
    EXPECT_EQ(Entries(lists[0]), all);
    EXPECT_EQ(lists[0].Copy(&lists[0]) + lists[0].Copy(nullptr), 2);
    EXPECT_EQ(Entries(lists[0]), all);
    lists[0].Reset();
    EXPECT_EQ(lists[0].m_b2PropertyCapacity + lists[0].m_b2PropertyCount, 0);
    EXPECT_EQ(lists[0].m_pachKeys, nullptr);
}

TEST(Properties, NullsAndMissingEntriesLeaveEverythingAsItWas) {
    PROPERTIES list;
    char nothing[] = "no sign", buffer[8] = "?";
    Byte2Type number = 77;
    list.SetProperty(Key::Name, static_cast<char*>(nullptr), Standard); // stored as the empty text
    EXPECT_EQ(
        list.SetProperty(nullptr, Text("x"), Standard) + list.SetProperty(nullptr, 1, Standard) +
            list.SetProperty(Key::Name, Text("x"), nullptr) + list.FindProperty(nullptr, &number, Standard) +
            list.FindProperty(Key::Name, nullptr, Standard) + list.FindProperty(Key::Name, &number, nullptr) +
            list.GetPropertyLength(Key::Debug, &number, Standard) +
            list.GetProperty(Key::Debug, buffer, 8, nullptr, Standard),
        0);
    EXPECT_EQ(list.AddKeyValuePair(Standard, nothing), 1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(number, 77);
    EXPECT_EQ(Entries(list), "Standard.Name=");
    for (const std::size_t length : {0u, 9u, 65535u, 70000u}) {
        Set(list, "Name", std::string(length, 'x'));
        EXPECT_EQ(list.GetPropertyLength(Key::Name, &number, Standard), 1);
        EXPECT_EQ(number, length < 65535 ? length : 65535);
    }
}

// The value that a stream's reader stores.
template <class Value>
Value Streamed(const std::string& text) {
    MemoryRead reader("k=" + text + "\n");
    Value value = 99;
    EXPECT_EQ(reader.Deserialize(&value), 1);
    return value;
}

template <class Value>
Value Got(PROPERTIES& list, Value missing) {
    Value value = 99;
    EXPECT_EQ(list.GetProperty(Text("none"), &value, missing, Standard), 0);
    EXPECT_EQ(value, missing);
    EXPECT_EQ(list.GetProperty(Text("n"), &value, missing, Standard), 1);
    return value;
}

TEST(Numbers, EveryFormReadsEveryTextAlikeInBothWidths) {
    const struct {
        const char* text;
        int number;           // of 32 bits, clamped; smaller types take its low bits
        unsigned int natural; // likewise
        long long longNumber;
    } readings[] = {{" \t\r+12abc", 12, 12, 12},
                    {"abc", 0, 0, 0},
                    {"", 0, 0, 0},
                    {"- 1", 0, 0, 0},
                    {"200", 200, 200, 200},
                    {"-1", -1, 4294967295, -1},
                    {"70000", 70000, 70000, 70000},
                    {"2147483648", INT_MAX, 2147483648, 2147483648},
                    {"-2147483649", INT_MIN, 2147483647, -2147483649},
                    {"4294967296", INT_MAX, 4294967295, 4294967296},
                    {"-4294967295", INT_MIN, 1, -4294967295},
                    {"-4294967297", INT_MIN, 4294967295, -4294967297},
                    {"99999999999999999999999", INT_MAX, 4294967295, LLONG_MAX},
                    {"-99999999999999999999999", INT_MIN, 4294967295, LLONG_MIN}};
    for (const auto& [text, number, natural, longNumber] : readings) {
        SCOPED_TRACE(text);
        EXPECT_EQ(fwatoi(Text(text)), number);
        EXPECT_EQ(fwatol(Text(text)), number);
        errno = EINTR; // stays when the number was in range
        EXPECT_EQ(fwstrtoul(text, nullptr, 10), natural);
        EXPECT_EQ(errno, longNumber == std::clamp(longNumber, -4294967295ll, 4294967295ll) ? EINTR : ERANGE);
        PROPERTIES list;
        Set(list, "n", text);
        EXPECT_EQ(Got(list, 5), number);
        EXPECT_EQ(Got(list, 5u), static_cast<unsigned int>(number));
        EXPECT_EQ(Got(list, Byte2Type{5}), static_cast<Byte2Type>(number));
        EXPECT_EQ(Got(list, 5ll), longNumber);
        EXPECT_EQ(Got(list, 5ull), static_cast<unsigned long long>(longNumber));
        EXPECT_EQ(Streamed<int>(text), number);
        EXPECT_EQ(Streamed<unsigned int>(text), natural);
        EXPECT_EQ(Streamed<short>(text), static_cast<short>(number));
        EXPECT_EQ(Streamed<unsigned short>(text), static_cast<unsigned short>(natural));
        EXPECT_EQ(Streamed<char>(text), static_cast<char>(number));
        EXPECT_EQ(Streamed<unsigned char>(text), static_cast<unsigned char>(natural));
    }
    char* end = nullptr;
    const char* const text = "ffz";
    EXPECT_EQ(fwstrtoul(text, &end, 16), 255u);
    EXPECT_EQ(end, text + 2);
}

TEST(Properties, NumbersStandAsDecimalTextAndPointersComeBack) {
    PROPERTIES list;
    list.SetProperty(Text("i"), INT_MIN, Standard);
    list.SetProperty(Text("u"), 4294967295u, Standard);
    list.SetProperty(Text("b"), Byte2Type{65535}, Standard);
    list.SetProperty(Text("m"), LLONG_MIN, Standard);
    EXPECT_EQ(Entries(list),
              "Standard.i=-2147483648 Standard.u=-1 Standard.b=65535 Standard.m=-9223372036854775808");
    for (long long power = 1; power <= 100000000000000000; power *= 10) {
        for (const long long number : {power - 1, power, -power, power + power / 100, 1 - power}) {
            list.SetProperty(Text("m"), number, Standard);
            list.SetProperty(Text("i"), static_cast<int>(number), Standard);
            EXPECT_EQ(list.m_pachValues[3] + (" " + std::string(list.m_pachValues[0])),
                      std::to_string(number) + " " + std::to_string(static_cast<int>(number)));
        }
    }
    void* read = nullptr;
    for (void* const pointer :
         {static_cast<void*>(&list), static_cast<void*>(nullptr), reinterpret_cast<void*>(-1)}) {
        list.SetProperty(Text("i"), pointer, Standard);
        read = &read;
        EXPECT_EQ(list.GetProperty(Text("i"), &read, nullptr, Standard), 1);
        EXPECT_EQ(read, pointer);
        char text[32];
        std::snprintf(text, sizeof text, "%p", pointer);
        EXPECT_STREQ(list.m_pachValues[0], text);
    }
    Set(list, "i", "nowhere");
    EXPECT_EQ(list.GetProperty(Text("i"), &read, nullptr, Standard), 1);
    EXPECT_EQ(read, reinterpret_cast<void*>(-1)); // left alone
    EXPECT_EQ(list.GetProperty(Text("q"), &read, &list, Standard), 0);
    EXPECT_EQ(read, &list);
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
    EXPECT_EQ(Set(list, "15", "replaced"), 1);
    EXPECT_EQ(list.m_b2PropertyCount, Limit);
    EXPECT_EQ(list.m_b2PropertyCapacity, Limit);
    EXPECT_STREQ(list.m_pachValues[Limit - 1], "replaced");
    for (char*** table : tables) {
        std::fill_n(*table, Limit - 16, static_cast<char*>(nullptr));
    }
}

} // namespace
