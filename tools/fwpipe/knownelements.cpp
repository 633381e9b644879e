// SPDX-License-Identifier: MIT
#include "knownelements.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace FwPipe {

namespace {

constexpr std::size_t ShownSize = 32; // of a type or name; as in the library's messages

// The slots of an element's table of virtual operations.
enum Slot { SlotDataArrived = 3, SlotRun = 4 };

Address TableOf(const VESK::EObject& cElement) {
    Address uTable;
    std::memcpy(&uTable, static_cast<const void*>(&cElement), sizeof uTable);
    return uTable;
}

Code SlotOf(Address uTable, Slot Which) {
    Address uFunction;
    std::memcpy(&uFunction,
                reinterpret_cast<const Address*>(uTable) + Which, // NOLINT(performance-no-int-to-ptr)
                sizeof uFunction);
    return CodeAt(uFunction);
}

bool Before(const KnownElement& cElement, const void* pElement) {
    return std::less<const void*>()(cElement.pElement, pElement);
}

} // namespace

Label LabelOf(VESK::EObject& cElement) {
    char achName[ShownSize];
    char achType[ShownSize];
    VESK::PROPERTIES& cProperties = cElement.m_cProperties;
    const bool bNamed =
        cProperties.GetProperty(VESK::Key::Name, achName, sizeof achName, nullptr, VESK::Section::Standard);
    cProperties.GetProperty(VESK::Key::EObjectType, achType, sizeof achType, VESK::Text("[No Element Type]"),
                            VESK::Section::Standard);
    return LabelOf(bNamed ? achName : nullptr, achType);
}

Label LabelOf(const char* pchName, const char* pchType) {
    Label cLabel;
    std::snprintf(cLabel.achText, sizeof cLabel.achText,
                  pchName ? "element \"%s\" (%s)" : "element without a name%s (%s)", pchName ? pchName : "",
                  pchType);
    return cLabel;
}

bool IsPipeline(const VESK::EObject& cElement, const VESK::EPipeline& cPipeline) {
    return TableOf(cElement) == TableOf(cPipeline);
}

int KnownElements::ClassOf(const VESK::EObject& cElement) {
    const Address uTable = TableOf(cElement);
    const auto Found = std::find_if(m_cClasses.begin(), m_cClasses.end(),
                                    [uTable](const ElementClass& cClass) { return cClass.uTable == uTable; });
    const auto iClass = static_cast<int>(Found - m_cClasses.begin());
    if (Found == m_cClasses.end()) {
        m_cClasses.push_back({uTable, {}, {}, nullptr, false});
    }
    return iClass;
}

void KnownElements::Examine() {
    for (ElementClass& cClass : m_cClasses) {
        cClass.cDataArrived = SlotOf(cClass.uTable, SlotDataArrived);
        cClass.cRun = SlotOf(cClass.uTable, SlotRun);
        cClass.pModule = ModuleOf(cClass.cDataArrived);
        cClass.bMayLeave = MayLeave(cClass.cDataArrived);
    }
}

void KnownElements::Gather(VESK::EPipeline& cPipeline, const VESK::EPipeline& cOuter) {
    for (int i = 0; i < cPipeline.m_iElementCount; ++i) {
        VESK::EObject& cElement = *cPipeline.m_ppElements[i];
        if (IsPipeline(cElement, cOuter)) {
            Gather(static_cast<VESK::EPipeline&>(cElement), cOuter);
        } else {
            m_cElements.push_back({&cElement, ClassOf(cElement), 0, LabelOf(cElement)});
        }
    }
}

int KnownElements::Find(const void* pElement) const {
    const auto End = m_cElements.begin() + std::max(Count(), 0);
    const auto Found = std::lower_bound(m_cElements.begin(), End, pElement, Before);
    return Found != End && Found->pElement == pElement ? static_cast<int>(Found - m_cElements.begin()) : -1;
}

void KnownElements::Learn(VESK::EPipeline& cPipeline) {
    Gather(cPipeline, cPipeline);
    std::sort(
        m_cElements.begin(), m_cElements.end(),
        [](const KnownElement& cOne, const KnownElement& cOther) { return Before(cOne, cOther.pElement); });
    m_cElements.push_back({});
    for (KnownElement& cKnown : m_cElements) {
        cKnown.iFirstReceiver = static_cast<int>(m_cReceivers.size());
        for (unsigned int u = 0; cKnown.pElement && u < cKnown.pElement->m_b2SourcePadCount; ++u) {
            const VESK::SOURCEPAD* const pPad = cKnown.pElement->m_ppSourcePads[u];
            const int iReceiver = pPad && pPad->m_pSinkPad ? Find(pPad->m_pSinkPad->m_pElement) : -1;
            if (iReceiver >= 0) {
                m_cReceivers.push_back(iReceiver);
            }
        }
    }
    const VESK::EObject* pOrigin = cPipeline.m_pSinkElement;
    while (pOrigin && IsPipeline(*pOrigin, cPipeline)) {
        pOrigin = static_cast<const VESK::EPipeline*>(pOrigin)->m_pSinkElement;
    }
    m_iOrigin = Find(pOrigin);
}

} // namespace FwPipe
