// SPDX-License-Identifier: MIT
#include "inspect/page.h"

#include "described.h"
#include "escape.h"
#include "inspect/example.h"

#include <algorithm>

namespace FwPipe {

namespace {

std::string Shown(const char* pchText) {
    std::string cText;
    AppendEscaped(pchText ? pchText : "", cText);
    return cText;
}

// "TYPE: MEANING", or the type alone.
std::string Title(const char* pchType, const char* pchMeaning) {
    return Shown(pchType) + (pchMeaning && *pchMeaning ? ": " + Shown(pchMeaning) : "") + '\n';
}

// The two parts as columns; spaces at the end of the line are omitted.
std::string Columns(const std::string& cLeft, std::size_t uWidth, const std::string& cRight) {
    std::string cLine = cLeft;
    if (!cRight.empty()) {
        cLine.append(uWidth > cLeft.size() ? uWidth - cLeft.size() : 0, ' ').append("  ").append(cRight);
    }
    return cLine + '\n';
}

std::string Pads(const VESK::PadsDescription& cPads) {
    const std::string cCount = std::to_string(cPads.b4Count);
    return cPads.pchProperty
               ? "as property " + Shown(cPads.pchProperty) + " says; " + cCount + " if it is absent"
               : cCount;
}

std::string Allowed(const VESK::PropertyDescription& cProperty) {
    std::string cText;
    if (cProperty.pchLeast && cProperty.pchMost) {
        cText += ' ' + Shown(cProperty.pchLeast) + " to " + Shown(cProperty.pchMost);
    } else if (cProperty.pchLeast || cProperty.pchMost) {
        cText +=
            cProperty.pchLeast ? " from " + Shown(cProperty.pchLeast) : " up to " + Shown(cProperty.pchMost);
    }
    const char* pchSeparator = " of ";
    for (const std::string& cChoice : ChoicesOf(cProperty)) {
        cText += pchSeparator + Shown(cChoice.c_str());
        pchSeparator = ", ";
    }
    return cText;
}

// The kind and what is allowed, then what applies when the property is absent.
std::string Form(const VESK::PropertyDescription& cProperty) {
    const char* const pchKind = KindName(cProperty.b4Kind);
    std::string cText = (pchKind ? pchKind : "of a kind that is not known") + Allowed(cProperty);
    if (cProperty.pchUnit && *cProperty.pchUnit) {
        cText += ", in " + Shown(cProperty.pchUnit);
    }
    if (cProperty.b4Required) {
        cText += "; must be set";
    } else if (cProperty.pchDefault) {
        cText += "; default " + (*cProperty.pchDefault ? Shown(cProperty.pchDefault) : "empty");
    }
    return cText;
}

std::string Properties(const VESK::ElementDescription& cElement) {
    const auto cProperties = PropertiesOf(cElement);
    std::size_t uWidth = 0;
    for (const VESK::PropertyDescription* const pProperty : cProperties) {
        uWidth = std::max(uWidth, Shown(pProperty->pchKey).size());
    }
    std::string cText;
    for (const VESK::PropertyDescription* const pProperty : cProperties) {
        cText += Columns("  " + Shown(pProperty->pchKey), uWidth + 2, Form(*pProperty));
        if (pProperty->pchMeaning && *pProperty->pchMeaning) {
            cText += Columns("", uWidth + 2, Shown(pProperty->pchMeaning));
        }
    }
    return cText;
}

} // namespace

std::string ListOfTypes(const VESK::PluginDescription& cPlugin) {
    const auto cElements = ElementsOf(&cPlugin);
    const auto cObjects = ObjectsOf(&cPlugin);
    std::size_t uWidth = 0;
    for (const VESK::ElementDescription* const pElement : cElements) {
        uWidth = std::max(uWidth, Shown(pElement->pchType).size());
    }
    for (const VESK::ObjectDescription* const pObject : cObjects) {
        uWidth = std::max(uWidth, Shown(pObject->pchType).size());
    }
    std::string cText;
    for (const VESK::ElementDescription* const pElement : cElements) {
        cText += Columns(Shown(pElement->pchType), uWidth, Shown(pElement->pchMeaning));
    }
    for (const VESK::ObjectDescription* const pObject : cObjects) {
        cText += Columns(Shown(pObject->pchType), uWidth, Shown(pObject->pchMeaning));
    }
    return cText;
}

std::string PageOf(const VESK::ElementDescription& cElement, const std::string& cPlugin) {
    std::string cText = Title(cElement.pchType, cElement.pchMeaning);
    cText += "\noriginates   " +
             std::string(cElement.b4Originates ? "yes: it may be the sink element" : "no") +
             "\nsink pads    " + Pads(cElement.SinkPads) + "\nsource pads  " + Pads(cElement.SourcePads) +
             "\n\nproperties\n" + Properties(cElement) + "\nexample\n";
    for (const std::string& cLine : ExampleOf(cElement, cPlugin)) {
        cText += "  " + Shown(cLine.c_str()) + '\n';
    }
    return cText;
}

std::string PageOf(const VESK::ObjectDescription& cObject) {
    return Title(cObject.pchType, cObject.pchMeaning) + "\na data object\n";
}

} // namespace FwPipe
