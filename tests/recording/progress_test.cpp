// SPDX-License-Identifier: MIT
#include "process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <regex>

namespace {

const std::string Object = ObjectText("QObject", {"QObjectType=QObject"});

// All that fwpipe sends to a terminal until it ends; feed is called meanwhile with the terminal.
std::string OnTerminal(const std::vector<std::string>& arguments, const std::function<void()>& prepare) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        if (prepare) {
            prepare();
        }
        Become(arguments);
    }
    std::string text;
    char piece[4096];
    for (ssize_t length; (length = read(terminal, piece, sizeof piece)) > 0;) {
        text.append(piece, static_cast<std::size_t>(length));
    }
    close(terminal);
    EXPECT_EQ(StatusOf(child), 0);
    return text;
}

// What is left to read when each "\r" went back to the begin of the line.
std::string LastLine(const std::string& text) {
    std::string line;
    std::size_t at = 0;
    for (const char c : text.substr(text.rfind('\n') + 1)) {
        line.resize(std::max(line.size(), at + (c != '\r')));
        c == '\r' ? void(at = 0) : void(line[at++] = c);
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

void HideOutput() {
    dup2(open("/dev/null", O_WRONLY), 1);
}

} // namespace

// Longer and longer files, until one takes the tenth of a second after which the line appears.
TEST(Progress, TellsObjectsRateAndShareOnATerminal) {
    const Scratch scratch;
    const std::string file = scratch.Path("file");
    const std::string replay = scratch.Write(
        "replay.pipe", "plugin libfwlib.so\nelement EDeserialize\nproperty Name replay\nproperty Filename " +
                           file +
                           "\nelement EDevNull\nproperty Name end\nsink replay\nconnect replay 0 end 0\n");
    const struct {
        std::vector<std::string> arguments;
        std::function<void()> prepare;
    } cases[] = {
        {{"recover", "--force", file}, nullptr},
        {{"dump", "--oneline", file}, HideOutput},
        {{"dump", "-"}, [&] { HideOutput(), dup2(open(file.c_str(), O_RDONLY), 0); }},
        {{"run", "--drain", replay}, nullptr},
    };
    const std::regex line("\r[0-9]+ objects, [0-9]+/s, [0-9]{1,2}% *\r");
    for (const auto& one : cases) {
        SCOPED_TRACE(testing::PrintToString(one.arguments));
        std::string text, terminal;
        bool shown = false;
        for (std::size_t objects = 200000; !shown && objects < 20000000; objects *= 3) {
            text.clear();
            while (text.size() < objects * Object.size()) {
                text += Object;
            }
            scratch.Write("file", text);
            terminal = OnTerminal(one.arguments, one.prepare);
            shown = std::regex_search(terminal, line);
        }
        EXPECT_TRUE(shown) << terminal;
        EXPECT_EQ(LastLine(terminal), "") << terminal;
        const Outcome elsewhere = Fwpipe(one.arguments, text);
        EXPECT_EQ(elsewhere.err, "");
    }
}

TEST(Progress, LeavesATerminalToWhatIsPrintedThere) {
    const Scratch scratch;
    std::string text;
    for (int i = 0; i < 200000; ++i) {
        text += Object;
    }
    const std::string file = scratch.Write("file", text);
    const std::string print = scratch.Write(
        "print.pipe", "plugin libfwlib.so\nelement EDeserialize\nproperty Name replay\nproperty Filename " +
                          file + "\nelement ESink\nproperty Name end\nsink replay\nconnect replay 0 end 0\n");
    for (const auto& arguments :
         {std::vector<std::string>{"run", "--drain", print}, {"dump", "--oneline", file}}) {
        EXPECT_EQ(OnTerminal(arguments, nullptr).find(" objects, "), std::string::npos);
    }
}
