// SPDX-License-Identifier: MIT
// The plugin good.so, of two factories that are asked one after the other. The first makes "ESink", as the library
// does too, and throws for "Thrown" and ends the thread for "Ended"; the second makes "ESink" too, "EWitness", "QGood" and "Extra". An "ESink" tells
// its maker. Each counts in the framework's property of its name how often it was initialized; all throws then when
// the framework has the property "Throw".
// ENTRY: 1 hands the factories out, 2 returns null, 3 throws what only the plugin knows, and 0 is no plugin. The last
// three report when they are closed.
#include "fwlib/fwlib.h"

#include <cstdio>
#include <pthread.h>
#include <string>
#include <unistd.h>

using namespace VESK;

namespace {

// Prints "NAME.OPERATION(NUMBER)" of each call, and returns the property that has the operation's name, 1 when absent,
// or for a number other than 0 its only pad.
class EWitness final : public EObject {
public:
    EWitness() {
        AddSinkPad(new SINKPAD(this, 0));
        AddSourcePad(new SOURCEPAD(this));
    }
    ~EWitness() override { Answer("Destroy"); }
    int Initialize() override { return Answer("Initialize"); }
    int DataArrived(QObject*, Byte2Type) override { return 0; }
    int Run() override { return Answer("Run"); }
    SINKPAD* GetSinkPad(Byte2Type b2) override { return Answer("GetSinkPad", b2) ? *m_ppSinkPads : nullptr; }
    SOURCEPAD* GetSourcePad(Byte2Type b2) override {
        return Answer("GetSourcePad", b2) ? *m_ppSourcePads : nullptr;
    }

private:
    Byte2Type Answer(const char* pchOperation, int iNumber = 0) {
        char achName[16];
        Byte2Type b2Answer;
        m_cProperties.GetProperty(Key::Name, achName, sizeof achName, Text("?"), Section::Standard);
        m_cProperties.GetProperty(Text(pchOperation), &b2Answer, 1, Section::Standard);
        std::printf("%s.%s(%d)\n", achName, pchOperation, iNumber);
        return b2Answer;
    }
};

class GoodFactory : public LibraryFactory {
public:
    explicit GoodFactory(const char* pchName) : m_pchName(Text(pchName)) {}
    EObject* CreateElement(char* pchType) override {
        const std::string type = pchType;
        if (type == "ESink") {
            auto* const pSink = new ESink;
            pSink->m_cProperties.SetProperty(Text("Maker"), m_pchName, Section::Standard);
            return pSink;
        }
        return Makes(type, "EWitness") ? new EWitness : nullptr;
    }
    QObject* CreateQObject(char* pchType) override { return Makes(pchType, "QGood") ? new QObject : nullptr; }
    void* CreateObject(char* pchType) override { return Makes(pchType, "Extra") ? this : nullptr; }
    int Initialize(FRAMEWORK* pFramework) override {
        return pFramework->SetProperty(m_pchName, ++m_iInitialized, Section::Standard);
    }

private:
    bool Makes(const std::string& type, const char* pchServed) const {
        const bool bFirst = m_pchName[0] == 'f';
        if (bFirst && type == "Thrown") {
            throw *this;
        }
        if (bFirst && type == "Ended") {
            pthread_exit(nullptr);
        }
        return !bFirst && type == pchServed;
    }
    char* m_pchName;
    int m_iInitialized = 0;
};

bool bSlow = false;

#if ENTRY == 1 && !defined(ALONE)
// An object of static storage, which takes a while to go when the framework has the property "Slow".
struct Lasting {
    ~Lasting() { bSlow ? usleep(100000) : 0; }
    QObject cObject;
} cLasting;
#endif

class GoodFactories : public PluginFactory {
public:
    GoodFactories() : PluginFactory(m_apFactories) {}
    int Initialize(FRAMEWORK* pFramework) override {
        int iThrow;
        if (pFramework->GetProperty(Text("Throw"), &iThrow, 0, Section::Standard)) {
            throw m_cFirst;
        }
        bSlow = pFramework->GetProperty(Text("Slow"), &iThrow, 0, Section::Standard);
        return PluginFactory::Initialize(pFramework) - 1; // not examined: the plugin counts as loaded
    }

private:
    GoodFactory m_cFirst{"first"}, m_cSecond{"second"};
    Factory* m_apFactories[3] = {&m_cFirst, &m_cSecond, nullptr};
};

GoodFactories cFactories;

#if ENTRY != 1
struct Closing {
    ~Closing() { std::fprintf(stderr, "The plugin is closed.\n"); }
} cClosing;
#endif

} // namespace

#if ENTRY == 0
extern "C" FWLIB_EXPORT Factory* NotTheEntry() {
    return &cFactories;
}
#else
Factory* GetFactory() {
    if (ENTRY == 3) {
        throw cFactories;
    }
    return ENTRY == 1 ? &cFactories : nullptr;
}
#endif
