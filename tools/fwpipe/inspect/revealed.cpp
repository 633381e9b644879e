// SPDX-License-Identifier: MIT
#include "inspect/revealed.h"

#include "elements.h"
#include "failure.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>

namespace FwPipe {

namespace {

constexpr VESK::Byte4Type UnknownKind = ~VESK::Byte4Type{0};

std::mutex cNoting; // an element may ask in a thread of its own

bool IsCommon(const char* pchKey) {
    const VESK::PropertyDescription* const* ppCommon = VESK::CommonProperties();
    while (*ppCommon && std::strcmp((*ppCommon)->pchKey, pchKey) != 0) {
        ++ppCommon;
    }
    return *ppCommon != nullptr;
}

} // namespace

void Revealed::Note(void* pContext, const VESK::PROPERTIES& cList, const char* pchKey,
                    const char* pchSection) {
    auto& cSelf = *static_cast<Revealed*>(pContext);
    const std::lock_guard<std::mutex> cLock(cNoting);
    if (cSelf.m_pElement && &cList == &cSelf.m_pElement->m_cProperties && !IsCommon(pchKey) &&
        std::strcmp(pchSection, VESK::Section::Standard) == 0 &&
        std::find(cSelf.m_cKeys.begin(), cSelf.m_cKeys.end(), pchKey) == cSelf.m_cKeys.end()) {
        cSelf.m_cKeys.emplace_back(pchKey);
    }
}

void Revealed::Examine(VESK::EObject& cElement) {
    const VESK::KeyWatch Watch = {Note, this};
    m_pElement = &cElement;
    m_bOriginates = Originates(cElement);
    VESK::WatchMissingKeys(&Watch);
    m_bInitialized = cElement.Initialize() == 1;
    VESK::WatchMissingKeys(nullptr);
    m_pElement = nullptr;
    m_b4SinkPads = cElement.GetSinkPadCount();
    m_b4SourcePads = cElement.GetSourcePadCount();
    for (const std::string& cKey : m_cKeys) {
        VESK::PropertyDescription Property = {};
        Property.pchKey = cKey.c_str();
        Property.b4Kind = UnknownKind;
        m_cProperties.push_back(Property);
    }
    for (const VESK::PropertyDescription& cProperty : m_cProperties) {
        m_cTable.push_back(&cProperty);
    }
    m_cTable.push_back(nullptr);
}

Revealed::Kind Revealed::Create(VESK::FRAMEWORK& cFramework, VESK::Factory& cFactory,
                                const std::string& cType) {
    Kind Result = Kind::None;
    m_cType = cType;
    const bool bDone = Guarded([&] {
        std::string cCopy = cType; // factories may change their argument
        const std::unique_ptr<VESK::EObject> pElement(cFactory.CreateElement(cCopy.data()));
        cCopy = cType;
        if (pElement) {
            pElement->m_pFramework = &cFramework;
            Examine(*pElement);
            Result = Kind::Element;
        } else if (std::unique_ptr<VESK::QObject>(cFactory.CreateQObject(cCopy.data()))) {
            Result = Kind::Object;
        }
    });
    VESK::WatchMissingKeys(nullptr); // an exception may have left it
    return bDone ? Result : Kind::Failed;
}

VESK::ElementDescription Revealed::Description() const {
    return {m_cType.c_str(),           nullptr,        m_bOriginates, {m_b4SinkPads, nullptr},
            {m_b4SourcePads, nullptr}, m_cTable.data()};
}

} // namespace FwPipe
