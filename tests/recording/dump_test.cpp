// SPDX-License-Identifier: MIT
#include "process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

const std::string First =
    ObjectText("Q\x1b[2J", {"k=1", "k=2", "two words=say \"hi\" \\ \xc2\x9bm\x7f", "\xff=\xc3\x28\r"});
const std::string Hostile =
    First + ObjectText("", {}) + ObjectText("QObject", {"k=2", "e=a=b", "=", "\xc3\xa4=\t"});

} // namespace

TEST(Dump, ShowsEveryByteInEveryForm) {
    const std::string second = std::to_string(First.size());
    const std::string third = std::to_string(First.size() + ObjectText("", {}).size());
    const struct {
        std::vector<std::string> arguments;
        std::string out, err;
    } cases[] = {
        {{"dump"},
         "object 0 at byte 0: Q\\x1b[2J\n  k = 1\n  k = 2\n  two words = say \"hi\" \\\\ \xc2\\x9bm\\x7f\n"
         "  \xff = \xc3(\\x0d\n\nobject 1 at byte " +
             second + ": \"\"\n\nobject 2 at byte " + third +
             ": QObject\n  k = 2\n  e = a=b\n   = \n  \xc3\xa4 = \\x09\n\n3 objects\n",
         ""},
        {{"dump", "--oneline"},
         "0 @0 Q\\x1b[2J k=1 k=2 \"two words\"=\"say \\\"hi\\\" \\\\ \xc2\\x9bm\\x7f\" \xff=\xc3(\\x0d\n1 @" +
             second + " \"\"\n2 @" + third + " QObject k=2 e=a=b \"\"=\"\" \xc3\xa4=\\x09\n3 objects\n",
         ""},
        {{"dump", "--json"},
         "{\"type\":\"Q\\u001b[2J\",\"offset\":0,\"properties\":[[\"k\",\"1\"],[\"k\",\"2\"],[\"two "
         "words\",\"say "
         "\\\"hi\\\" \\\\ "
         "\xc2\x9bm\x7f\"],[\"\xef\xbf\xbd\",\"\xef\xbf\xbd(\\r\"]]}\n{\"type\":\"\",\"offset\":" +
             second + ",\"properties\":[]}\n{\"type\":\"QObject\",\"offset\":" + third +
             ",\"properties\":[[\"k\",\"2\"],[\"e\",\"a=b\"],[\"\",\"\"],[\"\xc3\xa4\",\"\\t\"]]}\n",
         "3 objects\n"},
    };
    const Scratch scratch;
    const std::string file = scratch.Write("file", Hostile);
    for (const auto& one : cases) {
        auto arguments = one.arguments;
        const Outcome piped = Fwpipe(arguments, Hostile);
        arguments.push_back(file);
        EXPECT_EQ(Fwpipe(arguments).out, piped.out);
        EXPECT_EQ(piped.out, one.out);
        EXPECT_EQ(piped.err, one.err);
        EXPECT_EQ(piped.status, 0);
        if (one.arguments.back() == "--json") {
            std::istringstream lines(piped.out);
            for (std::string line; std::getline(lines, line);) {
                EXPECT_TRUE(nlohmann::json::accept(line)) << line;
            }
        }
    }
}

