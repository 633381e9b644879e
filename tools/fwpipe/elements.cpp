// SPDX-License-Identifier: MIT
#include "elements.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cstring>

namespace FwPipe {

namespace {

// Positions in an element's table of virtual operations; the two destructors come first.
enum Slot { InitializeSlot = 2, DataArrivedSlot = 3, RunSlot = 4 };

using Table = const void* const*;

Table TableOf(const VESK::EObject& cElement) {
    Table pTable;
    std::memcpy(&pTable, static_cast<const void*>(&cElement), sizeof pTable);
    return pTable;
}

// Whether the element has one of two operations of the class. Their bodies must differ from those of other classes, as
// an optimizing linker may merge equal ones.
template <class Class>
bool Has(const VESK::EObject* pElement, Slot First, Slot Second) {
    static const Table pClass = TableOf(Class());
    const Table pTable = pElement ? TableOf(*pElement) : nullptr;
    return pTable && (pTable[First] == pClass[First] || pTable[Second] == pClass[Second]);
}

// An empty text for an element without a name, and for null.
std::string Name(VESK::EObject* pElement) {
    const char* const pchName = pElement ? Setting(*pElement, VESK::Key::Name) : nullptr;
    return pchName ? pchName : "";
}

} // namespace

VESK::EDeserialize* AsReplay(VESK::EObject* pElement) {
    return Has<VESK::EDeserialize>(pElement, RunSlot, InitializeSlot)
               ? static_cast<VESK::EDeserialize*>(pElement)
               : nullptr;
}

bool Originates(VESK::EObject& cElement) {
    return TableOf(cElement)[RunSlot] != TableOf(VESK::EDevNull())[RunSlot];
}

bool IsRecorder(VESK::EObject& cElement) {
    const char* const pchType = Setting(cElement, VESK::Key::EObjectType);
    return Has<VESK::ESerialize>(&cElement, DataArrivedSlot, InitializeSlot) ||
           (pchType && std::strcmp(pchType, VESK::Type::ESerialize) == 0);
}

const char* Setting(VESK::EObject& cElement, const char* pchKey) {
    VESK::Byte2Type b2;
    return cElement.m_cProperties.FindProperty(VESK::Text(pchKey), &b2, VESK::Section::Standard)
               ? cElement.m_cProperties.m_pachValues[b2]
               : nullptr;
}

std::string Shown(VESK::EObject& cElement) {
    const char* const pchName = Setting(cElement, VESK::Key::Name);
    const char* const pchType = Setting(cElement, VESK::Key::EObjectType);
    return pchName ? '"' + std::string(pchName) + '"'
                   : std::string(pchType ? pchType : "element") + " without a name";
}

VESK::EObject* FindElementByPath(const VESK::EPipeline& cPipeline, const std::string& cPath) {
    for (int i = 0; i < cPipeline.m_iElementCount; ++i) {
        VESK::EObject* const pElement = cPipeline.m_ppElements[i];
        const std::string cName = Name(pElement);
        const VESK::EPipeline* const pNested = VESK::EPipeline::From(pElement);
        if (cName == cPath && !cName.empty()) {
            return pElement;
        }
        if (pNested && !cName.empty() && cPath.compare(0, cName.size() + 1, cName + '/') == 0) {
            if (VESK::EObject* const pInner = FindElementByPath(*pNested, cPath.substr(cName.size() + 1))) {
                return pInner;
            }
        }
    }
    return nullptr;
}

std::vector<std::string> ElementPaths(const VESK::EPipeline& cPipeline) {
    std::vector<std::string> cPaths;
    for (int i = 0; i < cPipeline.m_iElementCount; ++i) {
        VESK::EObject* const pElement = cPipeline.m_ppElements[i];
        const std::string cName = Name(pElement);
        if (cName.empty()) {
            continue;
        }
        cPaths.push_back(cName);
        if (const VESK::EPipeline* const pNested = VESK::EPipeline::From(pElement)) {
            for (const std::string& cInner : ElementPaths(*pNested)) {
                cPaths.push_back(cName);
                cPaths.back().append(1, '/').append(cInner);
            }
        }
    }
    return cPaths;
}

void ForEach(VESK::EPipeline& cPipeline, const std::function<void(VESK::EObject&)>& cCall) {
    for (int i = 0; i < cPipeline.m_iElementCount; ++i) {
        VESK::EObject* const pElement = cPipeline.m_ppElements[i];
        cCall(*pElement);
        if (VESK::EPipeline* const pNested = VESK::EPipeline::From(pElement)) {
            ForEach(*pNested, cCall);
        }
    }
}

bool Has(const VESK::EPipeline& cPipeline, const VESK::EObject* pElement) {
    return std::any_of(cPipeline.m_ppElements, cPipeline.m_ppElements + cPipeline.m_iElementCount,
                       [pElement](VESK::EObject* pOther) {
                           const VESK::EPipeline* const pNested =
                               pOther == pElement ? nullptr : VESK::EPipeline::From(pOther);
                           return pOther == pElement || (pNested && Has(*pNested, pElement));
                       });
}

VESK::EObject* Originator(VESK::EPipeline& cPipeline) {
    VESK::EPipeline* pPipeline = &cPipeline;
    for (;;) {
        VESK::EObject* const pSink = pPipeline->m_pSinkElement;
        if (!pSink || !Has(*pPipeline, pSink)) {
            return nullptr;
        }
        VESK::EPipeline* const pNested = VESK::EPipeline::From(pSink);
        if (!pNested) {
            return pSink;
        }
        pPipeline = pNested;
    }
}

} // namespace FwPipe
