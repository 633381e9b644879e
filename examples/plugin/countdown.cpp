// SPDX-License-Identifier: MIT
// A plugin with one element. Build it against the installed library, from the project's root:
//   cmake --install build/release --prefix build/installed
//   cmake -S examples/plugin -B build/plugin -DCMAKE_PREFIX_PATH="$PWD/build/installed"
//   cmake --build build/plugin
// The comment in examples/plugin/countdown.pipe contains the command that runs it.
//
// ECountdown: sends one object in each run. The property "Count" of the objects decreases to 1. After that, a run
// returns 0.
//   sink pads     none
//   source pads   1
//   properties    "Start": the first count, 3 if absent; looked up in section "Standard", then in section "ECountdown"
//                 "Debug", 1 or more: prints each count, and at the end the number of objects
#include <fwlib/fwlib.h>

#include <new>

namespace {

namespace Section = VESK::Section;

char* const TypeName = VESK::Text("ECountdown");
char* const StartKey = VESK::Text("Start");
constexpr int DefaultStart = 3;

class ECountdown : public VESK::EObject {
public:
    ECountdown() { m_cProperties.SetProperty(VESK::Key::EObjectType, TypeName, Section::Standard); }

    ~ECountdown() override { Message(1, "%d object%s sent\n", m_iSent, m_iSent == 1 ? "" : "s"); }

    int Initialize() override {
        EObject::Initialize(); // reads the debug level
        if (!m_cProperties.GetProperty(StartKey, &m_iNext, DefaultStart, Section::Standard)) {
            m_cProperties.GetProperty(StartKey, &m_iNext, DefaultStart, TypeName);
        }
        auto* const pPad = new (std::nothrow) VESK::SOURCEPAD(this);
        const int iAdded = pPad && AddSourcePad(pPad);
        if (!iAdded) {
            delete pPad;
        }
        return iAdded;
    }

    int DataArrived(VESK::QObject*, VESK::Byte2Type) override { return 0; } // there is no sink pad

    int Run() override {
        if (m_iNext < 1) {
            return 0;
        }
        Message(1, "%d\n", m_iNext);
        VESK::QObject cObject;
        cObject.m_cProperties.SetProperty(VESK::Key::Count, m_iNext, Section::Standard);
        --m_iNext;
        ++m_iSent;
        return GetSourcePad(0)->Push(&cObject);
    }

private:
    int m_iNext = 0;
    int m_iSent = 0;
};

class CountdownFactory : public VESK::LibraryFactory {
public:
    VESK::EObject* CreateElement(char* pchType) override {
        return VESK::fwstrcmp(pchType, TypeName) == 0 ? new (std::nothrow) ECountdown : nullptr;
    }
};

CountdownFactory cFactory;

} // namespace

VESK::Factory* GetFactory() {
    return &cFactory;
}
