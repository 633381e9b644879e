// SPDX-License-Identifier: MIT
// The descriptions of the library's types are true.
#include "fwlib/testing/harness.h"
#include "support/support.h"

#include <gtest/gtest.h>
#include <set>

using namespace VESK;

namespace {

// Adds each key that is missing in one list to a set.
struct Asked {
    const PROPERTIES* list;
    std::set<std::string> keys;
    static void Note(void* self, const PROPERTIES& list, const char* key, const char* section) {
        auto& asked = *static_cast<Asked*>(self);
        if (asked.list == &list && std::string(section) == Section::Standard) {
            asked.keys.insert(key);
        }
    }
};

// The keys of the type are read. Others are not, except those that every element may have.
void CompareKeys(const ElementDescription& type, std::set<std::string> asked) {
    std::set<std::string> described;
    for (const PropertyDescription* const* pp = type.ppProperties; *pp; ++pp) {
        described.insert((*pp)->pchKey);
    }
    for (const PropertyDescription* const* pp = CommonProperties(); *pp; ++pp) {
        asked.erase((*pp)->pchKey);
        EXPECT_TRUE(described.count((*pp)->pchKey) == 0) << (*pp)->pchKey;
    }
    EXPECT_EQ(asked, described) << type.pchType;
}

// The library's own types: pads for several settings, the keys that they read, and whether Run sends.
TEST(Described, TypesOfTheLibraryAreAsDescribed) {
    FRAMEWORK framework;
    framework.AddPlugin(Text("libfwlib.so"));
    int types = 0;
    for (const ElementDescription* const* pp = GetPluginDescription()->ppElements; *pp; ++pp) {
        const ElementDescription& type = **pp;
        const bool container =
            std::string(type.pchType) == Type::EPipeline; // is created by a line of its own
        ++types;
        Asked asked{};
        const KeyWatch watch{Asked::Note, &asked};
        for (const char* const count : {"", "0", "1", "5", "no file"}) {
            EObject* const element = container ? new EPipeline : framework.CreateElement(Text(type.pchType));
            Harness test(element);
            const bool file = std::string(count) != "no file", counted = file && *count && !container;
            if (file) {
                test.Set("Filename", "/dev/null");
            }
            for (const PadsDescription* const pads : {&type.SinkPads, &type.SourcePads}) {
                if (pads->pchProperty && counted) {
                    test.Set(pads->pchProperty, count);
                }
            }
            asked.list = &element->m_cProperties;
            WatchMissingKeys(&watch);
            ASSERT_EQ(test.Initialize(), 1) << type.pchType;
            const auto expected = [&](const PadsDescription& pads) {
                return pads.pchProperty && counted ? std::atoi(count) : static_cast<int>(pads.b4Count);
            };
            EXPECT_EQ(element->GetSinkPadCount(), expected(type.SinkPads)) << type.pchType << count;
            EXPECT_EQ(element->GetSourcePadCount(), expected(type.SourcePads)) << type.pchType << count;
            if (file && !*count) {
                EXPECT_LE(test.Run(), type.b4Originates) << type.pchType;
                test.Push({{"Count", 7}});
            }
            WatchMissingKeys(nullptr);
        }
        CompareKeys(type, asked.keys);
    }
    EXPECT_EQ(types, 8);
}

} // namespace
