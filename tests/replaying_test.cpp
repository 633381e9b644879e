// SPDX-License-Identifier: MIT
// EDeserialize on files, pipes and streams that a host gives it.
#include "support/capture.h"
#include "support/stage.h"
#include "support/support.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace VESK;

namespace {

std::string Runs(EDeserialize& player) {
    return Told([&] { return player.Run(); });
}

TEST(Replaying, PlayersHaveTheirStreamsFromInitializeOrFromTheHost) {
    const Scratch scratch;
    const std::string path = scratch.Write("objects", Object);
    FRAMEWORK framework;
    EDeserialize element;
    EXPECT_EQ(element.Run(), 0); // and nobody to tell it to
    element.m_pFramework = &framework;
    EXPECT_EQ(Runs(element), "0 ! ERROR: EDeserialize - [No Element Name]: Run(): not initialized\n");
    framework.AddPlugin(Text("libfwlib.so"));
    element.m_pReader = new SFileRead(Text(path.c_str()));
    EXPECT_EQ(Runs(element) + Runs(element), "0 0 "); // no pad, and then no object
    element.m_pFramework = nullptr;
    delete element.m_pReader;
    element.m_pReader = new SFileRead(Text(path.c_str()));
    EXPECT_EQ(element.Run(), 0); // no type is known without a framework
}

TEST(Replaying, AReadThatFailsIsToldAlsoWithoutAReason) {
    cookie_io_functions_t calls = {};
    calls.read = [](void*, char*, std::size_t) -> ssize_t { return -1; };
    for (const char* const strict : BothWays) {
        Deck<EDeserialize> player("", strict);
        player.element.m_pReader->SetFile(reinterpret_cast<char*>(fopencookie(nullptr, "r", calls)));
        EXPECT_EQ(Runs(player.element),
                  "0 ! ERROR: EDeserialize - tap: Run(): no complete object at byte 0 of "
                  "a stream of the host: Input/output error\n");
    }
}

// Reads a pipe, and is interrupted by a signal where that has no data.
std::FILE* Interrupted(int* ends) {
    cookie_io_functions_t calls = {};
    calls.read = [](void* pipe, char* data, std::size_t size) -> ssize_t {
        const ssize_t came = read(*static_cast<int*>(pipe), data, size);
        errno = EINTR;
        return came;
    };
    return fopencookie(ends, "r", calls);
}

// Also within a line: the object comes whole once the rest has arrived.
TEST(Replaying, WhatHasNotArrivedYetIsTriedAgain) {
    const Scratch scratch;
    const std::string path = scratch.Write("objects", "cut");
    for (const int variant : {0, 1, 2, 3}) {
        int ends[2], others[2];
        ASSERT_EQ(pipe2(ends, O_NONBLOCK) + pipe2(others, O_NONBLOCK), 0);
        Deck<EDeserialize> player(path, BothWays[variant / 2]);
        EXPECT_EQ(Runs(player.element)[0], '0'); // which the next file has nothing to do with
        char*& file = player.element.m_pReader->m_pFile;
        std::FILE* const before = reinterpret_cast<std::FILE*>(file);
        std::FILE* const other = fdopen(others[0], "r");
        player.element.m_pReader->SetFile(reinterpret_cast<char*>(other));
        std::fclose(before);
        Probe sink("sink");
        sink.AddSinkPad(new SINKPAD(&sink, Byte2Type{0}));
        player.element.GetSourcePad(0)->m_pSinkPad = sink.GetSinkPad(0);
        ASSERT_EQ(write(others[1], "part", 4), 4); // which does not come from the next stream
        EXPECT_EQ(Runs(player.element), "0 ");
        file = reinterpret_cast<char*>(variant % 2 ? Interrupted(ends) : fdopen(ends[0], "r"));
        std::fclose(other);
        close(others[1]);
        for (int object = 0; object < 2; ++object) {
            for (std::size_t cut = 0; cut < Object.size(); cut += 7) {
                EXPECT_EQ(Runs(player.element), "0 ");
                const std::string part = Object.substr(cut, 7);
                ASSERT_EQ(write(ends[1], part.data(), part.size()), static_cast<ssize_t>(part.size()));
            }
            EXPECT_EQ(Runs(player.element)[0], '1');
        }
        EXPECT_EQ(Runs(player.element), "0 ");
        close(ends[1]);
        EXPECT_EQ(Runs(player.element), "0 ");
        variant % 2 ? close(ends[0]) : 0;
    }
}

// Strict, whole; else what the reader's buffer holds.
TEST(Replaying, ALongLineMayArriveInParts) {
    for (const char* const strict : BothWays) {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
        Deck<EDeserialize> player("", strict);
        player.element.m_pReader->m_b4LineBufferSize = 50;
        player.element.m_pReader->SetFile(reinterpret_cast<char*>(fdopen(ends[0], "r")));
        Probe sink("sink");
        sink.AddSinkPad(new SINKPAD(&sink, Byte2Type{0}));
        player.element.GetSourcePad(0)->m_pSinkPad = sink.GetSinkPad(0);
        const std::string front = "QObject\nm_b2PropertyCount=1\na=", part(100, 'v');
        for (const std::string& text : {front + part, part, part + "\n"}) {
            EXPECT_EQ(Runs(player.element), "0 ");
            ASSERT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
        }
        EXPECT_EQ(Runs(player.element), "1 ");
        const std::string value(*strict == '1' ? 3 * part.size() : 47, 'v');
        EXPECT_NE(sink.contents.find(value), std::string::npos) << sink.contents;
        EXPECT_EQ(sink.contents.find(value + "v"), std::string::npos);
        close(ends[1]);
    }
}

TEST(Replaying, AHostMayReadOnBehindAnObject) {
    const Scratch scratch;
    const std::string path = scratch.Write("objects", Object + "own\nlast");
    Deck<EDeserialize> player(path, "1");
    SFileRead& reader = *player.element.m_pReader;
    EXPECT_EQ(Runs(player.element), "0 ! ERROR: EDeserialize - tap: SourcePad: No sink pad (broken pipe)\n");
    EXPECT_STREQ(reader.ReadLine(), "own");
    EXPECT_EQ(reader.ReadLine(), nullptr);
    fwfclose(reader.m_pFile);
    reader.m_pFile = nullptr;
    EXPECT_EQ(Runs(player.element), "0 ! ERROR: EDeserialize - tap: Run(): no complete object at byte 0 of " +
                                        path + ": the last line is truncated\n");
    const std::string other = scratch.Write("other", Object + "QObject\n");
    EXPECT_EQ(reader.OpenFile(Text(other.c_str())), 1); // and bytes count from its begin
    Runs(player.element);
    EXPECT_EQ(Runs(player.element),
              "0 ! ERROR: EDeserialize - tap: Run(): no complete object at byte 48 of " + other +
                  ": the last lines are missing\n");
}

} // namespace
