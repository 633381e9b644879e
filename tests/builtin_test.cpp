// SPDX-License-Identifier: MIT
#include "support/capture.h"
#include "support/support.h"

#include <gtest/gtest.h>

using namespace VESK;

namespace {

TEST(Builtin, FactoriesKnowTheirNamesOnly) {
    FACTORY::FWElementsFactory elements;
    FACTORY::FWLibFactory objects;
    std::string names;
    for (char* const* name = FACTORY::FWElementsFactory::pchNames; *name; ++name) {
        names += *name + std::string(" ");
        if (std::string(*name).find("erialize") == std::string::npos) {
            EObject* const element = elements.CreateElement(*name);
            EXPECT_EQ(Entries(element->m_cProperties), std::string("Standard.EObjectType=") + *name);
            EXPECT_EQ(element->GetSinkPadCount() + element->GetSourcePadCount(), 0);
            delete element;
        }
    }
    EXPECT_EQ(names, "EDevNull EPassthrough ETee ESource ESink ESerialize EDeserialize ");
    for (const char* name : {"etee", "EPipeline", "QObject", "ETee ", ""}) {
        EXPECT_EQ(elements.CreateElement(Text(name)), nullptr);
    }
    EXPECT_EQ(objects.CreateQObject(Text("QEOF")), nullptr);
    EXPECT_EQ(objects.CreateElement(Type::ETee), nullptr);
    EXPECT_EQ(elements.CreateQObject(Type::QObject), nullptr);
    EXPECT_EQ(elements.Initialize(nullptr), 1);
}

TEST(Builtin, PadsComeWithInitializeAndOnceMoreWithEach) {
    const struct {
        const char *type, *pads; // "TotalSourcePads"
        int answer, sinkPads, sourcePads;
        bool owned;
    } cases[] = {{"EDevNull", "5", 1, 1, 0, false},   {"EPassthrough", "5", 1, 1, 1, true},
                 {"ETee", nullptr, 1, 1, 2, false},   {"ETee", "0", 1, 1, 0, false},
                 {"ETee", "3", 1, 1, 3, false},       {"ETee", "65521", 0, 1, 0, false},
                 {"ETee", "-1", 0, 1, 0, false},      {"ETee", "65520", 1, 1, 65520, false},
                 {"ESource", nullptr, 1, 0, 1, true}, {"ESource", "0", 1, 0, 0, true},
                 {"ESource", "65539", 1, 0, 3, true}, // the low 16 bits
                 {"ESource", "-1", 0, 0, 0, true},    {"ESink", "5", 1, 1, 0, false}};
    FACTORY::FWElementsFactory factory;
    for (const auto& c : cases) {
        EObject* const element = factory.CreateElement(Text(c.type));
        if (c.pads) {
            Set(element->m_cProperties, "TotalSourcePads", c.pads);
        }
        EXPECT_EQ(element->Initialize(), c.answer) << c.type << c.pads;
        EXPECT_EQ(element->GetSinkPadCount(), c.sinkPads) << c.type << c.pads;
        EXPECT_EQ(element->GetSourcePadCount(), c.sourcePads) << c.type << c.pads;
        if (c.sinkPads) {
            EXPECT_EQ(element->GetSinkPad(0)->m_pElement, element);
            EXPECT_EQ(element->GetSinkPad(0)->m_b2Index, 0);
        }
        if (c.sourcePads) {
            EXPECT_EQ(element->GetSourcePad(0)->m_pElement, c.owned ? element : nullptr) << c.type;
        }
        if (c.answer && c.sourcePads < 65520) {
            EXPECT_EQ(element->Initialize(), 1);
            EXPECT_EQ(element->GetSinkPadCount(), 2 * c.sinkPads);
            EXPECT_EQ(element->GetSourcePadCount(), 2 * c.sourcePads);
        }
        delete element;
    }
}

// An element under a framework, and probes that its source pads are connected to.
struct Bench {
    explicit Bench(EObject& tested) : element(tested) {
        element.m_pFramework = &framework;
        Set(element.m_cProperties, "Name", "tap");
    }
    void Connect(Byte2Type pad, Probe& probe) {
        probe.AddSinkPad(new SINKPAD(&probe, pad));
        element.GetSourcePad(pad)->m_pSinkPad = probe.GetSinkPad(0);
    }

