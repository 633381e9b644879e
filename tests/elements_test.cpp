// SPDX-License-Identifier: MIT
// Pads, objects, the base of elements, and the built-in ones.
#include "support/recorder.h"

#include <gtest/gtest.h>

using namespace VESK;

namespace {

template <class Pad>
struct CountedPad : Pad {
    template <class... Arguments>
    explicit CountedPad(int& counter, Arguments... arguments) : Pad(arguments...), deleted(counter) {}
    ~CountedPad() override { ++deleted; }
    int& deleted;
};

TEST(Elements, PadsKeepTheirOrderUpToTheirLimitAndDieOnceWithTheElement) {
    int sinks = 0, sources = 0, added = 0;
    {
        Probe element;
        EXPECT_EQ(element.GetSinkPad(0), nullptr);
        for (Byte2Type b2 = 0; b2 < 33; ++b2) {
            auto* sink = new CountedPad<SINKPAD>(sinks, &element, b2);
            auto* source = new CountedPad<SOURCEPAD>(sources, &element);
            EXPECT_EQ(element.AddSinkPad(sink) + element.AddSourcePad(source), 2);
            EXPECT_EQ(element.m_b2SinkPadCapacity, (b2 / 16 + 1) * 16);
            EXPECT_EQ(element.m_b2SourcePadCapacity, (b2 / 16 + 1) * 16);
            EXPECT_TRUE(element.GetSinkPad(b2) == sink && element.GetSourcePad(b2) == source);
        }
        EXPECT_EQ(element.GetSourcePad(33), nullptr);
        for (int i = 33; i < 65536; ++i) {
            added += element.AddSinkPad(nullptr); // stored like any other
        }
        EXPECT_EQ(added, 65520 - 33);
        EXPECT_EQ(element.GetSinkPadCount(), 65520);
        EXPECT_EQ(sinks + sources, 0);
    }
    EXPECT_EQ(sinks * 100 + sources, 3333);
}

TEST(Elements, PushLendsTheObjectAndABrokenPipeIsReportedByThePadsOwner) {
    FRAMEWORK framework;
    Probe receiver, owner("tap");
    SINKPAD sink(&receiver, 65535), nobody(nullptr, 0);
    SOURCEPAD source(nullptr), half(nullptr), owned(&owner);
    QObject object;
    source.m_pSinkPad = &sink;
    half.m_pSinkPad = &nobody;
    for (const int answer : {1, 0, 7, -3}) {
        receiver.answer = answer;
        EXPECT_EQ(source.Push(&object), answer);
    }
    EXPECT_EQ(receiver.objects, std::vector<QObject*>(4, &object));
    EXPECT_EQ(receiver.index, 65535);
    EXPECT_EQ(Told([&] { return owned.Push(&object) + half.Push(&object); }), "0 ");
    owner.m_pFramework = &framework;
    owner.m_iDebug = -1; // does not filter errors
    EXPECT_EQ(Told([&] { return owned.Push(&object) + framework.m_bError; }),
              "1 ! ERROR: [No Element Type] - tap: SourcePad: No sink pad (broken pipe)\n");
}

TEST(Elements, TheOwnDebugLevelOverridesTheFrameworks) {
    const struct {
        const char *own, *framework;
        int level;
        std::string out; // of messages at level 0, 1 and 2
    } levels[] = {{nullptr, nullptr, 0, "T - [No Element Name]: 0"},
                  {nullptr, "1", 1, "T - [No Element Name]: 0T - [No Element Name]: 1"},
                  {"0", "2", 0, "T - [No Element Name]: 0"},
                  {"-1", "2", -1, ""}};
    for (const auto& level : levels) {
        FRAMEWORK framework;
        Probe element;
        Set(element.m_cProperties, "EObjectType", "T");
        element.m_pFramework = &framework;
        level.own ? Set(element.m_cProperties, "Debug", level.own) : 0;
        level.framework ? Set(framework, "Debug", level.framework) : 0;
        const auto trace = [&] {
            for (int i = 0; i < 3; ++i) {
                element.Message(i, "%d", i);
            }
            return framework.m_bError;
        };
        EXPECT_EQ(element.Initialize(), 1);
        EXPECT_EQ(element.m_iDebug, level.level);
        EXPECT_EQ(Told(trace), "0 " + level.out);
        element.m_pFramework = nullptr;
        EXPECT_EQ(Told(trace), "0 ");
        EXPECT_EQ(Told([&] { return element.Run(); }), "0 ! EObject::Run: Should not be called: T.\n");
    }
}

TEST(Objects, DuplicatesAreOfTheirKindAndOfTheirOwn) {
    QObject plain, target;
    QEOF last;
    const std::string filled = "Standard.QObjectType=Frame Standard.a=1 Camera.a=2";
    target.m_b2Reserved = 5;
    for (QObject* object : {&plain, static_cast<QObject*>(&last)}) {
        EXPECT_EQ(Entries(object->m_cProperties), "Standard.QObjectType=QObject");
        EXPECT_EQ(object->m_b2Reserved, 0);
        Set(object->m_cProperties, "QObjectType", "Frame");
        Set(object->m_cProperties, "a", "1");
        Set(object->m_cProperties, "a", "2", "Camera");
        object->m_b2Reserved = 9;
        QObject* const copy = object->Duplicate();
        EXPECT_EQ(Entries(copy->m_cProperties), filled);
        EXPECT_EQ(copy->m_b2Reserved, 0);
        EXPECT_EQ(copy->GetEOF(), object == &last);
        Set(copy->m_cProperties, "a", "changed");
        delete copy;
        EXPECT_EQ(Entries(object->m_cProperties), filled);
        EXPECT_EQ(target.Copy(object), 1);
        EXPECT_EQ(Entries(target.m_cProperties) + std::to_string(target.m_b2Reserved), filled + "5");
    }
}

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
    QObject* const object = objects.CreateQObject(Type::QObject);
    EXPECT_EQ(Entries(object->m_cProperties), "Standard.QObjectType=QObject");
    delete object;
    EXPECT_EQ(elements.Initialize(nullptr) + objects.Initialize(nullptr) * 10, 11);
    EXPECT_FALSE(objects.CreateQObject(Text("QEOF")) || objects.CreateElement(Type::ETee) ||
                 elements.CreateElement(nullptr) || elements.CreateQObject(Type::QObject));
}

