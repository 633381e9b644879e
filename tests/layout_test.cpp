// SPDX-License-Identifier: MIT
// Where fields and virtual operations lie, in both widths: programs and plugins that were built before depend
// on it.
#include "fwlib/fwlib.h"

#include <cstring>
#include <gtest/gtest.h>
#include <type_traits>

#pragma GCC diagnostic ignored "-Winvalid-offsetof"

using namespace VESK;

namespace {

constexpr std::size_t InWidth(std::size_t in64, std::size_t in32) {
    return sizeof(void*) == 8 ? in64 : in32;
}

#define FIELD(type, field, in64, in32)                                                                       \
    static_assert(offsetof(type, field) == InWidth(in64, in32), #type "::" #field " has moved")
#define SIZE(type, in64, in32) static_assert(sizeof(type) == InWidth(in64, in32), #type " has another size")

FIELD(PROPERTIES, m_b2PropertyCapacity, 0, 0);
FIELD(PROPERTIES, m_b2PropertyCount, 2, 2);
FIELD(PROPERTIES, m_pachSections, 8, 4);
FIELD(PROPERTIES, m_pachKeys, 16, 8);
FIELD(PROPERTIES, m_pachValues, 24, 12);
SIZE(PROPERTIES, 32, 16);

FIELD(FRAMEWORK, m_bError, 32, 16);
FIELD(FRAMEWORK, m_b2PluginCapacity, 36, 20);
FIELD(FRAMEWORK, m_b2PluginCount, 38, 22);
FIELD(FRAMEWORK, m_ppPlugins, 40, 24);
SIZE(FRAMEWORK, 48, 28);

FIELD(PAD, m_pElement, 8, 4);
FIELD(SINKPAD, m_b2Index, 16, 8);
FIELD(SOURCEPAD, m_pSinkPad, 16, 8);
SIZE(PAD, 16, 8);
SIZE(SINKPAD, 24, 12);
SIZE(SOURCEPAD, 24, 12);

FIELD(EObject, m_cProperties, 8, 4);
FIELD(EObject, m_pFramework, 40, 20);
FIELD(EObject, m_iDebug, 48, 24);
FIELD(EObject, m_b2SinkPadCapacity, 52, 28);
FIELD(EObject, m_b2SinkPadCount, 54, 30);
FIELD(EObject, m_ppSinkPads, 56, 32);
FIELD(EObject, m_b2SourcePadCapacity, 64, 36);
FIELD(EObject, m_b2SourcePadCount, 66, 38);
FIELD(EObject, m_ppSourcePads, 72, 40);
SIZE(EObject, 80, 44);
SIZE(EDevNull, 80, 44);
SIZE(ETee, 80, 44);
SIZE(ESource, 80, 44);
SIZE(ESink, 80, 44);
FIELD(EPassthrough, m_pSourcePad, 80, 44);
FIELD(EPassthrough, m_b4Debug, 88, 48);
SIZE(EPassthrough, 96, 52);

FIELD(EPipeline, m_ppElements, 80, 44);
FIELD(EPipeline, m_iElementCapacity, 88, 48);
FIELD(EPipeline, m_iElementCount, 92, 52);
FIELD(EPipeline, m_ppConnections, 96, 56);
FIELD(EPipeline, m_b2ConnectionCapacity, 104, 60);
FIELD(EPipeline, m_b2ConnectionCount, 106, 62);
FIELD(EPipeline, m_pSinkElement, 112, 64);
SIZE(EPipeline, 120, 68);
FIELD(CONNECTION, b2SourceElement, 0, 0);
FIELD(CONNECTION, b2SourcePad, 2, 2);
FIELD(CONNECTION, b2SinkElement, 4, 4);
FIELD(CONNECTION, b2SinkPad, 6, 6);
SIZE(CONNECTION, 8, 8);

FIELD(QObject, m_cProperties, 8, 4);
FIELD(QObject, m_b2Reserved, 40, 20);
SIZE(QObject, 48, 24);
SIZE(QEOF, 48, 24);

FIELD(PLUGIN, m_pFramework, 8, 4);
FIELD(PLUGIN, m_pFactory, 16, 8);
FIELD(FWPLUGIN, m_achPath, 24, 12);
FIELD(FWPLUGIN, m_pHandle, 280, 268);
SIZE(FWPLUGIN, 288, 272);
FIELD(PluginFactory, m_ppFactories, 8, 4);
SIZE(PluginFactory, 16, 8);
SIZE(Factory, 8, 4);
SIZE(FACTORY::FWLibFactory, 8, 4);
SIZE(FACTORY::FWElementsFactory, 8, 4);
SIZE(SWrite, 8, 4);
SIZE(SRead, 8, 4);

static_assert(!std::is_polymorphic_v<PROPERTIES> && !std::is_polymorphic_v<FRAMEWORK>);
static_assert(std::has_virtual_destructor_v<PAD> && std::has_virtual_destructor_v<EObject>);
static_assert(std::has_virtual_destructor_v<QObject> && std::has_virtual_destructor_v<PLUGIN>);
static_assert(std::has_virtual_destructor_v<SWrite> && std::has_virtual_destructor_v<SRead>);
static_assert(!std::has_virtual_destructor_v<Factory>);

// A pointer to a virtual member function begins with one more than the offset of its slot; others begin with
// the function's address, which is even.
template <class Member>
std::ptrdiff_t SlotOf(Member member) {
    std::ptrdiff_t first;
    std::memcpy(&first, &member, sizeof first);
    constexpr auto Word = static_cast<std::ptrdiff_t>(sizeof(void*));
    return first % 2 == 1 ? (first - 1) / Word : -1;
}

// A destructor that comes first takes the slots 0 and 1.
TEST(Layout, VirtualOperationsKeepTheirSlots) {
    EXPECT_EQ(SlotOf(&Factory::CreateElement), 0);
    EXPECT_EQ(SlotOf(&Factory::CreateQObject), 1);
    EXPECT_EQ(SlotOf(&Factory::CreateObject), 2);
    EXPECT_EQ(SlotOf(&Factory::Initialize), 3);
    EXPECT_EQ(SlotOf(&FACTORY::FWElementsFactory::CreateElement), 0);
    EXPECT_EQ(SlotOf(&FACTORY::FWLibFactory::CreateQObject), 1);
    EXPECT_EQ(SlotOf(&PLUGIN::Initialize), 2);
    EXPECT_EQ(SlotOf(&FWPLUGIN::Initialize), 2);
    EXPECT_EQ(SlotOf(&PLUGIN::GetFactory), -1);

    EXPECT_EQ(SlotOf(&EObject::Initialize), 2);
    EXPECT_EQ(SlotOf(&EObject::DataArrived), 3);
    EXPECT_EQ(SlotOf(&EObject::Run), 4);
    EXPECT_EQ(SlotOf(&EObject::GetSinkPadCount), 5);
    EXPECT_EQ(SlotOf(&EObject::GetSinkPad), 6);
    EXPECT_EQ(SlotOf(&EObject::GetSourcePadCount), 7);
    EXPECT_EQ(SlotOf(&EObject::GetSourcePad), 8);
    EXPECT_EQ(SlotOf(&EObject::AddSinkPad), -1);

    using TextGetter = int (EPipeline::*)(char*, char*, char*, Byte2Type);
    using NumberGetter = int (EPipeline::*)(char*, char*, Byte2Type*);
    EXPECT_EQ(SlotOf(&EPipeline::GetSourcePad), 8);
    EXPECT_EQ(SlotOf(&EPipeline::SetElementProperty), 9);
    EXPECT_EQ(SlotOf(static_cast<TextGetter>(&EPipeline::GetElementProperty)), 10);
    EXPECT_EQ(SlotOf(static_cast<NumberGetter>(&EPipeline::GetElementProperty)), 11);
    EXPECT_EQ(SlotOf(&EPipeline::AddElement), 12);
    EXPECT_EQ(SlotOf(&EPipeline::Connect), 13);
    EXPECT_EQ(SlotOf(&EPipeline::FindElement), -1);
    EXPECT_EQ(SlotOf(static_cast<int (EPipeline::*)(char*)>(&EPipeline::BuildPipe)), -1);

    EXPECT_EQ(SlotOf(&QObject::Duplicate), 2);
    EXPECT_EQ(SlotOf(&QObject::Serialize), 3);
    EXPECT_EQ(SlotOf(&QObject::Deserialize), 4);
    EXPECT_EQ(SlotOf(&QObject::Write), 5);
    EXPECT_EQ(SlotOf(&QObject::GetEOF), 6);
    EXPECT_EQ(SlotOf(&QObject::Copy), -1);
    EXPECT_EQ(SlotOf(&SWrite::WriteData), 2);
    EXPECT_EQ(SlotOf(&SRead::ReadLine), 2);
}

} // namespace
