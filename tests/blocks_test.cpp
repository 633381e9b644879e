// SPDX-License-Identifier: MIT
// The 3-to-4 coding and its records, each way of the library's against bit-by-bit ones, between fences.
#include "fwlib/internal/asciize.h"
#include "support/fenced.h"
#include "support/support.h"

#include <gtest/gtest.h>
#include <random>

using namespace VESK;

namespace {

// The bits of a group of three bytes, the first byte's lowest first, in the order of the characters' bits.
constexpr unsigned int BitOf[24] = {0,  1,  2,  3,  4,  5,  8,  9,  10, 11, 6,  7,
                                    16, 17, 12, 13, 14, 15, 18, 19, 20, 21, 22, 23};

Bytes Encoded(Bytes data) {
    Bytes text;
    data.resize((data.size() + 2) / 3 * 3);
    for (std::size_t group = 0; group < data.size(); group += 3) {
        for (unsigned int bit = 0; bit < 24; ++bit) {
            if (bit % 6 == 0) {
                text += ' ';
            }
            const unsigned int from = BitOf[bit];
            text.back() = static_cast<unsigned char>(text.back() +
                                                     ((data[group + from / 8] >> from % 8 & 1) << bit % 6));
        }
    }
    return text;
}

// What is left of characters outside the range is part of the format too.
Bytes Decoded(const Bytes& text) {
    Bytes data;
    for (std::size_t group = 0; group < text.size(); group += 4) {
        const int d0 = text[group] - 32, d1 = text[group + 1] - 32, d2 = text[group + 2] - 32,
                  d3 = text[group + 3] - 32;
        data += static_cast<unsigned char>(d0 | (d1 & 0x30) << 2);
        data += static_cast<unsigned char>((d1 & 0x0F) | (d2 & 0x3C) << 2);
        data += static_cast<unsigned char>((d2 & 0x03) | (d3 & 0x3F) << 2);
    }
    return data;
}

std::mt19937 cRandom(4);

Bytes RandomBytes(std::size_t size, unsigned int least = 0, unsigned int most = 255) {
    std::uniform_int_distribution<unsigned int> any(least, most);
    Bytes bytes(size, 0);
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(any(cRandom));
    }
    return bytes;
}

const GroupCoder* const Coders[] = {&cPlainCoder, &ChooseGroupCoder()};

TEST(Blocks, EveryCoderCodesEveryLengthAtEveryAlignmentAndNothingOutside) {
    static Fenced source(400), target(400);
    for (std::size_t groups = 0; groups <= 100; ++groups) {
        const Bytes data = RandomBytes(groups * 3), text = Encoded(data);
        Bytes wild = groups % 2 ? RandomBytes(groups * 4) : text;
        wild.replace(groups * 2, groups > 0, groups > 0, '\n'); // the only one out of range
        const Bytes tamed = Decoded(wild);
        ASSERT_EQ(Decoded(text), data);
        for (std::size_t away = 0; away < 32; ++away) {
            for (const GroupCoder* coder : Coders) {
                for (const bool back : {false, true}) {
                    unsigned char* place = target.Room(text.size(), !back, away);
                    coder->pEncode(place, source.Hold(data, back, away), groups);
                    ASSERT_TRUE(target.OnlyHas(text, place)) << groups << " groups, " << away << back;
                    for (const auto& [from, to] : {std::pair(&text, &data), {&wild, &tamed}}) {
                        place = source.Room(to->size(), back, away);
                        coder->pDecode(place, target.Hold(*from, !back, away), groups);
                        ASSERT_TRUE(source.OnlyHas(*to, place)) << groups << " groups, " << away << back;
                    }
                }
            }
        }
    }
}

TEST(Blocks, LongRunsAreCodedLikeShortOnes) {
    for (const std::size_t groups : {1365u, 21845u, 65333u}) {
        const Bytes data = RandomBytes(groups * 3), text = Encoded(data);
        Bytes wild = text;
        for (std::size_t u = 0; u < wild.size(); u += 997) {
            wild[u] = static_cast<unsigned char>(u % 32);
        }
        Fenced source(data.size()), target(text.size());
        for (const GroupCoder* coder : Coders) {
            unsigned char* place = target.Room(text.size());
            coder->pEncode(place, source.Hold(data), groups);
            EXPECT_TRUE(target.OnlyHas(text, place));
            place = source.Room(data.size());
            coder->pDecode(place, target.Hold(wild), groups);
            EXPECT_TRUE(source.OnlyHas(Decoded(wild), place));
        }
    }
}

// Hands out a line that ends at a fence.
class FencedRead : public SRead {
public:
    explicit FencedRead(const Bytes& line) : m_cLine(line.size() + 1) {
        m_pchLine = reinterpret_cast<char*>(m_cLine.Hold(line + Bytes(1, 0)));
    }
    char* ReadLine() override { return m_pchLine; }

private:
    Fenced m_cLine;
    char* m_pchLine;
};

