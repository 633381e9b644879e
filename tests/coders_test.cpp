// SPDX-License-Identifier: MIT
// The 3-to-4 coding, its records, and the compressor with its inverse: each way of the library's against one that
// follows the description of the format bit by bit, between fences.
#include "fwlib/internal/asciize.h"
#include "fwlib/internal/suppress.h"
#include "support/fenced.h"
#include "support/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace VESK;

namespace {

std::mt19937 cRandom(4);

unsigned int Below(std::size_t end) {
    return static_cast<unsigned int>(cRandom() % end);
}

Bytes RandomBytes(std::size_t size, unsigned int least = 0, unsigned int most = 255) {
    Bytes bytes(size, 0);
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(least + Below(most - least + 1));
    }
    return bytes;
}

// The bits of a group of three bytes, the first byte's lowest first, in the order of the characters' bits.
constexpr unsigned int BitOf[24] = {0,  1,  2,  3,  4,  5,  8,  9,  10, 11, 6,  7,
                                    16, 17, 12, 13, 14, 15, 18, 19, 20, 21, 22, 23};

Bytes Encoded(Bytes data) {
    Bytes text;
    data.resize((data.size() + 2) / 3 * 3);
    for (std::size_t bit = 0; bit < data.size() * 8; ++bit) {
        text.append(bit % 6 == 0, ' ');
        const unsigned int from = BitOf[bit % 24];
        const unsigned int value = data[bit / 24 * 3 + from / 8] >> from % 8 & 1;
        text.back() = static_cast<unsigned char>(text.back() + (value << bit % 6));
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

TEST(Blocks, EveryCoderCodesEveryLengthAtEveryAlignmentAndNothingOutside) {
    static Fenced source(400), target(400);
    for (std::size_t groups = 0; groups <= 100; ++groups) {
        const Bytes data = RandomBytes(groups * 3), text = Encoded(data);
        Bytes wild = groups % 2 ? RandomBytes(groups * 4) : text;
        wild.replace(groups * 2, groups > 0, groups > 0, '\n'); // the only one out of range
        const Bytes tamed = Decoded(wild);
        for (std::size_t away = 0; away < 32; ++away) {
            for (const GroupCoder* coder : {&cPlainCoder, &ChooseGroupCoder()}) {
                const bool back = away / 4 % 2 == 0;
                unsigned char* place = target.Room(text.size(), !back, away);
                coder->pEncode(place, source.Hold(data, back, away), groups);
                ASSERT_TRUE(target.OnlyHas(text, place)) << groups << " groups, " << away;
                for (const auto& [from, to] : {std::pair(&text, &data), {&wild, &tamed}}) {
                    place = source.Room(to->size(), back, away);
                    coder->pDecode(place, target.Hold(*from, !back, away), groups);
                    ASSERT_TRUE(source.OnlyHas(*to, place)) << groups << " groups, " << away;
                }
            }
        }
    }
}

// Hands out a line that ends at a fence.
struct FencedRead : SRead {
    explicit FencedRead(const Bytes& text)
        : room(text.size() + 1), line(reinterpret_cast<char*>(room.Hold(text + Bytes(1, 0)))) {}
    char* ReadLine() override { return line; }
    Fenced room;
    char* line;
};

TEST(Blocks, RecordsBringEveryByteStringBack) {
    for (std::size_t size = 0; size <= 303; ++size) {
        const Bytes data = RandomBytes(size <= 300 ? size : size == 301 ? 65536 : 195697 + size);
        const Bytes text = Encoded(data);
        Fenced source(data.size()), target(data.size());
        MemoryWrite writer;
        const int count = static_cast<int>(data.size());
        EXPECT_EQ(writer.SerializeBlock(Text("key"), source.Hold(data), count), 1);
        const std::vector<std::string> pieces = {"key", "=", std::string(text.begin(), text.end()), "\n"};
        ASSERT_EQ(writer.pieces, pieces);
        FencedRead reader(BytesOf("key=") + text);
        unsigned char* const place = target.Room(data.size());
        EXPECT_EQ(reader.DeserializeBlock(place, count), 1);
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
    } cases[] = {{"k", data, 0, {"k", "=", "", "\n"}},
                 {"k", data, -5, {"k", "=", "", "\n"}},
                 {"k", nullptr, 5, {"k", "=", "\n"}},
                 {nullptr, data, 5, {}},
                 {"a=b", data, 5, {"a=b", "=", "(58;L?8 ", "\n"}}};
    for (const auto& c : cases) {
        MemoryWrite writer;
        EXPECT_EQ(writer.SerializeBlock(Text(c.key), c.data, c.count), 1);
        EXPECT_EQ(writer.pieces, c.pieces);
    }
    MemoryWrite writer;
    EXPECT_EQ(writer.WriteAsciized(Text("ABCA"), 4), 0u); // the answer is WriteData's
    EXPECT_EQ(writer.all, "!230!0  ");
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
                const Bytes text = RandomBytes(length, most == 95 ? 32 : 1, most);
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
    MemoryRead reader("no sign\nk=!230\nk==!!!\n");
    unsigned char data[] = "...";
    EXPECT_EQ(reader.DeserializeBlock(data, 3) + reader.DeserializeBlock(nullptr, 3),
              0);                                   // each takes its line
    EXPECT_EQ(reader.DeserializeBlock(data, 3), 1); // a "=" in the value is a character like others
    EXPECT_EQ(Bytes(data, 3), Decoded(BytesOf("=!!!")));
    EXPECT_EQ(reader.DeserializeBlock(data, 3), 0); // the end
}

using Words = std::vector<unsigned int>;

Bytes Stored(const Words& words) {
    Bytes bytes;
    for (std::size_t u = 0; u < words.size() * 4; ++u) {
        bytes += static_cast<unsigned char>(words[u / 4] >> u % 4 * 8);
    }
    return bytes;
}

// The forward coding of a block; that of the backward layout is the reverse of the reversed block's.
Words Coded(Words block, bool backward) {
    Words zeros = {0x80000000}, repeats = {0};
    backward ? std::reverse(block.begin(), block.end()) : void();
    for (unsigned int u = 0; u < 30; ++u) {
        block[u] == 0 ? void(zeros[0] |= 1u << u) : zeros.push_back(block[u]);
        u > 0 && block[u] == block[u - 1] ? void(repeats[0] |= 1u << u) : repeats.push_back(block[u]);
    }
    Words& coded = repeats.size() >= zeros.size() ? zeros : repeats;
    backward ? std::reverse(coded.begin(), coded.end()) : void();
    return coded;
}

// A tail counts, but is not coded; a coding that is not shorter is none.
Bytes Coded(const Words& words, std::size_t size, bool backward) {
    Bytes coded;
    for (std::ptrdiff_t at = 0; static_cast<std::size_t>(at + 30) * 4 <= size; at += 30) {
        coded += Stored(Coded(Words(words.begin() + at, words.begin() + at + 30), backward));
    }
    return coded.size() < size ? coded : Bytes();
}

const BlockCoder* const BlockCoders[] = {&cPlainBlockCoder, &ChooseBlockCoder()};

void CheckBothWays(const Words& words, std::size_t size, bool backward, std::size_t away) {
    static Fenced source(66000), target(66000);
    const Bytes data = Stored(words).substr(0, size), blocks = data.substr(0, size / 120 * 120);
    const Bytes coded = Coded(words, size, backward);
    const std::size_t room = size > 0 ? size - 1 : 0;
    for (const BlockCoder* coder : BlockCoders) {
        unsigned char* place = target.Room(room, true, away);
        ASSERT_EQ(coder->pCompress(place, source.Hold(data, true, away), size, backward), coded.size());
        ASSERT_EQ(Bytes(place, coded.size()), coded);
        ASSERT_TRUE(target.OnlyHas(Bytes(place, room), place));
        if (coded.empty()) {
            continue;
        }
        place = source.Room(blocks.size(), away % 2 == 0, away);
        const unsigned char* const from = target.Hold(coded, away % 2 == 0, away);
        ASSERT_EQ(coder->pExpand(place, blocks.size(), from, coded.size(), backward), blocks.size());
        ASSERT_TRUE(source.OnlyHas(blocks, place));
        place = source.Room(blocks.size() - 1);
        ASSERT_EQ(coder->pExpand(place, blocks.size() - 1, from, coded.size(), backward), 0u);
        ASSERT_TRUE(source.OnlyHas(Bytes(place, blocks.size() - 1), place));
    }
}

TEST(Suppress, EveryCoderWritesTheFormatAndReadsItBack) {
    for (int round = 0; round < 1500;
         ++round) { // zeros, runs, small and large numbers in changing proportions
        const std::size_t size = round < 2 ? 65535 : Below(round % 50 ? 1300 : 65536);
        const unsigned int zeros = round < 2 ? 0 : Below(101), runs = round < 2 ? 0 : Below(101);
        Words words;
        while (words.size() * 4 < size + 120) {
            const unsigned int word = Below(100) < zeros ? 0 : Below(2) ? 1 + Below(3) : Below(0xFFFFFFFF);
            words.push_back(!words.empty() && Below(100) < runs ? words.back() : word);
        }
        CheckBothWays(words, size, round % 2, Below(32));
    }
    const Words sevens(30, 7);
    for (const int number : {0, 1, 2, 255}) {
        const auto flag = static_cast<unsigned char>(number);
        Bytes data = Stored(sevens), coded(119, 0), back(120, 0);
        const Byte2Type size = MemoryWrite().Compress(coded.data(), data.data(), 120, flag);
        EXPECT_EQ(coded.substr(0, size), Coded(sevens, 120, flag == 2));
        EXPECT_EQ(SRead::Decompress(back.data(), 120, coded.data(), size, flag), 120u);
        EXPECT_EQ(back, data);
    }
}

TEST(Suppress, WhatIsNoCodingIsRefused) {
    const Words refused[] = {{},
                             {0xFFFFFFFF},              // the bit that is never set
                             {0x3FFFFFFF},              // a repeat of nothing
                             {0xBFFFFFFE},              // a list that is missing
                             {0x3FFFFFFC, 1},           // one that is cut
                             {0xBFFFFFFF, 0x3FFFFFFE}}; // a second block likewise
    for (const unsigned int layout : {0u, 2u}) {
        const auto flag = static_cast<unsigned char>(layout);
        Bytes target(600, 0);
        for (Words words : refused) {
            flag ? std::reverse(words.begin(), words.end()) : void();
            Bytes source = Stored(words);
            EXPECT_EQ(SRead::Decompress(target.data(), 600, source.data(),
                                        static_cast<Byte4Type>(source.size()), flag),
                      0u);
        }
        for (const Byte4Type size : {1u, 3u, 5u, 7u}) { // no whole words
            EXPECT_EQ(SRead::Decompress(target.data(), 600, Bytes(size, 0xFF).data(), size, flag), 0u);
        }
    }
}

TEST(Suppress, GarbageIsReadAlikeByEveryCoderAndNothingOutside) {
    static Fenced source(1000), target(3000);
    int good = 0;
    for (int round = 0; round < 20000; ++round) {
        const bool backward = round % 2;
        Bytes garbage;
        while (garbage.size() < 400 && Below(6) > 0) { // likely bitmaps among unlikely words
            Words words(1 + Below(3), Below(2) ? Below(0xFFFFFFFF) : 3);
            const unsigned int bitmap =
                0xBFFFFFFF & ~(Below(2) << 31) & ~(1u << Below(30)) & ~(1u << Below(9));
            words.insert(backward ? words.end() : words.begin(), bitmap);
            garbage += Stored(words);
        }
        garbage.resize(garbage.size() - std::min<std::size_t>(garbage.size(), Below(8) ? 0 : Below(5)));
        const std::size_t room = Below(2) ? 2900 : Below(400);
        Bytes results[2];
        for (int i = 0; i < 2; ++i) {
            unsigned char* const place = target.Room(room, Below(2));
            const std::size_t written = BlockCoders[i]->pExpand(place, room, source.Hold(garbage, Below(2)),
                                                                garbage.size(), backward);
            ASSERT_TRUE(target.OnlyHas(Bytes(place, room), place));
            ASSERT_TRUE(written <= room && written % 120 == 0);
            results[i] = Bytes(place, written);
        }
        ASSERT_EQ(results[0], results[1]);
        good += !results[0].empty();
    }
    EXPECT_GT(good, 100); // else the garbage would not reach far
}

} // namespace