    FRAMEWORK framework;
    EObject& element;
    QObject object;
    int answer = -1;
    Output Arrive(QObject* arriving) {
        return Captured([&] { answer = element.DataArrived(arriving, 3); });
    }
};

TEST(Builtin, NullObjectsAreReportedByEveryReceiver) {
    FACTORY::FWElementsFactory factory;
    for (const char* type : {"EDevNull", "EPassthrough", "ETee", "ESink"}) {
        EObject* const element = factory.CreateElement(Text(type));
        Bench bench(*element);
        element->Initialize();
        EXPECT_EQ(bench.Arrive(nullptr),
                  (Output{"", std::string("ERROR: ") + type +
                                  " - tap: DataArrived(3): QObject pointer is NULL\n"}));
        EXPECT_EQ(bench.answer, 0);
        EXPECT_EQ(bench.framework.m_bError, 1);
        delete element;
    }
}

TEST(Builtin, DevNullTracesAtItsOrTheFrameworksLevel) {
    EDevNull element;
    Bench bench(element);
    Set(bench.framework, "Debug", "1");
    element.Initialize();
    EXPECT_EQ(bench.Arrive(&bench.object),
              (Output{"EDevNull - tap: DataArrived(3): QObjectType = QObject\n", ""}));
    bench.object.m_cProperties.Reset();
    EXPECT_EQ(bench.Arrive(&bench.object),
              (Output{"EDevNull - tap: DataArrived(3): QObjectType = [No QObject Type]\n", ""}));
    for (const char* level : {"0", "-1"}) {
        Set(element.m_cProperties, "Debug", level);
        element.Initialize();
        EXPECT_EQ(bench.Arrive(&bench.object), Output());
        EXPECT_EQ(bench.answer, 1);
    }
}

TEST(Builtin, PassthroughTracesAroundTheDelivery) {
    EPassthrough element;
    Bench bench(element);
    EXPECT_EQ(bench.Arrive(&bench.object), Output()); // no pad yet
    EXPECT_EQ(bench.answer, 0);
    Set(bench.framework, "Debug", "1"); // not looked at
    element.Initialize();
    EXPECT_EQ(bench.Arrive(&bench.object),
              (Output{"", "ERROR: EPassthrough - tap: SourcePad: No sink pad (broken pipe)\n"}));
    Probe probe;
    bench.Connect(0, probe);
    probe.answer = 7;
    EXPECT_EQ(bench.Arrive(&bench.object), Output());
    EXPECT_EQ(bench.answer, 7);
    element.m_b4Debug = 0x80000000u;
    Set(bench.object.m_cProperties, "QObjectType", std::string(40, 'Q'));
    const std::string line = "EPassthrough::tap: " + std::string(31, 'Q');
    EXPECT_EQ(bench.Arrive(&bench.object), (Output{line + "\n" + line + ", rv=7\n", ""}));
    EXPECT_EQ(probe.objects, std::vector<QObject*>(2, &bench.object));
}

TEST(Builtin, TeeDeliversInPadOrderUntilOneFails) {
    ETee element;
    Bench bench(element);
    Set(element.m_cProperties, "TotalSourcePads", "0");
    element.Initialize();
    EXPECT_EQ(bench.Arrive(&bench.object), Output());
    EXPECT_EQ(bench.answer, 1);
    Set(element.m_cProperties, "TotalSourcePads", "3");
    element.Initialize();
    Probe probes[3];
    bench.Connect(1, probes[1]);
    EXPECT_EQ(bench.Arrive(&bench.object), Output()); // an unconnected pad ends the round silently
    EXPECT_EQ(bench.answer, 0);
    EXPECT_TRUE(probes[1].objects.empty());
    bench.Connect(0, probes[0]);
    bench.Connect(2, probes[2]);
    probes[0].answer = 5;
    probes[2].answer = 6;
    bench.Arrive(&bench.object);
    EXPECT_EQ(bench.answer, 6);
    probes[1].answer = 0;
    bench.Arrive(&bench.object);
    EXPECT_EQ(bench.answer, 0);
    EXPECT_EQ(probes[0].objects, std::vector<QObject*>(2, &bench.object));
    EXPECT_EQ(probes[1].objects.size(), 2u);
    EXPECT_EQ(probes[2].objects.size(), 1u);
}

TEST(Builtin, SourceSendsOneObjectAThousandTimesWhateverIsAnswered) {
    ESource element;
    Bench bench(element);
    Set(element.m_cProperties, "TotalSourcePads", "2");
    element.Initialize();
    Probe first, second;
    bench.Connect(0, first);
    bench.Connect(1, second);
    first.answer = 0;
    EXPECT_EQ(element.Run(), 1);
    std::string expected, reports;
    for (int i = 0; i < 1000; ++i) {
        expected += "Standard.QObjectType=QObject Standard.Count=" + std::to_string(i) + "\n";
        reports += "ERROR: ESource - tap: SourcePad: No sink pad (broken pipe)\n";
    }
    EXPECT_EQ(first.contents, expected);
    EXPECT_EQ(first.objects, std::vector<QObject*>(1000, first.objects[0]));
    EXPECT_TRUE(second.objects.empty());
    EXPECT_EQ(bench.Arrive(&bench.object), Output());
    EXPECT_EQ(bench.answer, 0);
    element.GetSourcePad(0)->m_pSinkPad = nullptr;
    EXPECT_EQ(Captured([&] { EXPECT_EQ(element.Run(), 1); }), (Output{"", reports}));
}

TEST(Builtin, SinkPrintsAndOnlySourcesRun) {
    ESink element;
    Bench bench(element);
    element.Initialize();
    Set(bench.object.m_cProperties, "QObjectType", "%s");
    EXPECT_EQ(bench.Arrive(&bench.object), (Output{"ESink::DataArrived: %s\n", ""}));
    EXPECT_EQ(bench.answer, 1);
    EXPECT_EQ(Captured([&] { EXPECT_EQ(element.Run(), 0); }).err,
              "EObject::Run: Should not be called: ESink.\n");
    ESource source;
    Bench second(source);
    EXPECT_EQ(Captured([&] { EXPECT_EQ(source.Run(), 0); }), // no pad: nothing to send through
              (Output{"", "ERROR: ESource - tap: Run(): No source pad\n"}));
    Set(source.m_cProperties, "TotalSourcePads", "-1");
    EXPECT_EQ(Captured([&] { EXPECT_EQ(source.Initialize(), 0); }),
              (Output{"", "ERROR: ESource - tap: Initialize(): 65535 source pads are more than 65520\n"}));
}

} // namespace
