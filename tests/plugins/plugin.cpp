// SPDX-License-Identifier: MIT
// A plugin that serves "ESink", as the library does too, and "Extra" objects, and throws for "Thrown". It leaves the
// number of times that its factory was initialized in the framework's property "GoodInitialized".
// ENTRY: 1 hands the factory out, 2 answers null, 3 throws what only the plugin knows, and 0 is no plugin.
#include "fwlib/fwlib.h"

namespace {

class GoodSink : public VESK::ESink {};

class GoodFactory : public VESK::LibraryFactory {
public:
    VESK::EObject* CreateElement(char* pchType) override {
        return VESK::fwstrcmp(pchType, "ESink") == 0 ? new GoodSink : nullptr;
    }
    void* CreateObject(char* pchType) override {
        if (VESK::fwstrcmp(pchType, "Thrown") == 0) {
            throw *this;
        }
        return VESK::fwstrcmp(pchType, "Extra") == 0 ? &m_iInitialized : nullptr;
    }
    int Initialize(VESK::FRAMEWORK* pFramework) override {
        ++m_iInitialized;
        pFramework->SetProperty(VESK::Text("GoodInitialized"), m_iInitialized, VESK::Section::Standard);
        return 0; // not examined: the plugin counts as loaded
    }
    int m_iInitialized = 0;
};

GoodFactory cFactory;

} // namespace

#if ENTRY == 0
extern "C" FWLIB_EXPORT VESK::Factory* NotTheEntry() {
    return &cFactory;
}
#else
VESK::Factory* GetFactory() {
    if (ENTRY == 3) {
        throw cFactory;
    }
    return ENTRY == 1 ? &cFactory : nullptr;
}
#endif
