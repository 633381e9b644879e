// SPDX-License-Identifier: MIT
#include "support/capture.h"
#include "support/support.h"

#include <gtest/gtest.h>

using namespace VESK;

namespace {

// Writes down what it is asked, and has the pads it is told to have.
class Witness : public EObject {
public:
    Witness(const char* name, std::string& log)
        : sinkPad(this, 0), sourcePad(this), m_strName(name), m_strLog(log) {
        Set(m_cProperties, "Name", name);
    }
    ~Witness() override { m_strLog += "~" + m_strName + " "; }
    int Initialize() override {
        m_strLog += m_strName + ".Initialize ";
        return initialized;
    }
    int DataArrived(QObject*, Byte2Type) override { return 1; }
    int Run() override { return running; }
    SINKPAD* GetSinkPad(Byte2Type b2Position) override { return Asked(".Sink", b2Position, sinkPad); }
    SOURCEPAD* GetSourcePad(Byte2Type b2Position) override { return Asked(".Source", b2Position, sourcePad); }
    Byte2Type GetSinkPadCount() override { return sinkPads; }
    Byte2Type GetSourcePadCount() override { return sourcePads; }

    SINKPAD sinkPad;
    SOURCEPAD sourcePad;
    int initialized = 1, running = 0;
    Byte2Type sinkPads = 0, sourcePads = 0;
    bool padless = false;

private:
    template <class Pad>
    Pad* Asked(const char* kind, Byte2Type b2Position, Pad& pad) {
        m_strLog += m_strName + kind + std::to_string(b2Position) + " ";
        return padless ? nullptr : &pad;
    }

    std::string m_strName;
    std::string& m_strLog;
};

struct Pipe : EPipeline {
    Witness* Add(const char* name) {
        auto* const element = new Witness(name, log);
        EXPECT_EQ(AddElement(element), 1);
        return element;
    }
    int Join(const char* source, Byte2Type sourcePad, const char* sink, Byte2Type sinkPad) {
        return Connect(Text(source), sourcePad, Text(sink), sinkPad);
    }
    Output Initialized(int expected) {
        return Captured([&] { EXPECT_EQ(Initialize(), expected); });
    }
    std::string Log() { return std::exchange(log, ""); }

