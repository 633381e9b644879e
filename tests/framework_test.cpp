// SPDX-License-Identifier: MIT
#include "support/capture.h"
#include "support/support.h"

#include <cstdarg>
#include <gtest/gtest.h>

using namespace VESK;

namespace {

// Serves one name of each kind, and "both", and writes down what it is asked.
class LogFactory : public LibraryFactory {
public:
    LogFactory(std::string& log, const char* name) : m_strLog(log), m_pchName(name) {}
    EObject* CreateElement(char* pchType) override {
        return Asked("E", pchType) ? new Probe(m_pchName) : nullptr;
    }
    QObject* CreateQObject(char* pchType) override { return Asked("Q", pchType) ? new QObject : nullptr; }
    void* CreateObject(char* pchType) override { return Asked("O", pchType) ? this : nullptr; }
    int Initialize(FRAMEWORK*) override { return Asked("I", ""); }

private:
    bool Asked(const char* kind, const std::string& type) {
        m_strLog += kind + std::string(m_pchName) + " ";
        return type == m_pchName || type == "both";
    }

    std::string& m_strLog;
    const char* m_pchName;
};

class FactoryPlugin : public PLUGIN {
public:
    FactoryPlugin(Factory* factory, int& deleted) : m_iDeleted(deleted) { m_pFactory = factory; }
    ~FactoryPlugin() override { ++m_iDeleted; }
    int Initialize(FRAMEWORK*) override { return 1; }

private:
    int& m_iDeleted;
};

// The properties of an element, which is deleted.
std::string Taken(EObject* element) {
    const std::string entries = element ? Entries(element->m_cProperties) : "null";
    delete element;
    return entries;
}

TEST(Framework, PluginsAreAskedInOrderAndDeletedOnce) {
    std::string log;
    LogFactory first(log, "a"), second(log, "b");
    int deleted = 0;
    {
        FRAMEWORK framework;
        framework.m_ppPlugins = static_cast<PLUGIN**>(fwmalloc(16 * sizeof(PLUGIN*)));
        framework.m_b2PluginCapacity = 16;
        for (Factory* factory : {static_cast<Factory*>(nullptr), static_cast<Factory*>(&first),
                                 static_cast<Factory*>(&second)}) {
            framework.m_ppPlugins[framework.m_b2PluginCount++] = new FactoryPlugin(factory, deleted);
        }
        const std::string missing = "1 ! ERROR: PLUGIN::GetFactory(): Factory is NULL!\n";
        EObject* element = nullptr;
        EXPECT_EQ(Told([&] { return (element = framework.CreateElement(Text("both"))) != nullptr; }),
                  missing);
        EXPECT_EQ(element->m_pFramework, &framework);
        EXPECT_EQ(Taken(element), "Standard.Name=a");
        EXPECT_EQ(Told([&] { return Taken(framework.CreateElement(Text("b"))) == "Standard.Name=b"; }),
                  missing);
        EXPECT_EQ(Told([&] { return delete framework.CreateQObject(Text("b")), 1; }), missing);
        EXPECT_EQ(Told([&] { return framework.CreateObject(Text("a")) == &first; }), missing);
        EXPECT_EQ(Told([&] { return !framework.CreateObject(Text("%s")); }),
                  missing + "FRAMEWORK::CreateObject: Could not instantiate: %s\n");
        EXPECT_EQ(log, "Ea Ea Eb Qa Qb Oa Oa Ob ");
        EXPECT_EQ(deleted + framework.m_bError, 0);
        auto* component = reinterpret_cast<KESTRAN::IComponent*>(&framework);
        EXPECT_EQ(framework.GetDataRecorderComponentPortal(Text("x"), &component), 1);
        EXPECT_EQ(component, reinterpret_cast<KESTRAN::IComponent*>(&framework));
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
        EXPECT_FALSE(factory->CreateElement(Text("a")) || factory->CreateQObject(Text("a")) ||
                     factory->CreateObject(Text("a")));
        EXPECT_EQ(factory->Initialize(nullptr), 1);
    }
}

template <class Source>
int Trace(FRAMEWORK& framework, Source source, const char* format, ...) {
    va_list values;
    va_start(values, format);
    framework.Message(source, 99, format, values);
    va_end(values);
    return framework.m_bError;
}

int Fail(FRAMEWORK& framework, EObject* element, const char* format, ...) {
    va_list values;
    va_start(values, format);
    framework.ErrorMessage(element, format, values);
    va_end(values);
    return framework.m_bError;
}

TEST(Framework, LinesCarryTheirOrigin) {
    FRAMEWORK framework;
    Probe probe;
    EObject* const element = &probe;
    const std::string longType(40, 'T'), longName = "0123456789012345678901234567890%s";
    const std::string origin = longType.substr(9) + " - " + longName.substr(0, 31) + ": ";
    EXPECT_EQ(Told([&] { return Trace<EObject*>(framework, nullptr, "nothing\n"); }), "0 ");
    EXPECT_EQ(Told([&] { return Trace<char*>(framework, nullptr, "nothing\n"); }), "0 ");
    EXPECT_EQ(Told([&] { return Trace(framework, Text(longType.c_str()), "4%%\n"); }),
              "0 " + longType + ": 4%\n");
    EXPECT_EQ(Told([&] { return Trace(framework, element, "%d\n", 1); }),
              "0 [No Element Type] - [No Element Name]: 1\n");
    Set(probe.m_cProperties, "EObjectType", longType);
    Set(probe.m_cProperties, "Name", longName);
    EXPECT_EQ(Told([&] { return Trace(framework, element, "%s", "two\n"); }), "0 " + origin + "two\n");
    EXPECT_EQ(Told([&] { return Fail(framework, nullptr, "%c\n", 'x'); }),
              "1 ! ERROR: [No Element Pointer]: x\n");
    framework.m_bError = 0;
    EXPECT_EQ(Told([&] { return Fail(framework, element, "y\n"); }), "1 ! ERROR: " + origin + "y\n");
}

} // namespace
