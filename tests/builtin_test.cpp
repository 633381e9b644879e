// SPDX-License-Identifier: MIT
#include "support/bench.h"

#include <gtest/gtest.h>

using namespace VESK;

namespace {

TEST(Builtin, FactoriesKnowTheirNamesOnly) {
    FACTORY::FWElementsFactory elements;
    FACTORY::FWLibFactory objects;
    std::string names;
    for (char* const* name = FACTORY::FWElementsFactory::pchNames; *name; ++name) {
        names += *name + std::string(" ");
    }
    EXPECT_EQ(names, "EDevNull EPassthrough ETee ESource ESink ESerialize EDeserialize ");
    for (const char* name : {"etee", "EPipeline", "QObject", "ETee ", ""}) {
        EXPECT_EQ(elements.CreateElement(Text(name)), nullptr);
    }
    EXPECT_FALSE(objects.CreateQObject(Text("QEOF")) || objects.CreateElement(Type::ETee));
    EXPECT_EQ(elements.CreateQObject(Type::QObject), nullptr);
    EXPECT_EQ(elements.Initialize(nullptr), 1);
}

TEST(Builtin, PadsComeWithInitializeAndOnceMoreWithEach) {
    const struct {
        const char *type, *pads; // "TotalSourcePads"
        int answer, sinkPads, sourcePads;
        bool owned;
    } cases[] = {
        {"EDevNull", "5", 1, 1, 0, false},     {"EPassthrough", "5", 1, 1, 1, true},
        {"ETee", nullptr, 1, 1, 2, false},     {"ETee", "0", 1, 1, 0, false},
        {"ETee", "65521", 0, 1, 0, false},     {"ETee", "-1", 0, 1, 0, false},
        {"ETee", "65520", 1, 1, 65520, false}, {"ESource", nullptr, 1, 0, 1, true},
        {"ESource", "0", 1, 0, 0, true},       {"ESource", "65539", 1, 0, 3, true}, // the low 16 bits
        {"ESource", "-1", 0, 0, 0, true},      {"ESink", "5", 1, 1, 0, false}};
    FACTORY::FWElementsFactory factory;
    for (const auto& c : cases) {
        EObject* const element = factory.CreateElement(Text(c.type));
        EXPECT_EQ(Entries(element->m_cProperties), std::string("Standard.EObjectType=") + c.type);
        EXPECT_EQ(element->GetSinkPadCount() + element->GetSourcePadCount(), 0);
        if (c.pads) {
            Set(element->m_cProperties, "TotalSourcePads", c.pads);
        }
        for (int times = 1; times <= (c.answer && c.sourcePads < 65520 ? 2 : 1); ++times) {
            EXPECT_EQ(element->Initialize(), c.answer) << c.type << c.pads;
            EXPECT_EQ(element->GetSinkPadCount(), times * c.sinkPads) << c.type << c.pads;
            EXPECT_EQ(element->GetSourcePadCount(), times * c.sourcePads) << c.type << c.pads;
        }
        EXPECT_TRUE(!c.sinkPads || element->GetSinkPad(0)->m_pElement == element);
        EXPECT_TRUE(!c.sinkPads || element->GetSinkPad(0)->m_b2Index == 0);
        EXPECT_TRUE(!c.sourcePads || element->GetSourcePad(0)->m_pElement == (c.owned ? element : nullptr));
        delete element;
    }
}

TEST(Builtin, NullObjectsAreReportedByEveryReceiver) {
    FACTORY::FWElementsFactory factory;
    for (const std::string type : {"EDevNull", "EPassthrough", "ETee", "ESink", "ESerialize"}) {
        EObject* const element = factory.CreateElement(Text(type.c_str()));
        Bench bench(*element);
        element->Initialize();
        EXPECT_EQ(bench.Arrive(nullptr),
                  "0 ! ERROR: " + type + " - tap: DataArrived(3): QObject pointer is NULL\n");
        delete element;
    }
}

TEST(Builtin, DevNullTracesAtItsOrTheFrameworksLevel) {
    EDevNull element;
    Bench bench(element);
    Set(bench.framework, "Debug", "1");
    element.Initialize();
    EXPECT_EQ(bench.Arrive(), "1 EDevNull - tap: DataArrived(3): QObjectType = QObject\n");
    bench.object.m_cProperties.Reset();
    EXPECT_EQ(bench.Arrive(), "1 EDevNull - tap: DataArrived(3): QObjectType = [No QObject Type]\n");
    for (const char* level : {"0", "-1"}) {
        Set(element.m_cProperties, "Debug", level);
        element.Initialize();
        EXPECT_EQ(bench.Arrive(), "1 ");
    }
}

TEST(Builtin, PassthroughTracesAroundTheDelivery) {
    EPassthrough element;
    Bench bench(element);
    EXPECT_EQ(bench.Arrive(), "0 ");    // no pad yet
    Set(bench.framework, "Debug", "1"); // not looked at
    element.Initialize();
    EXPECT_EQ(bench.Arrive(), "0 ! ERROR: EPassthrough - tap: SourcePad: No sink pad (broken pipe)\n");
    Probe probe;
    bench.Connect(0, probe);
    probe.answer = 7;
    EXPECT_EQ(bench.Arrive(), "7 ");
    Set(bench.object.m_cProperties, "QObjectType", std::string(40, 'Q'));
    Set(element.m_cProperties, "Debug", "-1");
    element.Initialize(); // and delivers to the pad made last
    const std::string line = "EPassthrough::tap: " + std::string(31, 'Q');
    EXPECT_EQ(bench.Arrive(), "0 " + line + "\n" + line + ", rv=0\n" +
                                  "! ERROR: EPassthrough - tap: SourcePad: No sink pad (broken pipe)\n");
    EXPECT_EQ(probe.objects, std::vector<QObject*>(1, &bench.object));
}

TEST(Builtin, TeeDeliversInPadOrderUntilOneFails) {
    ETee element;
    Bench bench(element);
    Set(element.m_cProperties, "TotalSourcePads", "0");
    element.Initialize();
    EXPECT_EQ(bench.Arrive(), "1 ");
    Set(element.m_cProperties, "TotalSourcePads", "3");
    element.Initialize();
    Probe probes[3];
    bench.Connect(1, probes[1]);
    EXPECT_EQ(bench.Arrive(), "0 "); // an unconnected pad ends the round silently
    EXPECT_TRUE(probes[1].objects.empty());
    bench.Connect(0, probes[0]);
    bench.Connect(2, probes[2]);
    probes[0].answer = 5;
    probes[2].answer = 6;
    EXPECT_EQ(bench.Arrive(), "6 ");
    probes[1].answer = 0;
    EXPECT_EQ(bench.Arrive(), "0 ");
    EXPECT_EQ(probes[0].objects, std::vector<QObject*>(2, &bench.object));
    EXPECT_EQ(probes[1].objects.size(), 2u);
    EXPECT_EQ(probes[2].objects.size(), 1u);
}

TEST(Builtin, SourceSendsOneObjectAThousandTimesWhateverIsAnswered) {
    ESource element;
    Bench bench(element);
    const auto run = [&] { return element.Run(); };
    EXPECT_EQ(Told(run), "0 ! ERROR: ESource - tap: Run(): No source pad\n");
    Set(element.m_cProperties, "TotalSourcePads", "-1");
    EXPECT_EQ(Told([&] { return element.Initialize(); }),
              "0 ! ERROR: ESource - tap: Initialize(): 65535 source pads are more than 65520\n");
    Set(element.m_cProperties, "TotalSourcePads", "2");
    element.Initialize();
    Probe first, second;
    bench.Connect(0, first);
    bench.Connect(1, second);
    first.answer = 0;
    EXPECT_EQ(Told(run), "1 ");
    std::string expected, reports;
    for (int i = 0; i < 1000; ++i) {
        expected += "Standard.QObjectType=QObject Standard.Count=" + std::to_string(i) + "\n";
        reports += "ERROR: ESource - tap: SourcePad: No sink pad (broken pipe)\n";
    }
    EXPECT_EQ(first.contents, expected);
    EXPECT_EQ(first.objects, std::vector<QObject*>(1000, first.objects[0]));
    EXPECT_TRUE(second.objects.empty());
    EXPECT_EQ(bench.Arrive(), "0 ");
    element.GetSourcePad(0)->m_pSinkPad = nullptr;
    EXPECT_EQ(Told(run), "1 ! " + reports);
}

TEST(Builtin, SinkPrintsAndDoesNotRun) {
    ESink element;
    Bench bench(element);
    Set(bench.object.m_cProperties, "QObjectType", "%s");
    EXPECT_EQ(bench.Arrive(), "1 ESink::DataArrived: %s\n");
    EXPECT_EQ(Told([&] { return element.Run(); }), "0 ! EObject::Run: Should not be called: ESink.\n");
}

} // namespace
