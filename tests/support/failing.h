// SPDX-License-Identifier: MIT
// Lets the n-th allocation of a piece of code fail, for every n. alloc_test.cpp has the allocators that ask.
#ifndef FWLIB_TESTS_SUPPORT_FAILING_H
#define FWLIB_TESTS_SUPPORT_FAILING_H

#include "support/support.h"

#include <gtest/gtest.h>

inline int iNth = 0;          // the allocation of this round that fails
inline bool bLasting = false; // all later ones fail too
inline bool bFailed = false;
inline int iUntilFailure = 0; // 0 while nothing is to fail

// Runs the act of a scenario with the round's failure.
template <class Act>
auto Armed(Act act) {
    iUntilFailure = iNth;
    const auto answer = act();
    iUntilFailure = 0;
    return answer;
}

// Runs the scenario until its act makes fewer than n allocations, which must be more than the least, else it
// would test nothing.
template <class Scenario>
void FailEach(int least, Scenario scenario) {
    for (const bool lasting : {false, true}) {
        bLasting = lasting;
        iNth = 0;
        do {
            bFailed = false;
            ++iNth;
            SCOPED_TRACE(testing::Message() << (lasting ? "from allocation " : "at allocation ") << iNth);
            scenario();
            ASSERT_LT(iNth, 2000); // a run of an ESource makes more than a thousand
        } while (bFailed);
        EXPECT_GT(iNth, least);
    }
}

// The built-in types without a shared object, so that every allocation is seen.
class OwnTypes : public VESK::PLUGIN {
public:
    OwnTypes() { m_pFactory = ::GetFactory(); }
    int Initialize(VESK::FRAMEWORK*) override { return 1; }
};

// A framework with these types; its tables are there.
struct OwnFramework : VESK::FRAMEWORK {
    OwnFramework() {
        m_ppPlugins = static_cast<VESK::PLUGIN**>(VESK::fwmalloc(16 * sizeof(VESK::PLUGIN*)));
        m_b2PluginCapacity = 16;
        m_ppPlugins[m_b2PluginCount++] = new OwnTypes;
    }
};

#endif
