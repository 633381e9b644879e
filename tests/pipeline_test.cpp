// SPDX-License-Identifier: MIT
// Pipelines, and what pipe files cannot show of their lines: executed one by one, without a framework, and in
// pipelines that come and go.
#include "support/capture.h"
#include "support/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>

using namespace VESK;

namespace {

// Writes down what it is asked, and has the pads it is told to have.
struct Witness : EObject {
    Witness(const char* own, std::string& lent) : sinkPad(this, 0), sourcePad(this), name(own), log(lent) {
        Set(m_cProperties, "Name", name);
    }
    ~Witness() override { log += "~" + name + " "; }
    int Initialize() override {
        log += name + ".Initialize ";
        return initialized;
    }
    int DataArrived(QObject*, Byte2Type) override { return 1; }
    int Run() override { return number; }
    SINKPAD* GetSinkPad(Byte2Type b2Position) override { return Asked(".Sink", b2Position, sinkPad); }
    SOURCEPAD* GetSourcePad(Byte2Type b2Position) override { return Asked(".Source", b2Position, sourcePad); }
    Byte2Type GetSinkPadCount() override { return number; }
    Byte2Type GetSourcePadCount() override { return number; }
    template <class Pad>
    Pad* Asked(const char* kind, Byte2Type b2Position, Pad& pad) {
        log += name + kind + std::to_string(b2Position) + " ";
        return padless ? nullptr : &pad;
    }

