// SPDX-License-Identifier: MIT
// The compressor against one that follows the description of the format word by word, and its inverse, each way of
// the library's between fences.
#include "fwlib/internal/suppress.h"
#include "support/fenced.h"
#include "support/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace VESK;

namespace {

using Words = std::vector<unsigned int>;

Bytes Stored(const Words& words) {
    Bytes bytes;
    for (const unsigned int word : words) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<unsigned char>(word >> shift);
        }
    }
    return bytes;
}

Words Loaded(const Bytes& bytes) {
    Words words(bytes.size() / 4);
    for (std::size_t u = 0; u < words.size() * 4; ++u) {
        words[u / 4] |= static_cast<unsigned int>(bytes[u]) << u % 4 * 8;
    }
    return words;
}

// The forward coding of a block; that of the backward layout is the reverse of the reversed block's.
Words Coded(const Words& block) {
    Words zeros = {0x80000000}, repeats = {0};
    for (unsigned int u = 0; u < 30; ++u) {
        if (block[u] == 0) {
            zeros[0] |= 1u << u;
        } else {
            zeros.push_back(block[u]);
        }
        if (u > 0 && block[u] == block[u - 1]) {
            repeats[0] |= 1u << u;
        } else {
            repeats.push_back(block[u]);
        }
    }
    return repeats.size() >= zeros.size() ? zeros : repeats;
}

Bytes Coded(const Bytes& source, bool backward) {
    Bytes coded;
    for (std::size_t at = 0; at + 120 <= source.size(); at += 120) {
        Words block = Loaded(source.substr(at, 120));
        if (backward) {
            std::reverse(block.begin(), block.end());
        }
        block = Coded(block);
        if (backward) {
            std::reverse(block.begin(), block.end());
        }
        coded += Stored(block);
        if (coded.size() >= source.size()) {
            return {};
        }
    }
    return coded;
}

std::mt19937 cRandom(5);

unsigned int Below(std::size_t end) {
    return static_cast<unsigned int>(cRandom() % end);
}

// Zeros, runs, small and large numbers, in proportions that differ from call to call.
Bytes Data(std::size_t size) {
    const unsigned int zeros = Below(101), runs = Below(101);
    Words words;
    while (words.size() * 4 < size) {
        const unsigned int word = Below(100) < zeros ? 0 : Below(2) ? 1 + Below(3) : Below(0xFFFFFFFF);
        words.push_back(!words.empty() && Below(100) < runs ? words.back() : word);
    }
    return Stored(words).substr(0, size);
}

const BlockCoder* const Coders[] = {&cPlainBlockCoder, &ChooseBlockCoder()};

void CheckBothWays(const Bytes& data, bool backward, std::size_t away) {
    static Fenced source(66000), target(66000);
    const Bytes coded = Coded(data, backward), blocks = data.substr(0, data.size() / 120 * 120);
    const std::size_t room = data.empty() ? 0 : data.size() - 1;
    for (const BlockCoder* coder : Coders) {
        unsigned char* place = target.Room(room, true, away);
        ASSERT_EQ(coder->pCompress(place, source.Hold(data, true, away), data.size(), backward),
                  coded.size());
        ASSERT_EQ(Bytes(place, coded.size()), coded);
        ASSERT_TRUE(target.OnlyHas(Bytes(place, room), place));
        if (coded.empty()) {
            continue;
        }
        const bool back = away % 2 == 0;
        place = source.Room(blocks.size(), back, away);
        const unsigned char* const from = target.Hold(coded, back, away);
        ASSERT_EQ(coder->pExpand(place, blocks.size(), from, coded.size(), backward), blocks.size());
        ASSERT_TRUE(source.OnlyHas(blocks, place));
        place = source.Room(blocks.size() - 1);
        ASSERT_EQ(coder->pExpand(place, blocks.size() - 1, from, coded.size(), backward), 0u);
        ASSERT_TRUE(source.OnlyHas(Bytes(place, blocks.size() - 1), place));
    }
}

TEST(Suppress, EveryCoderWritesTheFormatAndReadsItBack) {
    for (int round = 0; round < 1500; ++round) {
        CheckBothWays(Data(Below(round % 50 ? 1300 : 65536)), round % 2, Below(32));
    }
    for (const bool backward : {false, true}) {
        CheckBothWays(Bytes(65535, 0), backward, 1);
        Bytes incompressible(65535, 0);
        for (unsigned char& byte : incompressible) {
            byte = static_cast<unsigned char>(1 + Below(255));
        }
        CheckBothWays(incompressible, backward, 0); // 67,704 bytes, which 16 bits would take for 2,168
    }
}

