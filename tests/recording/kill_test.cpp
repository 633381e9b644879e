// SPDX-License-Identifier: MIT
// A recorder that is killed at a random moment costs at most the object it was writing, and never makes a wrong one.
// FWLIB_KILL_ROUNDS sets how often; 25 when absent.
#include "process.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/mman.h>
#include <sys/stat.h>

namespace {

using VESK::Text;

enum Recorder { Strict, Plain, Tool }; // the element in its two modes, and fwpipe with a pipe file

struct Files {
    Scratch scratch;
    std::string recording = scratch.Path("recording"), kept = scratch.Path("kept"),
                copy = scratch.Path("copy");
    std::string record = scratch.Write(
        "record.pipe",
        "plugin libfwlib.so\nelement ESource\nproperty Name source\nelement ESerialize\nproperty Name "
        "record\nproperty Strict 1\nproperty Filename " +
            recording + "\nsink source\nconnect source 0 record 0\n");
    std::string replay = Replay("replay.pipe", kept), replayRaw = Replay("raw.pipe", recording);

    std::string Replay(const std::string& name, const std::string& from) {
        return scratch.Write(
            name, "plugin libfwlib.so\nelement EDeserialize\nproperty Name replay\nproperty Strict "
                  "1\nproperty Filename " +
                      from +
                      "\nelement ESerialize\nproperty Name copy\nproperty Strict 1\nproperty "
                      "Filename " +
                      copy + "\nsink replay\nconnect replay 0 copy 0\n");
    }
};

// The n-th object's data: now and then so large that a kill meets the middle of its one write.
std::string Data(std::size_t n) {
    return std::string(n % 50 == 49 ? 600000 : n * 37 % 900, static_cast<char>('a' + n % 26));
}

std::string Expected(Recorder recorder, std::size_t n) {
    const std::string count = "Count=" + std::to_string(recorder == Tool ? n % 1000 : n);
    return recorder == Tool ? ObjectText("QObject", {"QObjectType=QObject", count})
                            : ObjectText("QObject", {"QObjectType=QObject", count, "Data=" + Data(n)});
}

// Records until it is killed, and leaves in acknowledged how many objects were answered 1.
[[noreturn]] void Record(const Files& files, Recorder recorder, volatile std::size_t* acknowledged) {
    if (recorder == Tool) {
        dup2(open("/dev/null", O_WRONLY), 1);
        Become({"run", "--quiet", "--repeat", "1000000", files.record});
    }
    VESK::ESerialize element;
    Set(element.m_cProperties, "Filename", files.recording);
    Set(element.m_cProperties, "Strict", recorder == Strict ? "1" : "0");
    element.Initialize();
    for (std::size_t n = 0;; ++n) {
        VESK::QObject object;
        Set(object.m_cProperties, "Count", std::to_string(n));
        Set(object.m_cProperties, "Data", Data(n));
        if (element.DataArrived(&object, 0) == 1) {
            *acknowledged = n + 1;
        }
    }
}

void KillAtRandom(pid_t child, const Files& files, Recorder recorder, std::mt19937& random) {
    struct stat status = {};
    for (int tries = 0; recorder == Tool && status.st_size == 0 && tries < 20000; ++tries) {
        usleep(500); // until the tool is under way
        stat(files.recording.c_str(), &status);
    }
    usleep(std::uniform_int_distribution<unsigned int>(0, 15000)(random));
    kill(child, SIGKILL);
    EXPECT_EQ(StatusOf(child), 128 + SIGKILL);
}

// How many whole objects the recording holds; it must consist of these and a part of the next.
std::size_t CountWhole(Recorder recorder, const std::string& recorded, std::size_t& end) {
    std::string object = Expected(recorder, 0);
    std::size_t count = 0;
    for (end = 0; recorded.compare(end, object.size(), object) == 0; object = Expected(recorder, ++count)) {
        end += object.size();
    }
    const bool partial = object.compare(0, recorded.size() - end, recorded, end) == 0;
    EXPECT_TRUE(partial) << "a wrong object, number " << count;
    return count;
}

} // namespace

TEST(Kill, LosesAtMostTheLastObject) {
    const char* const wanted = std::getenv("FWLIB_KILL_ROUNDS");
    const int rounds = wanted ? std::atoi(wanted) : 25;
    void* const shared =
        mmap(nullptr, sizeof(std::size_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto* const acknowledged = static_cast<volatile std::size_t*>(shared);
    std::mt19937 random(std::random_device{}());
    std::size_t least = SIZE_MAX, most = 0;
    int torn = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto recorder = static_cast<Recorder>(round % 3);
        SCOPED_TRACE("round " + std::to_string(round) + ", recorder " + std::to_string(recorder));
        Files files;
        files.scratch.Write("recording", "");
        *acknowledged = 0;
        const pid_t child = fork();
        if (child == 0) {
            Record(files, recorder, acknowledged);
        }
        KillAtRandom(child, files, recorder, random);

        const std::string recorded = FileText(files.recording);
        std::size_t end = 0;
        const std::size_t count = CountWhole(recorder, recorded, end);
        ASSERT_GE(count, *acknowledged);
        const std::string whole = recorded.substr(0, end);
        const bool cut = end < recorded.size();
        ASSERT_EQ(Fwpipe({"recover", files.recording, "-o", files.kept}).status, 0);
        ASSERT_EQ(FileText(files.kept), whole);
        ASSERT_EQ(Fwpipe({"run", "--quiet", "--drain", files.replay}).status, 0);
        ASSERT_EQ(FileText(files.copy), whole);
        ASSERT_EQ(Fwpipe({"run", "--quiet", "--drain", files.replayRaw}).status, cut ? 1 : 0);
        ASSERT_EQ(FileText(files.copy), whole);
        least = std::min(least, count);
        most = std::max(most, count);
        torn += cut;
    }
    munmap(shared, sizeof(std::size_t));
    std::printf("%d rounds, %zu to %zu whole objects, %d recordings cut within an object, no wrong object\n",
                rounds, least, most, torn);
}