    std::string log;
};

const Output NoSinkElement = {"", "EPipeline::Run(): Error: No sink element.\n"};
const Output NoPad = {"", "EPipeline::Initialize(): No sink or source pad\n"};

TEST(Pipeline, AnEmptyOneInitializesButDoesNotRun) {
    EPipeline pipe;
    QObject object;
    Byte2Type index = 7;
    EXPECT_EQ(Entries(pipe.m_cProperties), "Standard.EObjectType=EPipeline");
    EXPECT_EQ(pipe.Initialize(), 1);
    EXPECT_EQ(Captured([&] { EXPECT_EQ(pipe.Run(), 0); }), NoSinkElement);
    EXPECT_EQ(pipe.GetSinkPadCount() + pipe.GetSourcePadCount() + pipe.DataArrived(&object, 0), 0);
    EXPECT_EQ(pipe.GetSinkPad(0), nullptr);
    EXPECT_EQ(pipe.GetSourcePad(0), nullptr);
    EXPECT_EQ(pipe.FindElement(Key::Name, &index) + pipe.AddElement(nullptr), 0);
    EXPECT_EQ(index, 7);
    const char* const names[] = {"EObjectType", "Name", "SinkElement", "SourceElement", "SingleThreaded"};
    for (std::size_t u = 0; u < std::size(names); ++u) {
        EXPECT_STREQ(EPipeline::m_pachProperties[u], names[u]);
    }
    EXPECT_EQ(EPipeline::m_pachProperties[5], nullptr);
}

TEST(Pipeline, InitializeGoesElementsThenConnectionsThenSinkElement) {
    Pipe pipe;
    Witness *a = pipe.Add("a"), *b = pipe.Add("b"), *c = pipe.Add("c");
    EXPECT_EQ(pipe.Join("a", 1, "b", 2) + pipe.Join("a", 3, "c", 4) + pipe.Join("b", 65535, "b", 0), 3);
    Set(pipe.m_cProperties, "SinkElement", "c");
    EXPECT_EQ(pipe.Initialized(1), Output());
    EXPECT_EQ(pipe.Log(), "a.Initialize b.Initialize c.Initialize a.Source1 b.Sink2 a.Source3 c.Sink4 "
                          "b.Source65535 b.Sink0 ");
    EXPECT_EQ(a->sourcePad.m_pSinkPad,
              &c->sinkPad); // the later connection of the same pad replaces the earlier
    EXPECT_EQ(pipe.m_pSinkElement, c);

    c->padless = true; // the second connection fails: the first stays, the third is not reached
    EXPECT_EQ(pipe.Initialized(0), NoPad);
    EXPECT_EQ(pipe.Log(), "a.Initialize b.Initialize c.Initialize a.Source1 b.Sink2 a.Source3 c.Sink4 ");
    EXPECT_EQ(a->sourcePad.m_pSinkPad, &b->sinkPad);

    a->padless = true; // both pads are asked for even when the first is missing
    EXPECT_EQ(pipe.Initialized(0), NoPad);
    EXPECT_EQ(pipe.Log(), "a.Initialize b.Initialize c.Initialize a.Source1 b.Sink2 ");

    b->initialized = 0;
    EXPECT_EQ(pipe.Initialized(0), Output());
    EXPECT_EQ(pipe.Log(), "a.Initialize b.Initialize ");

    pipe.m_ppConnections[0]->b2SinkElement = 3;
    b->initialized = 1;
    EXPECT_EQ(pipe.Initialized(0), (Output{"", "EPipeline::Initialize(): No sink or source element\n"}));
}

TEST(Pipeline, PadsFollowThePropertyAndRunFollowsInitialize) {
    Pipe pipe;
    Witness *a = pipe.Add("a"), *b = pipe.Add("b");
    a->sinkPads = 1, a->sourcePads = 2, a->running = 11;
    b->sinkPads = 3, b->sourcePads = 4, b->running = 22;
    Set(pipe.m_cProperties, "SinkElement", "a");
    Set(pipe.m_cProperties, "SourceElement", "b");
    EXPECT_EQ(Captured([&] { EXPECT_EQ(pipe.Run(), 0); }), NoSinkElement); // not initialized
    EXPECT_EQ(pipe.Initialize(), 1);
    EXPECT_EQ(pipe.GetSinkPadCount() * 10 + pipe.GetSourcePadCount(), 14);
    EXPECT_EQ(pipe.GetSinkPad(65535), &a->sinkPad);
    EXPECT_EQ(pipe.GetSourcePad(9), &b->sourcePad);
    Set(pipe.m_cProperties, "SinkElement", "b");
    Set(pipe.m_cProperties, "SourceElement", "a");
    EXPECT_EQ(pipe.GetSinkPadCount() * 10 + pipe.GetSourcePadCount(), 32);
    EXPECT_EQ(pipe.GetSinkPad(5), &b->sinkPad);
    EXPECT_EQ(pipe.Run(), 11);
    pipe.Initialize();
    EXPECT_EQ(pipe.Run(), 22);
    Set(pipe.m_cProperties, "SinkElement", "nobody");
    EXPECT_EQ(pipe.GetSinkPadCount(), 0);
    EXPECT_EQ(pipe.Run(), 22);
    EXPECT_EQ(pipe.Initialize(), 1);
    EXPECT_EQ(Captured([&] { EXPECT_EQ(pipe.Run(), 0); }), NoSinkElement);
}

TEST(Pipeline, ElementsDieInOrderOnceEach) {
    std::string log;
    {
        Pipe inner;
        EPipeline outer;
        outer.AddElement(new Witness("a", log));
        auto* const nested = new EPipeline;
        nested->AddElement(new Witness("b", log));
        outer.AddElement(nested);
        outer.AddElement(new Witness("c", log));
    }
    EXPECT_EQ(log, "~a ~b ~c ");
}

TEST(Pipeline, NamesFindTheFirstElementByTheirFirst255Characters) {
    Pipe pipe;
    const std::string name255(255, 'n'), name254(254, 'n'), name256(256, 'n');
    pipe.AddElement(new Probe);
    for (const char* name : {"", "twin", "twin", name256.c_str(), "eightchr", "eightchrs"}) {
        pipe.Add(name);
    }
    const struct {
        std::string name;
        int index; // -1 when it is not found
    } searches[] = {{"", 1},         {"twin", 2},     {"Twin", -1},     {"twi", -1},
                    {"twins", -1},   {name255, 4},    {name254, -1},    {name256, -1},
                    {"eightch", -1}, {"eightchr", 5}, {"eightchrs", 6}, {"eightchrsx", -1}};
    for (const auto& search : searches) {
        Byte2Type index = 77;
        EXPECT_EQ(pipe.FindElement(Text(search.name.c_str()), &index), search.index >= 0) << search.name;
        EXPECT_EQ(index, search.index >= 0 ? search.index : 77) << search.name;
    }
    EXPECT_EQ(pipe.FindElement(Text("twin"), nullptr), 0);
    EXPECT_EQ(pipe.Join("twin", 0, "eightchr", 1), 1);
    EXPECT_EQ(pipe.Join("twin", 0, "nobody", 1) + pipe.Join("nobody", 0, "twin", 1), 0);
    EXPECT_EQ(pipe.m_b2ConnectionCount, 1);
    EXPECT_EQ(pipe.m_ppConnections[0]->b2SourceElement, 2);

    char buffer[8] = "before";
    Byte2Type number = 9;
    EXPECT_EQ(pipe.SetElementProperty(Text("twin"), Text("a"), Text("70000")), 1);
    EXPECT_EQ(pipe.SetElementProperty(Text("nobody"), Text("a"), Text("1")), 0);
    EXPECT_EQ(Entries(pipe.m_ppElements[2]->m_cProperties), "Standard.Name=twin Standard.a=70000");
    EXPECT_EQ(pipe.GetElementProperty(Text("nobody"), Text("a"), buffer, Byte2Type{8}), 0);
    EXPECT_EQ(pipe.GetElementProperty(Text("nobody"), Text("a"), &number), 0);
    EXPECT_STREQ(buffer, "before");
    EXPECT_EQ(number, 9);
    EXPECT_EQ(pipe.GetElementProperty(Text("twin"), Text("a"), buffer, Byte2Type{4}), 1);
    EXPECT_STREQ(buffer, "700");
    EXPECT_EQ(pipe.GetElementProperty(Text("twin"), Text("a"), &number), 1);
    EXPECT_EQ(number, 4464);
    EXPECT_EQ(pipe.GetElementProperty(Text("twin"), Text("b"), buffer, Byte2Type{8}), 0);
    EXPECT_EQ(pipe.GetElementProperty(Text("twin"), Text("b"), &number), 0);
    EXPECT_EQ(std::string(buffer) + std::to_string(number), "0");
}

TEST(Pipeline, ElementsAndConnectionsBeyondTheLimitsAreRefused) {
    EPipeline pipe;
    int added = pipe.AddElement(new Probe("a"));
    for (int i = 1; i < 65535; ++i) {
        added += pipe.AddElement(new Probe);
    }
    pipe.m_ppElements[65534]->m_cProperties.SetProperty(Key::Name, Text("last"), Section::Standard);
    Probe extra;
    EXPECT_EQ(added, 65535);
    EXPECT_EQ(pipe.AddElement(&extra), 0);
    EXPECT_EQ(pipe.m_iElementCount, 65535);
    Byte2Type index = 0;
    EXPECT_EQ(pipe.FindElement(Text("last"), &index), 1);
    EXPECT_EQ(index, 65534);
    int connected = 0;
    for (int i = 0; i < 65536; ++i) {
        connected += pipe.Connect(Text("a"), static_cast<Byte2Type>(i), Text("a"), 0);
    }
    EXPECT_EQ(connected, 65520);
    EXPECT_EQ(pipe.m_b2ConnectionCount, 65520);
    EXPECT_EQ(pipe.m_ppConnections[65519]->b2SourcePad, 65519);
}

// One line of a pipe file, without or with a configuration file.
template <class... Form>
int Line(EPipeline& pipe, std::string line, Form... form) {
    std::vector<char*> tokens;
    for (std::size_t at = 0; at != std::string::npos;) {
        tokens.push_back(line.data() + at);
        at = line.find(' ', at);
        if (at != std::string::npos) {
            line[at++] = '\0';
        }
    }
    tokens.push_back(nullptr);
    return pipe.ProcessTokens(tokens.data(), form...);
}

TEST(PipeLines, TooFewOrTooManyTokensFail) {
    EPipeline pipe;
    const struct {
        const char* line;
        int needed, given;
    } lines[] = {{"plugin", 1, 0},  {"fwprop a", 2, 1},      {"pipe", 1, 0},
                 {"element", 1, 0}, {"property a", 2, 1},    {"sink", 1, 0},
                 {"source", 1, 0},  {"connect a 0 b", 4, 3}, {"config f", 2, 1}};
    for (const auto& line : lines) {
        const std::string keyword = std::string(line.line).substr(0, std::string(line.line).find(' '));
        EXPECT_EQ(Captured([&] { EXPECT_EQ(Line(pipe, line.line), 0); }),
                  (Output{"", "Missing arguments of " + keyword + ": " + std::to_string(line.needed) +
                                  " needed, " + std::to_string(line.given) + " given.\n"}));
    }
    const std::string fourteen = "sink a 3 4 5 6 7 8 9 10 11 12 13 14";
    EXPECT_EQ(Captured([&] { EXPECT_EQ(Line(pipe, fourteen), 1); }).out, "Setting sink element to a\n");
    EXPECT_EQ(Captured([&] { EXPECT_EQ(Line(pipe, fourteen + " 15 16 17 18"), 0); }),
              (Output{"", "Too many tokens in a line of sink: at most 14.\n"}));
    char* none[] = {nullptr};
    EXPECT_EQ(pipe.ProcessTokens(none) + pipe.ProcessTokens(nullptr), 0);
}

TEST(PipeLines, WithoutAFrameworkLoadingAndCreatingFail) {
    EPipeline pipe;
    EXPECT_EQ(
        Captured([&] {
            EXPECT_EQ(Line(pipe, "plugin x"), 0);
            EXPECT_EQ(Line(pipe, "element ESink"), 0);
            EXPECT_EQ(Line(pipe, "pipe x"), 0);
            EXPECT_EQ(Line(pipe, "fwprop a b"), 1);
            EXPECT_EQ(pipe.BuildPipe(Text("x")) + pipe.BuildPipe(Text("x"), 1, Text("c")), 0);
        }),
        (Output{
            "Loading x\nInstantiating ESink\n",
            "Could not load plugin x\nCreation of element failed.\nFramework has not been set on EPipeline.\n"
            "Could not build pipe x\nFramework has not been set on EPipeline.\n"
            "Framework has not been set on EPipeline.\n"}));
}

class FullPipeline : public EPipeline {
public:
    int AddElement(EObject*) override { return 0; }
};

TEST(PipeLines, EachFormHasItsCurrentElementUntilItDies) {
    FRAMEWORK framework;
    framework.AddPlugin(Text("libfwlib.so"));
    FullPipeline full;
    EPipeline survivor;
    full.m_pFramework = survivor.m_pFramework = &framework;
    const auto plain = [](EPipeline& pipe) { return Line(pipe, "property p 1"); };
    const auto configured = [](EPipeline& pipe) { return Line(pipe, "property c 1", Byte2Type{0}, nullptr); };
    const auto both = [&] {
        EXPECT_EQ(plain(survivor) + configured(survivor) + Line(survivor, "config no S"), 3);
    };
    EXPECT_EQ(Captured(both), Output()); // nothing created yet in either form
    Captured([&] { EXPECT_EQ(Line(survivor, "element ETee"), 1); });
    EXPECT_EQ(Captured([&] { EXPECT_EQ(configured(survivor), 1); }), Output());
    {
        EPipeline dying;
        dying.m_pFramework = &framework;
        Captured([&] {
            EXPECT_EQ(plain(dying), 1); // sets it on the element of another pipeline
            EXPECT_EQ(Line(dying, "element ESink", Byte2Type{0}, nullptr), 1);
            EXPECT_EQ(configured(survivor), 1);
        });
        EXPECT_EQ(Entries(survivor.m_ppElements[0]->m_cProperties), "Standard.EObjectType=ETee Standard.p=1");
        EXPECT_EQ(Entries(dying.m_ppElements[0]->m_cProperties), "Standard.EObjectType=ESink Standard.c=1");
    }
    EXPECT_EQ(Captured([&] { EXPECT_EQ(configured(survivor), 1); }), Output());
    Captured([&] { EXPECT_EQ(Line(survivor, "element ENone"), 0); });
    EXPECT_EQ(Captured(both), Output()); // a failed creation leaves none
    EXPECT_EQ(Captured([&] { EXPECT_EQ(Line(full, "element ESink"), 0); }),
              (Output{"Instantiating ESink\n", "Unable to add element.\n"}));
    EXPECT_EQ(Captured(both), Output());
    const Scratch scratch;
    const std::string path = scratch.Write("empty.pipe", "");
    EXPECT_EQ(Captured([&] { EXPECT_EQ(Line(full, "pipe " + path), 1); }).err,
              "ERROR: EPipeline - [No Element Name]: Unable to add pipe " + path + "\n");
    EXPECT_EQ(Captured(both), Output());
}

} // namespace