Words Block(unsigned int count, unsigned int word) { // count words, then zeros
    Words block(30);
    std::fill_n(block.begin(), count, word);
    return block;
}

TEST(Suppress, TheCasesAtTheEdges) {
    Words fifth(30), rising(30), falling(30);
    fifth[3] = 5;
    for (unsigned int u = 0; u < 30; ++u) {
        rising[u] = u + 1;
    }
    falling = rising;
    falling[4] = falling[5] = 0; // 28 that are not zero
    Words twoBlocks = rising;
    twoBlocks.resize(60);
    const Bytes all = Stored(rising);
    const struct {
        Bytes data;
        unsigned char flag;
        Bytes coded;
    } cases[] = {
        {Stored(fifth), 0, Stored({0xBFFFFFF7, 5})},
        {Stored(Words(30, 7)), 0, Stored({0x3FFFFFFE, 7})},
        {Stored(Block(2, 1)), 0, Stored({0xBFFFFFFC, 1, 1})}, // a tie
        {Stored(Block(1, 5)), 0, Stored({0xBFFFFFFE, 5})},
        {Stored(Block(1, 5)), 1, Stored({0xBFFFFFFE, 5})},
        {Stored(Block(1, 5)), 255, Stored({0xBFFFFFFE, 5})},
        {Stored(Block(1, 5)), 2, Stored({5, 0x9FFFFFFF})},
        {Stored(Block(4, 9)), 2, Stored({9, 0, 0x3BFFFFFE})}, // scanned from the end: 26 zeros, then four 9
        {all, 0, {}},                                         // 124 bytes for 120
        {all + Bytes(4, 0), 0, {}},                           // ... for 124, which is not fewer
        {all + Bytes(5, 0), 0, Stored({0x80000000}) + all},   // a tail counts, but is not coded
        {Stored(falling).substr(0, 119), 0, {}},
        {Stored(falling), 0, Stored({0x80000030, 1, 2, 3, 4}) + all.substr(24)},
        {Stored(twoBlocks), 0, Stored({0x80000000}) + all + Stored({0xBFFFFFFF})},
        {Bytes(240, 0), 0, Stored({0xBFFFFFFF, 0xBFFFFFFF})},
        {Bytes(119, 0), 0, {}},
        {{}, 2, {}},
    };
    for (const auto& c : cases) {
        Bytes data = c.data, coded(data.size() + 1, 0);
        MemoryWrite writer;
        const auto size = static_cast<Byte2Type>(data.size());
        const Byte2Type answer = writer.Compress(coded.data(), data.data(), size, c.flag);
        coded.resize(answer);
        EXPECT_EQ(coded, c.coded) << testing::PrintToString(c.data);
        if (answer) {
            Bytes back(data.size() / 120 * 120, 0);
            const auto room = static_cast<Byte4Type>(back.size());
            EXPECT_EQ(SRead::Decompress(back.data(), room, coded.data(), answer, c.flag), room);
            EXPECT_EQ(back, data.substr(0, room));
        }
    }
}

TEST(Suppress, WhatIsNoCodingIsRefused) {
    const Words refused[] = {{},
                             {0x40000000 | 0xBFFFFFFF}, // the bit that is never set
                             {0x3FFFFFFF},              // a repeat of nothing
                             {0xBFFFFFFE},              // a list that is missing
                             {0x3FFFFFFC, 1},           // one that is cut
                             {0xBFFFFFFF, 0x3FFFFFFE}}; // a second block likewise
    for (const bool backward : {false, true}) {
        for (Words words : refused) {
            if (backward) {
                std::reverse(words.begin(), words.end());
            }
            Bytes source = Stored(words), target(600, 0);
            const auto size = static_cast<Byte4Type>(source.size());
            EXPECT_EQ(SRead::Decompress(target.data(), 600, source.data(), size, backward ? 2 : 0), 0u);
        }
        for (const std::size_t size : {1u, 3u, 5u, 7u}) { // no whole words
            Bytes source(size, 0xFF), target(600, 0);
            EXPECT_EQ(SRead::Decompress(target.data(), 600, source.data(), static_cast<Byte4Type>(size),
                                        backward ? 2 : 0),
                      0u);
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
            const std::size_t written =
                Coders[i]->pExpand(place, room, source.Hold(garbage, Below(2)), garbage.size(), backward);
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
