// SPDX-License-Identifier: MIT
#include "inspect/example.h"

#include "described.h"

#include <cstring>

namespace FwPipe {

namespace {

// A value for a property that must be set.
std::string Plausible(const VESK::PropertyDescription& cProperty) {
    const auto cChoices = ChoicesOf(cProperty);
    switch (cProperty.b4Kind) {
    case VESK::NumberProperty:
    case VESK::RealProperty:
        return cProperty.pchLeast ? cProperty.pchLeast : "1";
    case VESK::FlagProperty:
        return "1";
    case VESK::ChoiceProperty:
        return cChoices.empty() ? "choice" : cChoices.front();
    case VESK::FileToReadProperty:
    case VESK::FileToWriteProperty:
        return "file.txt";
    default:
        return "text";
    }
}

// The line of a property; empty for one that a pipe file cannot contain, as a value is one word there.
std::string PropertyLine(const VESK::PropertyDescription& cProperty) {
    const bool bDefault = cProperty.pchDefault && !cProperty.b4Required;
    const std::string cValue = bDefault               ? cProperty.pchDefault
                               : cProperty.b4Required ? Plausible(cProperty)
                                                      : "";
    const bool bWord = !cValue.empty() && cValue.find_first_of(" \t\r\n\v\f") == std::string::npos;
    return bWord ? std::string("property ") + cProperty.pchKey + ' ' + cValue : "";
}

// A pipeline as an element has a line of its own in the language.
std::vector<std::string> PipelineExample() {
    return {"# numbers.pipe contains: element ESource, property Name counter, sink counter, source counter",
            "plugin libfwlib.so",
            "pipe numbers.pipe",
            "property Name numbers",
            "element ESink",
            "property Name printer",
            "connect numbers 0 printer 0",
            "sink numbers"};
}

} // namespace

std::vector<std::string> ExampleOf(const VESK::ElementDescription& cElement, const std::string& cPlugin) {
    if (cPlugin.empty() && std::strcmp(cElement.pchType, VESK::Type::EPipeline) == 0) {
        return PipelineExample();
    }
    const bool bFed = !cElement.b4Originates && cElement.SinkPads.b4Count > 0;
    std::vector<std::string> cLines = {"plugin libfwlib.so"};
    if (!cPlugin.empty()) {
        cLines.push_back("plugin " + cPlugin);
    }
    if (bFed) {
        cLines.insert(cLines.end(), {"element ESource", "property Name origin"});
    }
    cLines.insert(cLines.end(), {std::string("element ") + cElement.pchType, "property Name example"});
    const std::size_t uCommon = PropertiesOf({}).size();
    auto cOwn = PropertiesOf(cElement);
    cOwn.resize(cOwn.size() - uCommon);
    for (const VESK::PropertyDescription* const pProperty : cOwn) {
        const std::string cLine = PropertyLine(*pProperty);
        if (!cLine.empty()) {
            cLines.push_back(cLine);
        }
    }
    if (cElement.SourcePads.b4Count > 0) {
        cLines.insert(cLines.end(), {"element ESink", "property Name printer"});
    }
    if (bFed) {
        cLines.emplace_back("connect origin 0 example 0");
    }
    constexpr VESK::Byte4Type MostShown = 4;
    for (VESK::Byte4Type b4 = 0; b4 < cElement.SourcePads.b4Count && b4 < MostShown; ++b4) {
        cLines.push_back("connect example " + std::to_string(b4) + " printer 0");
    }
    if (bFed || cElement.b4Originates) {
        cLines.emplace_back(bFed ? "sink origin" : "sink example");
    }
    return cLines;
}

} // namespace FwPipe
