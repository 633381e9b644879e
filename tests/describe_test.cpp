// SPDX-License-Identifier: MIT
// Declared elements: what Initialize reads and reports, what is described, and that the descriptions of the library's
// types are true.
#include "fwlib/testing/harness.h"
#include "support/support.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace VESK;

namespace {

enum class Mode : unsigned char { Low, High };

class EAll : public Element<EAll> {
public:
    static constexpr const char* TypeName = "EAll";
    static constexpr const char* Meaning = "has a property of each kind";
    static void Declare(Declaration<EAll>& declare) {
        declare.SinkPads(2);
        declare.SourcePadsFrom("Outputs", 1, "source pads");
        declare.Number("Small", &EAll::small, 5, -7, 9, "steps", "a number");
        declare.Number("Long", &EAll::large, 1, nullptr, "64 bits");
        declare.Number("Size", &EAll::size, 3, "bytes", "of any size");
        declare.Real("Real", &EAll::real, 0.5, 0, 2, "s", "a real number");
        declare.Real("Float", &EAll::narrow, 0.1F, nullptr, "32 bits");
        declare.Flag("Flag", &EAll::flag, true, "a flag");
        declare.Choice("Mode", &EAll::mode, "high", "low|high", "a choice");
        declare.Choice("Word", &EAll::word, "b", "a|b", "a choice as text");
        declare.Text("Text", &EAll::text, "none", "a text");
        declare.FileToRead("File", &EAll::file, nullptr, "must be set");
    }

    std::string Fields() const {
        char achNumbers[160];
        std::snprintf(achNumbers, sizeof achNumbers, "%d %lld %llu %g %g %d %d ", small, large,
                      static_cast<unsigned long long>(size), real, static_cast<double>(narrow), flag,
                      static_cast<int>(mode));
        return achNumbers + word + " " + text + " " + file;
    }

