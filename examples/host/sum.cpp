// SPDX-License-Identifier: MIT
// A program that embeds the library. Its element adds up the numbers of a producer. Build it against the installed
// library, from the project's root:
//   cmake --install build/release --prefix build/installed
//   cmake -S examples/host -B build/host -DCMAKE_PREFIX_PATH="$PWD/build/installed"
//   cmake --build build/host
//
// Run: build/host/sum
// Output:
//   The numbers 0 to 999 add up to 499500.
#include <fwlib/fwlib.h>

#include <cstdio>
#include <new>

namespace {

char* const Counter = VESK::Text("counter");
char* const Sum = VESK::Text("sum");

// ESum: adds up the property "Count" of every object it receives.
//   sink pads     1
//   source pads   none
class ESum : public VESK::EObject {
public:
    ESum() { m_cProperties.SetProperty(VESK::Key::EObjectType, VESK::Text("ESum"), VESK::Section::Standard); }

    int Initialize() override {
        auto* const pPad = new (std::nothrow) VESK::SINKPAD(this, 0);
        const int iAdded = pPad && AddSinkPad(pPad);
        if (!iAdded) {
            delete pPad;
        }
        return iAdded;
    }

    int DataArrived(VESK::QObject* pObject, VESK::Byte2Type) override {
        int iCount;
        const int iFound =
            pObject->m_cProperties.GetProperty(VESK::Key::Count, &iCount, 0, VESK::Section::Standard);
        m_llTotal += iCount;
        return iFound;
    }

    long long m_llTotal = 0;
};

// Names the element and adds it to the pipeline, which takes ownership. On failure the element is deleted.
int Add(VESK::EPipeline& cPipeline, VESK::EObject* pElement, char* pchName) {
    if (!pElement) {
        return 0;
    }
    pElement->m_pFramework = cPipeline.m_pFramework;
    pElement->m_cProperties.SetProperty(VESK::Key::Name, pchName, VESK::Section::Standard);
    if (!cPipeline.AddElement(pElement)) {
        delete pElement;
        return 0;
    }
    return 1;
}

} // namespace

int main() {
    VESK::FRAMEWORK cFramework; // first, so that it outlives the pipeline
    VESK::EPipeline cPipeline;
    cPipeline.m_pFramework = &cFramework;

    if (!cFramework.AddPlugin(VESK::Text("libfwlib.so"))) { // its factory creates ESource
        return 1;
    }
    auto* const pSum = new (std::nothrow) ESum;
    if (!Add(cPipeline, pSum, Sum) ||
        !Add(cPipeline, cFramework.CreateElement(VESK::Type::ESource), Counter)) {
        return 1;
    }
    cPipeline.Connect(Counter, 0, Sum, 0);
    cPipeline.m_cProperties.SetProperty(VESK::Key::SinkElement, Counter,
                                        VESK::Section::Standard); // the element that runs
    if (!cPipeline.Initialize() || !cPipeline.Run() || cFramework.m_bError) {
        return 1;
    }
    std::printf("The numbers 0 to 999 add up to %lld.\n", pSum->m_llTotal);
    return 0;
}
