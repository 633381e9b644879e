// SPDX-License-Identifier: MIT
// A plugin that serves "ESink", as the library does too, and "Extra" objects. It leaves the number of times
// that its factory was initialized in the framework's property "GoodInitialized".
#include "fwlib/fwlib.h"

namespace {

class GoodSink : public VESK::ESink {
public:
    GoodSink() {
        m_cProperties.SetProperty(VESK::Key::EObjectType, VESK::Text("GoodSink"), VESK::Section::Standard);
    }
};

int iExtra = 0;

class GoodFactory : public VESK::LibraryFactory {
public:
    VESK::EObject* CreateElement(char* pchType) override {
        return VESK::fwstrcmp(pchType, "ESink") == 0 ? new GoodSink : nullptr;
    }
    void* CreateObject(char* pchType) override {
        return VESK::fwstrcmp(pchType, "Extra") == 0 ? &iExtra : nullptr;
    }
    int Initialize(VESK::FRAMEWORK* pFramework) override {
        ++m_iInitialized;
        pFramework->SetProperty(VESK::Text("GoodInitialized"), m_iInitialized, VESK::Section::Standard);
        return 0; // not examined: the plugin counts as loaded
    }

private:
    int m_iInitialized = 0;
};

GoodFactory cFactory;

} // namespace

VESK::Factory* GetFactory() {
    return &cFactory;
}
