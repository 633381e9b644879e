// SPDX-License-Identifier: MIT
// What pipe files cannot show: lines executed one by one, without a framework, and in pipelines that come and go.
#include "support/capture.h"
#include "support/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <tuple>

using namespace VESK;

namespace {

// One line of a pipe file, without or with a configuration file: its answer, and what it prints.
template <class... Form>
std::string Line(EPipeline& pipe, std::string line, Form... form) {
    std::vector<char*> tokens;
    for (std::size_t at = 0, end; at < line.size(); at = end + 1) {
        end = std::min(line.find(' ', at), line.size());
        line[end] = '\0';
        tokens.push_back(&line[at]);
    }
    tokens.push_back(nullptr);
    return Told([&] { return pipe.ProcessTokens(tokens.data(), form...); });
}

TEST(PipeLines, TooFewOrTooManyTokensFail) {
    EPipeline pipe;
    const std::tuple<std::string, std::string, int, int> lines[] = {
        {"plugin", "", 1, 0},  {"fwprop", " a", 2, 1},      {"pipe", "", 1, 0},
        {"element", "", 1, 0}, {"property", " a", 2, 1},    {"sink", "", 1, 0},
        {"source", "", 1, 0},  {"connect", " a 0 b", 4, 3}, {"config", " f", 2, 1}};
    for (const auto& [keyword, arguments, needed, given] : lines) {
        EXPECT_EQ(Line(pipe, keyword + arguments), "0 ! Missing arguments of " + keyword + ": " +
                                                       std::to_string(needed) + " needed, " +
                                                       std::to_string(given) + " given.\n");
    }
    const std::string fourteen = "sink a 3 4 5 6 7 8 9 10 11 12 13 14";
    EXPECT_EQ(Line(pipe, fourteen), "1 Setting sink element to a\n");
    EXPECT_EQ(Line(pipe, fourteen + " 15"), "0 ! Too many tokens in a line of sink: at most 14.\n");
    EXPECT_EQ(Line(pipe, ""), "0 ");
}

TEST(PipeLines, WithoutAFrameworkLoadingAndCreatingFail) {
    EPipeline pipe;
    const std::string refused = "0 ! Framework has not been set on EPipeline.\n";
    EXPECT_EQ(Line(pipe, "plugin x"), "0 Loading x\n! Could not load plugin x\n");
    EXPECT_EQ(Line(pipe, "element ESink"), "0 Instantiating ESink\n! Creation of element failed.\n");
    EXPECT_EQ(Line(pipe, "pipe x"), refused + "Could not build pipe x\n");
    EXPECT_EQ(Line(pipe, "fwprop a b"), "1 ");
    EXPECT_EQ(Told([&] { return pipe.BuildPipe(Text("x"), 1, Text("c")); }), refused);
}

// Keeps no elements of its own, but may say that it took one.
class FullPipeline : public EPipeline {
public:
    int AddElement(EObject* pElement) override {
        offered = pElement;
        return taken;
    }
    EObject* offered = nullptr;
    int taken = 0;
};

TEST(PipeLines, EachFormHasItsCurrentElementUntilItDies) {
    FRAMEWORK framework;
    framework.AddPlugin(Text("libfwlib.so"));
    FullPipeline full;
    EPipeline survivor;
    full.m_pFramework = survivor.m_pFramework = &framework;
    const auto plain = [](EPipeline& pipe) { return Line(pipe, "property p 1"); };
    const auto configured = [](EPipeline& pipe) { return Line(pipe, "property c 1", Byte2Type{0}, nullptr); };
    const auto noneLeft = [&] {
        return plain(survivor) + configured(survivor) + Line(survivor, "config no S");
    };
    EXPECT_EQ(noneLeft(), "1 1 1 "); // nothing created yet in either form
    EXPECT_EQ(Line(survivor, "element ETee"), "1 Instantiating ETee\n");
    EXPECT_EQ(configured(survivor), "1 ");
    {
        EPipeline dying;
        dying.m_pFramework = &framework;
        plain(dying); // sets it on the element of another pipeline
        EXPECT_EQ(Line(dying, "element ESink", Byte2Type{0}, nullptr), "1 Instantiating ESink\n");
        configured(survivor);
        EXPECT_EQ(Entries(survivor.m_ppElements[0]->m_cProperties), "Standard.EObjectType=ETee Standard.p=1");
        EXPECT_EQ(Entries(dying.m_ppElements[0]->m_cProperties), "Standard.EObjectType=ESink Standard.c=1");
    }
    EXPECT_EQ(configured(survivor), "1 ");
    Line(survivor, "element ENone");
    EXPECT_EQ(noneLeft(), "1 1 1 "); // a failed creation leaves none
    EXPECT_EQ(Line(full, "element ESink"), "0 Instantiating ESink\n! Unable to add element.\n");
    EXPECT_EQ(noneLeft(), "1 1 1 ");
    full.taken = 1;
    Line(full, "element ESink");
    delete full.offered;
    EXPECT_EQ(noneLeft(), "1 1 1 ");
    full.taken = 0;
    const Scratch scratch;
    const std::string path = scratch.Write("empty.pipe", "");
    EXPECT_EQ(Line(full, "pipe " + path),
              "1 Processing pipe file: " + path +
                  "\n! ERROR: EPipeline - [No Element Name]: Unable to add pipe " + path + "\n");
    EXPECT_EQ(noneLeft(), "1 1 1 ");
}

} // namespace
