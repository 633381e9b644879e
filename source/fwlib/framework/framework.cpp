// SPDX-License-Identifier: MIT
#include "fwlib/framework/framework.h"

#include "fwlib/elements/eobject.h"
#include "fwlib/elements/watch.h"
#include "fwlib/framework/factory.h"
#include "fwlib/framework/guarded.h"
#include "fwlib/framework/living.h"
#include "fwlib/framework/plugin.h"
#include "fwlib/framework/say.h"
#include "fwlib/internal/growth.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstdio>
#include <memory>
#include <new>

namespace VESK {

namespace {

const char* Shown(const char* pchText) {
    return pchText ? pchText : "(null)";
}

// Calls the plugins' factories in load order; null when none creates the object.
template <class Object>
Object* FirstAnswer(FRAMEWORK& cFramework, Object* (Factory::*pCreate)(char*), char* pchType) {
    for (Byte4Type b4 = 0; b4 < cFramework.m_b2PluginCount; ++b4) {
        PLUGIN* const pPlugin = cFramework.m_ppPlugins[b4];
        Factory* const pFactory = pPlugin ? pPlugin->GetFactory() : nullptr;
        if (!pFactory) {
            continue;
        }
        Object* const pObject =
            Guarded(&cFramework, Shown(pchType), [&] { return (pFactory->*pCreate)(pchType); });
        if (pObject) {
            return pObject;
        }
    }
    return nullptr;
}

// The beginning of an element's lines: the kind of line, and the element's type and name.
struct Origin {
    Origin(EObject* pElement, const char* pchKind) {
        if (!pElement) {
            std::snprintf(achText, sizeof achText, "%s[No Element Pointer]: ", pchKind);
            return;
        }
        char achType[TypeTextSize];
        char achName[TypeTextSize];
        PROPERTIES& cProperties = pElement->m_cProperties;
        cProperties.GetProperty(Key::EObjectType, achType, sizeof achType, Text("[No Element Type]"),
                                Section::Standard);
        cProperties.GetProperty(Key::Name, achName, sizeof achName, Text("[No Element Name]"),
                                Section::Standard);
        std::snprintf(achText, sizeof achText, "%s%s - %s: ", pchKind, achType, achName);
    }

    char achText[2 * TypeTextSize + 16];
};

bool EndsLines(FRAMEWORK& cFramework) {
    int iEndLines;
    cFramework.GetProperty(Key::EndErrorLines, &iEndLines, 0, Section::Standard);
    return iEndLines != 0;
}

// A factory of the host, in the list of plugins.
class HostFactory final : public PLUGIN {
public:
    explicit HostFactory(Factory* pFactory) { m_pFactory = pFactory; }

