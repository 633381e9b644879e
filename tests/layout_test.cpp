// SPDX-License-Identifier: MIT
// Where fields and virtual operations lie, in both widths: programs and plugins that were built before depend
// on it.
#include "fwlib/fwlib.h"

#include <cstring>
#include <gtest/gtest.h>
#include <numeric>
#include <type_traits>
#include <vector>

#pragma GCC diagnostic ignored "-Winvalid-offsetof"

using namespace VESK;

namespace {

using Offsets = std::vector<std::size_t>;

Offsets InWidth(const Offsets& in64, const Offsets& in32) {
    return sizeof(void*) == 8 ? in64 : in32;
}

#define AT(field) offsetof(T, field)

// The fields in order, and the size.
TEST(Layout, FieldsKeepTheirPlaces) {
    {
        using T = PROPERTIES;
        EXPECT_EQ((Offsets{AT(m_b2PropertyCapacity), AT(m_b2PropertyCount), AT(m_pachSections),
                           AT(m_pachKeys), AT(m_pachValues), sizeof(T)}),
                  InWidth({0, 2, 8, 16, 24, 32}, {0, 2, 4, 8, 12, 16}));
    }
    {
        using T = FRAMEWORK;
        EXPECT_EQ(
            (Offsets{AT(m_bError), AT(m_b2PluginCapacity), AT(m_b2PluginCount), AT(m_ppPlugins), sizeof(T)}),
            InWidth({32, 36, 38, 40, 48}, {16, 20, 22, 24, 28}));
    }
    {
        using T = EObject;
        EXPECT_EQ((Offsets{AT(m_cProperties), AT(m_pFramework), AT(m_iDebug), AT(m_b2SinkPadCapacity),
                           AT(m_b2SinkPadCount), AT(m_ppSinkPads), AT(m_b2SourcePadCapacity),
                           AT(m_b2SourcePadCount), AT(m_ppSourcePads), sizeof(T)}),
                  InWidth({8, 40, 48, 52, 54, 56, 64, 66, 72, 80}, {4, 20, 24, 28, 30, 32, 36, 38, 40, 44}));
    }
    {
        using T = EPipeline;
        EXPECT_EQ(
            (Offsets{AT(m_ppElements), AT(m_iElementCapacity), AT(m_iElementCount), AT(m_ppConnections),
                     AT(m_b2ConnectionCapacity), AT(m_b2ConnectionCount), AT(m_pSinkElement), sizeof(T)}),
            InWidth({80, 88, 92, 96, 104, 106, 112, 120}, {44, 48, 52, 56, 60, 62, 64, 68}));
    }
    {
        using T = CONNECTION;
        EXPECT_EQ(
            (Offsets{AT(b2SourceElement), AT(b2SourcePad), AT(b2SinkElement), AT(b2SinkPad), sizeof(T)}),
            (Offsets{0, 2, 4, 6, 8}));
    }
    EXPECT_EQ((Offsets{offsetof(PAD, m_pElement), sizeof(PAD), offsetof(SINKPAD, m_b2Index), sizeof(SINKPAD),
                       offsetof(SOURCEPAD, m_pSinkPad), sizeof(SOURCEPAD)}),
              InWidth({8, 16, 16, 24, 16, 24}, {4, 8, 8, 12, 8, 12}));
    EXPECT_EQ((Offsets{offsetof(QObject, m_cProperties), offsetof(QObject, m_b2Reserved), sizeof(QObject),
                       sizeof(QEOF)}),
              InWidth({8, 40, 48, 48}, {4, 20, 24, 24}));
    EXPECT_EQ((Offsets{offsetof(PLUGIN, m_pFramework), offsetof(PLUGIN, m_pFactory),
                       offsetof(FWPLUGIN, m_achPath), offsetof(FWPLUGIN, m_pHandle), sizeof(FWPLUGIN)}),
              InWidth({8, 16, 24, 280, 288}, {4, 8, 12, 268, 272}));
    EXPECT_EQ((Offsets{offsetof(EPassthrough, m_pSourcePad), offsetof(EPassthrough, m_b4Debug),
                       sizeof(EPassthrough), sizeof(EDevNull), sizeof(ETee), sizeof(ESource), sizeof(ESink)}),
              InWidth({80, 88, 96, 80, 80, 80, 80}, {44, 48, 52, 44, 44, 44, 44}));
    EXPECT_EQ((Offsets{offsetof(SFileWrite, m_achFileName), offsetof(SFileWrite, m_pFile), sizeof(SFileWrite),
                       offsetof(SFileRead, m_achFileName), offsetof(SFileRead, m_pFile),
                       offsetof(SFileRead, m_pchLineBuffer), offsetof(SFileRead, m_b4LineBufferSize),
                       sizeof(SFileRead)}),
              InWidth({8, 264, 272, 8, 264, 272, 280, 288}, {4, 260, 264, 4, 260, 264, 268, 272}));
    EXPECT_EQ((Offsets{offsetof(ESerialize, m_pWriter), offsetof(ESerialize, m_b2Passthrough),
                       sizeof(ESerialize), offsetof(EDeserialize, m_pReader), sizeof(EDeserialize),
                       offsetof(MFColorTable, m_achFileName), offsetof(MFColorTable, m_pFile),
                       sizeof(MFColorTable)}),
              InWidth({80, 88, 96, 80, 88, 0, 256, 264}, {44, 48, 52, 44, 48, 0, 256, 260}));
    EXPECT_EQ((Offsets{offsetof(PluginFactory, m_ppFactories), sizeof(PluginFactory), sizeof(Factory),
                       sizeof(FACTORY::FWLibFactory), sizeof(FACTORY::FWElementsFactory), sizeof(SWrite),
                       sizeof(SRead)}),
              InWidth({8, 16, 8, 8, 8, 8, 8}, {4, 8, 4, 4, 4, 4, 4}));
}

static_assert(!std::is_polymorphic_v<PROPERTIES> && !std::is_polymorphic_v<FRAMEWORK> &&
              !std::is_polymorphic_v<MFColorTable>);
static_assert(std::has_virtual_destructor_v<PAD> && std::has_virtual_destructor_v<EObject>);
static_assert(std::has_virtual_destructor_v<QObject> && std::has_virtual_destructor_v<PLUGIN>);
static_assert(std::has_virtual_destructor_v<SWrite> && std::has_virtual_destructor_v<SRead>);
static_assert(!std::has_virtual_destructor_v<Factory>);

// A pointer to a virtual member function begins with one more than the offset of its slot; others begin with
// the function's address, which is even.
template <class... Member>
std::vector<long> Slots(Member... members) {
    const auto slot = [](auto member) {
        std::ptrdiff_t first;
        std::memcpy(&first, &member, sizeof first);
        return first % 2 == 1 ? static_cast<long>(first - 1) / static_cast<long>(sizeof(void*)) : -1;
    };
    return {slot(members)...};
}

std::vector<long> From(long first, long last) {
    std::vector<long> slots(static_cast<std::size_t>(last - first + 1));
    std::iota(slots.begin(), slots.end(), first);
    return slots;
}

// A destructor that comes first takes the slots 0 and 1.
TEST(Layout, VirtualOperationsKeepTheirSlots) {
    EXPECT_EQ(
        Slots(&Factory::CreateElement, &Factory::CreateQObject, &Factory::CreateObject, &Factory::Initialize),
        From(0, 3));
    EXPECT_EQ(Slots(&FACTORY::FWElementsFactory::CreateElement, &FACTORY::FWLibFactory::CreateQObject),
              From(0, 1));
    EXPECT_EQ(Slots(&EObject::Initialize, &EObject::DataArrived, &EObject::Run, &EObject::GetSinkPadCount,
                    &EObject::GetSinkPad, &EObject::GetSourcePadCount, &EObject::GetSourcePad),
              From(2, 8));
    using TextGetter = int (EPipeline::*)(char*, char*, char*, Byte2Type);
    using NumberGetter = int (EPipeline::*)(char*, char*, Byte2Type*);
    EXPECT_EQ(Slots(&EPipeline::GetSourcePad, &EPipeline::SetElementProperty,
                    static_cast<TextGetter>(&EPipeline::GetElementProperty),
                    static_cast<NumberGetter>(&EPipeline::GetElementProperty), &EPipeline::AddElement,
                    &EPipeline::Connect),
              From(8, 13));
    EXPECT_EQ(Slots(&QObject::Duplicate, &QObject::Serialize, &QObject::Deserialize, &QObject::Write,
                    &QObject::GetEOF),
              From(2, 6));
    EXPECT_EQ(Slots(&SWrite::WriteData, &SRead::ReadLine, &PLUGIN::Initialize), (std::vector<long>{2, 2, 2}));
    EXPECT_EQ(Slots(&SFileRead::ReadLine, &SFileRead::ReadBlock, &SFileRead::OpenFile, &SFileRead::SetFile,
                    &SFileRead::GetFileSize),
              From(2, 6));
    EXPECT_EQ(Slots(&SFileWrite::WriteData, &SFileWrite::SetFile), (std::vector<long>{2, -1}));
    EXPECT_EQ(Slots(&ESerialize::Initialize, &ESerialize::DataArrived, &EDeserialize::Run),
              (std::vector<long>{2, 3, 4}));
    EXPECT_EQ(Slots(&PLUGIN::GetFactory, &EObject::AddSinkPad, &EPipeline::FindElement, &QObject::Copy),
              std::vector<long>(4, -1));
}

} // namespace
