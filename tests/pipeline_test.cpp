// SPDX-License-Identifier: MIT
#include "support/capture.h"
#include "support/support.h"

#include <gtest/gtest.h>
#include <utility>

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
    int Run() override { return number; }
    SINKPAD* GetSinkPad(Byte2Type b2Position) override { return Asked(".Sink", b2Position, sinkPad); }
    SOURCEPAD* GetSourcePad(Byte2Type b2Position) override { return Asked(".Source", b2Position, sourcePad); }
    Byte2Type GetSinkPadCount() override { return number; }
    Byte2Type GetSourcePadCount() override { return number; }

    SINKPAD sinkPad;
    SOURCEPAD sourcePad;
    int initialized = 1;
    Byte2Type number = 0; // its pad counts and the answer of its Run
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

struct Log {
    std::string log;
};

struct Pipe : Log, EPipeline { // the log outlives the elements
    Witness* Add(const char* name, Byte2Type number = 0) {
        auto* const element = new Witness(name, log);
        element->number = number;
        EXPECT_EQ(AddElement(element), 1);
        return element;
    }
    int Join(const char* source, Byte2Type sourcePad, const char* sink, Byte2Type sinkPad) {
        return Connect(Text(source), sourcePad, Text(sink), sinkPad);
    }
    // What Initialize does and prints.
    std::string Initialized() {
        log.clear();
        const std::string told = Told([&] { return Initialize(); });
        return log + told;
    }
    std::string Ran() {
        return Told([&] { return Run(); });
    }
};

const char* const NoSinkElement = "0 ! EPipeline::Run(): Error: No sink element.\n";

TEST(Pipeline, AnEmptyOneHasNothing) {
    Pipe pipe;
    QObject object;
    EXPECT_EQ(Entries(pipe.m_cProperties), "Standard.EObjectType=EPipeline");
    EXPECT_EQ(pipe.Initialized(), "1 ");
    EXPECT_EQ(pipe.Ran(), NoSinkElement);
    EXPECT_EQ(pipe.GetSinkPadCount() + pipe.GetSourcePadCount() + pipe.DataArrived(&object, 0), 0);
    EXPECT_EQ(pipe.GetSinkPad(0), nullptr);
    EXPECT_EQ(pipe.GetSourcePad(0), nullptr);
    EXPECT_EQ(pipe.AddElement(nullptr), 0);
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
    const std::string elements = "a.Initialize b.Initialize c.Initialize ", first = "a.Source1 b.Sink2 ";
    const std::string noPad = "0 ! EPipeline::Initialize(): No sink or source pad\n";
    EXPECT_EQ(pipe.Initialized(), elements + first + "a.Source3 c.Sink4 b.Source65535 b.Sink0 1 ");
    EXPECT_EQ(a->sourcePad.m_pSinkPad,
              &c->sinkPad); // the later connection of the same pad replaces the earlier
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
}

TEST(Pipeline, PadsFollowThePropertyAndRunFollowsInitialize) {
    Pipe pipe;
    Witness *a = pipe.Add("a", 1), *b = pipe.Add("b", 2);
    Set(pipe.m_cProperties, "SinkElement", "a");
    Set(pipe.m_cProperties, "SourceElement", "b");
    EXPECT_EQ(pipe.Ran(), NoSinkElement); // not initialized
    pipe.Initialize();
    EXPECT_EQ(pipe.GetSinkPadCount() * 10 + pipe.GetSourcePadCount(), 12);
    EXPECT_EQ(pipe.GetSinkPad(65535), &a->sinkPad);
    EXPECT_EQ(pipe.GetSourcePad(9), &b->sourcePad);
    Set(pipe.m_cProperties, "SinkElement", "b");
    Set(pipe.m_cProperties, "SourceElement", "a");
    EXPECT_EQ(pipe.GetSinkPadCount() * 10 + pipe.GetSourcePadCount(), 21);
    EXPECT_EQ(pipe.GetSinkPad(5), &b->sinkPad);
    EXPECT_EQ(pipe.Ran(), "1 ");
    pipe.Initialize();
    EXPECT_EQ(pipe.Ran(), "2 ");
    Set(pipe.m_cProperties, "SinkElement", "nobody");
    EXPECT_EQ(pipe.GetSinkPadCount(), 0);
    EXPECT_EQ(pipe.Ran(), "2 ");
    EXPECT_EQ(pipe.Initialize(), 1);
    EXPECT_EQ(pipe.Ran(), NoSinkElement);
}

