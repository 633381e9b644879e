// SPDX-License-Identifier: MIT
#include "fwlib/framework/framework.h"

#include "fwlib/elements/eobject.h"
#include "fwlib/elements/watch.h"
#include "fwlib/framework/factory.h"
#include "fwlib/framework/guarded.h"
#include "fwlib/framework/living.h"
#include "fwlib/framework/plugin.h"
#include "fwlib/internal/growth.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

namespace VESK {

namespace {

const char* Shown(const char* pchText) {
    return pchText ? pchText : "(null)";
}

// Calls the plugins' factories in load order; null when none creates the object.
template <class Object>
Object* FirstAnswer(const FRAMEWORK& cFramework, Object* (Factory::*pCreate)(char*), char* pchType) {
    for (Byte4Type b4 = 0; b4 < cFramework.m_b2PluginCount; ++b4) {
        PLUGIN* const pPlugin = cFramework.m_ppPlugins[b4];
        Factory* const pFactory = pPlugin ? pPlugin->GetFactory() : nullptr;
        if (!pFactory) {
            continue;
        }
        Object* const pObject = Guarded(Shown(pchType), [&] { return (pFactory->*pCreate)(pchType); });
        if (pObject) {
            return pObject;
        }
    }
    return nullptr;
}

// The type and name at the beginning of an element's lines.
struct Origin {
    explicit Origin(EObject& cElement) {
        PROPERTIES& cProperties = cElement.m_cProperties;
        cProperties.GetProperty(Key::EObjectType, achType, sizeof achType, Text("[No Element Type]"),
                                Section::Standard);
        cProperties.GetProperty(Key::Name, achName, sizeof achName, Text("[No Element Name]"),
                                Section::Standard);
    }

    char achType[TypeTextSize];
    char achName[TypeTextSize];
};

// Whether the formatted text ends with a newline; false when there is not enough memory.
FWLIB_PRINTF(1, 0) bool EndsLine(const char* pchFormat, va_list Values) {
    va_list Again;
    va_copy(Again, Values);
    const auto uLength = static_cast<std::size_t>(std::max(std::vsnprintf(nullptr, 0, pchFormat, Values), 0));
    char* const pchText = uLength > 0 ? static_cast<char*>(std::malloc(uLength + 1)) : nullptr;
    bool bEnds = false;
    if (pchText) {
        std::vsnprintf(pchText, uLength + 1, pchFormat, Again);
        bEnds = pchText[uLength - 1] == '\n';
        std::free(pchText);
    }
    va_end(Again);
    return bEnds;
}

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
        std::fprintf(stderr, "FRAMEWORK::CreateElement: Could not instantiate: %s\n", Shown(pchType));
        return nullptr;
    }
    pElement->m_pFramework = this;
    return pElement;
}

QObject* FRAMEWORK::CreateQObject(char* pchType) {
    QObject* const pObject = Watched(FirstAnswer(*this, &Factory::CreateQObject, pchType));
    if (!pObject) {
        std::fprintf(stderr, "FRAMEWORK::CreateQObject: Could not instantiate: %s\n", Shown(pchType));
    }
    return pObject;
}

void* FRAMEWORK::CreateObject(char* pchType) {
    void* const pObject = FirstAnswer(*this, &Factory::CreateObject, pchType);
    if (!pObject) {
        std::fprintf(stderr, "FRAMEWORK::CreateObject: Could not instantiate: %s\n", Shown(pchType));
    }
    return pObject;
}

void FRAMEWORK::Message(EObject* pElement, int, const char* pchFormat, va_list Values) {
    if (!pElement) {
        return;
    }
    const Origin cOrigin(*pElement);
    std::printf("%s - %s: ", cOrigin.achType, cOrigin.achName);
    std::vprintf(pchFormat, Values);
}

void FRAMEWORK::Message(char* pchName, int, const char* pchFormat, va_list Values) {
    if (!pchName) {
        return;
    }
    std::printf("%s: ", pchName);
    std::vprintf(pchFormat, Values);
}

void FRAMEWORK::ErrorMessage(EObject* pElement, const char* pchFormat, va_list Values) {
    m_bError = 1;
    if (pElement) {
        const Origin cOrigin(*pElement);
        std::fprintf(stderr, "ERROR: %s - %s: ", cOrigin.achType, cOrigin.achName);
    } else {
        std::fprintf(stderr, "ERROR: [No Element Pointer]: ");
    }
    int iEndLines;
    GetProperty(Key::EndErrorLines, &iEndLines, 0, Section::Standard);
    va_list Again;
    va_copy(Again, Values);
    std::vfprintf(stderr, pchFormat, Values);
    if (iEndLines && !EndsLine(pchFormat, Again)) {
        std::fputc('\n', stderr);
    }
    va_end(Again);
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
