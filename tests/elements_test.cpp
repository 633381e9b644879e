// SPDX-License-Identifier: MIT
#include "support/capture.h"
#include "support/support.h"

#include <gtest/gtest.h>

using namespace VESK;

namespace {

template <class Pad>
class CountedPad : public Pad {
public:
    template <class... Arguments>
    explicit CountedPad(int& deleted, Arguments... arguments) : Pad(arguments...), m_iDeleted(deleted) {}
    ~CountedPad() override { ++m_iDeleted; }

private:
    int& m_iDeleted;
};

TEST(Elements, PadsKeepTheirOrderAndDieOnceWithTheElement) {
    int sinks = 0, sources = 0;
    {
        Probe element;
        EXPECT_EQ(element.GetSinkPad(0), nullptr);
        for (Byte2Type b2 = 0; b2 < 33; ++b2) {
            auto* sink = new CountedPad<SINKPAD>(sinks, &element, b2);
            auto* source = new CountedPad<SOURCEPAD>(sources, &element);
            EXPECT_EQ(element.AddSinkPad(sink) + element.AddSourcePad(source), 2);
            EXPECT_EQ(element.m_b2SinkPadCapacity, (b2 / 16 + 1) * 16);
            EXPECT_EQ(element.m_b2SourcePadCapacity, (b2 / 16 + 1) * 16);
            EXPECT_EQ(element.GetSinkPad(b2), sink);
            EXPECT_EQ(element.GetSourcePad(b2), source);
        }
        EXPECT_EQ(element.AddSinkPad(nullptr), 1); // stored like any other
        EXPECT_EQ(element.GetSinkPadCount(), 34);
        EXPECT_EQ(element.GetSourcePad(33), nullptr);
        EXPECT_EQ(sinks + sources, 0);
    }
    EXPECT_EQ(sinks, 33);
    EXPECT_EQ(sources, 33);
}

TEST(Elements, ThePadBeyondTheLimitIsRefused) {
    Probe element;
    int added = 0;
    for (int i = 0; i < 65536; ++i) {
        added += element.AddSourcePad(nullptr);
    }
    EXPECT_EQ(added, 65520);
    EXPECT_EQ(element.GetSourcePadCount(), 65520);
    EXPECT_EQ(element.m_b2SourcePadCapacity, 65520);
}

TEST(Elements, PushLendsTheObjectAndAnswersWhatTheReceiverAnswers) {
    Probe receiver;
    SINKPAD sink(&receiver, 65535);
    SOURCEPAD source(nullptr);
    QObject object;
    source.m_pSinkPad = &sink;
    for (const int answer : {1, 0, 7, -3}) {
        receiver.answer = answer;
        EXPECT_EQ(source.Push(&object), answer);
    }
    EXPECT_EQ(receiver.objects, std::vector<QObject*>(4, &object));
    EXPECT_EQ(receiver.index, 65535);
}

TEST(Elements, ABrokenPipeIsReportedByThePadsOwner) {
    FRAMEWORK framework;
    Probe owner("tap");
    SOURCEPAD pad(&owner), ownerless(nullptr), half(nullptr);
    SINKPAD nobody(nullptr, 0);
    QObject object;
    half.m_pSinkPad = &nobody;
    EXPECT_EQ(Told([&] { return pad.Push(&object) + ownerless.Push(&object) + half.Push(&object); }), "0 ");
    owner.m_pFramework = &framework;
    owner.m_iDebug = -1; // does not filter errors
    EXPECT_EQ(Told([&] { return pad.Push(&object); }),
              "0 ! ERROR: [No Element Type] - tap: SourcePad: No sink pad (broken pipe)\n");
    EXPECT_EQ(framework.m_bError, 1);
}

TEST(Elements, TheOwnDebugLevelOverridesTheFrameworks) {
    const struct {
        const char *own, *framework;
        int level;
        std::string out; // of messages at level 0, 1 and 2
    } levels[] = {{nullptr, nullptr, 0, "T - [No Element Name]: 0"},
                  {nullptr, "1", 1, "T - [No Element Name]: 0T - [No Element Name]: 1"},
                  {"0", "2", 0, "T - [No Element Name]: 0"},
                  {"-1", "2", -1, ""},
                  {"1x", nullptr, 1, "T - [No Element Name]: 0T - [No Element Name]: 1"}};
    for (const auto& level : levels) {
        FRAMEWORK framework;
        Probe element;
        Set(element.m_cProperties, "EObjectType", "T");
        element.m_pFramework = &framework;
        if (level.own) {
            Set(element.m_cProperties, "Debug", level.own);
        }
        if (level.framework) {
            Set(framework, "Debug", level.framework);
        }
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
    }
}

TEST(Elements, TheBaseRunReportsMisuse) {
    Probe element;
    EXPECT_EQ(Told([&] { return element.Run(); }), "0 ! EObject::Run: Should not be called: .\n");
    Set(element.m_cProperties, "EObjectType", std::string(70, 'T'));
    EXPECT_EQ(Told([&] { return element.Run(); }),
              "0 ! EObject::Run: Should not be called: " + std::string(63, 'T') + ".\n");
}

TEST(Objects, DuplicatesAreOfTheirKindAndOfTheirOwn) {
    QObject plain;
    QEOF last;
    const std::string filled = "Standard.QObjectType=Frame Standard.a=1 Camera.a=2";
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
        EXPECT_EQ(copy->GetEOF(), object->GetEOF());
        Set(copy->m_cProperties, "a", "changed");
        delete copy;
        EXPECT_EQ(Entries(object->m_cProperties), filled);
    }
    QObject target;
    Set(target.m_cProperties, "kept", "1");
    target.m_b2Reserved = 5;
    EXPECT_EQ(target.Copy(&plain), 1);
    EXPECT_EQ(Entries(target.m_cProperties),
              "Standard.QObjectType=Frame Standard.kept=1 Standard.a=1 Camera.a=2");
    EXPECT_EQ(target.m_b2Reserved, 5);
}

} // namespace