    short small = 0;
    long long large = 0;
    std::size_t size = 0;
    double real = 0;
    float narrow = 0;
    bool flag = false;
    Mode mode = Mode::Low;
    std::string word, text;
    char file[8] = "";
};
constexpr const char* EAll::TypeName;

std::string Reported(Harness& test) {
    std::string all;
    for (const std::string& message : test.Messages()) {
        all += message.substr(message.find("Initialize(): ") + 14) + "\n";
    }
    return all;
}

TEST(Declared, PropertiesAreReadIntoFields) {
    auto* const element = new EAll;
    Harness test(element);
    test.Set("File", "a");
    ASSERT_EQ(test.Initialize(), 1) << Reported(test);
    EXPECT_EQ(element->Fields(), "5 1 3 0.5 0.1 1 1 b none a");
    EXPECT_EQ(element->GetSinkPadCount() * 10 + element->GetSourcePadCount(), 21);
    auto* const set = new EAll;
    Harness other(set);
    const char* const settings[][2] = {
        {"Outputs", "0"},       {"Small", "-7"},    {"Long", "-9223372036854775808"},
        {"Size", "4294967295"}, {"Real", "2e0"},    {"Float", "-1.5"},
        {"Flag", "off"},        {"Mode", "low"},    {"Word", "a"},
        {"Text", "="},          {"File", "1234567"}};
    for (const auto& setting : settings) {
        other.Set(setting[0], setting[1]);
    }
    ASSERT_EQ(other.Initialize(), 1) << Reported(other);
    EXPECT_EQ(set->Fields(), "-7 -9223372036854775808 4294967295 2 -1.5 0 0 a = 1234567");
    EXPECT_EQ(set->GetSourcePadCount(), 0);
}

TEST(Declared, EveryWrongTextIsReportedWithWhatIsAllowed) {
    Harness test(new EAll);
    const char* const settings[][2] = {
        {"Outputs", "70000"}, {"Small", "12x"},  {"Long", "9223372036854775808"},
        {"Real", "2.1"},      {"Float", "1e39"}, {"Flag", "2"},
        {"Mode", "High"},     {"Word", "a|b"},   {"File", "12345678"}};
    for (const auto& setting : settings) {
        test.Set(setting[0], setting[1]);
    }
    EXPECT_EQ(test.Initialize(), 0);
    EXPECT_EQ(Reported(test), "Outputs = 70000: not a number from 0 to 65520\n"
                              "Small = 12x: not a number from -7 to 9\n"
                              "Long = 9223372036854775808: not a number from -9223372036854775808 to "
                              "9223372036854775807\n"
                              "Real = 2.1: not a real number from 0 to 2\n"
                              "Float = 1e39: not a real number of 32 bits\n"
                              "Flag = 2: not one of 0, 1, false, true, no, yes, off, on\n"
                              "Mode = High: not one of low, high\n"
                              "Word = a|b: not one of a, b\n"
                              "File = 12345678: longer than 7 characters\n");
    Harness unset(new EAll);
    EXPECT_EQ(unset.Initialize(), 0);
    EXPECT_EQ(Reported(unset), "File is not set\n");
}

// One wrong declaration after the other.
int iWrong = 0;

class EWrong : public Element<EWrong> {
public:
    static constexpr const char* TypeName = "EWrong";
    static void Declare(Declaration<EWrong>& declare) {
        switch (iWrong) {
        case 0:
            declare.Flag(nullptr, &EWrong::b, false, "");
            break;
        case 1:
            declare.Flag("", &EWrong::b, false, "");
            break;
        case 2:
            declare.SinkPads(1);
            declare.SinkPads(1);
            break;
        case 3:
            declare.Flag("K", &EWrong::b, false, "");
            declare.SinkPadsFrom("K", 1, "");
            break;
        case 4:
            declare.Number("K", &EWrong::i, 5, 0, 4, nullptr, "");
            break;
        case 5:
            declare.Number("K", &EWrong::i, 5, 6, 4, nullptr, "");
            break;
        case 6:
            declare.Choice("K", &EWrong::i, "a", nullptr, "");
            break;
        case 7:
            declare.Choice("K", &EWrong::i, "a", "", "");
            break;
        case 8:
            declare.Choice("K", &EWrong::i, "c", "a|b", "");
            break;
        case 9:
            declare.SourcePads(65521);
            break;
        case 10:
            declare.Real("K", &EWrong::d, NAN, 0, 1, nullptr, "");
            break;
        default:
            break;
        }
    }
    bool b = false;
    int i = 0;
    double d = 0;
};
constexpr const char* EWrong::TypeName;

TEST(Declared, AWrongDeclarationIsReportedByInitialize) {
    for (iWrong = 0; iWrong < 11; ++iWrong) {
        Harness test(new EWrong);
        test.Set("K", "1");
        EXPECT_EQ(test.Initialize(), 0) << iWrong;
        EXPECT_EQ(test.Messages().size(), 1U) << iWrong << ": " << Reported(test);
    }
    Harness test(new EWrong);
    EXPECT_EQ(test.Initialize(), 1);
}

class QNothing : public DataObject<QNothing> {
public:
    static constexpr const char* TypeName = nullptr;
    static constexpr const char* Meaning = "is never created";
};

TEST(Declared, ClassesAreDescribedAndCreatedByTheirNames) {
    const PluginDescription* const plugin = DescribeTypes<EAll, QNothing>();
    ASSERT_NE(plugin, nullptr);
    const ElementDescription* const type = FindElementDescription(plugin, "EAll");
    ASSERT_NE(type, nullptr);
    std::string all;
    for (const PropertyDescription* const* pp = type->ppProperties; *pp; ++pp) {
        const auto shown = [](const char* text) { return std::string(text ? text : "-"); };
        all += std::string((*pp)->pchKey) + " " + std::to_string((*pp)->b4Kind) + " " +
               shown((*pp)->pchDefault) + " " + shown((*pp)->pchLeast) + " " + shown((*pp)->pchMost) + " " +
               shown((*pp)->pchChoices) + " " + shown((*pp)->pchUnit) + ((*pp)->b4Required ? " !" : "") +
               "\n";
    }
    EXPECT_EQ(all.substr(0, 64), "Outputs 1 1 0 65520 - pads\nSmall 1 5 -7 9 - steps\nLong 1 1 -9223");
    EXPECT_NE(all.find("Real 2 0.5 0 2 - s\nFloat 2 0.1 "), std::string::npos) << all;
    EXPECT_NE(all.find("Mode 4 high - - low|high -\n"), std::string::npos) << all;
    EXPECT_NE(all.find("File 5 - - - - - !\n"), std::string::npos) << all;
    EXPECT_EQ(type->SinkPads.b4Count * 10 + type->SourcePads.b4Count, 21U);
    EXPECT_STREQ(type->SourcePads.pchProperty, "Outputs");
    EXPECT_EQ(type->b4Originates, 0U);
    EXPECT_EQ(plugin->ppObjects[0], nullptr);
    TypesFactory<EAll, QNothing> factory;
    const std::unique_ptr<EObject> element(factory.CreateElement(Text("EAll")));
    EXPECT_EQ(EntriesOf(element->m_cProperties), "Standard.EObjectType=EAll");
    EXPECT_EQ(factory.CreateQObject(Text("")), nullptr);
    EXPECT_EQ(TypesFactory<>().CreateElement(Text("EAll")), nullptr);
    EXPECT_EQ(DescribeTypes<>()->ppElements[0], nullptr);
}

// The library's own types: pads for several settings, and whether Run sends.
TEST(Described, TypesOfTheLibraryAreAsDescribed) {
    FRAMEWORK framework;
    framework.AddPlugin(Text("libfwlib.so"));
    int types = 0;
    for (const ElementDescription* const* pp = GetPluginDescription()->ppElements; *pp; ++pp) {
        const ElementDescription& type = **pp;
        if (std::string(type.pchType) == Type::EPipeline) {
            continue; // is created by a line of its own, and has the pads of its elements
        }
        ++types;
        for (const char* const count : {"", "0", "1", "5"}) {
            EObject* const element = framework.CreateElement(Text(type.pchType));
            Harness test(element);
            test.Set("Filename", "/dev/null");
            for (const PadsDescription* const pads : {&type.SinkPads, &type.SourcePads}) {
                if (pads->pchProperty && *count) {
                    test.Set(pads->pchProperty, count);
                }
            }
            ASSERT_EQ(test.Initialize(), 1) << type.pchType;
            const auto expected = [count](const PadsDescription& pads) {
                return pads.pchProperty && *count ? std::atoi(count) : static_cast<int>(pads.b4Count);
            };
            EXPECT_EQ(element->GetSinkPadCount(), expected(type.SinkPads)) << type.pchType << count;
            EXPECT_EQ(element->GetSourcePadCount(), expected(type.SourcePads)) << type.pchType << count;
            if (!type.b4Originates && !*count) {
                EXPECT_EQ(test.Run(), 0) << type.pchType;
            }
        }
    }
    EXPECT_EQ(types, 7);
    for (const PropertyDescription* const* pp = CommonProperties(); *pp; ++pp) {
        EXPECT_TRUE(std::string((*pp)->pchKey) == "Name" || std::string((*pp)->pchKey) == "Debug");
    }
}

TEST(Values, AreStoredAndReadByTheirTypes) {
    QObject object;
    EXPECT_EQ(SetValue(object, "t", "text") + SetValue(object, "s", std::string("more")) +
                  SetValue(object, "b", true) + SetValue(object, "i", std::size_t{7}) +
                  SetValue(object, "r", -2.5) + SetValue(object, "f", 0.1F) +
                  SetValue(object, "l", std::numeric_limits<long long>::min()),
              7);
    EXPECT_EQ(EntriesOf(object.m_cProperties), "Standard.QObjectType=QObject Standard.t=text Standard.s=more "
                                               "Standard.b=1 Standard.i=7 Standard.r=-2.5 "
                                               "Standard.f=0.1 Standard.l=-9223372036854775808");
    EXPECT_EQ(SetValue(object, "n", NAN) + SetValue(object, "n", std::string("a\0b", 3)), 0);
    int i = 3;
    double d = 3;
    bool b = false;
    std::string s;
    EXPECT_EQ(GetValue(object, "i", i) * 100 + GetValue(object, "r", d) * 10 + GetValue(object, "t", s), 111);
    EXPECT_EQ(std::to_string(i) + " " + std::to_string(d) + " " + s, "7 -2.500000 text");
    EXPECT_EQ(GetValue(object, "t", i) + GetValue(object, "l", i) + GetValue(object, "none", d) +
                  GetValue(object, "t", b),
              0);
    EXPECT_EQ(i, 7);
    std::string keys;
    for (const Entry& entry : Entries(object.m_cProperties)) {
        keys += entry.pchKey;
        SetValue(object, (std::string(entry.pchKey) + "2").c_str(), 1); // is not met
    }
    EXPECT_EQ(keys, "QObjectTypetsbirfl");
    for (const char* const text :
         {"", " 1", "1 ", "+-1", "0x1", "1e5", "nan", "inf", "18446744073709551616"}) {
        unsigned long long ull = 1;
        EXPECT_EQ(ParseNumber(text, &ull), 0) << text;
    }
    for (const char* const text : {"", " 1", "1 ", "0x1", "nan", "inf", "1e999", "1,5", "."}) {
        EXPECT_EQ(ParseReal(text, &d), 0) << text;
    }
    for (const double value : {0.1, 1e300, -5e-324, 1 / 3.0, 123456789.0}) {
        char achText[NumberTextSize];
        EXPECT_EQ(FormatReal(value, achText) + ParseReal(achText, &d), 2);
        EXPECT_EQ(d, value) << achText;
    }
    Byte2Type length = 0;
    EXPECT_EQ(object.m_cProperties.GetKeyLength(0, &length) * 100 + length, 111);
    EXPECT_EQ(object.m_cProperties.GetKeyLength(99, &length), 0);
}

} // namespace
