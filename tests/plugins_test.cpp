// SPDX-License-Identifier: MIT
// Plugins, factories, and the messages of the framework.
#include "support/capture.h"
#include "support/support.h"

#include <algorithm>
#include <cstdarg>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <memory>

using namespace VESK;

namespace {

char* const Own = Text("libfwlib.so");
char* const Good = Text(FWLIB_TEST_PLUGINS "/good.so");

bool IsLoaded(const char* path) {
    void* const handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    return handle && dlclose(handle) == 0;
}

TEST(Plugins, WhatCannotBeLoadedIsReportedAndClosedAgain) {
    const Scratch scratch;
    const std::string symbol = "FWPLUGIN: dlsym() Error: ", open = "FWPLUGIN: dlopen() Error: ";
    const std::string thrown = "FRAMEWORK: Error: A plugin's factory threw an exception: ";
    const std::string folder = FWLIB_TEST_PLUGINS, whole = FileText(Good);
    struct Failure {
        std::string path, begin, part; // how the report begins, and what else it holds
    };
    std::vector<Failure> failures = {
        {folder + "/noentry.so", symbol, "undefined symbol: GetFactory"},
        {folder + "/noentry_linked.so", symbol, "undefined symbol: GetFactory"},
        {folder + "/nullfactory.so", "FWPLUGIN: Error: Could not get factory.\n", ""},
        {folder + "/throwing.so", thrown, "/throwing.so\nFWPLUGIN: Error: Could not get factory.\n"},
        {folder + "/otherwidth.so", open, "wrong ELF class"},
        {folder + "/missing.so", open, "missing.so: cannot open shared object file"},
        {scratch.Write("text.so", std::string(9999, 'x')), open, "invalid ELF header"},
        {folder, open, ""},
        {"", open, "empty or longer"},
        {std::string(255, 'x'), open, "cannot open shared object file"},
        {std::string(256, 'x'), open, "longer than 255 characters"}};
    for (const std::size_t size : {0u, 10u, 63u, 500u, 4096u, 5000u, 8192u}) { // less than what is mapped
        failures.push_back(
            {scratch.Write(std::to_string(size) + ".so", whole.substr(0, size)), open, ".so: "});
    }
    FRAMEWORK framework;
    for (const Failure& failure : failures) {
        const std::string &path = failure.path, &begin = failure.begin;
        const std::string told = Told([&] { return framework.AddPlugin(Text(path.c_str())); });
        EXPECT_EQ(told.find("0 ! " + begin), 0u) << told;
        EXPECT_NE(told.find(failure.part), std::string::npos) << told;
        EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), begin == thrown ? 2 : 1) << told;
        EXPECT_FALSE(begin != open && IsLoaded(path.c_str())) << path;
    }
    EXPECT_EQ(Told([&] { return framework.AddPlugin(nullptr); }).find("0 ! "), 0u);
    EXPECT_EQ(framework.m_b2PluginCount + framework.m_b2PluginCapacity + framework.m_bError, 0);
}

TEST(Plugins, OneThatIsLoadedServesWithoutItsFileAndWhenItThrows) {
    const Scratch scratch;
    const std::string copy = scratch.Write("copy.so", FileText(Good));
    FRAMEWORK framework;
    ASSERT_EQ(framework.AddPlugin(Text(copy.c_str())), 1);
    std::filesystem::remove(copy);
    EXPECT_EQ(Told([&] { return framework.CreateObject(Text("Thrown")) != nullptr; }),
              "0 ! FRAMEWORK: Error: A plugin's factory threw an exception: Thrown\n"
              "FRAMEWORK::CreateObject: Could not instantiate: Thrown\n");
    EXPECT_NE(framework.CreateObject(Text("Extra")), nullptr);
}

// Leaves an element of a plugin behind its framework.
void Outlive() {
    auto* const framework = new FRAMEWORK;
    framework->AddPlugin(Good);
    static EObject* const element = framework->CreateElement(Type::ESink);
    delete framework;
    std::_Exit(element ? 0 : 1);
}

