// SPDX-License-Identifier: MIT
// The elements of examples/csv, held by the harness; and the harness where there is nothing to hold.
#include "fwlib/testing/harness.h"

#include "support/support.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace VESK;

namespace {

const char* const Csv = FWLIB_TEST_PLUGINS "/libcsv.so";
const char* const Direct = FWLIB_TEST_PLUGINS "/filter.so";

template <class Items>
std::string Lines(const Items& items) {
    std::ostringstream text;
    for (const auto& item : items) {
        text << item << '\n';
    }
    return text.str();
}

// All that a filter does, as one text. Null: the property is not set.
std::string Filtered(const char* plugin, const char* key, const char* minimum) {
    Harness test("EFilter", plugin);
    test.Set("Name", "filter");
    key ? test.Set("Key", key) : 0;
    minimum ? test.Set("Minimum", minimum) : 0;
    std::string text = std::to_string(test.Initialize()) + "\n";
    for (const char* value : {"19.5", "20", "-7", "1e3", "20 degrees", ""}) {
        test.Push({{"Celsius", value}});
    }
    test.Push<QEOF>({});
    text += std::to_string(test.Refuse());
    test.Push({{"Celsius", 21}});
    text += std::to_string(test.Disconnect());
    test.Push({{"Celsius", 19}});
    test.Push({{"Celsius", 22}});
    text += std::to_string(test.EndRuns()) + "\n" + test.Values("Celsius") + "\n" + Lines(test.Results());
    return text + (minimum && *minimum == 'x' ? "" : Lines(test.Messages()));
}

TEST(Csv, BothFormsOfTheFilterBehaveAlike) {
    EXPECT_EQ(Filtered(Csv, "Celsius", "20"),
              "1\n111\n20 1e3 20 degrees  -\n1\n1\n1\n1\n1\n1\n1\n0\n1\n0\n"
              "ERROR: EFilter - filter: SourcePad: No sink pad (broken pipe)\n");
    for (const char* key : {"Celsius", "Kelvin", "", static_cast<const char*>(nullptr)}) {
        for (const char* minimum : {"20", "-1e3", "x", static_cast<const char*>(nullptr)}) {
            EXPECT_EQ(Filtered(Csv, key, minimum), Filtered(Direct, key, minimum))
                << (key ? key : "no key") << ", " << (minimum ? minimum : "no minimum");
        }
    }
}

TEST(Csv, ATableIsSentLineByLine) {
    const Scratch folder;
    const auto sent = [&](const char* text, const char* separator) {
        const std::string path = folder.Write("t.csv", text);
        Harness test("ECsvSource", Csv);
        test.Set("File", path);
        separator ? test.Set("Separator", separator) : 0;
        test.Set("Name", "table");
        std::string all = std::to_string(test.Initialize());
        all += std::to_string(test.Run()) + "\n";
        for (const auto& object : test.Received()) {
            all += EntriesOf(object->m_cProperties) + "\n";
        }
        for (std::string line : test.Messages()) {
            const std::size_t at = line.find(path);
            all += (at == std::string::npos ? line : line.replace(at, path.size(), "FILE")) + "\n";
        }
        return all;
    };
    EXPECT_EQ(sent("a,b\n1,2\n,\nbad\n1,2,3\nx,y", nullptr),
              "11\n"
              "Standard.QObjectType=QReading Standard.a=1 Standard.b=2\n"
              "Standard.QObjectType=QReading Standard.a= Standard.b=\n"
              "Standard.QObjectType=QReading Standard.a=x Standard.b=y\n"
              "WARNING: ECsvSource - table: FILE:4: 1 fields\n"
              "WARNING: ECsvSource - table: FILE:5: 3 fields\n");
    EXPECT_EQ(sent("a;b,c\n1;2,3\n", ";"),
              "11\nStandard.QObjectType=QReading Standard.a=1 Standard.b,c=2,3\n");
    EXPECT_EQ(sent("a\n", ","), "11\n");
    EXPECT_EQ(sent("", ","), "10\nERROR: ECsvSource - table: Run(): Unable to read FILE\n");
}

TEST(Csv, RunsEndAtARefusalAndAtARequest) {
    const Scratch folder;
    Harness test("ECsvSource", Csv);
    test.Set("File", folder.Write("t.csv", "a\n1\n2\n"));
    EXPECT_EQ(test.Initialize(), 1);
    EXPECT_EQ(test.Refuse(), 1);
    EXPECT_EQ(test.Run(), 0);
    EXPECT_EQ(test.Refuse(0, false), 1);
    EXPECT_EQ(test.Run(), 1);
    test.GetFramework().RequestEnd();
    EXPECT_EQ(test.Run(), 1);
    EXPECT_EQ(test.Values("a"), "1 2");
    EXPECT_EQ(test.Push({}), 0); // there is no sink pad
    EXPECT_EQ(test.Results(), (std::vector<int>{0, 1, 1, 0}));
}

TEST(Csv, TheCounterPrintsTheRestAtTheEnd) {
    Harness test("ERate", Csv);
    test.Set("Every", 2);
    test.Set("Name", "rate");
    EXPECT_EQ(test.Initialize(), 1);
    for (int i = 0; i < 3; ++i) {
        test.Push({{"i", i}});
    }
    EXPECT_EQ(test.EndRuns(), 1);
    EXPECT_EQ(test.Values("i"), "0 1 2");
    EXPECT_EQ(Lines(test.Messages()),
              "ERate - rate: 2 objects\nERate - rate: 3 objects, 1 after the last line\n");

    Harness wrong("ERate", Csv);
    wrong.Set("Every", "12x");
    wrong.Set("Name", "rate");
    EXPECT_EQ(wrong.Initialize(), 0);
    EXPECT_EQ(Lines(wrong.Messages()),
              "ERROR: ERate - rate: Initialize(): Every = 12x: not a number from 1 to 1000000\n");
}

TEST(Harness, WhatIsNotThereHasADefinedResult) {
    for (const bool none : {true, false}) {
        Harness test(none ? nullptr : new EPassthrough);
        EXPECT_EQ(test.Push({{"a", 1}}) + test.Refuse() + test.Disconnect(), 0); // no pads yet
        EXPECT_EQ(test.Set("Name", "tap"), !none);
        EXPECT_EQ(test.Initialize(), !none);
        EXPECT_EQ(test.Initialize() + test.Run() + test.Push(nullptr, 1) + test.Refuse(1), 0);
        EXPECT_EQ(test.EndRuns(), !none);
        EXPECT_EQ(test.Push({{"a", 2}}), !none);
        EXPECT_EQ(test.Received(9).size() + test.Values("a", 9).size(), 0u);
        int value = 3;
        EXPECT_EQ(GetValue(test.Received()[0], "a", value), !none);
        EXPECT_EQ(GetValue(test.Received()[1], "a", value), 0);
        test.Destroy();
        EXPECT_EQ(test.Push({}) + test.Disconnect() + test.Initialize() + test.Set("a", 1), 0);
        EXPECT_EQ(test.Values("a"), none ? "" : "2");
        EXPECT_EQ(test.GetElement(), nullptr);
        EXPECT_TRUE(test.HasMessage(none ? "Harness: no element" : "Harness: no source pad 9"));
    }
    EXPECT_TRUE(Harness("ENone", Csv).HasMessage("Could not instantiate: ENone"));
    EXPECT_FALSE(Harness("ENone", "./none.so").Messages().empty());
}

TEST(Harness, UnloadsThePlugin) {
    { EXPECT_EQ(Harness("ERate", Csv).Initialize(), 1); }
    EXPECT_EQ(dlopen(Csv, RTLD_LAZY | RTLD_NOLOAD), nullptr);
}

} // namespace
