// SPDX-License-Identifier: MIT
// fwpipe that is killed at a random moment costs at most the object it was writing, and never makes a wrong one.
// FWLIB_KILL_ROUNDS sets how often; 25 when absent.
#include "recording/process.h"

#include <gtest/gtest.h>
#include <random>

TEST(Kill, AtARandomMomentCostsTheLastObject) {
    const char* const wanted = std::getenv("FWLIB_KILL_ROUNDS");
    std::mt19937 random(std::random_device{}());
    const Scratch scratch;
    const std::string file = scratch.Path("recording"), kept = scratch.Path("kept"),
                      copy = scratch.Path("copy");
    const auto pipe = [&](const char* name, const std::string& from, const std::string& to, int strict) {
        return scratch.Write(
            name, "plugin libfwlib.so\nelement " + from + "\nproperty Name from\nproperty Strict 1\n" +
                      "element ESerialize\nproperty Name to\nproperty Strict " + std::to_string(strict) +
                      "\nproperty Filename " + to + "\nsink from\nconnect from 0 to 0\n");
    };
    const std::string record[] = {pipe("record0", "ESource", file, 0), pipe("record1", "ESource", file, 1)};
    const std::string again = "EDeserialize\nproperty Filename ";
    const std::string replays[] = {pipe("kept.pipe", again + kept, copy, 1),
                                   pipe("file.pipe", again + file, copy, 1)};
    for (int round = 0; round < (wanted ? std::atoi(wanted) : 25); ++round) {
        SCOPED_TRACE(round);
        scratch.Write("recording", "");
        std::filesystem::remove(kept);
        const pid_t child = fork();
        if (child == 0) {
            std::freopen("/dev/null", "w", stdout);
            Become({"run", "--quiet", "--repeat", "1000000", record[round % 2]});
        }
        for (int i = 0; std::filesystem::file_size(file) == 0 && i < 20000; ++i) {
            usleep(500); // until it is under way
        }
        usleep(std::uniform_int_distribution<unsigned int>(0, 15000)(random));
        kill(child, SIGKILL);
        ASSERT_EQ(StatusOf(child), 128 + SIGKILL);

        const std::string recorded = FileText(file);
        std::string whole, next;
        for (std::size_t n = 0; whole.size() + next.size() <= recorded.size(); ++n) {
            whole += next;
            next = ObjectText("QObject", {"QObjectType=QObject", "Count=" + std::to_string(n % 1000)});
        }
        ASSERT_EQ(recorded, (whole + next).substr(0, recorded.size())) << "a wrong object";
        ASSERT_EQ(Fwpipe({"recover", file, "-o", kept}).status, 0);
        ASSERT_EQ(FileText(kept), whole);
        for (const bool cut : {false, recorded != whole}) {
            ASSERT_EQ(Fwpipe({"run", "--quiet", "--drain", replays[cut]}).status, cut);
            ASSERT_EQ(FileText(copy), whole);
        }
    }
}