TEST(PluginsDeathTest, DebugBuildsEndWhenTheCodeOfALivingElementGoes) {
#ifdef NDEBUG
    EXPECT_EXIT(Outlive(), testing::ExitedWithCode(0), "^$");
#else
    EXPECT_DEATH(Outlive(), "good.so was unloaded before 1 of its objects were destroyed");
#endif
}

TEST(Plugins, TheLibraryServesItsOwnTypes) {
    FRAMEWORK framework;
    EXPECT_EQ(Told([&] { return framework.CreateElement(Type::ETee) != nullptr; }),
              "0 ! FRAMEWORK::CreateElement: Could not instantiate: ETee\n");
    ASSERT_EQ(framework.AddPlugin(Own), 1);
    const std::unique_ptr<EObject> element(framework.CreateElement(Type::ETee));
    ASSERT_NE(dynamic_cast<ETee*>(element.get()), nullptr);
    EXPECT_EQ(element->m_pFramework, &framework);
    const std::unique_ptr<QObject> object(framework.CreateQObject(Type::QObject));
    EXPECT_EQ(Entries(object->m_cProperties), "Standard.QObjectType=QObject");
    EXPECT_EQ(Told([&] {
                  return framework.CreateQObject(Type::ETee) || framework.CreateElement(Type::EPipeline) ||
                         framework.CreateElement(nullptr) || framework.CreateObject(Type::QObject);
              }),
              "0 ! FRAMEWORK::CreateQObject: Could not instantiate: ETee\n"
              "FRAMEWORK::CreateElement: Could not instantiate: EPipeline\n"
              "FRAMEWORK::CreateElement: Could not instantiate: (null)\n"
              "FRAMEWORK::CreateObject: Could not instantiate: QObject\n");
}

