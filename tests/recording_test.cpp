// SPDX-License-Identifier: MIT
// Recording and replaying: ESerialize and EDeserialize on files, pipes and the standard streams.
#include "support/recorder.h"

#include <fcntl.h>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

TEST(Recording, WhatIsRecordedIsReplayed) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects");
    for (const char* strict : {"0", "1"}) {
        std::string lines, expected, contents;
        for (int i = 0; i < 1000; ++i) {
            lines += "QObject\nm_b2PropertyCount=2\nQObjectType=QObject\nCount=" + std::to_string(i) + "\n";
            expected += "Standard.QObjectType=QObject Standard.Count=" + std::to_string(i) + "\n";
        }
        {
            Recorder recorder(path, strict);
            EXPECT_EQ(recorder.Starts(), "1 ");
            ESource source;
            source.Initialize();
            source.GetSourcePad(0)->m_pSinkPad = recorder.tested.GetSinkPad(0);
            EXPECT_EQ(source.Run(), 1);
            EXPECT_TRUE(FileText(path) == lines); // while the recorder still has it open
        }
        Player player(path, strict);
        EXPECT_EQ(player.Starts(), "1 ");
        EXPECT_EQ(Played(player, contents), "1000 ");
        EXPECT_TRUE(contents == expected);
        EXPECT_EQ(player.Runs(), "0 ");
        EXPECT_EQ(player.Arrive(), "0 ");
        EXPECT_EQ(player.tested.GetSinkPadCount(), 0);
    }
}

TEST(Recording, WithoutAFileNameTheStandardStreamsServe) {
    for (const char* strict : {"0", "1"}) {
        Recorder recorder("", strict);
        EXPECT_EQ(recorder.Starts(), "1 ");
        EXPECT_EQ(Told([&] {
                      std::printf("before, ");
                      const int answer = recorder.tested.DataArrived(&recorder.object, 0);
                      std::printf("after");
                      return answer;
                  }),
                  "1 before, " + Object + "after");
        const Input input(Object + Object);
        Player player("", strict);
        player.Starts();
        std::string contents;
        EXPECT_EQ(Played(player, contents), "2 ");
    }
}

// The recorder's file is a pipe that keeps every write apart.
TEST(Recording, AStrictRecorderWritesAnObjectAtOnceAndAnotherPieceByPiece) {
    const std::vector<std::string> pieces = {"QObject", "\n", "m_b2PropertyCount=1\n",
                                             "QObjectType=QObject\n"};
    for (const char* strict : {"0", "1"}) {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_DIRECT | O_NONBLOCK), 0);
        {
            Recorder recorder("", strict);
            recorder.Starts();
            Adopt(recorder, fdopen(ends[1], "w"));
            EXPECT_EQ(recorder.Arrive(), "1 ");
        }
        std::vector<std::string> writes;
        char packet[4096];
        for (ssize_t size; (size = read(ends[0], packet, sizeof packet)) > 0;) {
            writes.emplace_back(packet, static_cast<std::size_t>(size));
        }
        EXPECT_EQ(writes, *strict == '1' ? std::vector<std::string>(1, Object) : pieces);
        close(ends[0]);
    }
}

TEST(Recording, ObjectsArePassedOnOnceTheyAreWritten) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects");
    Recorder recorder(path);
    Set(recorder.tested.m_cProperties, "Passthrough", "2");
    Set(recorder.tested.m_cProperties, "Debug", "1");
    recorder.Starts();
    const std::string trace = "ESerialize - tap: DataArrived(3): QObjectType = QObject\n";
    Probe first, second;
    recorder.Connect(0, first);
    EXPECT_EQ(recorder.Arrive(),
              "0 " + trace + "! ERROR: ESerialize - tap: SourcePad: No sink pad (broken pipe)\n");
    recorder.Connect(1, second);
    second.answer = 7;
    EXPECT_EQ(recorder.Arrive(), "7 " + trace);
    first.answer = 0;
    EXPECT_EQ(recorder.Arrive(), "0 " + trace);
    EXPECT_EQ(first.objects, std::vector<QObject*>(3, &recorder.object));
    EXPECT_EQ(second.objects.size(), 1u);
    first.answer = 1;
    recorder.tested.m_b2Passthrough = 3;
    EXPECT_EQ(recorder.Arrive(),
              "0 " + trace + "! ERROR: ESerialize - tap: DataArrived(3): GetSourcePad(2) failed.\n");
    EXPECT_EQ(FileText(path), Object + Object + Object + Object);

    struct Refuser : QObject {
        int Serialize(SWrite*) override { return 0; }
    } refuser;
    refuser.m_cProperties.Reset();
    EXPECT_EQ(
        recorder.Arrive(&refuser),
        "0 ESerialize - tap: DataArrived(3): QObjectType = [No QObject Type]\n! ERROR: ESerialize - tap: "
        "DataArrived(3): QObject failed to serialize: QObjectType = [No QObject Type]\n");
    EXPECT_EQ(second.objects.size(), 2u);
    QEOF eof;
    Set(eof.m_cProperties, "QObjectType", "QObject");
    recorder.Arrive(&eof); // nothing marks it in the file
    EXPECT_EQ(FileText(path).substr(4 * Object.size()), Object);
}

TEST(Recording, WithoutAStreamTheElementsTouchNoneAndASecondInitializeReplacesIt) {
    const Scratch scratch;
    const std::string path = scratch.Write("objects", Object), missing = scratch.Path("no/such");
    Recorder recorder(missing), strict(missing, "1");
    Player player(missing);
    EXPECT_EQ(recorder.Arrive(), "0 ! ERROR: ESerialize - tap: DataArrived(3): not initialized\n");
    EXPECT_EQ(player.Runs(), "0 ! ERROR: EDeserialize - tap: Run(): not initialized\n");
    const std::string reason = "Unable to open " + missing + ": No such file or directory\n";
    EXPECT_EQ(recorder.Starts(), "1 ! ERROR: ESerialize - tap: " + reason);
    EXPECT_EQ(recorder.Arrive(), "1 "); // told once
    EXPECT_EQ(strict.Starts(), "1 ! ERROR: ESerialize - tap: " + reason);
    EXPECT_EQ(strict.Arrive(), "0 ");
    EXPECT_EQ(player.Starts(), "0 ! ERROR: EDeserialize - tap: " + reason);
    EXPECT_EQ(player.Runs(), "0 ! ERROR: EDeserialize - tap: Run(): not initialized\n");

    Set(player.tested.m_cProperties, "Filename", path);
    EXPECT_EQ(player.Starts(), "1 ");
    std::string contents;
    EXPECT_EQ(Played(player, contents), "1 ");
    EXPECT_EQ(player.Starts(), "1 "); // from the beginning
    EXPECT_EQ(Played(player, contents), "1 ");
    EXPECT_EQ(player.tested.GetSourcePadCount(), 3);
    Set(recorder.tested.m_cProperties, "Filename", path);
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
    Player player(scratch.Write("objects", Object + "\nQFoo\n" + Object));
    player.Starts();
    std::string contents;
    const auto unknown = [](const std::string& type) {
        return "FRAMEWORK::CreateQObject: Could not instantiate: " + type +
               "\nERROR: EDeserialize - tap: Unable to instantiate QObject: " + type + "\n";
    };
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
    player.tested.m_pFramework = nullptr;
    player.tested.m_pReader->SetFile(fwfopen(Text(scratch.Path("objects").c_str()), Text("r")));
    EXPECT_EQ(player.tested.Run(), 0);
}

} // namespace
