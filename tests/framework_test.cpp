// SPDX-License-Identifier: MIT
#include "support/capture.h"
#include "support/support.h"

#include <cstdarg>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

// Serves one name of each kind and writes down what it is asked.
class LogFactory : public LibraryFactory {
public:
    LogFactory(std::string& log, const char* name) : m_strLog(log), m_pchName(name) {}
    EObject* CreateElement(char* pchType) override {
        return Asked("E", pchType) ? new Probe(m_pchName) : nullptr;
    }
    QObject* CreateQObject(char* pchType) override { return Asked("Q", pchType) ? new QObject : nullptr; }
    void* CreateObject(char* pchType) override { return Asked("O", pchType) ? this : nullptr; }
    int Initialize(FRAMEWORK*) override {
        m_strLog += std::string("I") + m_pchName + " ";
        return 0;
    }

private:
    bool Asked(const char* kind, const char* type) {
        m_strLog += kind + std::string(m_pchName) + " ";
        return std::string(type) == m_pchName || std::string(type) == "both";
    }

    std::string& m_strLog;
    const char* m_pchName;
};

class FactoryPlugin : public PLUGIN {
public:
    explicit FactoryPlugin(Factory* factory, int* deleted = nullptr) : m_piDeleted(deleted) {
        m_pFactory = factory;
    }
    ~FactoryPlugin() override {
        if (m_piDeleted) {
            ++*m_piDeleted;
        }
    }
    int Initialize(FRAMEWORK*) override { return 1; }

private:
    int* m_piDeleted;
};

void Own(FRAMEWORK& framework, std::initializer_list<PLUGIN*> plugins) {
    framework.m_ppPlugins = static_cast<PLUGIN**>(fwmalloc(16 * sizeof(PLUGIN*)));
    framework.m_b2PluginCapacity = 16;
    for (PLUGIN* plugin : plugins) {
        framework.m_ppPlugins[framework.m_b2PluginCount++] = plugin;
    }
}

// An element's name, deleting the element.
std::string Taken(EObject* element) {
    const std::string entries = element ? Entries(element->m_cProperties) : "null";
    delete element;
    return entries;
}

TEST(Framework, WithoutPluginsNothingCanBeCreated) {
    FRAMEWORK framework;
    EXPECT_EQ(Captured([&] {
                  EXPECT_EQ(framework.CreateElement(Type::ETee), nullptr);
                  EXPECT_EQ(framework.CreateQObject(Text("%s")), nullptr);
                  EXPECT_EQ(framework.CreateObject(Text("")), nullptr);
              }),
              (Output{"", "FRAMEWORK::CreateElement: Could not instantiate: ETee\n"
                          "FRAMEWORK::CreateQObject: Could not instantiate: %s\n"
                          "FRAMEWORK::CreateObject: Could not instantiate: \n"}));
    EXPECT_EQ(framework.m_bError, 0);
    auto* const marker = reinterpret_cast<KESTRAN::IComponent*>(&framework);
    KESTRAN::IComponent* component = marker;
    EXPECT_EQ(framework.GetDataRecorderComponentPortal(Text("x"), &component), 1);
    EXPECT_EQ(component, marker);
}

TEST(Framework, PluginsAreAskedInOrderAndDeletedOnce) {
    std::string log;
    LogFactory first(log, "a"), second(log, "b");
    int deleted = 0;
    {
        FRAMEWORK framework;
        Own(framework, {new FactoryPlugin(nullptr, &deleted), new FactoryPlugin(&first, &deleted),
                        new FactoryPlugin(&second, &deleted)});
        const char* const missing = "ERROR: PLUGIN::GetFactory(): Factory is NULL!\n";
        EXPECT_EQ(Captured([&] {
                      EObject* const element = framework.CreateElement(Text("both"));
                      EXPECT_EQ(element->m_pFramework, &framework);
                      EXPECT_EQ(Taken(element), "Standard.Name=a");
                      EXPECT_EQ(Taken(framework.CreateElement(Text("b"))), "Standard.Name=b");
                      delete framework.CreateQObject(Text("b"));
                      EXPECT_EQ(framework.CreateObject(Text("a")), &first);
                      EXPECT_EQ(framework.CreateObject(Text("c")), nullptr);
                  }).err,
                  std::string(missing) + missing + missing + missing + missing +
                      "FRAMEWORK::CreateObject: Could not instantiate: c\n");
        EXPECT_EQ(log, "Ea Ea Eb Qa Qb Oa Oa Ob ");
        EXPECT_EQ(deleted, 0);
    }
    EXPECT_EQ(deleted, 3);
}

TEST(Framework, APluginFactoryStandsForItsList) {
    std::string log;
    LogFactory first(log, "a"), second(log, "b");
    Factory* list[] = {&first, &second, nullptr};
    PluginFactory both(list), empty(list + 2), none(nullptr);
    EXPECT_EQ(both.Initialize(nullptr), 1);
    EXPECT_EQ(Taken(both.CreateElement(Text("b"))), "Standard.Name=b");
    delete both.CreateQObject(Text("both"));
    EXPECT_EQ(both.CreateObject(Text("c")), nullptr);
    EXPECT_EQ(log, "Ia Ib Ea Eb Qa Oa Ob ");
    for (PluginFactory* factory : {&empty, &none}) {
        EXPECT_EQ(factory->CreateElement(Text("a")), nullptr);
        EXPECT_EQ(factory->CreateQObject(Text("a")), nullptr);
        EXPECT_EQ(factory->CreateObject(Text("a")), nullptr);
        EXPECT_EQ(factory->Initialize(nullptr), 1);
    }
}

template <class Source>
void Trace(FRAMEWORK& framework, Source source, const char* format, ...) {
    va_list values;
    va_start(values, format);
    framework.Message(source, 99, format, values);
    va_end(values);
}

void Fail(FRAMEWORK& framework, EObject* element, const char* format, ...) {
    va_list values;
    va_start(values, format);
    framework.ErrorMessage(element, format, values);
    va_end(values);
}

TEST(Framework, LinesCarryTheirOrigin) {
    FRAMEWORK framework;
    Probe element;
    EObject* const nobody = nullptr;
    char* const noName = nullptr;
    EXPECT_EQ(Captured([&] {
                  Trace(framework, nobody, "nothing %d\n", 1);
                  Trace(framework, noName, "nothing %d\n", 1);
                  Trace<EObject*>(framework, &element, "%d\n", 1);
                  Set(element.m_cProperties, "EObjectType", "ETee");
                  Trace<EObject*>(framework, &element, "%s", "two\n");
                  Set(element.m_cProperties, "EObjectType", std::string(40, 'T'));
                  Set(element.m_cProperties, "Name", "0123456789012345678901234567890%s");
                  Trace<EObject*>(framework, &element, "3\n");
                  Trace(framework, Text("A name that is longer than 32 characters, whole"), "4%%\n");
              }),
              (Output{"[No Element Type] - [No Element Name]: 1\nETee - [No Element Name]: two\n" +
                          std::string(31, 'T') + " - 0123456789012345678901234567890: 3\n" +
                          "A name that is longer than 32 characters, whole: 4%\n",
                      ""}));
    EXPECT_EQ(framework.m_bError, 0);
    EXPECT_EQ(Captured([&] {
                  Fail(framework, nullptr, "%c\n", 'x');
                  Fail(framework, &element, "y\n");
              }),
              (Output{"", "ERROR: [No Element Pointer]: x\nERROR: " + std::string(31, 'T') +
                              " - 0123456789012345678901234567890: y\n"}));
    EXPECT_EQ(framework.m_bError, 1);
}

} // namespace