TEST(Plugins, TheOneAddedFirstWinsAndAllAreClosed) {
    for (const auto& [first, second] : {std::pair(Own, Good), std::pair(Good, Own)}) {
        FRAMEWORK framework;
        EXPECT_EQ(framework.AddPlugin(first) + framework.AddPlugin(second), 2);
        const std::unique_ptr<EObject> sink(framework.CreateElement(Type::ESink));
        const EObject& made = *sink;
        EXPECT_EQ(typeid(made) == typeid(ESink), first == Own); // the other plugin has its own class
    }
    EXPECT_FALSE(IsLoaded(Good));
    {
        FRAMEWORK framework;
        EXPECT_EQ(framework.AddPlugin(Good) + framework.AddPlugin(Good), 2);
        EXPECT_EQ(Entries(framework), "Standard.GoodInitialized=2"); // once for each addition
        EXPECT_NE(framework.CreateObject(Text("Extra")), nullptr);
        PLUGIN* const plugin = framework.LoadPlugin(Good);
        EXPECT_EQ(plugin->m_pFramework, &framework);
        EXPECT_EQ(plugin->GetFactory(), framework.m_ppPlugins[0]->GetFactory());
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

// Serves one name of each kind, and "both", and writes down what it is asked.
struct LogFactory : LibraryFactory {
    LogFactory(std::string& log, const char* own) : asked(log), name(own) {}
    EObject* CreateElement(char* pchType) override {
        return Serves("E", pchType) ? new Probe(name) : nullptr;
    }
    QObject* CreateQObject(char* pchType) override { return Serves("Q", pchType) ? new QObject : nullptr; }
    void* CreateObject(char* pchType) override { return Serves("O", pchType) ? this : nullptr; }
    int Initialize(FRAMEWORK*) override { return Serves("I", ""); }
    bool Serves(const char* kind, const std::string& type) {
        asked += kind + std::string(name) + " ";
        return type == name || type == "both";
    }
    std::string& asked;
    const char* name;
};

struct FactoryPlugin : PLUGIN {
    FactoryPlugin(Factory* factory, int& counter) : deleted(counter) { m_pFactory = factory; }
    ~FactoryPlugin() override { ++deleted; }
    int Initialize(FRAMEWORK*) override { return 1; }
    int& deleted;
};

TEST(Framework, PluginsAndTheirFactoriesAreAskedInOrder) {
    std::string log;
    LogFactory a(log, "a"), b(log, "b"), c(log, "c");
    Factory* list[] = {&a, &b, nullptr};
    PluginFactory both(list), empty(list + 2), none(nullptr);
    EXPECT_EQ(both.Initialize(nullptr) + empty.Initialize(nullptr) + none.Initialize(nullptr), 3);
    int deleted = 0;
    {
        FRAMEWORK framework;
        framework.m_ppPlugins = static_cast<PLUGIN**>(fwmalloc(16 * sizeof(PLUGIN*)));
        framework.m_b2PluginCapacity = 16;
        for (Factory* factory : std::initializer_list<Factory*>{nullptr, &empty, &none, &both, &c}) {
            framework.m_ppPlugins[framework.m_b2PluginCount++] = new FactoryPlugin(factory, deleted);
        }
        const auto create = [&](const char* type) {
            std::string made;
            const std::string told = Told([&] {
                EObject* const element = framework.CreateElement(Text(type));
                made = element ? Entries(element->m_cProperties) : "-";
                EXPECT_TRUE(!element || element->m_pFramework == &framework);
                delete element;
                delete framework.CreateQObject(Text(type));
                return framework.CreateObject(Text(type)) != nullptr;
            });
            return made + " " + told;
        };
        const std::string missing = "ERROR: PLUGIN::GetFactory(): Factory is NULL!\n";
        EXPECT_EQ(create("both"), "Standard.Name=a 1 ! " + missing + missing + missing);
        EXPECT_EQ(create("c"), "Standard.Name=c 1 ! " + missing + missing + missing);
        EXPECT_EQ(create("%s"), "- 0 ! " + missing + "FRAMEWORK::CreateElement: Could not instantiate: %s\n" +
                                    missing + "FRAMEWORK::CreateQObject: Could not instantiate: %s\n" +
                                    missing + "FRAMEWORK::CreateObject: Could not instantiate: %s\n");
        EXPECT_EQ(log, "Ia Ib Ea Qa Oa Ea Eb Ec Qa Qb Qc Oa Ob Oc Ea Eb Ec Qa Qb Qc Oa Ob Oc ");
        EXPECT_EQ(Told([] { return FRAMEWORK().CreateElement(nullptr) != nullptr; }),
                  "0 ! FRAMEWORK::CreateElement: Could not instantiate: (null)\n");
        auto* component = reinterpret_cast<KESTRAN::IComponent*>(&framework);
        EXPECT_EQ(framework.GetDataRecorderComponentPortal(Text("x"), &component), 1);
        EXPECT_EQ(component, reinterpret_cast<KESTRAN::IComponent*>(&framework));
        EXPECT_EQ(deleted + framework.m_bError, 0);
    }
    EXPECT_EQ(deleted, 5);
}

int Tell(FRAMEWORK& framework, EObject* element, const std::string& as, const char* format, ...) {
    va_list values;
    va_start(values, format);
    as == "error"   ? framework.ErrorMessage(element, format, values)
    : as == "trace" ? framework.Message(element, 99, format, values)
                    : framework.Message(Text(as.c_str()), 99, format, values);
    va_end(values);
    return framework.m_bError;
}

TEST(Framework, LinesCarryTheirOrigin) {
    FRAMEWORK framework;
    Probe probe;
    const auto told = [&](EObject* element, const char* as) {
        return Told([&] { return Tell(framework, element, as, "%d%%\n", 1); });
    };
    EXPECT_EQ(told(nullptr, "trace"), "0 ");
    EXPECT_EQ(told(nullptr, "%s"), "0 %s: 1%\n");
    EXPECT_EQ(told(&probe, "trace"), "0 [No Element Type] - [No Element Name]: 1%\n");
    EXPECT_EQ(told(nullptr, "error"), "1 ! ERROR: [No Element Pointer]: 1%\n");
    Set(probe.m_cProperties, "EObjectType", std::string(40, 'T'));
    Set(probe.m_cProperties, "Name", "%s" + std::string(40, 'N'));
    framework.m_bError = 0;
    EXPECT_EQ(told(&probe, "error"),
              "1 ! ERROR: " + std::string(31, 'T') + " - %s" + std::string(29, 'N') + ": 1%\n");
}

} // namespace