TEST(Builtin, PadsComeWithInitializeAndOnceMoreWithEach) {
    const struct {
        const char *type, *pads; // "TotalSourcePads"
        int answer, sinkPads, sourcePads;
        bool owned;
    } cases[] = {{"EDevNull", "5", 1, 1, 0, false},     {"EPassthrough", "5", 1, 1, 1, true},
                 {"ETee", "", 1, 1, 2, false},          {"ETee", "0", 1, 1, 0, false},
                 {"ETee", "65521", 0, 1, 0, false},     {"ETee", "-1", 0, 1, 0, false},
                 {"ETee", "65520", 1, 1, 65520, false}, {"ESource", "", 1, 0, 1, true},
                 {"ESource", "65539", 1, 0, 3, true}, // the low 16 bits
                 {"ESource", "-1", 0, 0, 0, true},      {"ESink", "5", 1, 1, 0, false}};
    FACTORY::FWElementsFactory factory;
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.type) + c.pads);
        EObject* const element = factory.CreateElement(Text(c.type));
        EXPECT_EQ(Entries(element->m_cProperties), std::string("Standard.EObjectType=") + c.type);
        *c.pads ? Set(element->m_cProperties, "TotalSourcePads", c.pads) : 0;
        for (int times = 0, last = c.answer && c.sourcePads < 65520 ? 2 : 1; times <= last; ++times) {
            EXPECT_EQ(element->GetSinkPadCount(), times * c.sinkPads);
            EXPECT_EQ(element->GetSourcePadCount(), times * c.sourcePads);
            EXPECT_TRUE(times == last || element->Initialize() == c.answer);
        }
        const SINKPAD* const sink = element->GetSinkPad(0);
        EXPECT_TRUE(!c.sinkPads || (sink->m_pElement == element && sink->m_b2Index == 0));
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

TEST(Builtin, SinksPrintWhatTheyAreToldTo) {
    EDevNull quiet;
    ESink sink;
    Bench bench(quiet), printer(sink);
    for (const char* level : {"1", "0"}) {
        Set(bench.framework, "Debug", level);
        quiet.Initialize();
        EXPECT_EQ(bench.Arrive(),
                  *level == '1' ? "1 EDevNull - tap: DataArrived(3): QObjectType = QObject\n" : "1 ");
    }
    quiet.m_iDebug = 1;
    bench.object.m_cProperties.Reset();
    EXPECT_EQ(bench.Arrive(), "1 EDevNull - tap: DataArrived(3): QObjectType = [No QObject Type]\n");
    Set(printer.object.m_cProperties, "QObjectType", "%s");
    EXPECT_EQ(printer.Arrive(), "1 ESink::DataArrived: %s\n");
}

TEST(Builtin, PassthroughTracesAroundTheDelivery) {
    EPassthrough element;
    Bench bench(element);
    const std::string broken = "! ERROR: EPassthrough - tap: SourcePad: No sink pad (broken pipe)\n",
                      line = "EPassthrough::tap: " + std::string(31, 'Q');
    EXPECT_EQ(bench.Arrive(), "0 ");    // no pad yet
    Set(bench.framework, "Debug", "1"); // not looked at
    element.Initialize();
    EXPECT_EQ(bench.Arrive(), "0 " + broken);
    Probe probe;
    bench.Connect(0, probe);
    probe.answer = 7;
    EXPECT_EQ(bench.Arrive(), "7 ");
    Set(bench.object.m_cProperties, "QObjectType", std::string(40, 'Q'));
    Set(element.m_cProperties, "Debug", "-1");
    element.Initialize(); // and delivers to the pad made last
    EXPECT_EQ(bench.Arrive(), "0 " + line + "\n" + line + ", rv=0\n" + broken);
    EXPECT_EQ(probe.objects, std::vector<QObject*>(1, &bench.object));
}

TEST(Builtin, TeeDeliversInPadOrderUntilOneFails) {
    ETee element;
    Bench bench(element);
    Set(element.m_cProperties, "TotalSourcePads", "3");
    EXPECT_EQ(bench.Arrive(), "1 "); // no pad yet
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
    EXPECT_EQ(probes[1].objects.size() * 10 + probes[2].objects.size(), 21u);
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

} // namespace
