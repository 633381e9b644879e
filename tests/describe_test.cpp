// SPDX-License-Identifier: MIT
// Declared elements: what Initialize reads and reports, and what is described.
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
        const std::string begin = " - [No Element Name]: Initialize(): ";
        const std::size_t at = message.find(begin);
        all += (at == std::string::npos ? message : message.substr(at + begin.size())) + "\n";
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
    EXPECT_EQ(set->Initialize(), 1);
    EXPECT_EQ(set->GetSinkPad(2)->m_b2Index * 10 + set->GetSinkPad(3)->m_b2Index, 1);
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
    static constexpr const char* Meaning = nullptr;
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
        case 11:
            declare.Flag("K", &EWrong::b, true, nullptr);
            declare.Text("K", &EWrong::text, "", "");
            break;
        case 12:
            declare.SourcePadsFrom(nullptr, 1, "");
            break;
        case 13:
            declare.SourcePadsFrom("K", 65521, "");
            break;
        case 14:
            declare.Text("K", &EWrong::text, "four", "");
            break;
        default:
            break;
        }
    }
    char text[4] = "";
    bool b = false;
    int i = 0;
    double d = 0;
};
constexpr const char* EWrong::TypeName;

// What Initialize reports, and the numbers of sink pads, source pads and properties in the description.
TEST(Declared, AWrongDeclarationIsReportedByInitialize) {
    const std::string twice = "K is declared wrongly: its key is declared twice\n",
                      range = "K is declared wrongly: the default is out of range\n",
                      none = "a property is declared without a key\n",
                      choices = "K is declared wrongly: there are no choices, or an empty one\n";
    const std::string expected[] = {none + "0 0 0",
                                    none + "0 0 0",
                                    "sink pads are declared twice\n1 0 0",
                                    twice + "1 0 1",
                                    range + "0 0 0",
                                    "K is declared wrongly: the least value is above the greatest\n0 0 0",
                                    choices + "0 0 0",
                                    choices + "0 0 0",
                                    "K is declared wrongly: the default is not among the choices\n0 0 0",
                                    "65521 source pads are more than 65520\n0 0 0",
                                    range + "0 0 0",
                                    twice + "0 0 1",
                                    none + "0 1 0",
                                    range + "0 0 0",
                                    "K is declared wrongly: the default is too long\n0 0 0"};
    iWrong = 0;
    for (const std::string& wanted : expected) {
        Harness test(new EWrong);
        test.Set("K", "1");
        EXPECT_EQ(test.Initialize(), 0) << iWrong;
        DescriptionTable table;
        PluginType<EWrong>::Describe(table);
        const ElementDescription* const type =
            FindElementDescription(table.Get(FWLIB_VERSION), EWrong::TypeName);
        std::size_t properties = 0;
        while (type->ppProperties[properties]) {
            ++properties;
        }
        EXPECT_STREQ(type->pchMeaning, "");
        EXPECT_EQ(Reported(test) + std::to_string(type->SinkPads.b4Count) + " " +
                      std::to_string(type->SourcePads.b4Count) + " " + std::to_string(properties),
                  wanted)
            << iWrong;
        ++iWrong;
    }
    iWrong = -1;
    EXPECT_EQ(Harness(new EWrong).Initialize(), 1);
}

// Null names: such types are neither created by name nor described.
class ENothing : public Element<ENothing> {
public:
    static constexpr const char* TypeName = nullptr;
    static constexpr const char* Meaning = nullptr;
    static void Declare(Declaration<ENothing>&) {}
};

class QNothing : public DataObject<QNothing> {
public:
    static constexpr const char* TypeName = nullptr;
    static constexpr const char* Meaning = "is never created";
};

TEST(Declared, ClassesAreDescribedAndCreatedByTheirNames) {
    const PluginDescription* const plugin = DescribeTypes<ENothing, EAll, EAll, QNothing>();
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->ppElements[1], nullptr);
    EXPECT_EQ(FindElementDescription(plugin, nullptr), nullptr);
    EXPECT_EQ(FindElementDescription(nullptr, "EAll"), nullptr);
    Harness nothing(new ENothing);
    EXPECT_EQ(nothing.Initialize(), 1);
    EXPECT_EQ(nothing.GetElement()->DataArrived(nullptr, 3), 0);
    EXPECT_EQ(Reported(nothing), "ERROR:  - [No Element Name]: DataArrived(3): no objects are expected\n");
    EXPECT_EQ(EntriesOf(ENothing().m_cProperties), "Standard.EObjectType=");
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
    TypesFactory<ENothing, EAll, QNothing> factory;
    const std::unique_ptr<EObject> element(factory.CreateElement(Text("EAll")));
    EXPECT_EQ(EntriesOf(element->m_cProperties), "Standard.EObjectType=EAll");
    EXPECT_EQ(factory.CreateElement(Text("")), nullptr);
    EXPECT_EQ(factory.CreateElement(nullptr), nullptr);
    EXPECT_EQ(factory.CreateQObject(Text("")), nullptr);
    EXPECT_EQ(TypesFactory<>().CreateElement(Text("EAll")), nullptr);
    EXPECT_EQ(DescribeTypes<>()->ppElements[0], nullptr);
}

} // namespace
