// SPDX-License-Identifier: MIT
#include "described.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace FwPipe {

namespace {

template <class Entry>
std::vector<const Entry*> Named(const Entry* const* ppEntries, const char* Entry::*pName) {
    std::vector<const Entry*> cNamed;
    for (; ppEntries && *ppEntries; ++ppEntries) {
        if ((*ppEntries)->*pName && *((*ppEntries)->*pName)) {
            cNamed.push_back(*ppEntries);
        }
    }
    return cNamed;
}

} // namespace

std::vector<const VESK::ElementDescription*> ElementsOf(const VESK::PluginDescription* pPlugin) {
    return Named(pPlugin ? pPlugin->ppElements : nullptr, &VESK::ElementDescription::pchType);
}

std::vector<const VESK::ObjectDescription*> ObjectsOf(const VESK::PluginDescription* pPlugin) {
    return Named(pPlugin ? pPlugin->ppObjects : nullptr, &VESK::ObjectDescription::pchType);
}

std::vector<const VESK::PropertyDescription*> PropertiesOf(const VESK::ElementDescription& cElement) {
    auto cProperties = Named(cElement.ppProperties, &VESK::PropertyDescription::pchKey);
    const auto cCommon = Named(VESK::CommonProperties(), &VESK::PropertyDescription::pchKey);
    cProperties.insert(cProperties.end(), cCommon.begin(), cCommon.end());
    return cProperties;
}

const char* KindName(VESK::Byte4Type b4Kind) {
    static constexpr const char* Names[] = {"text",   "number",       "real",         "flag",
                                            "choice", "file to read", "file to write"};
    return b4Kind < std::size(Names) ? Names[b4Kind] : nullptr;
}

bool IsNumeric(VESK::Byte4Type b4Kind) {
    return b4Kind == VESK::NumberProperty || b4Kind == VESK::RealProperty;
}

std::vector<std::string> ChoicesOf(const VESK::PropertyDescription& cProperty) {
    std::vector<std::string> cChoices;
    std::istringstream cText(cProperty.pchChoices ? cProperty.pchChoices : "");
    for (std::string cChoice; std::getline(cText, cChoice, '|');) {
        cChoices.push_back(cChoice);
    }
    return cChoices;
}

} // namespace FwPipe