    int Initialize(FRAMEWORK* pFramework) override {
        m_pFramework = pFramework;
        Guarded(pFramework, "of the host", [&] { return m_pFactory->Initialize(pFramework); });
        return 1;
    }
};

} // namespace

FRAMEWORK::FRAMEWORK() : m_bError(0), m_b2PluginCapacity(0), m_b2PluginCount(0), m_ppPlugins(nullptr) {
    BeginLife(this);
}

FRAMEWORK::~FRAMEWORK() {
    EndLife(this);
    for (Byte4Type b4 = 0; b4 < m_b2PluginCount; ++b4) {
        delete m_ppPlugins[b4];
    }
    fwfree(m_ppPlugins);
}

EObject* FRAMEWORK::CreateElement(char* pchType) {
    EObject* const pElement = Watched(FirstAnswer(*this, &Factory::CreateElement, pchType));
    if (!pElement) {
        SayError(this, "FRAMEWORK::CreateElement: Could not instantiate: %s\n", Shown(pchType));
        return nullptr;
    }
    pElement->m_pFramework = this;
    return pElement;
}

QObject* FRAMEWORK::CreateQObject(char* pchType) {
    QObject* const pObject = Watched(FirstAnswer(*this, &Factory::CreateQObject, pchType));
    if (!pObject) {
        SayError(this, "FRAMEWORK::CreateQObject: Could not instantiate: %s\n", Shown(pchType));
    }
    return pObject;
}

void* FRAMEWORK::CreateObject(char* pchType) {
    void* const pObject = FirstAnswer(*this, &Factory::CreateObject, pchType);
    if (!pObject) {
        SayError(this, "FRAMEWORK::CreateObject: Could not instantiate: %s\n", Shown(pchType));
    }
    return pObject;
}

void FRAMEWORK::Message(EObject* pElement, int iLevel, const char* pchFormat, va_list Values) {
    if (pElement) {
        Say({this, TraceMessage, 1, pElement, iLevel, Origin(pElement, "").achText, "", false}, pchFormat,
            Values);
    }
}

void FRAMEWORK::Message(char* pchName, int iLevel, const char* pchFormat, va_list Values) {
    if (pchName) {
        Say({this, TraceMessage, 1, nullptr, iLevel, pchName, ": ", false}, pchFormat, Values);
    }
}

void FRAMEWORK::ErrorMessage(EObject* pElement, const char* pchFormat, va_list Values) {
    m_bError = 1;
    Say({this, ErrorMessageKind, 2, pElement, 0, Origin(pElement, "ERROR: ").achText, "", EndsLines(*this)},
        pchFormat, Values);
}

void FRAMEWORK::WarningMessage(EObject* pElement, const char* pchFormat, va_list Values) {
    Say({this, WarningMessageKind, 2, pElement, 0, Origin(pElement, "WARNING: ").achText, "",
         EndsLines(*this)},
        pchFormat, Values);
}

int FRAMEWORK::SetMessageHandler(MessageHandler pHandler, void* pContext) {
    return SetHandler(this, pHandler, pContext);
}

void FRAMEWORK::RequestEnd() {
    if (FrameworkExtras* const pExtras = ExtrasOf(this)) {
        pExtras->iEndRequested = 1;
    }
}

void FRAMEWORK::ResetEnd() {
    if (FrameworkExtras* const pExtras = ExtrasOf(this)) {
        pExtras->iEndRequested = 0;
    }
}

int FRAMEWORK::EndRequested() {
    const FrameworkExtras* const pExtras = ExtrasOf(this);
    return pExtras &&
           (pExtras->iEndRequested || (pExtras->pEndQuery && pExtras->pEndQuery(pExtras->pEndContext)));
}

int FRAMEWORK::SetEndQuery(int (*pQuery)(void* pContext), void* pContext) {
    FrameworkExtras* const pExtras = ExtrasOf(this);
    if (!pExtras) {
        return 0;
    }
    pExtras->pEndQuery = pQuery;
    pExtras->pEndContext = pContext;
    return 1;
}

int FRAMEWORK::AddFactory(Factory* pFactory) {
    std::unique_ptr<PLUGIN> pPlugin(pFactory ? new (std::nothrow) HostFactory(pFactory) : nullptr);
    if (!pPlugin || !Append(m_ppPlugins, m_b2PluginCapacity, m_b2PluginCount, pPlugin.get())) {
        return 0;
    }
    return pPlugin.release()->Initialize(this);
}

PLUGIN* FRAMEWORK::LoadPlugin(char* pchPath) {
    std::unique_ptr<PLUGIN> pPlugin(new (std::nothrow)
                                        FWPLUGIN(pchPath)); // also deleted if Initialize ends the thread
    if (pPlugin && !pPlugin->Initialize(this)) {
        return nullptr;
    }
    return pPlugin.release();
}

int FRAMEWORK::AddPlugin(char* pchPath) {
    PLUGIN* const pPlugin = LoadPlugin(pchPath);
    if (!pPlugin) {
        return 0;
    }
    if (!Append(m_ppPlugins, m_b2PluginCapacity, m_b2PluginCount, pPlugin)) {
        delete pPlugin;
        return 0;
    }
    return 1;
}

int FRAMEWORK::GetDataRecorderComponentPortal(char*, KESTRAN::IComponent**) {
    return 1;
}

} // namespace VESK
