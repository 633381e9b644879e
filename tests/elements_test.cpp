// SPDX-License-Identifier: MIT
// Pads, objects and the built-in elements, as hosts use them beside a pipe file.
#include "support/capture.h"
#include "support/support.h"

#include <gtest/gtest.h>
#include <memory>

using namespace VESK;

namespace {

template <class Pad>
struct CountedPad : Pad {
    template <class... Arguments>
    explicit CountedPad(int& counter, int number, Arguments... arguments)
        : Pad(arguments...), deleted(counter), place(number) {}
    ~CountedPad() override { EXPECT_EQ(deleted++, place); }
    int& deleted;
    const int place;
};

TEST(Elements, PadsKeepTheirOrderUpToTheirLimitAndDieOnceWithTheElement) {
    int deleted = 0, added = 0; // the sink pads first
    {
        Probe element;
        EXPECT_EQ(element.GetSinkPad(0), nullptr);
        for (Byte2Type b2 = 0; b2 < 33; ++b2) {
            auto* sink = new CountedPad<SINKPAD>(deleted, b2, &element, b2);
            auto* source = new CountedPad<SOURCEPAD>(deleted, 33 + b2, &element);
            EXPECT_EQ(element.AddSinkPad(sink) + element.AddSourcePad(source), 2);
            EXPECT_TRUE(element.GetSinkPad(b2) == sink && element.GetSourcePad(b2) == source);
        }
        EXPECT_EQ(element.GetSourcePad(33), nullptr);
        for (int i = 33; i < 65536; ++i) {
            added += element.AddSinkPad(nullptr); // stored like any other
        }
        EXPECT_EQ(added, 65520 - 33);
        EXPECT_EQ(element.GetSinkPadCount(), 65520);
        EXPECT_EQ(deleted, 0);
    }
    EXPECT_EQ(deleted, 66);
}

TEST(Elements, PushLendsTheObjectAndABrokenPipeIsReportedByThePadsOwner) {
    FRAMEWORK framework;
    Probe receiver, owner("tap");
    SINKPAD sink(&receiver, 65535), nobody(nullptr, 0);
    SOURCEPAD source(nullptr), owned(&owner);
    QObject object;
    source.m_pSinkPad = &sink;
    EXPECT_EQ(source.Push(&object), 1);
    EXPECT_EQ(receiver.objects, std::vector<QObject*>(1, &object));
    EXPECT_EQ(receiver.index, 65535);
    source.m_pSinkPad = &nobody;
    EXPECT_EQ(owner.Initialize(), 1);
    const auto tell = [&] { return owner.Message(0, "trace"), owned.Push(&object) + source.Push(&object); };
    EXPECT_EQ(Told(tell), "0 "); // nobody to tell it to
    owner.m_pFramework = &framework;
    owner.m_iDebug = -1; // does not filter errors
    EXPECT_EQ(Told(tell), "0 ! ERROR: [No Element Type] - tap: SourcePad: No sink pad (broken pipe)\n");
}

TEST(Objects, TheReservedFieldStaysWithItsObject) {
    QObject object;
    QEOF target;
    object.m_b2Reserved = 9;
    EXPECT_EQ(std::unique_ptr<QObject>(object.Duplicate())->m_b2Reserved + QObject().m_b2Reserved, 0);
    EXPECT_EQ(target.Copy(&object) + target.Copy(nullptr) + target.Write(nullptr), 3);
    EXPECT_EQ(target.m_b2Reserved, 0);
}

TEST(Builtin, TheFactoriesMakeWhatTheyNameAndPadsComeWithEachInitialize) {
    FACTORY::FWElementsFactory elements;
    FACTORY::FWLibFactory objects;
    std::string made;
    for (char* const* name = FACTORY::FWElementsFactory::pchNames; *name; ++name) {
        const std::unique_ptr<EObject> element(elements.CreateElement(*name));
        made += EntriesOf(element->m_cProperties) + ":";
        for (int times = 0; times < 3; ++times) {
            made += " " + std::to_string(element->GetSinkPadCount()) + "+" +
                    std::to_string(element->GetSourcePadCount());
            EXPECT_EQ(element->Initialize(), 1);
        }
        const SINKPAD* const sink = element->GetSinkPad(0);
        EXPECT_TRUE(!sink || (sink->m_pElement == element.get() && sink->m_b2Index == 0));
        made += "\n";
    }
    EXPECT_EQ(made, "Standard.EObjectType=EDevNull: 0+0 1+0 2+0\n"
                    "Standard.EObjectType=EPassthrough: 0+0 1+1 2+2\n"
                    "Standard.EObjectType=ETee: 0+0 1+2 2+4\n"
                    "Standard.EObjectType=ESource: 0+0 0+1 0+2\n"
                    "Standard.EObjectType=ESink: 0+0 1+0 2+0\n"
                    "Standard.EObjectType=ESerialize: 0+0 1+0 2+0\n"
                    "Standard.EObjectType=EDeserialize: 0+0 0+1 0+2\n");
    EXPECT_EQ(elements.Initialize(nullptr) + objects.Initialize(nullptr) * 10, 11);
    EXPECT_FALSE(objects.CreateQObject(Text("QEOF")) || objects.CreateElement(Type::ETee) ||
                 elements.CreateElement(nullptr) || elements.CreateElement(Text("ETee ")) ||
                 elements.CreateQObject(Type::QObject));
}

TEST(Builtin, WithoutAPadNothingIsDelivered) {
    QObject object;
    ESource source;
    EDeserialize player;
    EPassthrough passthrough;
    ETee tee;
    const auto arrive = [&](auto&... elements) { return (elements.DataArrived(&object, 0) + ...); };
    EXPECT_EQ(Told([&] { return arrive(source, player, passthrough); }), "0 ");
    EXPECT_EQ(tee.DataArrived(&object, 0), 1); // all of none
    tee.AddSourcePad(nullptr);
    EXPECT_EQ(tee.DataArrived(&object, 0), 0);
}

} // namespace
