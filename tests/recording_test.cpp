// SPDX-License-Identifier: MIT
// ESerialize on files, pipes and streams that a host gives it.
#include "support/capture.h"
#include "support/stage.h"
#include "support/support.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sys/resource.h>

using namespace VESK;

namespace {

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

// While it lives, no file grows beyond the size.
struct SizeLimit {
    explicit SizeLimit(std::size_t size) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit low = {size, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &low);
    }
    ~SizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    rlimit before;
};

std::string Lost(const std::string& name, const std::string& reason) {
    return "! ERROR: ESerialize - tap: Unable to store an object in " + name + ": " + reason +
           ": QObjectType = QObject\n";
}

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

// Writes its length into its first line when it knows it, as it may with a stream of its own.
struct QPatched : QObject {
    int Serialize(SWrite* pWriter) override {
        char* const file = static_cast<SFileWrite*>(pWriter)->m_pFile;
        const auto start = static_cast<int>(fwftell(file));
        pWriter->WriteData(Text("Length=00\n"), 10);
        QObject::Serialize(pWriter);
        const auto end = static_cast<int>(fwftell(file));
        fwfseek(file, start + 7, 0);
        pWriter->WriteData(Text(std::to_string(end - start).c_str()), 2);
        return fwfseek(file, end, 0);
    }
};

TEST(Recording, AClassMayPatchWhatItWrote) {
    const Scratch scratch;
    for (const char* const strict : BothWays) {
        QPatched patched;
        const std::string path = scratch.Path("objects"), text = "Length=58\n" + Object;
        Recorder recorder(strict, path);
        const auto arrive = [&] { return recorder.element.DataArrived(&patched, 0); };
        EXPECT_EQ(arrive(), 1);
        EXPECT_EQ(recorder.Arrive(), "1 ");
        {
            const SizeLimit limit(text.size() * 5 / 2); // the second patched one does not fit
            EXPECT_EQ(Told(arrive)[0], *strict == '1' ? '0' : '1');
        }
        EXPECT_EQ(FileText(path), text + Object);
        EXPECT_EQ(Told(arrive), "1 ! ERROR: ESerialize - tap: Objects lost: 1\n");
        fwfseek(recorder.element.m_pWriter->m_pFile, 7, 0); // and a host what is there
        fwfputs(Text("85"), recorder.element.m_pWriter->m_pFile);
        fwfseek(recorder.element.m_pWriter->m_pFile, 0, 2);
        EXPECT_EQ(recorder.Arrive(), "1 ");
        EXPECT_EQ(FileText(path), "Length=85\n" + Object + Object + text + Object);
    }
}

// Writes to the file by other ways than the recorder's too.
struct QPrinting : QObject {
    int Serialize(SWrite* pWriter) override {
        SFileWrite own;
        own.SetFile(static_cast<SFileWrite*>(pWriter)->m_pFile);
        QObject::Serialize(pWriter);
        own.Serialize(Text("Own"), 1);
        pWriter->Serialize(Text("Last"), 2);
        fwfputs(Text("Printed=3\n"), own.m_pFile);
        own.SetFile(nullptr);
        return 1;
    }
};

TEST(Recording, WhatAClassPrintsIsStoredOrLostWithItsObject) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects"), text = Object + "Own=1\nLast=2\nPrinted=3\n",
                      front = text + "host\n"; // who flushes it
    for (const char* const strict : BothWays) {
        for (std::size_t room = 0; room < text.size(); ++room) {
            QPrinting printing;
            Recorder recorder(strict, path);
            const auto arrive = [&] { return recorder.element.DataArrived(&printing, 0); };
            EXPECT_EQ(Told(arrive), "1 ");
            fwfputs(Text("host\n"), recorder.element.m_pWriter->m_pFile);
            fwflush(recorder.element.m_pWriter->m_pFile);
            {
                const SizeLimit limit(front.size() + room);
                EXPECT_EQ(Told(arrive), (*strict == '1' ? "0 " : "1 ") + Lost(path, "File too large"));
            }
            EXPECT_EQ(FileText(path), front) << room;
            EXPECT_EQ(Told(arrive), "1 ! ERROR: ESerialize - tap: Objects lost: 1\n");
            EXPECT_EQ(FileText(path), front + text) << room;
        }
    }
}

// Begins the recording anew, or ends it, within an object.
struct QExchanging : QObject {
    ESerialize* element;
    bool anew;
    int Serialize(SWrite* pWriter) override {
        pWriter->WriteData(Text("part\n"), 5);
        delete element->m_pWriter;
        element->m_pWriter = nullptr;
        return !anew || element->Initialize();
    }
};

TEST(Recording, AnObjectMayExchangeTheWriter) {
    const Scratch scratch;
    for (const char* const strict : BothWays) {
        Recorder recorder(strict, scratch.Path("objects"));
        QExchanging exchanging;
        exchanging.element = &recorder.element;
        for (const bool anew : {true, false}) {
            exchanging.anew = anew;
            EXPECT_EQ(
                Told([&] { return recorder.element.DataArrived(&exchanging, 3); }),
                std::string(*strict == '1' ? "0 " : "1 ") +
                    "! ERROR: ESerialize - tap: DataArrived(3): m_pWriter was exchanged within an object: "
                    "QObjectType = QObject\n");
        }
        EXPECT_EQ(recorder.element.m_pWriter, nullptr);
    }
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

TEST(Recording, AStreamThatIsNoFileOfTheSystemsTakesWhatFits) {
    std::string memory(Object.size() * 3 / 2, '-');
    Recorder recorder("1", fmemopen(memory.data(), memory.size(), "w"));
    std::setbuf(reinterpret_cast<std::FILE*>(recorder.element.m_pWriter->m_pFile), nullptr);
    EXPECT_EQ(recorder.Arrive(), "1 ");
    EXPECT_EQ(memory.substr(0, Object.size()), Object);
    EXPECT_EQ(recorder.Arrive(),
              "0 " + Lost("a stream of the host", "Input/output error")); // no other reason
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

} // namespace
