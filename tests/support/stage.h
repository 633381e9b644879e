// SPDX-License-Identifier: MIT
// A serializing element that is ready to use, for the tests of recordings and replays.
#ifndef FWLIB_TESTS_SUPPORT_STAGE_H
#define FWLIB_TESTS_SUPPORT_STAGE_H

#include "support/support.h"

#include <gtest/gtest.h>

inline const char* const BothWays[] = {"0", "1"}; // of "Strict"
inline const std::string Object = "QObject\nm_b2PropertyCount=1\nQObjectType=QObject\n";

// An element with a file of its own or, without a name, a standard stream, under a framework.
template <class Element>
struct Deck {
    explicit Deck(const std::string& file, const char* strict) {
        framework.AddPlugin(VESK::Text("libfwlib.so"));
        element.m_pFramework = &framework;
        Set(element.m_cProperties, "Name", "tap");
        Set(element.m_cProperties, "Strict", strict);
        file.empty() ? 0 : Set(element.m_cProperties, "Filename", file);
        EXPECT_EQ(element.Initialize(), 1);
    }
    VESK::FRAMEWORK framework;
    Element element;
};

#endif
