// SPDX-License-Identifier: MIT
// Pipelines as a host uses them beyond a pipe file: asked and initialized again, executed line by line, up to their
// limits.
#include "support/capture.h"
#include "support/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>

using namespace VESK;

namespace {

const std::string NoSink = "0 ! EPipeline::Run(): Error: No sink element.\n";

struct ELeaves : Element<ELeaves> {
    static constexpr const char* TypeName = "ELeaves";
    [[maybe_unused]] static constexpr const char* Meaning = "writes down when it is destroyed";
    static void Declare(Declaration<ELeaves>&) {}
    ~ELeaves() override { log += "gone\n"; }
    static inline std::string log;
};

TEST(Pipeline, ANestedOneThatFailsIsGoneBeforeItsLineIsReported) {
    const Scratch scratch;
    const std::string line = "pipe " + scratch.Write("inner.pipe", "element ELeaves\nconect\n");
    TypesFactory<ELeaves> factory;
    FRAMEWORK framework;
    framework.AddFactory(&factory);
    framework.SetMessageHandler([](void*, const MessageLine& said) { ELeaves::log += said.pchText; },
                                nullptr);
    EPipeline pipe;
    pipe.m_pFramework = &framework;
    EXPECT_EQ(pipe.BuildPipeText("outer", line.c_str()), 0);
    EXPECT_NE(ELeaves::log.find("gone\nCould not build pipe"), std::string::npos) << ELeaves::log;
}

TEST(Pipeline, PadsFollowThePropertyAndRunFollowsInitialize) {
    EPipeline pipe;
    auto *const a = new Probe("a"), *const b = new Probe("b");
    EXPECT_EQ(pipe.AddElement(a) + pipe.AddElement(b) + b->AddSinkPad(new SINKPAD(b, 0)) +
                  a->AddSourcePad(new SOURCEPAD(a)) + a->AddSourcePad(new SOURCEPAD(a)) +
                  pipe.AddElement(nullptr) + pipe.DataArrived(nullptr, 0),
              5);
    const auto told = [&](int (EPipeline::*act)()) { return Told([&] { return (pipe.*act)(); }); };
    EXPECT_EQ(told(&EPipeline::Run), NoSink);
    Set(pipe.m_cProperties, "SinkElement", "b");
    Set(pipe.m_cProperties, "SourceElement", "a");
    EXPECT_EQ(pipe.GetSinkPadCount() * 10 + pipe.GetSourcePadCount(), 12);
    EXPECT_TRUE(pipe.GetSinkPad(0) == b->GetSinkPad(0) && pipe.GetSourcePad(1) == a->GetSourcePad(1));
    EXPECT_EQ(told(&EPipeline::Initialize), "1 ");
    Set(pipe.m_cProperties, "SinkElement", "nobody");
    Set(pipe.m_cProperties, "SourceElement", "nobody");
    EXPECT_EQ(pipe.GetSinkPadCount() + pipe.GetSourcePadCount(), 0);
    EXPECT_EQ(told(&EPipeline::Run), "0 ! EObject::Run: Should not be called: .\n");
    EXPECT_EQ(told(&EPipeline::Initialize), "1 ");
    EXPECT_EQ(told(&EPipeline::Run), NoSink);
    pipe.Connect(Text("a"), 0, Text("b"), 0);
    for (const auto& [source, sink] : {std::pair(2, 1), std::pair(0, 2)}) { // elements that it does not have
        *pipe.m_ppConnections[0] = {static_cast<Byte2Type>(source), 0, static_cast<Byte2Type>(sink), 0};
        EXPECT_EQ(told(&EPipeline::Initialize), "0 ! EPipeline::Initialize(): No sink or source element\n");
    }
}

TEST(Pipeline, NamesFindTheFirstElementByTheirFirst255Characters) {
    EPipeline pipe;
    const std::string name(256, 'n'), cut = name.substr(1), shorter = name.substr(2);
    pipe.AddElement(new Probe);
    for (const std::string& own : {std::string(), shorter, name, cut}) {
        pipe.AddElement(new Probe(own.c_str()));
    }
    for (const auto& [sought, at] : {std::pair(std::string(), 1), {shorter, 2}, {cut, 3}, {name, 77}}) {
        char buffer[8] = "before";
        Byte2Type index = 77, number = 9; // left alone when there is none
        char* const element = Text(sought.c_str());
        EXPECT_EQ(pipe.FindElement(element, &index), at != 77);
        EXPECT_EQ(index, at);
        EXPECT_EQ(pipe.SetElementProperty(element, Text("k"), Text("70000")), at != 77);
        EXPECT_EQ(pipe.GetElementProperty(element, Text("k"), buffer, Byte2Type{4}), at != 77);
        EXPECT_EQ(pipe.GetElementProperty(element, Text("k"), &number), at != 77);
        EXPECT_EQ(buffer + std::to_string(number), at != 77 ? "7004464" : "before9");
        EXPECT_FALSE(pipe.GetElementProperty(element, Text("no"), &number));
        EXPECT_EQ(number, at != 77 ? 0 : 9);
        EXPECT_FALSE(pipe.Connect(element, 0, Text("no"), 0) || pipe.Connect(Text("no"), 0, element, 0));
    }
    char* const none = nullptr;
    Byte2Type index;
    EXPECT_FALSE(pipe.FindElement(none, &index) || pipe.FindElement(Text(""), nullptr));
    EXPECT_FALSE(pipe.SetElementProperty(Text(""), none, none) ||
                 pipe.GetElementProperty(Text(""), none, &index) ||
                 pipe.GetElementProperty(Text(""), none, none, Byte2Type{0}));
}

TEST(Pipeline, ElementsAndConnectionsBeyondTheLimitsAreRefused) {
    EPipeline pipe;
    int added = 0;
    for (int i = 1; i < 65536; ++i) {
        added += pipe.AddElement(new Probe(i == 1 ? "first" : i == 65535 ? "last" : "other"));
    }
    Probe extra;
    EXPECT_EQ(added - pipe.AddElement(&extra), 65535);
    int connected = pipe.Connect(Text("last"), 0, Text("first"), 0);
    EXPECT_EQ(pipe.m_ppConnections[0]->b2SourceElement, 65534);
    for (int i = 1; i < 65536; ++i) {
        connected += pipe.Connect(Text("first"), static_cast<Byte2Type>(i), Text("first"), 0);
    }
    EXPECT_EQ(connected, 65520);
    EXPECT_EQ(pipe.m_ppConnections[65519]->b2SourcePad, 65519);
}

// One line of a pipe file, without or with a configuration file: its answer, and what it prints.
std::string Line(EPipeline& pipe, const std::vector<const char*>& words, bool configured = false) {
    std::vector<char*> tokens;
    for (const char* word : words) {
        tokens.push_back(Text(word));
    }
    tokens.push_back(nullptr);
    char** const line = tokens.data();
    return Told([&] { return configured ? pipe.ProcessTokens(line, 0, nullptr) : pipe.ProcessTokens(line); });
}

TEST(PipeLines, WhatIsMissingOrHasNoRoomIsTold) {
    EPipeline pipe;
    FRAMEWORK framework;
    const std::string refused = "0 ! Framework has not been set on EPipeline.\n";
    EXPECT_EQ(Line(pipe, {"plugin", "x"}), "0 Loading x\n! Could not load plugin x\n");
    EXPECT_EQ(Line(pipe, {"element", "ESink"}), "0 Instantiating ESink\n! Creation of element failed.\n");
    EXPECT_EQ(Line(pipe, {"pipe", "x"}), refused + "Could not build pipe x\n");
    EXPECT_EQ(Line(pipe, {"fwprop", "a", "b"}), "1 ");
    EXPECT_EQ(Line(pipe, {}) + Told([&] { return pipe.ProcessTokens(nullptr); }), "0 0 ");
    EXPECT_EQ(Told([&] { return pipe.BuildPipe(Text("x"), 1, Text("c")); }), refused);
    pipe.m_pFramework = &framework;
    EXPECT_EQ(Told([&] { return pipe.BuildPipe(nullptr); }),
              "0 Processing pipe file: (null)\nUnable to open pipefile (null)\n");
    char lent[8] = "lent";
    std::vector<char*> full(65520, lent); // makes the framework's list as long as it may be
    framework.m_pachSections = framework.m_pachKeys = framework.m_pachValues = full.data();
    framework.m_b2PropertyCapacity = framework.m_b2PropertyCount = 65520;
    EXPECT_EQ(Line(pipe, {"fwprop", "a", "b"}), "1 Setting framework property a to b\n! ERROR: EPipeline - "
                                                "[No Element Name]: Unable to set property a\n");
    framework.m_pachSections = framework.m_pachKeys = framework.m_pachValues = nullptr;
    framework.m_b2PropertyCount = 0;
}

TEST(PipeLines, EachFormHasItsCurrentElementUntilItDies) {
    FRAMEWORK framework;
    framework.AddPlugin(Text("libfwlib.so"));
    EPipeline pipe;
    pipe.m_pFramework = &framework;
    const auto plain = [](EPipeline& to) { return Line(to, {"property", "p", "1"}); };
    const auto configured = [](EPipeline& to) { return Line(to, {"property", "c", "1"}, true); };
    Line(pipe, {"element", "ETee"});
    {
        EPipeline dying;
        dying.m_pFramework = &framework;
        plain(dying); // sets it on the element of another pipeline
        Line(dying, {"element", "ESink"}, true);
        configured(pipe);
        EXPECT_EQ(EntriesOf(pipe.m_ppElements[0]->m_cProperties), "Standard.EObjectType=ETee Standard.p=1");
        EXPECT_EQ(EntriesOf(dying.m_ppElements[0]->m_cProperties), "Standard.EObjectType=ESink Standard.c=1");
    }
    EXPECT_EQ(configured(pipe), "1 ");
    delete pipe.m_ppElements[--pipe.m_iElementCount]; // the host takes it out
    EXPECT_EQ(plain(pipe) + Line(pipe, {"config", "no", "S"}), "1 1 ");
    Line(pipe, {"element", "ETee"});
    Line(pipe, {"element", "ENone"});
    EXPECT_EQ(plain(pipe), "1 ");
    const int count = std::exchange(pipe.m_iElementCount, 65535); // as many as there may be
    std::fill(pipe.m_ppElements + count, pipe.m_ppElements + pipe.m_iElementCapacity, nullptr);
    EXPECT_EQ(Line(pipe, {"element", "ESink"}), "0 Instantiating ESink\n! Unable to add element.\n");
    EXPECT_EQ(plain(pipe), "1 ");
    EXPECT_EQ(Line(pipe, {"pipe", "/dev/null"}),
              "1 Processing pipe file: /dev/null\n"
              "! ERROR: EPipeline - [No Element Name]: Unable to add pipe /dev/null\n");
    EXPECT_EQ(plain(pipe), "1 ");
    pipe.m_iElementCount = count;
}

TEST(PipeLines, WhatAnAddElementThatFailsHasKeptIsNotDeleted) {
    struct Keeping : EPipeline {
        int AddElement(EObject* pElement) override { return EPipeline::AddElement(pElement) - 1; }
    } pipe;
    FRAMEWORK framework;
    framework.AddPlugin(Text("libfwlib.so"));
    pipe.m_pFramework = &framework;
    EXPECT_EQ(Line(pipe, {"element", "ETee"}), "0 Instantiating ETee\n! Unable to add element.\n");
    EXPECT_EQ(Line(pipe, {"pipe", "/dev/null"}), "1 Processing pipe file: /dev/null\n");
    Line(pipe, {"property", "p", "1"});
    EXPECT_EQ(EntriesOf(pipe.m_ppElements[0]->m_cProperties), "Standard.EObjectType=ETee");
    EXPECT_EQ(EntriesOf(pipe.m_ppElements[1]->m_cProperties), "Standard.EObjectType=EPipeline Standard.p=1");
}

} // namespace
