// SPDX-License-Identifier: MIT
// ESerialize on files and pipes: what is lost, and what is refused.
#include "support/recorder.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <utility>

namespace {

TEST(Recording, ALossIsToldOnceForAFileAndAnotherHasLostNothing) {
    std::signal(SIGPIPE, SIG_IGN);
    for (const char* strict : BothWays) {
        const std::string answer = *strict == '1' ? "0 " : "1 ";
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        close(ends[0]);
        Recorder recorder(strict, fdopen(ends[1], "w"));
        EXPECT_EQ(recorder.Arrive(), answer + Lost("a stream of the host", "Broken pipe"));
        EXPECT_EQ(recorder.Arrive(), answer);
        for (const char* const name : {"/dev/full", "/dev/full", "/dev/null"}) { // at the address of the last
            recorder.Adopt(std::fopen(name, "w"));
            EXPECT_EQ(recorder.Arrive(),
                      *(name + 5) == 'n' ? "1 ! ERROR: ESerialize - tap: Objects lost: 4\n"
                                         : answer + Lost("a stream of the host", "No space left on device"));
        }
        std::FILE* const null = reinterpret_cast<std::FILE*>(recorder.element.m_pWriter->m_pFile);
        recorder.element.m_pWriter->m_pFile = reinterpret_cast<char*>(std::fopen("/dev/full", "w"));
        EXPECT_EQ(recorder.Arrive(), answer + Lost("a stream of the host", "No space left on device"));
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
    char*& file = recorder.element.m_pWriter->m_pFile;
    fwfclose(std::exchange(file, reinterpret_cast<char*>(std::tmpfile())));
    EXPECT_EQ(recorder.element.m_pWriter->WriteData(Text("part"), 4), 4u); // the next file has not ended
}

// Each read of a packet pipe gives what one write put in.
TEST(Recording, AStrictRecorderWritesAnObjectAtOnce) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_DIRECT), 0);
    Recorder recorder("1", fdopen(ends[1], "w"));
    SFileWrite& writer = *recorder.element.m_pWriter;
    EXPECT_EQ(writer.WriteData(nullptr, 0) + writer.WriteData(nullptr, 0x80000000),
              0u); // more than it gathers
    EXPECT_EQ(recorder.Arrive(), "0 " + Lost("a stream of the host", "Cannot allocate memory"));
    EXPECT_EQ(recorder.Arrive(), "1 ! ERROR: ESerialize - tap: Objects lost: 1\n");
    EXPECT_EQ(recorder.Arrive(), "1 ");
    char packet[4096];
    EXPECT_EQ(read(ends[0], packet, sizeof packet), static_cast<ssize_t>(Object.size()));
    close(ends[0]);
}

// What a stream saw go wrong before says nothing of this write, and a pipe has space again once it is read.
TEST(Recording, OnlyTheWriteAtHandCountsAndTheNextObjectIsTried) {
    for (const char* strict : BothWays) {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
        std::FILE* const file = fdopen(ends[1], "w");
        EXPECT_EQ(std::fgetc(file), EOF); // of which the stream keeps its error
        Recorder recorder(strict, file);
        EXPECT_EQ(recorder.Arrive(), "1 ");
        std::string text(65536 / 16, '-');
        while (write(ends[1], text.data(), text.size()) > 0) {
        }
        EXPECT_EQ(recorder.Arrive(), (*strict == '1' ? "0 " : "1 ") +
                                         Lost("a stream of the host", "Resource temporarily unavailable"));
        recorder.Arrive();
        while (read(ends[0], text.data(), text.size()) > 0) {
        }
        EXPECT_EQ(recorder.Arrive(), "1 ! ERROR: ESerialize - tap: Objects lost: 2\n");
        ASSERT_EQ(read(ends[0], text.data(), text.size()), static_cast<ssize_t>(Object.size()));
        EXPECT_EQ(text.substr(0, Object.size()), Object);
        close(ends[0]);
    }
}

TEST(Recording, ACloseThatFailsIsToldToItsFrameworkAlsoWithoutAReason) {
    cookie_io_functions_t calls = {};
    calls.close = [](void*) { return -1; };
    Recorder recorder("1", fopencookie(nullptr, "w", calls));
    Set(recorder.element.m_cProperties, "Filename", "/dev/null");
    const auto again = [&] {
        errno = ENOSPC; // of an earlier call
        return recorder.element.Initialize();
    };
    const std::string told = Told(again); // a sanitizer's fclose has a reason of its own
    EXPECT_EQ(told.find("1 ! ERROR: ESerialize - tap: Unable to store all objects in a stream of the host: "),
              0u);
    EXPECT_EQ(told.find("No space left"), std::string::npos);
    auto lossy = std::make_unique<ESerialize>();
    lossy->m_pFramework = &recorder.framework;
    Set(lossy->m_cProperties, "Filename", "/dev/full");
    Told([&] { return lossy->Initialize() && lossy->DataArrived(&recorder.object, 0); });
    recorder.framework.m_bError = 0;
    Told([&] { return lossy.reset(), 1; });
    EXPECT_EQ(recorder.framework.m_bError, 1);
}

