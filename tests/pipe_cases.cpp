// SPDX-License-Identifier: MIT
// Runs the language tests of pipes/*.test, each in a process and a folder of its own. A file holds cases of sections:
//
//   --- case NAME          begins a case
//   --- also NAME          begins one with the sections of the last "case", except for those that it has itself
//   --- pipe               the pipe file, main.pipe; "--- file NAME" is another one beside it
//   --- config FILE        builds with this configuration file; "--- noconfig FILE" in that form, switched off
//   --- stdin              the standard input
//   --- stdout, stderr     what is printed, to the letter; nothing when the section is missing
//   --- printed            in the place of stdout: what is printed once the pipeline is built
//   --- built              the framework's settings and what the pipeline holds afterwards, unless missing
//   --- left NAME          what stands in this file when the pipeline is gone
//   --- answers 1 1 0      of building, initializing, and each run; a step that is not listed is not made. "again=1" is
//                          of initializing once more. "error" behind them: the framework has seen one
//
// "(N times) TEXT" stands for N lines, "(these K lines N times)" repeats the K lines before it, and <n> is then the
// number from 0 on. <N*TEXT> stands for N texts in a row, <cr>, <tab> and <zero> for these characters, <end> for the
// missing newline of a last line, <loader> for what the platform's loader says. plugins/ holds the test plugins;
// probe.cpp tells of the elements that send and take what a case needs.
#include "support/support.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

using namespace VESK;

