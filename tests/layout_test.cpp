// SPDX-License-Identifier: MIT
// Where virtual operations lie: programs and plugins that were built before depend on it.
#include "fwlib/fwlib.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

using namespace VESK;

namespace {

// A pointer to a virtual member function begins with one more than the offset of its slot; others begin with
// the function's address, which is even. A destructor that comes first takes the slots 0 and 1.
template <class... Member>
std::string Slots(Member... members) {
    std::string slots;
    const auto add = [&](auto member) {
        std::ptrdiff_t first;
        std::memcpy(&first, &member, sizeof first);
        slots += first % 2 ? std::to_string((first - 1) / static_cast<long>(sizeof(void*))) + " " : "none ";
    };
    (add(members), ...);
    return slots;
}

TEST(Layout, VirtualOperationsKeepTheirSlots) {
    using TextGetter = int (EPipeline::*)(char*, char*, char*, Byte2Type);
    using NumberGetter = int (EPipeline::*)(char*, char*, Byte2Type*);
    EXPECT_EQ(
        Slots(&Factory::CreateElement, &Factory::CreateQObject, &Factory::CreateObject, &Factory::Initialize),
        "0 1 2 3 ");
    EXPECT_EQ(Slots(&EObject::Initialize, &EObject::DataArrived, &EObject::Run, &EObject::GetSinkPadCount,
                    &EObject::GetSinkPad, &EObject::GetSourcePadCount, &EObject::GetSourcePad,
                    &EPipeline::SetElementProperty, static_cast<TextGetter>(&EPipeline::GetElementProperty),
                    static_cast<NumberGetter>(&EPipeline::GetElementProperty), &EPipeline::AddElement,
                    &EPipeline::Connect),
              "2 3 4 5 6 7 8 9 10 11 12 13 ");
    EXPECT_EQ(Slots(&QObject::Duplicate, &QObject::Serialize, &QObject::Deserialize, &QObject::Write,
                    &QObject::GetEOF),
              "2 3 4 5 6 ");
    EXPECT_EQ(Slots(&SRead::ReadLine, &SFileRead::ReadBlock, &SFileRead::OpenFile, &SFileRead::SetFile,
                    &SFileRead::GetFileSize, &SWrite::WriteData, &PLUGIN::Initialize),
              "2 3 4 5 6 2 2 ");
    EXPECT_EQ(Slots(&SFileWrite::SetFile, &PLUGIN::GetFactory, &EObject::AddSinkPad, &EPipeline::FindElement,
                    &QObject::Copy),
              "none none none none none ");
}

} // namespace
