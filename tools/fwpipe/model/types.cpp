// SPDX-License-Identifier: MIT
#include "types.h"

#include "described.h"

#include <fwlib/fwlib.h>

#include <algorithm>

namespace FwPipe {

const VESK::PropertyDescription* FindProperty(const VESK::ElementDescription& cType,
                                              const std::string& cKey) {
    for (const VESK::PropertyDescription* pProperty : PropertiesOf(cType)) {
        if (cKey == pProperty->pchKey) {
            return pProperty;
        }
    }
    return nullptr;
}

const VESK::ElementDescription& PipelineType() {
    static const VESK::PropertyDescription* const apNone[] = {nullptr};
    static const VESK::ElementDescription Plain = {VESK::Type::EPipeline, "",           1,
                                                   {0, nullptr},          {0, nullptr}, apNone};
    static const VESK::ElementDescription* const pType =
        VESK::FindElementDescription(GetPluginDescription(), VESK::Type::EPipeline);
    return pType ? *pType : Plain;
}

void KnownTypes::Add(const VESK::PluginDescription* pPlugin, bool bLibrary) {
    if (bLibrary || pPlugin) {
        m_cPlugins.push_back(bLibrary ? GetPluginDescription() : pPlugin);
    }
    m_bAny = m_bAny || !bLibrary; // a plugin may have types that it does not describe
}

bool KnownTypes::MayServe(const std::string& cType) const {
    return m_bAny || Find(cType);
}

const VESK::ElementDescription* KnownTypes::Find(const std::string& cType) const {
    for (const VESK::PluginDescription* pPlugin : m_cPlugins) {
        if (const VESK::ElementDescription* const pType =
                VESK::FindElementDescription(pPlugin, cType.c_str())) {
            return pType;
        }
    }
    return nullptr;
}

bool KnownTypes::IsOfLibrary(const VESK::ElementDescription* pType) const {
    return pType && VESK::FindElementDescription(GetPluginDescription(), pType->pchType) == pType;
}

std::vector<std::string> KnownTypes::Names() const {
    std::vector<std::string> cNames;
    const auto Take = [&cNames](const VESK::PluginDescription* pPlugin) {
        for (const VESK::ElementDescription* const pType : ElementsOf(pPlugin)) {
            cNames.emplace_back(pType->pchType);
        }
    };
    Take(GetPluginDescription());
    for (const VESK::PluginDescription* pPlugin : m_cPlugins) {
        if (pPlugin != GetPluginDescription()) {
            Take(pPlugin);
        }
    }
    return cNames;
}

} // namespace FwPipe
