// SPDX-License-Identifier: MIT
// The 3-to-4 coding, its records, and the compressor with its inverse: each coder of the library's against the models
// of the formats, between fences.
#include "../fuzz/models.h"
#include "fwlib/streams/asciize.h"
#include "fwlib/streams/suppress.h"
#include "support/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <sys/mman.h>

// What the compiler's library found out about an x86 processor, a bit for each feature.
extern "C" struct { unsigned int vendor, type, subtype, features; } __cpu_model;

using namespace VESK;

namespace {

#if defined(__x86_64__) || defined(__i386__) // elsewhere there is nothing to choose
TEST(Coders, AreWideWhereTheProcessorHasAllThatTheyUse) {
    const unsigned int found = __cpu_model.features, popcnt = 1 << 2, avx2 = 1 << 10;
    for (const unsigned int features : {0u, popcnt, avx2, popcnt | avx2}) {
        __cpu_model.features = features;
        EXPECT_EQ(&ChooseBlockCoder() != &cPlainBlockCoder, features == (popcnt | avx2));
        EXPECT_EQ(&ChooseGroupCoder() != &cPlainCoder, features >= avx2);
    }
    __cpu_model.features = found;
}
#endif

std::mt19937 cRandom(4);

unsigned int Below(std::size_t end) {
    return static_cast<unsigned int>(cRandom() % end);
}

std::string RandomBytes(std::size_t size) {
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [] { return static_cast<char>(Below(256)); });
    return bytes;
}

