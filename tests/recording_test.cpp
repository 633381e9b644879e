// SPDX-License-Identifier: MIT
// ESerialize and EDeserialize on files, pipes and streams that a host gives them.
#include "support/capture.h"
#include "support/support.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

using namespace VESK;

namespace {

const char* const BothWays[] = {"0", "1"}; // of "Strict"
const std::string Object = "QObject\nm_b2PropertyCount=1\nQObjectType=QObject\n";

// An element with a file of its own or, without a name, a standard stream, under a framework.
template <class Element>
struct Deck {
    explicit Deck(const std::string& file, const char* strict) {
        framework.AddPlugin(Text("libfwlib.so"));
        element.m_pFramework = &framework;
        Set(element.m_cProperties, "Name", "tap");
        Set(element.m_cProperties, "Strict", strict);
        file.empty() ? 0 : Set(element.m_cProperties, "Filename", file);
        EXPECT_EQ(element.Initialize(), 1);
    }
    FRAMEWORK framework;
    Element element;
};

struct Recorder : Deck<ESerialize> {
    explicit Recorder(const char* strict, const std::string& file = "") : Deck(file, strict) {}
    Recorder(const char* strict, std::FILE* file) : Deck("", strict) { Adopt(file); }
    std::string Arrive() {
        return Told([&] { return element.DataArrived(&object, 3); });
    }
    void Adopt(std::FILE* file) {
        char*& own = element.m_pWriter->m_pFile;
        own == reinterpret_cast<char*>(stdout) ? 0 : fwfclose(own);
        element.m_pWriter->SetFile(reinterpret_cast<char*>(file));
    }
    QObject object;
};

std::string Lost(const std::string& name, const std::string& reason) {
    return "! ERROR: ESerialize - tap: Unable to store an object in " + name + ": " + reason +
           ": QObjectType = QObject\n";
}

std::string Runs(EDeserialize& player) {
    return Told([&] { return player.Run(); });
}

TEST(Recording, ALossIsToldOnceForAFileAndAnotherHasLostNothing) {
    std::signal(SIGPIPE, SIG_IGN);
    for (const char* strict : BothWays) {
        const std::string answer = *strict == '1' ? "0 " : "1 ";
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        close(ends[0]);
        Recorder recorder(strict, fdopen(ends[1], "w"));
        EXPECT_EQ(recorder.Arrive(), answer + Lost("standard output", "Broken pipe"));
        EXPECT_EQ(recorder.Arrive(), answer);
        for (const char* const name : {"/dev/full", "/dev/full", "/dev/null"}) { // at the address of the last
            recorder.Adopt(std::fopen(name, "w"));
            EXPECT_EQ(recorder.Arrive(), *(name + 5) == 'n'
                                             ? "1 "
                                             : answer + Lost("standard output", "No space left on device"));
        }
        std::FILE* const null = reinterpret_cast<std::FILE*>(recorder.element.m_pWriter->m_pFile);
        recorder.element.m_pWriter->m_pFile = reinterpret_cast<char*>(std::fopen("/dev/full", "w"));
        EXPECT_EQ(recorder.Arrive(), answer + Lost("standard output", "No space left on device"));
        std::fclose(null);
        recorder.Adopt(nullptr);
        EXPECT_EQ(recorder.Arrive(), answer + Lost("a file without a name", "Input/output error"));
    }
    std::signal(SIGPIPE, SIG_DFL);
}

TEST(Recording, APartOfAnObjectInAPipeEndsTheRecording) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    fcntl(ends[1], F_SETPIPE_SZ, 4096);
    Recorder recorder("1", fdopen(ends[1], "w"));
    Set(recorder.object.m_cProperties, "long", std::string(9000, 'x'));
    EXPECT_EQ(recorder.Arrive()[0], '0');
    char room[65536];
    EXPECT_GT(read(ends[0], room, sizeof room), 0);
    EXPECT_EQ(recorder.Arrive(), "0 ");
    EXPECT_LT(read(ends[0], room, sizeof room), 0); // nothing stands behind the part
    close(ends[0]);
}

// Each read of a packet pipe gives what one write put in.
TEST(Recording, AStrictRecorderWritesAnObjectAtOnce) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_DIRECT), 0);
    Recorder recorder("1", fdopen(ends[1], "w"));
    SFileWrite& writer = *recorder.element.m_pWriter;
    EXPECT_EQ(writer.WriteData(nullptr, 0) + writer.WriteData(nullptr, 0x80000000),
              0u); // more than it gathers
    EXPECT_EQ(recorder.Arrive(), "0 " + Lost("standard output", "Cannot allocate memory"));
    EXPECT_EQ(recorder.Arrive() + recorder.Arrive(), "1 1 ");
    char packet[4096];
    EXPECT_EQ(read(ends[0], packet, sizeof packet), static_cast<ssize_t>(Object.size()));
    close(ends[0]);
}