namespace {

struct Sections : std::map<std::string, std::string> {     // by the words behind the dashes
    friend void PrintTo(const Sections&, std::ostream*) {} // a case is told by its name
    std::string At(const std::string& head) const { return count(head) ? at(head) : ""; }
};

bool Begins(const std::string& text, const std::string& with) {
    return text.rfind(with, 0) == 0;
}

// The text so many times, <n> being the number.
std::string Repeated(int count, const std::string& text) {
    std::string all;
    for (int n = 0; n < count; ++n) {
        std::string one = text;
        for (std::size_t at; (at = one.find("<n>")) != std::string::npos;) {
            one.replace(at, 3, std::to_string(n));
        }
        all += one;
    }
    return all;
}

// Adds what a line of a test file stands for to its section.
void Expand(std::string line, std::string& section) {
    static const std::map<std::string, std::string> marks = {
        {"<cr", "\r"}, {"<tab", "\t"}, {"<zero", std::string(1, '\0')}};
    int lines = 0, count = 1, behind = 0;
    if (std::sscanf(line.c_str(), "(these %d lines %d times)", &lines, &count) == 2) {
        std::size_t begin = section.size() - 1;
        while (lines-- > 0) {
            begin = section.rfind('\n', begin - 1);
        }
        const std::string text = section.substr(begin + 1);
        section = section.substr(0, begin + 1) + Repeated(count, text);
        return;
    }
    for (std::size_t at = 0; (at = line.find('<', at)) != std::string::npos;) {
        const std::size_t end = line.find('>', at);
        const std::string mark = line.substr(at, end - at);
        const bool row = std::sscanf(mark.c_str(), "<%d*%n", &count, &behind) == 1 && behind > 0;
        const std::string text = row ? Repeated(count, mark.substr(static_cast<std::size_t>(behind)))
                                 : marks.count(mark) ? marks.at(mark)
                                                     : mark + ">";
        line.replace(at, end + 1 - at, text);
        at += text.size();
    }
    const bool ends = line.size() >= 5 && line.substr(line.size() - 5) == "<end>";
    const bool rows = std::sscanf(line.c_str(), "(%d times) %n", &count, &behind) == 1;
    section += ends   ? line.substr(0, line.size() - 5)
               : rows ? Repeated(count, line.substr(static_cast<std::size_t>(behind)) + "\n")
                      : line + "\n";
}

std::vector<Sections> LoadCases() {
    std::vector<Sections> cases;
    for (const auto& entry : std::filesystem::directory_iterator(FWLIB_TEST_CASES)) {
        std::ifstream file(entry.path());
        std::string line, *section = nullptr;
        std::size_t shared = 0; // the position of the last "case"
        while (std::getline(file, line)) {
            if (Begins(line, "--- case ") || Begins(line, "--- also ")) {
                shared = Begins(line, "--- also ") ? shared : cases.size();
                cases.push_back(shared < cases.size() ? cases[shared] : Sections());
                cases.back()["case"] = entry.path().stem().string() + "_" + line.substr(9);
            } else if (Begins(line, "--- answers ")) {
                cases.back()["answers"] = line.substr(12);
            } else if (Begins(line, "--- ")) {
                section = &cases.back()[line.substr(4)];
                section->clear();
            } else if (section) {
                Expand(line, *section);
            }
        }
    }
    return cases;
}

// What the framework and the pipeline hold after building.
std::string Built(const FRAMEWORK& framework, const EPipeline& pipe) {
    std::ostringstream text;
    text << "framework " << Entries(framework) << "\npipeline " << Entries(pipe.m_cProperties) << "\n";
    for (int i = 0; i < pipe.m_iElementCount; ++i) {
        text << "element " << Entries(pipe.m_ppElements[i]->m_cProperties) << "\n";
    }
    for (unsigned int u = 0; u < pipe.m_b2ConnectionCount; ++u) {
        const CONNECTION& c = *pipe.m_ppConnections[u];
        text << "connection " << c.b2SourceElement << "(" << c.b2SourcePad << ") -> " << c.b2SinkElement
             << "(" << c.b2SinkPad << ")\n";
    }
    return text.str();
}

// The child's work: leaves the files out, err, built and answers in the folder.
void RunCase(const Sections& sections, const std::string& folder) {
    if (chdir(folder.c_str()) != 0 || !std::freopen("in", "r", stdin) || !std::freopen("out", "w", stdout) ||
        !std::freopen("err", "w", stderr)) {
        _exit(99);
    }
    FRAMEWORK framework;
    std::string answers;
    {
        EPipeline pipe;
        pipe.m_pFramework = &framework;
        int answer = -1;
        for (const auto& [head, text] : sections) {
            if (Begins(head, "config ") || Begins(head, "noconfig ")) {
                const std::string path = head.substr(head.find(' ') + 1);
                answer = pipe.BuildPipe(Text("main.pipe"), Begins(head, "config "), Text(path.c_str()));
            }
        }
        answer = answer < 0 ? pipe.BuildPipe(Text("main.pipe")) : answer;
        std::ofstream("built") << Built(framework, pipe);
        if (sections.count("printed") && !std::freopen("out", "w", stdout)) {
            _exit(98);
        }
        std::istringstream steps(sections.at("answers"));
        std::string step;
        for (int made = 0; steps >> step && step != "error"; ++made) {
            const std::string again = Begins(step, "again=") ? "again=" : "";
            answer = made == 0 ? answer : made == 1 || !again.empty() ? pipe.Initialize() : pipe.Run();
            answers += (made ? " " : "") + again + std::to_string(answer);
        }
    }
    std::ofstream("answers") << answers << (framework.m_bError ? " error" : "");
}

class PipeCase : public testing::TestWithParam<Sections> {};

TEST_P(PipeCase, PrintsAndAnswersAsItsFileSays) {
    const Scratch scratch;
    const Sections& sections = GetParam();
    scratch.Write("main.pipe", sections.At("pipe"));
    scratch.Write("in", sections.At("stdin"));
    for (const auto& [head, text] : sections) {
        if (Begins(head, "file ")) {
            scratch.Write(head.substr(5), text);
        }
    }
    std::filesystem::create_directory_symlink(FWLIB_TEST_PLUGINS, scratch.Path("plugins"));
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        RunCase(sections, scratch.Path("."));
        std::exit(0); // not _exit: leaks are looked for at an orderly end
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(FileText(scratch.Path("out")), sections.At(sections.count("printed") ? "printed" : "stdout"));
    std::string err = FileText(scratch.Path("err"));
    const std::size_t loader = sections.At("stderr").find("<loader>");
    if (loader < err.size()) {
        err.replace(loader, err.find('\n', loader) - loader, "<loader>");
    }
    EXPECT_EQ(err, sections.At("stderr"));
    EXPECT_EQ(FileText(scratch.Path("answers")), sections.At("answers"));
    for (const auto& [head, text] : sections) {
        if (head == "built" || Begins(head, "left ")) {
            EXPECT_EQ(FileText(scratch.Path(head == "built" ? head : head.substr(5))), text) << head;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Language, PipeCase, testing::ValuesIn(LoadCases()), [](const auto& instance) {
    std::string name = instance.param.at("case");
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

} // namespace