// Memory between two pages that nobody may touch, so that an access outside ends the test.
class Fenced {
public:
    explicit Fenced(std::size_t atLeast)
        : m_uSize((atLeast / Page + 1) * Page),
          m_pMapped(mmap(nullptr, m_uSize + 2 * Page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
        mprotect(Inside(), m_uSize, PROT_READ | PROT_WRITE);
    }
    ~Fenced() { munmap(m_pMapped, m_uSize + 2 * Page); }
    Fenced(const Fenced&) = delete;
    Fenced& operator=(const Fenced&) = delete;

    // Room for so many bytes, some way from the front or the back fence, all around it untouched.
    unsigned char* Room(std::size_t size, bool back = true, std::size_t away = 0) {
        std::memset(Inside(), Untouched, m_uSize);
        return Inside() + (back ? m_uSize - size - away : away);
    }
    unsigned char* Hold(const std::string& bytes, bool back = true, std::size_t away = 0) {
        unsigned char* const place = Room(bytes.size(), back, away);
        bytes.copy(reinterpret_cast<char*>(place), bytes.size());
        return place;
    }

    // Whether nothing but the bytes at the place changed since.
    bool OnlyHas(const std::string& bytes, const unsigned char* place) const {
        std::string all(m_uSize, Untouched);
        all.replace(static_cast<std::size_t>(place - Inside()), bytes.size(), bytes);
        return std::memcmp(all.data(), Inside(), m_uSize) == 0;
    }

private:
    static constexpr std::size_t Page = 4096;
    static constexpr char Untouched = '\x67';

    unsigned char* Inside() const { return static_cast<unsigned char*>(m_pMapped) + Page; }

    std::size_t m_uSize;
    void* m_pMapped;
};

// Writes bytes as a record and reads them, then lets each coder do so with the whole groups, and read others.
void CheckBlock(std::size_t size, std::size_t away) {
    const std::size_t groups = size / GroupBytes, filled = (size + 2) / GroupBytes;
    const std::string data = RandomBytes(size), whole = data.substr(0, groups * GroupBytes);
    const bool back = away / 4 % 2 == 0;
    Fenced bytes(size + away), chars(filled * GroupCharacters + away);
    fuzz::Writer writer;
    EXPECT_EQ(writer.SerializeBlock(Text("k"), bytes.Hold(data, back, away), static_cast<int>(size)), 1);
    std::string text = writer.text.substr(2, filled * GroupCharacters);
    ASSERT_EQ(writer.text, "k=" + text + "\n");
    ASSERT_EQ(fuzz::DecodedBlock(text, filled * GroupBytes),
              data + std::string(filled * GroupBytes - size, '\0'));
    unsigned char* place = bytes.Room(size, back, away);
    EXPECT_EQ(fuzz::Reader(writer.text).DeserializeBlock(place, static_cast<int>(size)), 1);
    ASSERT_TRUE(bytes.OnlyHas(data, place)) << size;
    text.resize(groups * GroupCharacters);
    std::string outside = text; // with a character that is not in the range
    outside.replace(Below(text.size() + 1), 1, 1, static_cast<char>('`' + Below(192)));
    outside.resize(text.size());
    for (const GroupCoder* coder : {&cPlainCoder, &ChooseGroupCoder()}) {
        place = chars.Room(text.size(), !back, away);
        coder->pEncode(place, bytes.Hold(whole, back, away), groups);
        ASSERT_TRUE(chars.OnlyHas(text, place)) << size << ", " << away;
        for (const std::string& from : {text, outside, RandomBytes(text.size())}) {
            place = bytes.Room(whole.size(), back, away);
            coder->pDecode(place, chars.Hold(from, !back, away), groups);
            ASSERT_TRUE(bytes.OnlyHas(fuzz::DecodedBlock(from, whole.size()), place)) << size << ", " << away;
        }
    }
}

TEST(Blocks, EveryByteStringComesBackAtEveryAlignmentAndNothingOutsideIsTouched) {
    for (std::size_t away = 0; away < 32; ++away) {
        for (std::size_t size = 0; size <= 301; ++size) {
            CheckBlock(size <= 300 ? size : 196000 / (away + 1), away);
        }
    }
}

TEST(Blocks, RecordsAreWrittenAndReadAsTold) {
    unsigned char data[] = "Hello";
    MemoryWrite pieces;
    EXPECT_EQ(pieces.SerializeBlock(Text("a=b"), data, 5) + pieces.SerializeBlock(Text("k"), data, -5) +
                  pieces.SerializeBlock(Text("k"), nullptr, 5) + pieces.SerializeBlock(nullptr, data, 5),
              4);
    EXPECT_EQ(pieces.pieces,
              std::vector<std::string>({"a=b", "=", "(58;L?8 ", "\n", "k", "=", "", "\n", "k", "=", "\n"}));
    fuzz::Writer writer;
    EXPECT_EQ(writer.WriteAsciized(Text("ABCA"), 4), 8u);          // the result is WriteData's
    EXPECT_EQ(writer.WriteAsciized(Text("ABCA"), 0xC0000000), 0u); // 4 GiB of text
    EXPECT_EQ(writer.text, "!230!0  ");
    writer.AsciizeTriplets(reinterpret_cast<char*>(data), 1, Text("ABCDEF"));
    EXPECT_STREQ(reinterpret_cast<char*>(data), "!230o");
    fuzz::Reader reader(writer.text = "k=!230\nno sign\n\nk=!230\n"); // each takes its line
    EXPECT_EQ(reader.DeserializeBlock(nullptr, 3), 0);
    for (const bool good : {false, false, true, false}) {
        EXPECT_EQ(reader.DeserializeBlock(data, 3), good);
        EXPECT_EQ(data[0], reader.at < writer.text.size() ? '!' : 'A');
    }
}

// Codes block by block in memory where target and source may overlap: the bytes of the blocks that are written, and
// whether that is all of them.
std::pair<std::size_t, bool> CodeInSteps(std::string& memory, std::size_t target, std::size_t source,
                                         std::size_t size, bool backward) {
    std::size_t total = 0;
    for (const std::size_t end = source + size / BlockBytes * BlockBytes; source < end;
         source += BlockBytes) {
        fuzz::Words words(BlockBytes / 4);
        memory.copy(reinterpret_cast<char*>(words.data()), BlockBytes, source);
        words = fuzz::InFileOrder(fuzz::CodedBlocks(fuzz::InFileOrder(words), backward));
        const std::size_t coded = words.size() * 4;
        if (total + coded >= size) {
            return {total, false};
        }
        memory.replace(target + total, coded, reinterpret_cast<const char*>(words.data()), coded);
        total += coded;
    }
    return {total, total > 0};
}

std::size_t Compressed(bool plain, unsigned char* to, unsigned char* from, std::size_t size, bool backward,
                       std::size_t flag) {
    return plain ? cPlainBlockCoder.pCompress(to, from, size, backward)
                 : MemoryWrite().Compress(to, from, static_cast<Byte2Type>(size),
                                          static_cast<unsigned char>(backward    ? 2
                                                                     : flag == 2 ? 255
                                                                                 : flag));
}

// In place, and with the target so far before or behind the source.
void CheckOverlapping(const std::string& data, bool plain, bool backward) {
    static Fenced memory(66000);
    for (const int shift : {0, -1, -64, 4}) {
        const std::size_t target = shift > 0 ? 4 : 0,
                          source = shift > 0 ? 0 : static_cast<std::size_t>(-shift);
        std::string expected = std::string(source, '#') + data + std::string(target, '#');
        unsigned char* const place = memory.Hold(expected);
        const auto [written, all] = CodeInSteps(expected, target, source, data.size(), backward);
        ASSERT_EQ(Compressed(plain, place + target, place + source, data.size(), backward, 0),
                  all ? written : 0);
        ASSERT_TRUE(memory.OnlyHas(expected, place)) << data.size() << ", " << shift;
    }
}

void CheckBothWays(const std::string& data, bool backward, std::size_t away) {
    static Fenced left(66000), right(66000);
    std::string memory = data + data;
    const auto [written, all] = CodeInSteps(memory, data.size(), 0, data.size(), backward);
    const std::string finished = memory.substr(data.size(), written), coded = all ? finished : "";
    const std::size_t most = data.size() - !data.empty();
    const std::size_t whole = coded.empty() ? 0 : data.size() / BlockBytes * BlockBytes;
    const auto length = static_cast<Byte2Type>(coded.size());
    const auto flag = static_cast<unsigned char>(backward ? 2 : away == 2 ? 255 : away);
    for (const bool plain : {true, false}) {
        unsigned char *place = right.Room(most, true, away), *from = left.Hold(data, true, away);
        std::size_t got = Compressed(plain, place, from, data.size(), backward, away);
        ASSERT_EQ(std::string(place, place + got), coded);
        ASSERT_TRUE(right.OnlyHas(finished, place)); // the blocks before it gave up
        CheckOverlapping(data, plain, backward);
        for (const std::size_t room : {data.size(), whole, whole - (whole > 0)}) {
            place = left.Room(room, away % 2 == 0, away);
            from = right.Hold(coded, away % 2 == 0, away);
            got = plain ? cPlainBlockCoder.pExpand(place, room, from, length, backward)
                        : SRead::Decompress(place, static_cast<Byte4Type>(room), from, length, flag);
            ASSERT_EQ(std::string(place, place + got), data.substr(0, room < whole ? 0 : whole));
            ASSERT_TRUE(left.OnlyHas(std::string(place, place + room), place));
        }
    }
}

TEST(Suppress, EveryCoderWritesTheFormatAndReadsItBack) {
    for (unsigned int round = 0; round < 1500;
         ++round) { // more or less zeros, repeats, and different numbers
        const std::size_t size = round % 50 ? Below(1300) : 65535 - round;
        const unsigned int zeros = Below(round % 2 ? 101 : 4), repeats = Below(round % 3 ? 2 : 101),
                           numbers = 1u << Below(32);
        fuzz::Words words(size / 4 + 1);
        for (std::size_t u = 1; u < words.size(); ++u) {
            words[u] = Below(100) < repeats ? words[u - 1] : Below(100) < zeros ? 0 : Below(numbers);
        }
        CheckBothWays({reinterpret_cast<const char*>(words.data()), size}, round / 2 % 2, Below(32));
    }
}

} // namespace