TEST(Blocks, RecordsBringEveryByteStringBack) {
    Bytes every(256, 0);
    for (std::size_t u = 0; u < every.size(); ++u) {
        every[u] = static_cast<unsigned char>(u);
    }
    std::vector<Bytes> strings = {every, RandomBytes(65536), RandomBytes(195999), RandomBytes(196000)};
    for (std::size_t size = 0; size <= 300; ++size) {
        strings.push_back(RandomBytes(size));
    }
    for (const Bytes& data : strings) {
        Fenced source(data.size()), target(data.size());
        MemoryWrite writer;
        const int size = static_cast<int>(data.size());
        EXPECT_EQ(writer.SerializeBlock(Text("key"), source.Hold(data), size), 1);
        const Bytes text = Encoded(data);
        const std::vector<std::string> pieces = {"key", "=", std::string(text.begin(), text.end()), "\n"};
        ASSERT_EQ(writer.pieces, pieces);
        writer.all.pop_back();
        FencedRead reader(BytesOf(writer.all));
        unsigned char* const place = target.Room(data.size());
        EXPECT_EQ(reader.DeserializeBlock(place, size), 1);
        ASSERT_TRUE(target.OnlyHas(data, place)) << size;
    }
}

TEST(Blocks, RecordsAreWrittenAsTold) {
    unsigned char data[] = "Hello";
    const struct {
        const char* key;
        unsigned char* data;
        int count;
        std::vector<std::string> pieces;
    } cases[] = {{"k", data, 0, {"k", "=", "", "\n"}},        {"k", data, -5, {"k", "=", "", "\n"}},
                 {"k", nullptr, 5, {"k", "=", "\n"}},         {nullptr, data, 5, {}},
                 {"", data, 5, {"", "=", "(58;L?8 ", "\n"}},  {"k", data, 1, {"k", "=", "(0  ", "\n"}},
                 {"a=b", data, 3, {"a=b", "=", "(58;", "\n"}}};
    for (const auto& c : cases) {
        MemoryWrite writer;
        EXPECT_EQ(writer.SerializeBlock(Text(c.key), c.data, c.count), 1);
        EXPECT_EQ(writer.pieces, c.pieces);
    }
    for (const auto& [bytes, text] :
         {std::pair{"ABC", "!230"}, {"A", "!0  "}, {"AB", "!20 "}, {"\xFF\xFF\xFF", "____"}}) {
        MemoryWrite writer;
        EXPECT_EQ(writer.WriteAsciized(Text(bytes), static_cast<unsigned int>(std::strlen(bytes))), 0u);
        EXPECT_EQ(writer.pieces, std::vector<std::string>(1, text)); // and the answer is WriteData's
    }
    char groups[9] = "........";
    MemoryWrite().AsciizeTriplets(groups, 1, Text("ABCDEF"));
    EXPECT_STREQ(groups, "!230....");
}

TEST(Blocks, ReadingTakesWhatTheTextHolds) {
    static Fenced target(64);
    for (const unsigned int most :
         {95u, 255u}) { // characters in the range, and any but those that end a line
        for (std::size_t length = 0; length <= 26; ++length) {
            for (int count = -1; count <= 22; ++count) {
                Bytes text = RandomBytes(length, most == 95 ? 32 : 1, most);
                const std::size_t wanted = static_cast<std::size_t>(count > 0 ? count : 0);
                const std::size_t groups = std::min(length / 4, wanted / 3), rest = wanted - groups * 3;
                Bytes expected = Decoded(text.substr(0, groups * 4));
                const bool whole = rest == 0 || (rest < 3 && length >= groups * 4 + rest + 1);
                if (whole && rest > 0) {
                    Bytes last = text.substr(groups * 4, rest + 1);
                    last.resize(4);
                    expected += Decoded(last).substr(0, rest);
                }
                FencedRead reader(BytesOf("k=") + text);
                unsigned char* const place = target.Room(wanted, true, 0);
                ASSERT_EQ(reader.DeserializeBlock(place, count), whole) << length << " for " << count;
                ASSERT_TRUE(target.OnlyHas(expected, place)) << length << " for " << count;
            }
        }
    }
    MemoryRead reader("no sign\n\n=!230\nk=!230\nk=====\nk=!230!0  \n");
    unsigned char data[] = "......";
    EXPECT_EQ(reader.DeserializeBlock(data, 3) + reader.DeserializeBlock(data, 3), 0);
    EXPECT_EQ(reader.DeserializeBlock(nullptr, 3), 0); // each takes its line
    EXPECT_STREQ(reinterpret_cast<char*>(data), "......");
    EXPECT_EQ(reader.DeserializeBlock(data, 1), 1);
    EXPECT_STREQ(reinterpret_cast<char*>(data), "A.....");
    EXPECT_EQ(reader.DeserializeBlock(data, 3), 1); // a "=" in the value is a character like others
    EXPECT_EQ(Bytes(data, 3), Decoded(BytesOf("====")));
    EXPECT_EQ(reader.DeserializeBlock(data, 99), 0); // more than there is: whole groups
    EXPECT_EQ(std::string(data, data + 6), std::string("ABCA\0\0", 6));
    EXPECT_EQ(reader.DeserializeBlock(data, 3), 0); // the end
}

} // namespace
