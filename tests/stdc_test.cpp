// SPDX-License-Identifier: MIT
#include "support/support.h"

#include <climits>
#include <csignal>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

TEST(Stdc, SeekAnswersOneAndTakesEveryOtherOriginAsTheEnd) {
    const Scratch scratch;
    char* file = fwfopen(scratch.Write("ten", "0123456789").data(), Text("r"));
    const struct {
        int offset;
        unsigned char origin;
        int answer;
        long position;
    } moves[] = {{4, 0, 1, 4}, {3, 1, 1, 7},    {-2, 1, 1, 5}, {-1, 2, 1, 9},  {-2, 7, 1, 8},
                 {0, 0, 1, 0}, {-3, 255, 1, 7}, {-1, 0, 0, 7}, {-99, 1, 0, 7}, {0, 2, 1, 10}};
    for (const auto& move : moves) {
        EXPECT_EQ(fwfseek(file, move.offset, move.origin), move.answer) << move.offset << "," << +move.origin;
        EXPECT_EQ(fwftell(file), move.position) << move.offset << "," << +move.origin;
    }
    EXPECT_EQ(fwfgetc(file), -1);
    EXPECT_NE(fwfeof(file), 0);
    fwfseek(file, 0, 0);
    char buffer[16] = {};
    EXPECT_EQ(fwfread(buffer, 4, 4, file), 2u); // ten bytes hold two whole items of four
    EXPECT_EQ(fwfclose(file), 0);
    EXPECT_EQ(fwfopen(scratch.Path("missing").data(), Text("r")), nullptr);
}

TEST(Stdc, FormattedPrintWritesLongTextsWhole) {
    const Scratch scratch;
    for (const int length : {0, 1, 511, 512, 5000}) {
        char* file = fwfopen(scratch.Path("f").data(), Text("w"));
        EXPECT_EQ(fwfprintf(file, "%*s", length, ""), length);
        fwfclose(file);
        EXPECT_EQ(FileText(scratch.Path("f")), std::string(static_cast<std::size_t>(length), ' '));
    }
}

TEST(Stdc, FilesBeyondTwoGiBOpenAndGrow) {
    constexpr std::uintmax_t ThreeGiB = std::uintmax_t{3} << 30;
    const Scratch scratch;
    const std::string path = scratch.Write("big", "[Standard]\nbig=1\n[end]\n");
    std::filesystem::resize_file(path, ThreeGiB);
    PROPERTIES list;
    EXPECT_EQ(list.ReadConfig(Text(path.c_str()), Section::Standard), 1);
    EXPECT_EQ(Entries(list), "Standard.big=1");
    char* file = fwfopen(Text(path.c_str()), Text("r+"));
    EXPECT_EQ(fwfseek(file, 0, 2), 1);
    EXPECT_EQ(fwftell(file), sizeof(long) == 8 ? static_cast<long>(ThreeGiB) : -1);
    EXPECT_GE(fwfputs(Text("tail"), file), 0);
    EXPECT_EQ(fwfseek(file, -3, 1), 1);
    EXPECT_EQ(fwfgetc(file), 'a');
    EXPECT_EQ(fwfclose(file), 0);
    EXPECT_EQ(std::filesystem::file_size(path), ThreeGiB + 4);
}

TEST(Stdc, ReallocMovesTheBlockAndKeepsTheSmallerSize) {
    EXPECT_EQ(fwrealloc(nullptr, 0, 16), 0);
    void* block = nullptr;
    ASSERT_EQ(fwrealloc(&block, 99, 16), 1);
    fwmemcpy(block, Text("0123456789abcdef"), 16);
    for (const unsigned int size : {32u, 32u, 8u}) { // grown, of the same size, shrunk
        void* const before = block;
        ASSERT_EQ(fwrealloc(&block, 16, size), 1);
        EXPECT_NE(block, before);
        EXPECT_EQ(std::string(static_cast<char*>(block), size < 16 ? size : 16),
                  std::string("0123456789abcdef").substr(0, size));
    }
    fwfree(block);
    fwfree(nullptr);
}

TEST(Stdc, DecimalTextsMeanTheSameInBothWidths) {
    const struct {
        const char* text;
        int number;
        unsigned long naturalNumber;
    } conversions[] = {{" \t\n+12abc", 12, 12},
                       {"-7", -7, 4294967289},
                       {"abc", 0, 0},
                       {"", 0, 0},
                       {"- 1", 0, 0},
                       {"2147483648", INT_MAX, 2147483648},
                       {"-2147483648", INT_MIN, 2147483648},
                       {"-2147483649", INT_MIN, 2147483647},
                       {"4294967295", INT_MAX, 4294967295},
                       {"4294967296", INT_MAX, 4294967295},
                       {"-4294967295", INT_MIN, 1},
                       {"-4294967297", INT_MIN, 4294967295},
                       {"99999999999999999999999", INT_MAX, 4294967295},
                       {"-99999999999999999999999", INT_MIN, 4294967295}};
    for (const auto& conversion : conversions) {
        EXPECT_EQ(fwatoi(Text(conversion.text)), conversion.number) << conversion.text;
        EXPECT_EQ(fwatol(Text(conversion.text)), conversion.number) << conversion.text;
        EXPECT_EQ(fwstrtoul(conversion.text, nullptr, 10), conversion.naturalNumber) << conversion.text;
    }
    char* end = nullptr;
    const char* const text = "ffz";
    EXPECT_EQ(fwstrtoul(text, &end, 16), 255u);
    EXPECT_EQ(end, text + 2);
}

TEST(Stdc, TextsCompareAndChangeInPlace) {
    EXPECT_EQ(fwstricmp("Standard", "STANDARD"), 0);
    EXPECT_NE(fwstrcmp("Standard", "STANDARD"), 0);
    char mixed[] = "aB3-z";
    EXPECT_EQ(fwstrupr(mixed), mixed);
    EXPECT_STREQ(mixed, "AB3-Z");
    char buffer[8] = "#######";
    EXPECT_STREQ(fwstrncpy(buffer, Text("abc"), 3), "abc####"); // as long as the count: no terminator
    buffer[3] = '\0';
    EXPECT_STREQ(fwstrncat(buffer, Text("wxyz"), 2), "abcwx");
    EXPECT_EQ(fwstrchr(buffer, 'w'), buffer + 3);
    EXPECT_EQ(fwstrstr(buffer, "cw"), buffer + 2);
    EXPECT_EQ(fwsprintf(buffer, "%d%s", 42, "x"), 3);
    EXPECT_STREQ(buffer, "42x");
    EXPECT_EQ(fwgetclockspersec(), 1000000);
}

TEST(StdcDeathTest, AssertReportsInEveryBuild) {
    fwassert(1);
    fwassert(0x80000000u);
    EXPECT_EXIT(fwassert(0), testing::KilledBySignal(SIGABRT),
                "source/fwlib/stdc/stdc/fwstdcstring:71: void VESK::fwassert\\(Byte4Type\\): "
                "Assertion .b4Expression. failed\\.\n");
}

} // namespace
