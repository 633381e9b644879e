// SPDX-License-Identifier: MIT
#include "replaced.h"

#include "described.h"
#include "elements.h"
#include "message.h"
#include "nearest.h"

#include <fwlib/fwlib.h>

#include <algorithm>

namespace FwPipe {

namespace {

using VESK::EObject;
using VESK::EPipeline;

struct Target {
    EObject* pElement = nullptr;
    std::string cKey;
};

// Names may contain '.': the longest one that exists counts.
Target Find(const EPipeline& cPipeline, const std::string& cText) {
    for (std::size_t u = cText.size() - 1; u-- > 1;) {
        EObject* const pElement =
            cText[u] == '.' ? FindElementByPath(cPipeline, cText.substr(0, u)) : nullptr;
        if (pElement) {
            return {pElement, cText.substr(u + 1)};
        }
    }
    return {};
}

bool Refuse(const std::string& cSetting, const std::string& cReason, const std::string& cHint) {
    Complain("--set " + cSetting + ": " + cReason + DidYouMean(cHint));
    return false;
}

// What is known of the type: from the library or the plugins of the framework, of which the tool adds no others.
const VESK::ElementDescription* DescriptionOf(const std::string& cType, const VESK::FRAMEWORK& cFramework) {
    const VESK::ElementDescription* pFound =
        VESK::FindElementDescription(GetPluginDescription(), cType.c_str());
    for (int i = 0; i < cFramework.m_b2PluginCount && !pFound; ++i) {
        auto* const pPlugin = static_cast<VESK::FWPLUGIN*>(cFramework.m_ppPlugins[i]);
        pFound = VESK::FindElementDescription(pPlugin->GetDescription(), cType.c_str());
    }
    return pFound;
}

bool Replace(const std::string& cSetting, EPipeline& cPipeline) {
    const std::size_t uEqual = cSetting.find('=');
    const std::string cPlace = cSetting.substr(0, uEqual);
    if (uEqual == std::string::npos || cPlace.find('.') == std::string::npos) {
        return Refuse(cSetting, "expected NAME.KEY=VALUE", "");
    }
    const Target cTarget = Find(cPipeline, cPlace);
    if (!cTarget.pElement) {
        const std::string cName = cPlace.substr(0, cPlace.rfind('.'));
        return Refuse(cSetting, "no element is named \"" + cName + '"',
                      Nearest(cName, ElementPaths(cPipeline)));
    }
    const char* const pchType = Setting(*cTarget.pElement, VESK::Key::EObjectType);
    const std::string cType = pchType ? pchType : "";
    std::vector<std::string> cKeys;
    if (const auto* const pType = DescriptionOf(cType, *cPipeline.m_pFramework)) {
        for (const VESK::PropertyDescription* const pProperty : PropertiesOf(*pType)) {
            cKeys.emplace_back(pProperty->pchKey);
        }
    }
    if (!cKeys.empty() && std::find(cKeys.begin(), cKeys.end(), cTarget.cKey) == cKeys.end()) {
        return Refuse(cSetting, cType + " does not read \"" + cTarget.cKey + '"',
                      Nearest(cTarget.cKey, cKeys));
    }
    const std::string cValue = cSetting.substr(uEqual + 1);
    return VESK::SetValue(*cTarget.pElement, cTarget.cKey.c_str(), cValue.c_str()) ||
           Refuse(cSetting, "there is not enough memory", "");
}

} // namespace

bool ReplaceProperties(const std::vector<std::string>& cSettings, EPipeline& cPipeline) {
    return std::all_of(cSettings.begin(), cSettings.end(),
                       [&cPipeline](const std::string& cSetting) { return Replace(cSetting, cPipeline); });
}

} // namespace FwPipe