TEST(Dump, SelectsAndCounts) {
    std::string stream;
    for (int i = 0; i < 10; ++i) {
        stream +=
            ObjectText("QObject", {"Count=" + std::to_string(i), "Odd=" + std::to_string(i % 2), "x=a=b"});
    }
    const std::string file = Scratch().Path("none"); // a name in a folder that is gone
    const struct {
        std::vector<std::string> options;
        const char* numbers; // of the objects shown
        const char* summary;
    } cases[] = {
        {{}, "0123456789", "10 objects"},
        {{"--head", "3"}, "012", "3 objects, the rest not read"},
        {{"--head", "1"}, "0", "1 object, the rest not read"},
        {{"--head", "11"}, "0123456789", "10 objects"},
        {{"--where", "Odd=1"}, "13579", "5 of 10 objects"},
        {{"--where", "Odd=1", "--where", "Count=7"}, "7", "1 of 10 objects"},
        {{"--where", "Odd=1", "--where", "Count=8"}, "", "0 of 10 objects"},
        {{"--where", "Odd=1", "--head", "2"}, "13", "2 of 4 objects, the rest not read"},
        {{"--where", "x=a=b", "--head=1"}, "0", "1 of 1 object, the rest not read"},
        {{"--where", "Count="}, "", "0 of 10 objects"},
        {{"--where=Odd=0", "-"}, "02468", "5 of 10 objects"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(testing::PrintToString(one.options));
        std::vector<std::string> arguments = {"dump", "--oneline"};
        arguments.insert(arguments.end(), one.options.begin(), one.options.end());
        const Outcome outcome = Fwpipe(arguments, stream);
        std::string numbers;
        std::istringstream lines(outcome.out);
        std::string line;
        while (std::getline(lines, line) && line.find('@') != std::string::npos) {
            numbers += line[0];
        }
        EXPECT_EQ(numbers, one.numbers);
        EXPECT_EQ(line, one.summary);
        EXPECT_EQ(outcome.status, 0);
    }
    for (const auto& wrong : {"--head=0", "--head=x", "--where=Count", "--bogus", "--json --oneline"}) {
        std::vector<std::string> arguments = {"dump"};
        std::istringstream words(wrong);
        for (std::string word; words >> word;) {
            arguments.push_back(word);
        }
        EXPECT_EQ(Fwpipe(arguments, stream).status, 2) << wrong;
    }
    EXPECT_EQ(Fwpipe({"dump", file}).err, "fwpipe: cannot read " + file + ": No such file or directory\n");
    EXPECT_EQ(Fwpipe({"dump", "/"}).err, "fwpipe: cannot read /: Is a directory\n");
    EXPECT_EQ(Fwpipe({"dump", "/"}).status, 1);
}

TEST(Dump, TakesLinesAndObjectsOfAnyLength) {
    const std::string value(3000000, 'v');
    const Lines most(65520, "k=v");
    const std::string cut = ObjectText("QObject", {"k=" + value}) + ObjectText("QObject", most) + "QObject";
    const Outcome outcome = Fwpipe({"dump", "--json"}, cut);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "2 objects\nfwpipe: no whole object at byte " + std::to_string(cut.size() - 7) +
                               " of standard input: its last line is cut\n");
    std::istringstream lines(outcome.out);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(nlohmann::json::parse(line)["properties"][0][1], value);
    std::getline(lines, line);
    EXPECT_EQ(nlohmann::json::parse(line)["properties"].size(), most.size());
}

// A program that feeds it slowly sees its objects at once.
TEST(Dump, FollowsAPipe) {
    int in[2], out[2];
    ASSERT_EQ(pipe2(in, O_CLOEXEC) + pipe2(out, O_CLOEXEC), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        Become({"dump", "--oneline"});
    }
    close(in[0]);
    close(out[1]);
    const std::string object = ObjectText("QObject", {"a=b"});
    char answer[64];
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(write(in[1], object.data(), object.size()), static_cast<ssize_t>(object.size()));
        EXPECT_GT(read(out[0], answer, sizeof answer), 0);
    }
    close(out[0]); // and it ends when nobody takes them
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(write(in[1], object.data(), object.size()), static_cast<ssize_t>(object.size()));
    close(in[1]);
    EXPECT_EQ(StatusOf(child), 1);
}

TEST(Dump, TellsThatItsOutputDidNotArrive) {
    std::string many;
    for (int i = 0; i < 20000; ++i) {
        many += ObjectText("QObject", {"a=b"});
    }
    const auto full = [] { dup2(open("/dev/full", O_WRONLY), 1); };
    const auto closed = [] {
        int ends[2];
        if (pipe(ends) == 0) {
            dup2(ends[1], 1);
            close(ends[0]);
            close(ends[1]);
        }
    };
    for (const auto& form : {"--json", "--oneline", "--head=1"}) {
        const std::string told = "fwpipe: standard output could not be written: ";
        const Outcome first = Fwpipe({"dump", form}, many, full),
                      second = Fwpipe({"dump", form}, many, closed);
        EXPECT_EQ(first.status, 1);
        EXPECT_EQ(second.status, 1);
        EXPECT_NE(first.err.find(told + "No space left on device\n"), std::string::npos) << first.err;
        EXPECT_NE(second.err.find(told + "Broken pipe\n"), std::string::npos) << second.err;
    }
}
