// SPDX-License-Identifier: MIT
// ESerialize and EDeserialize on files, pipes and the standard streams, and on what takes or holds too little.
#include "support/recorder.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

const char* const BothWays[] = {"0", "1"}; // of "Strict"

TEST(Recording, WhatIsRecordedIsReplayedFromFilesAndStandardStreams) {
    const Scratch scratch;
    for (const char* strict : BothWays) {
        for (const std::string& path : {scratch.Path("objects"), std::string()}) {
            std::string lines, expected, contents;
            for (int i = 0; i < 1000; ++i) {
                lines +=
                    "QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nCount=" + std::to_string(i) + "\n";
                expected += "Standard.QObjectType=QObject Standard.Count=" + std::to_string(i) + "\n";
            }
            Recorder recorder(path, strict);
            EXPECT_EQ(recorder.Starts(), "1 ");
            ESource source;
            source.Initialize();
            source.GetSourcePad(0)->m_pSinkPad = recorder.tested.GetSinkPad(0);
            const std::string told =
                Told([&] { return std::printf("before, ") > 0 && source.Run() && std::printf("after"); });
            EXPECT_TRUE(told == (path.empty() ? "1 before, " + lines + "after" : "1 before, after"));
            EXPECT_TRUE(path.empty() || FileText(path) == lines); // while the recorder still has it open
            const Input input(lines);
            Player player(path, strict);
            EXPECT_EQ(player.Starts(), "1 ");
            EXPECT_EQ(Played(player, contents), "1000 ");
            EXPECT_TRUE(contents == expected);
            EXPECT_EQ(player.Runs() + player.Arrive() + std::to_string(player.tested.GetSinkPadCount()),
                      "0 0 0");
        }
    }
}

TEST(Recording, ObjectsArePassedOnOnceTheyAreWritten) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects"), report = "! ERROR: ESerialize - tap: ",
                      trace = "ESerialize - tap: DataArrived(3): QObjectType = ";
    Recorder recorder(path);
    Set(recorder.tested.m_cProperties, "Passthrough", "2");
    Set(recorder.tested.m_cProperties, "Debug", "1");
    recorder.Starts();
    Probe first, second;
    recorder.Connect(0, first);
    EXPECT_EQ(recorder.Arrive(),
              "0 " + trace + "QObject\n" + report + "SourcePad: No sink pad (broken pipe)\n");
    recorder.Connect(1, second);
    second.answer = 7;
    EXPECT_EQ(recorder.Arrive(), "7 " + trace + "QObject\n");
    first.answer = 0;
    EXPECT_EQ(recorder.Arrive(), "0 " + trace + "QObject\n");
    EXPECT_EQ(first.objects, std::vector<QObject*>(3, &recorder.object));
    EXPECT_EQ(second.objects.size(), 1u);
    first.answer = 1;
    recorder.tested.m_b2Passthrough = 3;
    EXPECT_EQ(recorder.Arrive(),
              "0 " + trace + "QObject\n" + report + "DataArrived(3): GetSourcePad(2) failed.\n");
    struct Refuser : QObject {
        int Serialize(SWrite*) override { return 0; }
    } refuser;
    refuser.m_cProperties.Reset();
    EXPECT_EQ(recorder.Arrive(&refuser),
              "0 " + trace + "[No QObject Type]\n" + report +
                  "DataArrived(3): QObject failed to serialize: QObjectType = [No QObject Type]\n");
    EXPECT_EQ(second.objects.size(), 2u);
    EXPECT_EQ(FileText(path), Object + Object + Object + Object);
}

TEST(Recording, WithoutAStreamTheElementsTouchNoneAndASecondInitializeReplacesIt) {
    const Scratch scratch;
    const std::string path = scratch.Write("objects", Object), missing = scratch.Path("no/such"),
                      reason = "tap: Unable to open " + missing + ": No such file or directory\n";
    Recorder recorder(missing), strict(missing, "1");
    Player player(missing);
    EXPECT_EQ(recorder.Arrive(), "0 ! ERROR: ESerialize - tap: DataArrived(3): not initialized\n");
    EXPECT_EQ(recorder.Starts(), "1 ! ERROR: ESerialize - " + reason);
    EXPECT_EQ(strict.Starts(), "1 ! ERROR: ESerialize - " + reason);
    EXPECT_EQ(recorder.Arrive() + strict.Arrive(), "1 0 "); // told once
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(player.Runs(), "0 ! ERROR: EDeserialize - tap: Run(): not initialized\n");
        EXPECT_EQ(player.Starts(), "0 ! ERROR: EDeserialize - " + reason);
    }
    Set(player.tested.m_cProperties, "Filename", path);
    Set(recorder.tested.m_cProperties, "Filename", path);
    std::string contents;
    for (int i = 0; i < 2; ++i) { // from the beginning
        EXPECT_EQ(player.Starts(), "1 ");
        EXPECT_EQ(Played(player, contents), "1 ");
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(recorder.Starts(), "1 ");
        EXPECT_EQ(FileText(path), "");
        EXPECT_EQ(recorder.Arrive() + recorder.Arrive(), "1 1 ");
    }
    EXPECT_EQ(FileText(path), Object + Object);
    delete recorder.tested.m_pWriter;
    recorder.tested.m_pWriter = new SFileWrite; // the host's own
    EXPECT_EQ(recorder.Arrive(), "1 ");
}

