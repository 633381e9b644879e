// SPDX-License-Identifier: MIT
// Where fields and virtual operations lie, in both widths: programs and plugins that were built before depend
// on it.
#include "fwlib/fwlib.h"

#include <cstring>
#include <gtest/gtest.h>
#include <vector>

#pragma GCC diagnostic ignored "-Winvalid-offsetof"

using namespace VESK;

namespace {

using Numbers = std::vector<long>;

#define AT(type, field) static_cast<long>(offsetof(type, field))
#define SIZE(type) static_cast<long>(sizeof(type))

TEST(Layout, FieldsKeepTheirPlaces) {
    const struct {
        Numbers found, in64, in32;
    } classes[] = {
        {{AT(PROPERTIES, m_b2PropertyCapacity), AT(PROPERTIES, m_b2PropertyCount),
          AT(PROPERTIES, m_pachSections), AT(PROPERTIES, m_pachKeys), AT(PROPERTIES, m_pachValues),
          SIZE(PROPERTIES)},
         {0, 2, 8, 16, 24, 32},
         {0, 2, 4, 8, 12, 16}},
        {{AT(FRAMEWORK, m_bError), AT(FRAMEWORK, m_b2PluginCapacity), AT(FRAMEWORK, m_b2PluginCount),
          AT(FRAMEWORK, m_ppPlugins), SIZE(FRAMEWORK)},
         {32, 36, 38, 40, 48},
         {16, 20, 22, 24, 28}},
        {{AT(EObject, m_cProperties), AT(EObject, m_pFramework), AT(EObject, m_iDebug),
          AT(EObject, m_b2SinkPadCapacity), AT(EObject, m_b2SinkPadCount), AT(EObject, m_ppSinkPads),
          AT(EObject, m_b2SourcePadCapacity), AT(EObject, m_b2SourcePadCount), AT(EObject, m_ppSourcePads),
          SIZE(EObject)},
         {8, 40, 48, 52, 54, 56, 64, 66, 72, 80},
         {4, 20, 24, 28, 30, 32, 36, 38, 40, 44}},
        {{AT(EPipeline, m_ppElements), AT(EPipeline, m_iElementCapacity), AT(EPipeline, m_iElementCount),
          AT(EPipeline, m_ppConnections), AT(EPipeline, m_b2ConnectionCapacity),
          AT(EPipeline, m_b2ConnectionCount), AT(EPipeline, m_pSinkElement), SIZE(EPipeline)},
         {80, 88, 92, 96, 104, 106, 112, 120},
         {44, 48, 52, 56, 60, 62, 64, 68}},
        {{AT(CONNECTION, b2SourceElement), AT(CONNECTION, b2SourcePad), AT(CONNECTION, b2SinkElement),
          AT(CONNECTION, b2SinkPad), SIZE(CONNECTION)},
         {0, 2, 4, 6, 8},
         {0, 2, 4, 6, 8}},
        {{AT(PAD, m_pElement), SIZE(PAD), AT(SINKPAD, m_b2Index), SIZE(SINKPAD), AT(SOURCEPAD, m_pSinkPad)},
         {8, 16, 16, 24, 16},
         {4, 8, 8, 12, 8}},
        {{AT(QObject, m_cProperties), AT(QObject, m_b2Reserved), SIZE(QObject), SIZE(QEOF)},
         {8, 40, 48, 48},
         {4, 20, 24, 24}},
        {{AT(PLUGIN, m_pFramework), AT(PLUGIN, m_pFactory), AT(FWPLUGIN, m_achPath), AT(FWPLUGIN, m_pHandle)},
         {8, 16, 24, 280},
         {4, 8, 12, 268}},
        {{AT(EPassthrough, m_pSourcePad), AT(EPassthrough, m_b4Debug), AT(ESerialize, m_pWriter),
          AT(ESerialize, m_b2Passthrough), AT(EDeserialize, m_pReader), SIZE(ETee), SIZE(ESource),
          SIZE(ESink)},
         {80, 88, 80, 88, 80, 80, 80, 80},
         {44, 48, 44, 48, 44, 44, 44, 44}},
        {{AT(SFileWrite, m_achFileName), AT(SFileWrite, m_pFile), SIZE(SFileWrite), AT(SFileRead, m_pFile),
          AT(SFileRead, m_pchLineBuffer), AT(SFileRead, m_b4LineBufferSize), SIZE(SFileRead),
          SIZE(MFColorTable)},
         {8, 264, 272, 264, 272, 280, 288, 264},
         {4, 260, 264, 260, 264, 268, 272, 260}},
        {{AT(PluginFactory, m_ppFactories), SIZE(Factory), SIZE(SWrite), SIZE(SRead)},
         {8, 8, 8, 8},
         {4, 4, 4, 4}},
    };
    for (const auto& one : classes) {
        EXPECT_EQ(one.found, sizeof(void*) == 8 ? one.in64 : one.in32);
    }
}

// A pointer to a virtual member function begins with one more than the offset of its slot; others begin with
// the function's address, which is even.
template <class... Member>
Numbers Slots(Member... members) {
    const auto slot = [](auto member) {
        std::ptrdiff_t first;
        std::memcpy(&first, &member, sizeof first);
        return first % 2 == 1 ? static_cast<long>(first - 1) / static_cast<long>(sizeof(void*)) : -1;
    };
    return {slot(members)...};
}

// A destructor that comes first takes the slots 0 and 1.
TEST(Layout, VirtualOperationsKeepTheirSlots) {
    using TextGetter = int (EPipeline::*)(char*, char*, char*, Byte2Type);
    using NumberGetter = int (EPipeline::*)(char*, char*, Byte2Type*);
    EXPECT_EQ(
        Slots(&Factory::CreateElement, &Factory::CreateQObject, &Factory::CreateObject, &Factory::Initialize),
        (Numbers{0, 1, 2, 3}));
    EXPECT_EQ(Slots(&EObject::Initialize, &EObject::DataArrived, &EObject::Run, &EObject::GetSinkPadCount,
                    &EObject::GetSinkPad, &EObject::GetSourcePadCount, &EObject::GetSourcePad,
                    &EPipeline::SetElementProperty, static_cast<TextGetter>(&EPipeline::GetElementProperty),
                    static_cast<NumberGetter>(&EPipeline::GetElementProperty), &EPipeline::AddElement,
                    &EPipeline::Connect),
              (Numbers{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
    EXPECT_EQ(Slots(&QObject::Duplicate, &QObject::Serialize, &QObject::Deserialize, &QObject::Write,
                    &QObject::GetEOF),
              (Numbers{2, 3, 4, 5, 6}));
    EXPECT_EQ(Slots(&SRead::ReadLine, &SFileRead::ReadBlock, &SFileRead::OpenFile, &SFileRead::SetFile,
                    &SFileRead::GetFileSize, &SWrite::WriteData, &PLUGIN::Initialize),
              (Numbers{2, 3, 4, 5, 6, 2, 2}));
    EXPECT_EQ(Slots(&SFileWrite::SetFile, &PLUGIN::GetFactory, &EObject::AddSinkPad, &EPipeline::FindElement,
                    &QObject::Copy),
              Numbers(5, -1));
}

} // namespace