    SINKPAD sinkPad;
    SOURCEPAD sourcePad;
    std::string name;
    std::string& log;
    int initialized = 1;
    Byte2Type number = 0; // its pad counts and the answer of its Run
    bool padless = false;
};

struct Pipe : EPipeline {
    explicit Pipe(std::string& lent) : log(lent) {}
    Witness* Add(const char* name, Byte2Type number = 0) {
        auto* const element = new Witness(name, log);
        element->number = number;
        EXPECT_EQ(AddElement(element), 1);
        return element;
    }
    int Join(const char* source, Byte2Type sourcePad, const char* sink, Byte2Type sinkPad) {
        return Connect(Text(source), sourcePad, Text(sink), sinkPad);
    }
    std::string Initialized() { // what Initialize does and prints
        log.clear();
        const std::string told = Told([&] { return Initialize(); });
        return log + told;
    }
    std::string Ran() {
        return Told([&] { return Run(); });
    }
    std::string& log; // outlives the elements
};

TEST(Pipeline, InitializeGoesElementsThenConnectionsThenSinkElement) {
    std::string log;
    {
        Pipe pipe(log);
        Witness *a = pipe.Add("a"), *b = pipe.Add("b"), *c = pipe.Add("c");
        EXPECT_EQ(pipe.Join("a", 1, "b", 2) + pipe.Join("a", 3, "c", 4) + pipe.Join("b", 65535, "b", 0), 3);
        Set(pipe.m_cProperties, "SinkElement", "c");
        const std::string elements = "a.Initialize b.Initialize c.Initialize ", first = "a.Source1 b.Sink2 ";
        const std::string noPad = "0 ! EPipeline::Initialize(): No sink or source pad\n";
        EXPECT_EQ(pipe.Initialized(), elements + first + "a.Source3 c.Sink4 b.Source65535 b.Sink0 1 ");
        EXPECT_EQ(a->sourcePad.m_pSinkPad, &c->sinkPad); // the later connection of a pad replaces the earlier
        EXPECT_EQ(pipe.m_pSinkElement, c);
        c->padless = true; // the second connection fails: the first stays, the third is not reached
        EXPECT_EQ(pipe.Initialized(), elements + first + "a.Source3 c.Sink4 " + noPad);
        EXPECT_EQ(a->sourcePad.m_pSinkPad, &b->sinkPad);
        a->padless = true; // both pads are asked for even when the first is missing
        EXPECT_EQ(pipe.Initialized(), elements + first + noPad);
        pipe.m_ppConnections[0]->b2SinkElement = 3;
        EXPECT_EQ(pipe.Initialized(), elements + "0 ! EPipeline::Initialize(): No sink or source element\n");
        b->initialized = 0;
        EXPECT_EQ(pipe.Initialized(), "a.Initialize b.Initialize 0 ");
        log.clear();
    }
    EXPECT_EQ(log, "~a ~b ~c ");
}

TEST(Pipeline, PadsFollowThePropertyAndRunFollowsInitialize) {
    const std::string none = "0 ! EPipeline::Run(): Error: No sink element.\n";
    std::string log;
    Pipe pipe(log);
    EXPECT_EQ(Entries(pipe.m_cProperties), "Standard.EObjectType=EPipeline");
    Witness *a = pipe.Add("a", 1), *b = pipe.Add("b", 2);
    EXPECT_EQ(pipe.AddElement(nullptr) + pipe.DataArrived(nullptr, 0), 0);
    for (const bool swapped : {false, true}) {
        Witness *const sink = swapped ? b : a, *const source = swapped ? a : b;
        EXPECT_EQ(pipe.Ran(), swapped ? "1 " : none); // as it was initialized
        Set(pipe.m_cProperties, "SinkElement", sink->name);
        Set(pipe.m_cProperties, "SourceElement", source->name);
        pipe.Initialize();
        EXPECT_EQ(pipe.GetSinkPadCount() * 10 + pipe.GetSourcePadCount(), swapped ? 21 : 12);
        EXPECT_TRUE(pipe.GetSinkPad(65535) == &sink->sinkPad && pipe.GetSourcePad(9) == &source->sourcePad);
        EXPECT_EQ(log.substr(log.size() - 22), sink->name + ".Sink65535 " + source->name + ".Source9 ");
    }
    Set(pipe.m_cProperties, "SinkElement", "nobody");
    EXPECT_TRUE(pipe.GetSinkPadCount() == 0 && pipe.GetSinkPad(0) == nullptr);
    EXPECT_EQ(pipe.Ran(), "2 ");
    EXPECT_EQ(pipe.Initialize(), 1);
    EXPECT_EQ(pipe.Ran(), none);
}

TEST(Pipeline, NamesFindTheFirstElementByTheirFirst255Characters) {
    std::string log;
    Pipe pipe(log);
    const std::string name(256, 'n');
    pipe.AddElement(new Probe);
    for (const char* own : {"", "twin", "twin", name.c_str(), "eightchr", "eightchrs"}) {
        pipe.Add(own);
    }
    const std::pair<std::string, int> searches[] = {
        {"", 1},         {"twin", 2},      {"Twin", 77},        {"twi", 77},
        {"twins", 77},   {name, 77},       {name.substr(1), 4}, {"eightch", 77},
        {"eightchr", 5}, {"eightchrs", 6}, {"eightchrsx", 77}};
    for (const auto& [sought, expected] : searches) {
        Byte2Type index = 77; // left alone when there is none
        EXPECT_EQ(pipe.FindElement(Text(sought.c_str()), &index), expected != 77) << sought;
        EXPECT_EQ(index, expected) << sought;
    }
    EXPECT_EQ(pipe.Join("twin", 0, "eightchr", 1), 1);
    EXPECT_EQ(pipe.Join("twin", 0, "nobody", 1) + pipe.Join("nobody", 0, "twin", 1), 0);
    EXPECT_EQ(pipe.m_b2ConnectionCount * 10 + pipe.m_ppConnections[0]->b2SourceElement, 12);
    for (const char* element : {"twin", "nobody"}) {
        const bool known = *element == 't';
        char buffer[8] = "before";
        Byte2Type number = 9;
        EXPECT_EQ(pipe.SetElementProperty(Text(element), Text("k"), Text("70000")), known);
        EXPECT_EQ(pipe.GetElementProperty(Text(element), Text("k"), buffer, Byte2Type{4}), known);
        EXPECT_EQ(pipe.GetElementProperty(Text(element), Text("k"), &number), known);
        EXPECT_EQ(buffer + std::to_string(number), known ? "7004464" : "before9");
    }
}

TEST(Pipeline, ElementsAndConnectionsBeyondTheLimitsAreRefused) {
    EPipeline pipe;
    int added = pipe.AddElement(new Probe("a")), connected = 0;
    for (int i = 1; i < 65535; ++i) {
        added += pipe.AddElement(new Probe);
    }
    Probe extra;
    Byte2Type index = 0;
    Set(pipe.m_ppElements[65534]->m_cProperties, "Name", "last");
    EXPECT_EQ(added - pipe.AddElement(&extra), 65535);
    EXPECT_TRUE(pipe.FindElement(Text("last"), &index) && index == 65534);
    for (int i = 0; i < 65536; ++i) {
        connected += pipe.Connect(Text("a"), static_cast<Byte2Type>(i), Text("a"), 0);
    }
    EXPECT_EQ(connected, 65520);
    EXPECT_EQ(pipe.m_ppConnections[65519]->b2SourcePad, 65519);
}

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
    for (const std::string keyword : {"plugin 1", "fwprop 2", "pipe 1", "element 1", "property 2", "sink 1",
                                      "source 1", "connect 4", "config 2"}) {
        const std::string name = keyword.substr(0, keyword.size() - 2),
                          more = keyword.back() == '1' ? "" : " a";
        EXPECT_EQ(Line(pipe, name + more), "0 ! Missing arguments of " + name + ": " + keyword.back() +
                                               " needed, " + (more.empty() ? "0" : "1") + " given.\n");
    }
    const std::string fourteen = "sink a 3 4 5 6 7 8 9 10 11 12 13 14";
    EXPECT_EQ(Line(pipe, fourteen), "1 Setting sink element to a\n");
    EXPECT_EQ(Line(pipe, fourteen + " 15"), "0 ! Too many tokens in a line of sink: at most 14.\n");
    EXPECT_EQ(Line(pipe, ""), "0 ");
    EXPECT_EQ(pipe.ProcessTokens(nullptr), 0);
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
struct FullPipeline : EPipeline {
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
        return plain(survivor) + configured(survivor) + Line(survivor, "config no S") == "1 1 1 ";
    };
    EXPECT_TRUE(noneLeft()); // nothing created yet in either form
    EXPECT_EQ(Line(survivor, "element ETee"), "1 Instantiating ETee\n");
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
    EXPECT_TRUE(noneLeft()); // a failed creation leaves none
    EXPECT_EQ(Line(full, "element ESink"), "0 Instantiating ESink\n! Unable to add element.\n");
    EXPECT_TRUE(noneLeft());
    full.taken = 1;
    Line(full, "element ESink");
    delete full.offered;
    EXPECT_TRUE(noneLeft());
    full.taken = 0;
    const Scratch scratch;
    const std::string path = scratch.Write("empty.pipe", "");
    EXPECT_EQ(Line(full, "pipe " + path),
              "1 Processing pipe file: " + path +
                  "\n! ERROR: EPipeline - [No Element Name]: Unable to add pipe " + path + "\n");
    EXPECT_TRUE(noneLeft());
}

} // namespace