TEST(Recording, TypesThatNobodyServesAreReported) {
    const Scratch scratch;
    const auto unknown = [](const std::string& type) {
        return "FRAMEWORK::CreateQObject: Could not instantiate: " + type +
               "\nERROR: EDeserialize - tap: Unable to instantiate QObject: " + type + "\n";
    };
    std::string contents;
    Player player(scratch.Write("objects", Object + "\nQFoo\n" + Object));
    player.Starts();
    EXPECT_EQ(Played(player, contents), "1 ! " + unknown(""));
    EXPECT_EQ(Played(player, contents), "0 ! " + unknown("QFoo"));
    player.tested.m_iDebug = 1;
    EXPECT_EQ(player.Runs(), "0 EDeserialize - tap: Run(): QObjectType = QObject\n"
                             "! ERROR: EDeserialize - tap: SourcePad: No sink pad (broken pipe)\n");
    // A strict player knows where the object ends, and goes on behind it.
    Player strict(scratch.Write("objects", Object + "QFoo\nm_b2PropertyCount=1\nQObject=1\n" + Object), "1");
    strict.Starts();
    EXPECT_EQ(Played(strict, contents), "1 ! " + unknown("QFoo"));
    EXPECT_EQ(Played(strict, contents), "1 ");
    Player cut(scratch.Write("objects", "QFoo\nm_b2PropertyCount=1\n"), "1");
    cut.Starts();
    EXPECT_EQ(Played(cut, contents), "0 ! " + unknown("QFoo"));
    EXPECT_NE(cut.Runs().find(": its last lines are missing\n"), std::string::npos);
}

TEST(RecordingLoss, TheFirstLossIsReportedAndOnlyAStrictRecorderRefuses) {
    std::signal(SIGPIPE, SIG_IGN);
    const std::string lost = "! ERROR: ESerialize - tap: Unable to store an object in ";
    for (const char* strict : BothWays) {
        const std::string answer = *strict == '1' ? "0 " : "1 ";
        Recorder full("/dev/full", strict);
        Set(full.tested.m_cProperties, "Passthrough", "1");
        full.Starts();
        Probe probe;
        full.Connect(0, probe);
        EXPECT_EQ(full.Arrive(),
                  answer + lost + "/dev/full: No space left on device: QObjectType = QObject\n");
        EXPECT_EQ(full.Arrive(), answer);
        EXPECT_EQ(probe.objects.size(), *strict == '1' ? 0u : 2u);
        char*& own = full.tested.m_pWriter->m_pFile;
        for (const char* const name : {"/dev/full", "/dev/null"}) { // opened at the address of the one before
            std::fclose(reinterpret_cast<std::FILE*>(own));
            full.tested.m_pWriter->SetFile(reinterpret_cast<char*>(std::fopen(name, "w")));
            EXPECT_EQ(full.Arrive().size() > 2, name == std::string("/dev/full")) << name;
        }
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        close(ends[0]);
        Recorder closed("", strict);
        closed.Starts();
        Adopt(closed, fdopen(ends[1], "w"));
        EXPECT_EQ(closed.Arrive(), answer + lost + "standard output: Broken pipe: QObjectType = QObject\n");
        EXPECT_EQ(closed.Arrive(), answer);
        Adopt(closed, std::tmpfile()); // which has lost nothing yet
        EXPECT_EQ(closed.Arrive(), "1 ");
    }
    std::signal(SIGPIPE, SIG_DFL);
}

TEST(RecordingLoss, APartOfAnObjectInAPipeEndsTheRecording) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    fcntl(ends[1], F_SETPIPE_SZ, 4096);
    Recorder recorder("", "1");
    recorder.Starts();
    Adopt(recorder, fdopen(ends[1], "w"));
    Set(recorder.object.m_cProperties, "long", std::string(9000, 'x'));
    EXPECT_EQ(recorder.Arrive()[0], '0');
    char room[65536];
    EXPECT_GT(read(ends[0], room, sizeof room), 0);
    EXPECT_EQ(recorder.Arrive(), "0 ");
    EXPECT_LT(read(ends[0], room, sizeof room), 0); // nothing stands behind the part
    close(ends[0]);
}

