// SPDX-License-Identifier: MIT
// Runs the language tests of pipes/*.test. A file holds cases; a case holds sections, which begin with a line
// of three dashes:
//
//   --- case NAME          begins a case; what stands below it up to the next section is its description
//   --- pipe               the pipe file, main.pipe
//   --- file NAME          another file beside it
//   --- config FILE        builds with this configuration file; "--- noconfig FILE" builds in that form,
//   switched off
//   --- stdout, stderr     what is printed, to the letter; nothing when the section is missing
//   --- built              the framework's settings and what the pipeline holds afterwards; not compared when
//   missing
//   --- answers 1 1 0      of building, initializing, running; a step that is not listed is not made
//
// In all of them a line "(N times) TEXT" stands for N lines, <N*TEXT> for N texts in a row, <cr> for a
// carriage return, <tab> for a tab, <end> for the missing newline of a last line, and <loader> for whatever
// the platform's loader says up to the end of the line. The folder plugins/ holds the test plugins. Each case
// has a process and a folder of its own.
#include "support/support.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

using namespace VESK;

namespace {

struct Case {
    std::string name;
    std::map<std::string, std::string> sections; // by the words behind the dashes
    std::string answers;
};

void Replace(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

std::string Repeated(const std::string& count, const std::string& text) {
    std::string all;
    for (int i = std::stoi(count); i > 0; --i) {
        all += text;
    }
    return all;
}

// The lines that one line of a test file stands for.
std::string Expanded(std::string line) {
    static const std::regex row("<([0-9]+)\\*([^>]*)>"), lines("\\(([0-9]+) times\\) (.*)");
    std::smatch match;
    while (std::regex_search(line, match, row)) {
        line = match.prefix().str() + Repeated(match[1], match[2]) + match.suffix().str();
    }
    Replace(line, "<cr>", "\r");
    Replace(line, "<tab>", "\t");
    if (line.size() >= 5 && line.compare(line.size() - 5, 5, "<end>") == 0) {
        return line.substr(0, line.size() - 5);
    }
    return std::regex_match(line, match, lines) ? Repeated(match[1], match[2].str() + "\n") : line + "\n";
}

std::vector<Case> LoadCases() {
    std::vector<Case> cases;
    for (const auto& entry : std::filesystem::directory_iterator(FWLIB_TEST_CASES)) {
        std::ifstream file(entry.path());
        std::string line, *section = nullptr;
        while (std::getline(file, line)) {
            if (line.rfind("--- case ", 0) == 0) {
                cases.push_back({entry.path().stem().string() + "_" + line.substr(9), {}, ""});
                Replace(cases.back().name, " ", "_");
                section = nullptr;
            } else if (line.rfind("--- answers ", 0) == 0) {
                cases.back().answers = line.substr(12);
                section = nullptr;
            } else if (line.rfind("--- ", 0) == 0) {
                section = &cases.back().sections[line.substr(4)];
            } else if (section) {
                *section += Expanded(line);
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

int BuildCase(const Case& test, EPipeline& pipe) {
    for (const auto& [head, text] : test.sections) {
        for (const std::string form : {"config ", "noconfig "}) {
            if (head.rfind(form, 0) == 0) {
                const std::string path = head.substr(form.size());
                return pipe.BuildPipe(Text("main.pipe"), form == "config ", Text(path.c_str()));
            }
        }
    }
    return pipe.BuildPipe(Text("main.pipe"));
}

// The child's work: leaves the files out, err, built and answers in the folder.
void RunCase(const Case& test, const std::string& folder) {
    if (chdir(folder.c_str()) != 0 || !std::freopen("out", "w", stdout) ||
        !std::freopen("err", "w", stderr)) {
        _exit(99);
    }
    FRAMEWORK framework;
    EPipeline pipe;
    pipe.m_pFramework = &framework;
    int answer = BuildCase(test, pipe);
    std::ofstream("built") << Built(framework, pipe);
    std::string answers = std::to_string(answer);
    for (const auto step : {&EObject::Initialize, &EObject::Run}) {
        if (answer && answers.size() < test.answers.size()) {
            answer = (pipe.*step)();
            answers += " " + std::to_string(answer);
        }
    }
    std::ofstream("answers") << answers;
}

// Lets each line of the text that fits an expected line with <loader> pass for it.
std::string Forgiven(const std::string& text, const std::string& expected) {
    std::istringstream texts(text), expectations(expected);
    std::string result, line, wanted;
    while (std::getline(texts, line)) {
        const std::size_t at =
            std::getline(expectations, wanted) ? wanted.find("<loader>") : std::string::npos;
        const bool fits =
            at != std::string::npos && line.compare(0, at, wanted, 0, at) == 0 && line.size() > at;
        result += (fits ? wanted : line) + (texts.eof() ? "" : "\n");
    }
    return result;
}

class PipeCase : public testing::TestWithParam<Case> {};

TEST_P(PipeCase, PrintsAndAnswersAsItsFileSays) {
    const Scratch scratch;
    std::map<std::string, std::string> sections = GetParam().sections;
    scratch.Write("main.pipe", sections["pipe"]);
    for (const auto& [head, text] : sections) {
        if (head.rfind("file ", 0) == 0) {
            scratch.Write(head.substr(5), text);
        }
    }
    std::filesystem::create_directory_symlink(FWLIB_TEST_PLUGINS, scratch.Path("plugins"));
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        RunCase(GetParam(), scratch.Path("."));
        std::exit(0); // not _exit: leaks are looked for at an orderly end
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(FileText(scratch.Path("out")), sections["stdout"]);
    EXPECT_EQ(Forgiven(FileText(scratch.Path("err")), sections["stderr"]), sections["stderr"]);
    EXPECT_EQ(FileText(scratch.Path("answers")), GetParam().answers);
    if (GetParam().sections.count("built")) {
        EXPECT_EQ(FileText(scratch.Path("built")), sections["built"]);
    }
}

INSTANTIATE_TEST_SUITE_P(Language, PipeCase, testing::ValuesIn(LoadCases()),
                         [](const auto& instance) { return instance.param.name; });

} // namespace
