// SPDX-License-Identifier: MIT
#include "support/capture.h"
#include "support/support.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

char* const Own = Text("libfwlib.so");
char* const Good = Text(FWLIB_TEST_PLUGINS "/good.so");

bool IsLoaded(const char* path) {
    void* const handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    return handle && dlclose(handle) == 0;
}

TEST(Plugins, WhatCannotBeLoadedIsReportedAndClosedAgain) {
    const std::string symbol = "dlsym() Error: ", open = "dlopen() Error: ", folder = FWLIB_TEST_PLUGINS;
    const struct {
        std::string path, begin, part; // how the report begins, and what else it holds
    } failures[] = {
        {folder + "/nofactory.so", symbol, "undefined symbol: GetFactory"},
        {folder + "/nofactory_linked.so", symbol, "undefined symbol: GetFactory"},
        {folder + "/nullfactory.so", "Error: Could not get factory.\n", ""},
        {folder + "/missing.so", open, "missing.so: cannot open shared object file"},
        {folder, open, ""},
        {"", open, "empty or longer"},
        {std::string(255, 'x'), open, "cannot open shared object file"},
        {std::string(256, 'x'), open, "longer than 255 characters"},
        {std::string(5000, 'x'), open, "longer than 255 characters"},
    };
    FRAMEWORK framework;
    for (const auto& failure : failures) {
        const std::string told = Told([&] { return framework.AddPlugin(Text(failure.path.c_str())); });
        EXPECT_EQ(told.find("0 ! FWPLUGIN: " + failure.begin), 0u) << told;
        EXPECT_NE(told.find(failure.part), std::string::npos) << told;
        EXPECT_EQ(told.find('\n'), told.size() - 1) << told;
        EXPECT_FALSE(!failure.path.empty() && IsLoaded(failure.path.c_str())) << failure.path;
    }
    EXPECT_EQ(Told([&] { return framework.AddPlugin(nullptr); }).find("0 ! "), 0u);
    EXPECT_EQ(framework.m_b2PluginCount + framework.m_b2PluginCapacity + framework.m_bError, 0);
}

TEST(Plugins, TheLibraryServesItsOwnTypes) {
    FRAMEWORK framework;
    EXPECT_EQ(Told([&] { return framework.CreateElement(Type::ETee) != nullptr; }),
              "0 ! FRAMEWORK::CreateElement: Could not instantiate: ETee\n");
    ASSERT_EQ(framework.AddPlugin(Own), 1);
    EObject* const element = framework.CreateElement(Type::ETee);
    ASSERT_NE(dynamic_cast<ETee*>(element), nullptr);
    EXPECT_EQ(element->m_pFramework, &framework);
    delete element;
    QObject* const object = framework.CreateQObject(Type::QObject);
    EXPECT_EQ(Entries(object->m_cProperties), "Standard.QObjectType=QObject");
    delete object;
    EXPECT_EQ(Told([&] {
                  return framework.CreateQObject(Type::ETee) || framework.CreateElement(Type::EPipeline) ||
                         framework.CreateElement(nullptr) || framework.CreateObject(Type::QObject);
              }),
              "0 ! FRAMEWORK::CreateQObject: Could not instantiate: ETee\n"
              "FRAMEWORK::CreateElement: Could not instantiate: EPipeline\n"
              "FRAMEWORK::CreateElement: Could not instantiate: (null)\n"
              "FRAMEWORK::CreateObject: Could not instantiate: QObject\n");
}

// The properties of the "ESink" that a framework creates after adding the plugins in order.
std::string SinkOf(std::initializer_list<char*> paths) {
    FRAMEWORK framework;
    for (char* path : paths) {
        framework.AddPlugin(path);
    }
    EObject* const element = framework.CreateElement(Type::ESink);
    const std::string entries = Entries(element->m_cProperties);
    delete element;
    return entries;
}

TEST(Plugins, TheOneAddedFirstWinsAndAllAreClosed) {
    EXPECT_EQ(SinkOf({Own, Good}), "Standard.EObjectType=ESink");
    EXPECT_EQ(SinkOf({Good, Own}), "Standard.EObjectType=GoodSink");
    EXPECT_FALSE(IsLoaded(Good));
    {
        FRAMEWORK framework;
        EXPECT_EQ(framework.AddPlugin(Good) + framework.AddPlugin(Good), 2);
        EXPECT_EQ(Entries(framework), "Standard.GoodInitialized=2"); // once for each addition
        EXPECT_NE(framework.CreateObject(Text("Extra")), nullptr);
        PLUGIN* const plugin = framework.LoadPlugin(Good);
        EXPECT_EQ(plugin->m_pFramework, &framework);
        EXPECT_EQ(plugin->GetFactory(), framework.m_ppPlugins[0]->GetFactory());
        EXPECT_STREQ(static_cast<FWPLUGIN*>(plugin)->m_achPath, Good);
        EXPECT_EQ(framework.m_b2PluginCount, 2);
        delete plugin;
        EXPECT_TRUE(IsLoaded(Good));
    }
    EXPECT_FALSE(IsLoaded(Good));
}

TEST(Plugins, TheTableGrowsInOrderUpToItsLimit) {
    FRAMEWORK framework;
    for (int i = 0; i < 17; ++i) {
        EXPECT_EQ(framework.AddPlugin(i % 2 ? Own : Good), 1);
        EXPECT_EQ(framework.m_b2PluginCapacity, i < 16 ? 16 : 32);
    }
    for (int i = 0; i < 17; ++i) {
        EXPECT_EQ(framework.m_ppPlugins[i]->m_pFactory, framework.m_ppPlugins[i % 2]->m_pFactory) << i;
    }
    EXPECT_NE(framework.m_ppPlugins[0]->m_pFactory, framework.m_ppPlugins[1]->m_pFactory);
    FRAMEWORK full; // its slots hold no plugin, because loading so many takes long
    full.m_ppPlugins = static_cast<PLUGIN**>(fwmalloc(65520 * sizeof(PLUGIN*)));
    fwmemset(full.m_ppPlugins, 0, static_cast<int>(65520 * sizeof(PLUGIN*)));
    full.m_b2PluginCapacity = 65520;
    full.m_b2PluginCount = 65519;
    EXPECT_EQ(full.AddPlugin(Own), 1);
    EXPECT_EQ(full.AddPlugin(Good), 0);
    EXPECT_EQ(full.m_b2PluginCount, 65520);
}

} // namespace