TEST(RecordingLoss, AStrictRecorderRefusesWhatLinesCannotHold) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects");
    for (const auto& [key, value] : {std::pair{"a=b", "1"}, {"a\nb", "1"}, {"a", "b\nc"}, {"x", "a=b"}}) {
        Recorder recorder(path, "1");
        recorder.Starts();
        Set(recorder.object.m_cProperties, key, value);
        const bool held = *key == 'x';
        EXPECT_EQ(recorder.Arrive(),
                  held ? "1 "
                       : "0 ! ERROR: ESerialize - tap: DataArrived(3): a line cannot hold a key or "
                         "value: QObjectType = QObject\n");
        EXPECT_EQ(FileText(path), held ? "QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nx=a=b\n" : "");
    }
}

TEST(RecordingLoss, AStrictPlayerSendsWholeObjectsOnly) {
    const std::string type = "QObject\n", count = "m_b2PropertyCount=1\n";
    const std::string cut = "its last line is cut", missing = "its last lines are missing",
                      noCount = "a count line is not one",
                      badCount = "a count line holds no number that a list may have";
    const struct {
        std::string text;
        int strict, loose; // objects that are sent
        std::string reason;
    } cases[] = {
        {"", 0, 0, ""},
        {"QObject\nm_b2PropertyCount=0\n" + Object, 2, 2, ""},
        {type + count + "long=" + std::string(300000, 'x') + "\n", 1, 1, ""},
        {Object.substr(0, Object.size() - 1), 0, 1, cut},
        {type + count.substr(0, 4), 0, 1, cut},
        {"QObj", 0, 0, cut},
        {type, 0, 1, missing},
        {type + count, 0, 1, missing},
        {type + "count=1\nA=1\n", 0, 1, noCount},
        {type + "m_b2PropertyCount=-1\n", 0, 1, noCount},
        {type + "m_b2PropertyCount=1x\nA=1\n", 0, 1, badCount},
        {type + "m_b2PropertyCount=65521\nA=1\n", 0, 1, badCount},
        {type + count + "no sign\n", 0, 1, "a property line holds no \"=\""},
        {type + count + std::string("A=1\0\n", 5), 0, 1, "a line holds a zero byte"},
        {std::string(32, 'Q') + "\n" + count + "A=1\n", 0, 0, "a type line is longer than 31 characters"},
    };
    const Scratch scratch;
    for (const auto& c : cases) {
        for (const int whole : {0, 2}) {
            const std::string before = whole ? Object + Object : "",
                              path = scratch.Write("objects", before + c.text);
            Player loose(path, "0"), strict(path, "1");
            EXPECT_EQ(loose.Starts() + strict.Starts(), "1 1 ");
            std::string contents;
            EXPECT_EQ(std::stoi(Played(loose, contents)), whole + c.loose) << c.text;
            std::string report = Played(strict, contents);
            EXPECT_EQ(std::stoi(report), whole + c.strict);
            report += strict.Runs(); // stays at its end
            const std::string expected = "ERROR: EDeserialize - tap: Run(): no whole object at byte " +
                                         std::to_string(before.size()) + " of " + path + ": " + c.reason +
                                         "\n";
            EXPECT_EQ(report.find(expected) != std::string::npos, !c.reason.empty()) << report;
            EXPECT_EQ(report.find("whole", report.find("whole") + 1), std::string::npos)
                << report; // told once
        }
    }
}

// Each read of a packet pipe gives what one write put in.
TEST(RecordingLoss, AStrictRecorderWritesAnObjectAtOnce) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_DIRECT), 0);
    Recorder recorder("", "1");
    recorder.Starts();
    Adopt(recorder, fdopen(ends[1], "w"));
    EXPECT_EQ(recorder.Arrive() + recorder.Arrive(), "1 1 ");
    char packet[4096];
    EXPECT_EQ(read(ends[0], packet, sizeof packet), static_cast<ssize_t>(Object.size()));
    close(ends[0]);
}

// A stream that others use too is written at its position, wherever that is, and tells it afterwards.
TEST(RecordingLoss, AnAdoptedStreamKeepsItsPosition) {
    const Scratch scratch;
    const std::string filler(5000, 'f'); // more than a stream reads ahead
    for (const char* const strict : {"0", "1"}) {
        const std::string path = scratch.Write("objects", "first line\n" + filler);
        Recorder recorder("", strict);
        recorder.Starts();
        std::FILE* const file = std::fopen(path.c_str(), "r+");
        char line[32];
        ASSERT_NE(std::fgets(line, sizeof line, file), nullptr);
        std::fseek(file, 7, SEEK_SET);
        Adopt(recorder, file);
        EXPECT_EQ(recorder.Arrive(), "1 ");
        EXPECT_EQ(std::ftell(file), static_cast<long>(7 + Object.size()));
        std::fseek(file, 0, SEEK_CUR);
        std::fputs("trailer", file);
        std::fflush(file);
        const std::string whole = "first l" + Object + "trailer";
        EXPECT_EQ(FileText(path).substr(0, whole.size()), whole);
    }
}

} // namespace
