// The unit test of EPlaceholder; its argument is the plugin. It needs no test framework.
#include <fwlib/testing/harness.h>

#include <cstdio>

namespace {

int iFailures = 0;

void Check(bool bHolds, const char* pchWhat) {
    if (!bHolds) {
        std::printf("FAILED: %s\n", pchWhat);
        ++iFailures;
    }
}

void DeliversEveryThirdObject(const char* pchPlugin) {
    VESK::Harness cTest("EPlaceholder", pchPlugin);
    cTest.Set("Every", 3);
    Check(cTest.Initialize() == 1, "the element is initialized");
    for (int i = 1; i <= 7; ++i) {
        Check(cTest.Push({{"Count", i}}) == 1, "the object is accepted");
    }
    Check(cTest.Values("Count") == "3 6", "objects 3 and 6 are delivered");
}

void RefusesZero(const char* pchPlugin) {
    VESK::Harness cTest("EPlaceholder", pchPlugin);
    cTest.Set("Every", 0);
    Check(cTest.Initialize() == 0, "Every = 0 is refused");
    Check(cTest.HasMessage("Every = 0"), "the message names the property");
}

} // namespace

int main(int iArguments, char** ppchArguments) {
    const char* const pchPlugin = iArguments == 2 ? ppchArguments[1] : "";
    DeliversEveryThirdObject(pchPlugin);
    RefusesZero(pchPlugin);
    return iFailures == 0 ? 0 : 1;
}
