// SPDX-License-Identifier: MIT
// Numbers as texts, and the typed access to properties.
#include "fwlib/describe/element.h"
#include "support/support.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>

using namespace VESK;

namespace {

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
    for (const long long value : {65535LL, 65536LL, 0LL, -1LL, 32767LL, 32768LL, -32768LL, -32769LL}) {
        SetValue(object, "i", value);
        unsigned short positive = 1;
        short both = 1;
        EXPECT_EQ(GetValue(object, "i", positive), value >= 0 && value <= 65535) << value;
        EXPECT_EQ(GetValue(object, "i", both), value >= -32768 && value <= 32767) << value;
        EXPECT_EQ(positive == value, value >= 0 && value <= 65535) << value;
        EXPECT_EQ(both == value, value >= -32768 && value <= 32767) << value;
    }
    const char* const null = nullptr;
    EXPECT_EQ(
        SetValue(object, null, 1) + GetValue(object, null, i) + ParseReal(null, &d) + ParseFlag(null, &b), 0);
    EXPECT_EQ(SetValue(object, "t", null) * 10 + GetValue(object, "t", s), 11);
    EXPECT_EQ(s, "");
    std::string keys;
    for (const Entry& entry : Entries(object.m_cProperties)) {
        keys += entry.pchKey;
        SetValue(object, (std::string(entry.pchKey) + "2").c_str(), 1); // is not met
    }
    EXPECT_EQ(keys, "QObjectTypetsbirfl");
    QObject shrinking;
    SetValue(shrinking, "a", 1);
    SetValue(shrinking, "b", 1);
    for (const Entry& entry : Entries(shrinking.m_cProperties)) {
        EXPECT_STREQ(entry.pchKey, "QObjectType");
        shrinking.m_cProperties.Reset();
        SetValue(shrinking, "c", 1); // at the place that was met
    }
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

class EGain : public Element<EGain> {
public:
    static constexpr const char* TypeName = "EGain";
    static void Declare(Declaration<EGain>& declare) {
        declare.Real("Gain", &EGain::gain, 2.5, 0.5, 9.5, nullptr, "");
        declare.Real("Given", &EGain::given, 0, nullptr, "");
    }
    double gain = 0;
    float given = 0;
};
constexpr const char* EGain::TypeName;

// A host may have set a locale whose decimal point is a comma.
TEST(Values, HaveAPointInEveryLocale) {
    const Scratch scratch;
    const std::string source = scratch.Write(
        "comma", "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3;3\nEND LC_NUMERIC\n");
    const int made =
        std::system(("localedef -c -i " + source + " " + source + "_XX >/dev/null 2>&1").c_str());
    setenv("LOCPATH", scratch.Path("").c_str(), 1);
    if (made == -1 || !std::setlocale(LC_ALL, "comma_XX")) {
        GTEST_SKIP() << "localedef makes no locale here";
    }
    unsetenv("LOCPATH");
    EXPECT_EQ(std::to_string(1.5), "1,500000");
    QObject object;
    double d = 0;
    float f = 0;
    EXPECT_EQ(SetValue(object, "d", 1234567.5) + SetValue(object, "f", -0.1F), 2);
    EXPECT_EQ(EntriesOf(object.m_cProperties),
              "Standard.QObjectType=QObject Standard.d=1234567.5 Standard.f=-0.1");
    EXPECT_EQ(GetValue(object, "d", d) + GetValue(object, "f", f), 2);
    EXPECT_EQ(d, 1234567.5);
    EXPECT_EQ(f, -0.1F);
    EXPECT_EQ(ParseReal("1,5", &d) + ParseReal("1.234,5", &d), 0);
    EGain element;
    SetValue(element, "Given", "7.25");
    EXPECT_EQ(element.Initialize(), 1);
    EXPECT_EQ(element.gain + static_cast<double>(element.given), 9.75);
    std::setlocale(LC_ALL, "C");
}

} // namespace