// A stream that others use too is written at its position, wherever that is, and tells it afterwards.
TEST(Recording, AnAdoptedStreamKeepsItsPosition) {
    const Scratch scratch;
    for (const char* const strict : BothWays) {
        const std::string path = scratch.Write("objects", "first line\n" + std::string(5000, 'f'));
        std::FILE* const file = std::fopen(path.c_str(), "r+");
        char line[32]; // with which the stream reads more ahead
        ASSERT_NE(std::fgets(line, sizeof line, file), nullptr);
        std::fseek(file, 7, SEEK_SET);
        Recorder recorder(strict, file);
        EXPECT_EQ(recorder.Arrive(), "1 ");
        EXPECT_EQ(std::ftell(file), static_cast<long>(7 + Object.size()));
        std::fseek(file, 0, SEEK_CUR);
        std::fputs("trailer", file);
        std::fflush(file);
        const std::string whole = "first l" + Object + "trailer";
        EXPECT_EQ(FileText(path).substr(0, whole.size()), whole);
    }
}

TEST(Recording, WhatAHostWritesIntoTheRecordersFileKeepsItsPlace) {
    const Scratch scratch;
    for (const char* const strict : BothWays) {
        {
            Recorder recorder(strict, scratch.Path("objects"));
            std::fputs("before ", reinterpret_cast<std::FILE*>(recorder.element.m_pWriter->m_pFile));
            EXPECT_EQ(recorder.Arrive(), "1 ");
        }
        EXPECT_EQ(FileText(scratch.Path("objects")), "before " + Object);
    }
}

TEST(Recording, APartIsTakenOutOfTheEndOfAFileOnly) {
    const Scratch scratch;
    const rlim_t room = Object.size() + 10;
    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    for (const std::string& text : {std::string(), std::string(2 * Object.size(), 'f')}) {
        const std::string path = scratch.Write("objects", text);
        Recorder recorder("1", std::fopen(path.c_str(), "r+"));
        const rlimit low = {room, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &low);
        const char first = recorder.Arrive()[0], second = recorder.Arrive()[0];
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_TRUE(first == '1' && second == '0');
        EXPECT_EQ(FileText(path),
                  text.empty() ? Object
                               : Object + Object.substr(0, 10) + text.substr(static_cast<std::size_t>(room)));
    }
    std::signal(SIGXFSZ, SIG_DFL);
}

TEST(Recording, AStreamThatIsNoFileOfTheSystemsTakesWhatFits) {
    std::string memory(Object.size() * 3 / 2, '-');
    Recorder recorder("1", fmemopen(memory.data(), memory.size(), "w"));
    std::setbuf(reinterpret_cast<std::FILE*>(recorder.element.m_pWriter->m_pFile), nullptr);
    EXPECT_EQ(recorder.Arrive(), "1 ");
    EXPECT_EQ(memory.substr(0, Object.size()), Object);
    EXPECT_EQ(recorder.Arrive(), "0 " + Lost("standard output", "Input/output error")); // no other reason
}

TEST(Recording, RecordersHaveTheirStreamsFromInitializeOrFromTheHost) {
    ESerialize element;
    Recorder recorder("1");
    element.m_pFramework = &recorder.framework;
    EXPECT_EQ(Told([&] { return element.DataArrived(&recorder.object, 3); }),
              "0 ! ERROR: ESerialize - [No Element Name]: DataArrived(3): not initialized\n");
    delete recorder.element.m_pWriter;
    recorder.element.m_pWriter = new SFileWrite; // without a file
    EXPECT_EQ(recorder.Arrive(), "1 ");
    recorder.element.m_b2Passthrough = 1;
    EXPECT_EQ(recorder.Arrive(), "0 ! ERROR: ESerialize - tap: DataArrived(3): GetSourcePad(0) failed.\n");
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
        EXPECT_EQ(Runs(player.element), "0 ! ERROR: EDeserialize - tap: Run(): no whole object at byte 0 of "
                                        "standard input: Input/output error\n");
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
    EXPECT_EQ(Runs(player.element), "0 ! ERROR: EDeserialize - tap: Run(): no whole object at byte 0 of " +
                                        path + ": its last line is cut\n");
}

} // namespace
