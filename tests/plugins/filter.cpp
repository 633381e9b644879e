// SPDX-License-Identifier: MIT
// EFilter of examples/csv/csv.cpp, written directly on EObject.
#include "fwlib/fwlib.h"

#include <new>
#include <string>

using namespace VESK;

namespace {

class EFilter : public EObject {
public:
    EFilter() { m_cProperties.SetProperty(Key::EObjectType, Text("EFilter"), Section::Standard); }

    int Initialize() override {
        if (!EObject::Initialize()) {
            return 0;
        }
        const char* const pchKey = FindValue(m_cProperties, "Key");
        if (!pchKey) {
            ErrorMessage("Initialize(): Key is not set\n");
            return 0;
        }
        m_strKey = pchKey;
        const char* const pchMinimum = FindValue(m_cProperties, "Minimum");
        if (pchMinimum && !ParseReal(pchMinimum, &m_dMinimum)) {
            return 0;
        }
        auto* const pSink = new (std::nothrow) SINKPAD(this, 0);
        if (!pSink || !AddSinkPad(pSink)) {
            delete pSink;
            return 0;
        }
        auto* const pSource = new (std::nothrow) SOURCEPAD(this);
        if (!pSource || !AddSourcePad(pSource)) {
            delete pSource;
            return 0;
        }
        return 1;
    }

    int DataArrived(QObject* pObject, Byte2Type) override {
        const char* const pchValue = FindValue(pObject->m_cProperties, m_strKey.c_str());
        double dValue;
        if (pchValue && ParseReal(pchValue, &dValue) && dValue < m_dMinimum) {
            return 1;
        }
        return GetSourcePad(0)->Push(pObject);
    }

private:
    std::string m_strKey;
    double m_dMinimum = 0;
};

class FilterFactory : public LibraryFactory {
public:
    EObject* CreateElement(char* pchType) override {
        return fwstrcmp(pchType, "EFilter") == 0 ? new (std::nothrow) EFilter : nullptr;
    }
};

FilterFactory cFactory;

} // namespace

Factory* GetFactory() {
    return &cFactory;
}