TEST(Recording, OutlivesItsFrameworkAndThenReportsWithoutIt) {
    const std::string reported = Captured([] {
                                     ESerialize element;
                                     const auto framework = std::make_unique<FRAMEWORK>();
                                     element.m_pFramework = framework.get();
                                     Set(element.m_cProperties, "Filename", "/dev/full");
                                     QObject object;
                                     element.Initialize();
                                     element.DataArrived(&object, 0);
                                 }).reported;
    EXPECT_NE(reported.find("ERROR: ESerialize - [No Element Name]: Objects lost: 1\n"), std::string::npos);
}

// Under whatever name; what reads a recording that is being written is none of its business.
TEST(Recording, AFileThatAnElementUsesIsRefused) {
    const Scratch scratch;
    const std::string path = scratch.Write("objects", Object), link = scratch.Path("link");
    std::filesystem::create_hard_link(path, link);
    const std::string refused =
        "0 ! ERROR: ESerialize - tap: Unable to open " + link + ": this process reads or writes it already\n";
    Recorder other("0", scratch.Path("other"));
    Set(other.element.m_cProperties, "Filename", link);
    const auto again = [&] { return Told([&] { return other.element.Initialize(); }); };
    {
        Deck<EDeserialize> player(path, "0");
        EXPECT_EQ(again(), refused);
        EXPECT_EQ(FileText(path), Object);
        Set(other.element.m_cProperties, "Shared", "1");
        EXPECT_EQ(again(), "1 ");
        EXPECT_EQ(FileText(path), "");
        Set(other.element.m_cProperties, "Shared", "0");
        EXPECT_EQ(again(), refused);
        player.element.m_pReader->SetFile(nullptr);
    }
    EXPECT_EQ(again(), "1 ");
    EXPECT_EQ(again(), "1 "); // its own
    EXPECT_EQ(other.Arrive(), "1 ");
    Deck<EDeserialize> player(path, "0");
    EXPECT_STREQ(player.element.m_pReader->ReadLine(), "QObject");
}

// The streams open what the first 255 characters name, the elements do not.
TEST(Recording, ANameThatIsTooLongIsRefused) {
    const Scratch scratch;
    const std::string path = scratch.Path(std::string(250 - scratch.Path("").size(), '/') + "other"),
                      longer = path + "?";
    ASSERT_EQ(path.size(), 255u);
    std::ofstream(path) << Object;
    Recorder recorder("0", scratch.Path("objects"));
    Deck<EDeserialize> player(path, "0");
    for (EObject* const element :
         {static_cast<EObject*>(&recorder.element), static_cast<EObject*>(&player.element)}) {
        Set(element->m_cProperties, "Filename", longer);
        const std::string told = Told([&] { return element->Initialize(); });
        EXPECT_EQ(told.substr(0, 3), "0 !");
        EXPECT_NE(told.find("Initialize(): Filename is longer than 255 characters: " + path + "...\n"),
                  std::string::npos);
        EXPECT_EQ(FileText(path), Object);
    }
}

// What is known of one file is not taken for the next one, which the host puts in its place.
TEST(Recording, APartIsTakenOutOfTheNextFileToo) {
    const Scratch scratch;
    const std::string path = scratch.Path("next");
    Recorder recorder("0", scratch.Path("objects"));
    EXPECT_EQ(recorder.Arrive(), "1 ");
    char*& file = recorder.element.m_pWriter->m_pFile;
    fwfclose(std::exchange(file, reinterpret_cast<char*>(std::fopen(path.c_str(), "w"))));
    {
        const SizeLimit limit(10);
        EXPECT_EQ(recorder.Arrive(), "1 " + Lost("a stream of the host", "File too large"));
    }
    EXPECT_EQ(recorder.Arrive(), "1 ! ERROR: ESerialize - tap: Objects lost: 1\n");
    EXPECT_EQ(FileText(path), Object);
}

TEST(Recording, APartIsTakenOutOfTheEndOfAFileOnly) {
    const Scratch scratch;
    const std::size_t room = Object.size() + 10;
    for (const std::string& text : {std::string(), std::string(2 * Object.size(), 'f')}) {
        const std::string path = scratch.Write("objects", text);
        Recorder recorder("1", std::fopen(path.c_str(), "r+"));
        {
            const SizeLimit limit(room);
            EXPECT_EQ(recorder.Arrive()[0], '1');
            EXPECT_EQ(recorder.Arrive()[0], '0');
        }
        EXPECT_EQ(FileText(path), text.empty() ? Object : Object + Object.substr(0, 10) + text.substr(room));
    }
}

} // namespace