TEST(Pipeline, ElementsDieInOrderOnceEach) {
    std::string log;
    {
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
    const std::string name(256, 'n');
    pipe.AddElement(new Probe);
    for (const char* own : {"", "twin", "twin", name.c_str(), "eightchr", "eightchrs"}) {
        pipe.Add(own);
    }
    const std::pair<std::string, int> searches[] = {
        {"", 1},       {"twin", 2},       {"Twin", 77},    {"twi", 77},      {name.substr(1), 4},
        {name, 77},    {"eightch", 77},   {"eightchr", 5}, {"eightchrs", 6}, {name.substr(2), 77},
        {"twins", 77}, {"eightchrsx", 77}};
    for (const auto& [sought, expected] : searches) {
        Byte2Type index = 77; // left alone when there is none
        EXPECT_EQ(pipe.FindElement(Text(sought.c_str()), &index), expected != 77) << sought;
        EXPECT_EQ(index, expected) << sought;
    }
    EXPECT_EQ(pipe.FindElement(Text("twin"), nullptr), 0);
    EXPECT_EQ(pipe.Join("twin", 0, "eightchr", 1), 1);
    EXPECT_EQ(pipe.Join("twin", 0, "nobody", 1) + pipe.Join("nobody", 0, "twin", 1), 0);
    EXPECT_EQ(pipe.m_b2ConnectionCount, 1);
    EXPECT_EQ(pipe.m_ppConnections[0]->b2SourceElement, 2);
}

TEST(Pipeline, PropertiesOfElementsAreReachedByName) {
    Pipe pipe;
    pipe.Add("a");
    EXPECT_EQ(pipe.SetElementProperty(Text("a"), Text("k"), Text("70000")), 1);
    EXPECT_EQ(pipe.SetElementProperty(Text("nobody"), Text("k"), Text("1")), 0);
    EXPECT_EQ(Entries(pipe.m_ppElements[0]->m_cProperties), "Standard.Name=a Standard.k=70000");
    const struct {
        const char *element, *key;
        int answer;
        const char* values; // as text and as a number
    } reads[] = {{"a", "k", 1, "700 4464"}, {"a", "l", 0, " 0"}, {"nobody", "k", 0, "before 9"}};
    for (const auto& read : reads) {
        char buffer[8] = "before";
        Byte2Type number = 9;
        EXPECT_EQ(pipe.GetElementProperty(Text(read.element), Text(read.key), buffer, Byte2Type{4}),
                  read.answer);
        EXPECT_EQ(pipe.GetElementProperty(Text(read.element), Text(read.key), &number), read.answer);
        EXPECT_EQ(buffer + (" " + std::to_string(number)), read.values);
    }
}

TEST(Pipeline, ElementsAndConnectionsBeyondTheLimitsAreRefused) {
    EPipeline pipe;
    int added = pipe.AddElement(new Probe("a")), connected = 0;
    for (int i = 1; i < 65535; ++i) {
        added += pipe.AddElement(new Probe);
    }
    Set(pipe.m_ppElements[65534]->m_cProperties, "Name", "last");
    Probe extra;
    Byte2Type index = 0;
    EXPECT_EQ(added, 65535);
    EXPECT_EQ(pipe.AddElement(&extra), 0);
    EXPECT_EQ(pipe.m_iElementCount, 65535);
    EXPECT_EQ(pipe.FindElement(Text("last"), &index), 1);
    EXPECT_EQ(index, 65534);
    for (int i = 0; i < 65536; ++i) {
        connected += pipe.Connect(Text("a"), static_cast<Byte2Type>(i), Text("a"), 0);
    }
    EXPECT_EQ(connected, 65520);
    EXPECT_EQ(pipe.m_b2ConnectionCount, 65520);
    EXPECT_EQ(pipe.m_ppConnections[65519]->b2SourcePad, 65519);
}

} // namespace
