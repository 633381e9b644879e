// SPDX-License-Identifier: MIT
#include "loadedplugins.h"

#include <fwlib/fwlib.h>

#include <vector>

namespace FwPipe {

namespace {

class LoadedPlugins : public Plugins {
public:
    explicit LoadedPlugins(bool bCreate) : m_bCreate(bCreate) {
        m_cFramework.SetMessageHandler(Hear, &m_cHeard);
    }

    Plugin Find(const std::string& cPath) override {
        Plugin cFound = PluginFiles().Find(cPath);
        if (cFound.bLibrary) {
            return cFound;
        }
        if (cFound.pchId) {
            m_bMissing = true;
            return cFound;
        }
        m_cHeard.clear();
        std::unique_ptr<VESK::PLUGIN> pPlugin(m_cFramework.LoadPlugin(VESK::Text(cPath.c_str())));
        if (!pPlugin) {
            m_bMissing = true;
            return {"unreadable", cPath + ": " + m_cHeard, false, nullptr};
        }
        cFound.pDescription = static_cast<VESK::FWPLUGIN*>(pPlugin.get())->GetDescription();
        m_cFactories.push_back(pPlugin->GetFactory()); // it may have types that it does not describe
        m_cLoaded.push_back(std::move(pPlugin));
        return cFound;
    }

    bool Creates(const std::string& cType) override { return !m_bCreate || m_bMissing || Create(cType); }

    void Learn(Pipeline& cPipeline, Diagnoses& cDiagnoses) override {
        for (const auto& pElement : cPipeline.cElements) {
            if (pElement->pNested) {
                Learn(*pElement->pNested, cDiagnoses);
            } else if (m_bCreate && !pElement->pDescription) {
                Initialize(*pElement, cDiagnoses);
            }
        }
    }

private:
    static void Hear(void* pHeard, const VESK::MessageLine& cLine) {
        auto& cHeard = *static_cast<std::string*>(pHeard);
        if (cHeard.empty() && cLine.iStream == 2) {
            cHeard = cLine.pchText;
        }
    }

    std::unique_ptr<VESK::EObject> Create(const std::string& cType) {
        for (VESK::Factory* pFactory : m_cFactories) {
            if (VESK::EObject* const pElement = pFactory->CreateElement(VESK::Text(cType.c_str()))) {
                pElement->m_pFramework = &m_cFramework;
                return std::unique_ptr<VESK::EObject>(pElement);
            }
        }
        return nullptr;
    }

    void Initialize(Element& cElement, Diagnoses& cDiagnoses) {
        const std::unique_ptr<VESK::EObject> pElement = Create(cElement.cType.cText);
        if (!pElement) {
            return; // reported before
        }
        for (const auto& [cKey, cSetting] : cElement.cProperties) {
            VESK::SetValue(*pElement, cKey.c_str(), cSetting.cValue);
        }
        m_cHeard.clear();
        if (!pElement->Initialize()) {
            cDiagnoses.Error(cElement.cType.cSpot, "refuses-settings",
                             cElement.cType.cText + " cannot be initialized" +
                                 (m_cHeard.empty() ? "" : ": " + m_cHeard));
            return;
        }
        cElement.iSinkPads = pElement->GetSinkPadCount();
        cElement.iSourcePads = pElement->GetSourcePadCount();
    }

    const bool m_bCreate; // elements of types without a description
    VESK::FRAMEWORK m_cFramework;
    std::string m_cHeard; // the first error line
    std::vector<std::unique_ptr<VESK::PLUGIN>> m_cLoaded;
    std::vector<VESK::Factory*> m_cFactories;
    bool m_bMissing = false; // a plugin could not be loaded; any type may be its own
};

} // namespace

std::unique_ptr<Plugins> LoadPlugins() {
    return std::make_unique<LoadedPlugins>(true);
}

std::unique_ptr<Plugins> LoadDescriptions() {
    return std::make_unique<LoadedPlugins>(false);
}

} // namespace FwPipe
