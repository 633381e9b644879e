// SPDX-License-Identifier: MIT
// Recording to what takes too little, and replaying what holds too little.
#include "support/recorder.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

using namespace VESK;

namespace {

TEST(RecordingLoss, TheFirstLossIsReportedAndOnlyAStrictRecorderRefuses) {
    std::signal(SIGPIPE, SIG_IGN);
    const std::string lost = "! ERROR: ESerialize - tap: Unable to store an object in ";
    for (const bool strict : {false, true}) {
        const std::string answer = strict ? "0 " : "1 ";
        Recorder full("/dev/full", strict ? "1" : "0");
        Set(full.tested.m_cProperties, "Passthrough", "1");
        full.Starts();
        Probe probe;
        full.Connect(0, probe);
        EXPECT_EQ(full.Arrive(),
                  answer + lost + "/dev/full: No space left on device: QObjectType = QObject\n");
        EXPECT_EQ(full.Arrive(), answer);
        EXPECT_EQ(probe.objects.size(), strict ? 0u : 2u);
        EXPECT_EQ(full.framework.m_bError, 1);
        char*& own = full.tested.m_pWriter->m_pFile;
        for (const char* const name : {"/dev/full", "/dev/null"}) { // opened at the address of the one before
            std::fclose(reinterpret_cast<std::FILE*>(own));
            full.tested.m_pWriter->SetFile(reinterpret_cast<char*>(std::fopen(name, "w")));
            EXPECT_EQ(full.Arrive().size() > 2, name == std::string("/dev/full")) << name;
        }

        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        close(ends[0]);
        Recorder closed("/dev/null", strict ? "1" : "0");
        closed.Starts();
        Adopt(closed, fdopen(ends[1], "w"));
        EXPECT_EQ(closed.Arrive(), answer + lost + "/dev/null: Broken pipe: QObjectType = QObject\n");
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
    const auto drained = [&] { return read(ends[0], room, sizeof room); };
    EXPECT_GT(drained(), 0);
    EXPECT_EQ(recorder.Arrive(), "0 ");
    EXPECT_LT(drained(), 0); // nothing stands behind the part
    close(ends[0]);
}

TEST(RecordingLoss, AStrictRecorderRefusesWhatLinesCannotHold) {
    const Scratch scratch;
    const std::string path = scratch.Path("objects");
    const std::pair<const char*, const char*> entries[] = {{"a=b", "1"}, {"a\nb", "1"}, {"a", "b\nc"}};
    for (const auto& [key, value] : entries) {
        Recorder recorder(path, "1");
        recorder.Starts();
        Set(recorder.object.m_cProperties, key, value);
        EXPECT_EQ(recorder.Arrive(),
                  "0 ! ERROR: ESerialize - tap: DataArrived(3): a line cannot hold a key or value: "
                  "QObjectType = QObject\n");
        EXPECT_EQ(FileText(path), "");
    }
}

// The disk is full after every number of bytes; the recording begins deep in its file, so that the limit is no
// limit to what the test writes itself.
TEST(RecordingLoss, AFullDiskCostsTheLastObjectOnly) {
    constexpr std::size_t Begin = 1 << 13, Objects = 3;
    const Scratch scratch;
    const std::string path = scratch.Path("objects");
    std::string all;
    for (std::size_t u = 0; u < Objects; ++u) {
        all += Object;
    }
    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    for (const bool strict : {false, true}) {
        for (std::size_t room = 0; room <= all.size(); ++room) {
            Recorder recorder("", strict ? "1" : "0");
            recorder.Starts();
            std::FILE* const file = std::fopen(path.c_str(), "w");
            std::fseek(file, Begin, SEEK_SET);
            Adopt(recorder, file);
            const rlimit limit = {Begin + room, before.rlim_max};
            setrlimit(RLIMIT_FSIZE, &limit);
            std::string answers;
            const std::string told = Told([&] {
                for (std::size_t u = 0; u < Objects; ++u) {
                    answers += std::to_string(recorder.tested.DataArrived(&recorder.object, 0));
                }
                return 1;
            });
            setrlimit(RLIMIT_FSIZE, &before);
            const std::size_t whole = room / Object.size();
            const std::string expected = all.substr(0, strict ? whole * Object.size() : room);
            const std::string text = FileText(path);
            ASSERT_EQ(text.size() > Begin ? text.substr(Begin) : "", expected) << room;
            ASSERT_EQ(answers, std::string(strict ? whole : Objects, '1') +
                                   std::string(strict ? Objects - whole : 0, '0'));
            ASSERT_EQ(told == "1 ", room == all.size()) << told;
            ASSERT_EQ(told.find("Unable", told.find("Unable") + 1), std::string::npos)
                << told; // reported once
        }
    }
    std::signal(SIGXFSZ, SIG_DFL);
}

TEST(RecordingLoss, AStrictPlayerSendsWholeObjectsOnly) {
    const std::string type = "QObject\n", count = "m_b2PropertyCount=1\n";
    const std::string many = std::string(300000, 'x');
    const struct {
        std::string text;
        int strict, loose; // objects that are sent
        std::string reason;
    } cases[] = {
        {"", 0, 0, ""},
        {Object, 1, 1, ""},
        {"QObject\nm_b2PropertyCount=0\n" + Object, 2, 2, ""},
        {type + count + "long=" + many + "\n", 1, 1, ""},
        {Object.substr(0, Object.size() - 1), 0, 1, "its last line is cut"},
        {type + count.substr(0, 4), 0, 1, "its last line is cut"},
        {"QObj", 0, 0, "its last line is cut"},
        {type, 0, 1, "its last lines are missing"},
        {type + count, 0, 1, "its last lines are missing"},
        {type + "count=1\nA=1\n", 0, 1, "a count line is not one"},
        {type + "m_b2PropertyCount=-1\n", 0, 1, "a count line is not one"},
        {type + "m_b2PropertyCount=1x\nA=1\n", 0, 1, "a count line holds no number that a list may have"},
        {type + "m_b2PropertyCount=65521\nA=1\n", 0, 1, "a count line holds no number that a list may have"},
        {type + count + "no sign\n", 0, 1, "a property line holds no \"=\""},
        {type + count + std::string("A=1\0\n", 5), 0, 1, "a line holds a zero byte"},
        {std::string(32, 'Q') + "\n" + count + "A=1\n", 0, 0, "a type line is longer than 31 characters"},
    };
    const Scratch scratch;
    for (const auto& c : cases) {
        for (const std::string& before : {std::string(), Object + Object}) {
            const std::string path = scratch.Write("objects", before + c.text);
            const int whole = before.empty() ? 0 : 2;
            Player loose(path, "0"), strict(path, "1");
            loose.Starts();
            strict.Starts();
            std::string contents;
            EXPECT_EQ(std::stoi(Played(loose, contents)), whole + c.loose) << c.text;
            const std::string report = "! ERROR: EDeserialize - tap: Run(): no whole object at byte " +
                                       std::to_string(before.size()) + " of " + path + ": " + c.reason + "\n";
            EXPECT_EQ(Played(strict, contents),
                      std::to_string(whole + c.strict) + " " + (c.reason.empty() ? "" : report));
            EXPECT_EQ(strict.Runs(), "0 "); // stays at its end, and has told it
        }
    }
}

} // namespace
