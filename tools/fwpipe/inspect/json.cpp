// SPDX-License-Identifier: MIT
#include "inspect/json.h"

#include "described.h"

#include <nlohmann/json.hpp>

namespace FwPipe {

namespace {

using Json = nlohmann::ordered_json;

Json Text(const char* pchText) {
    return pchText ? Json(pchText) : Json();
}

// A text as a value of the kind; the text itself if it is none.
Json Value(const char* pchText, VESK::Byte4Type b4Kind) {
    long long ll;
    unsigned long long ull;
    double d;
    bool b;
    if (b4Kind == VESK::FlagProperty && VESK::ParseFlag(pchText, &b)) {
        return b;
    }
    if (!IsNumeric(b4Kind)) {
        return Text(pchText);
    }
    if (VESK::ParseNumber(pchText, &ll)) {
        return ll;
    }
    if (VESK::ParseNumber(pchText, &ull)) {
        return ull;
    }
    return b4Kind == VESK::RealProperty && VESK::ParseReal(pchText, &d) ? Json(d) : Text(pchText);
}

Json Pads(const VESK::PadsDescription& cPads) {
    return cPads.pchProperty ? Json{{"property", cPads.pchProperty}, {"default", cPads.b4Count}}
                             : Json{{"count", cPads.b4Count}};
}

Json Property(const VESK::PropertyDescription& cProperty) {
    const char* const pchKind = KindName(cProperty.b4Kind);
    return {{"key", cProperty.pchKey},
            {"kind", Text(pchKind)},
            {"default", Value(cProperty.pchDefault, cProperty.b4Kind)},
            {"min", Value(cProperty.pchLeast, cProperty.b4Kind)},
            {"max", Value(cProperty.pchMost, cProperty.b4Kind)},
            {"choices", cProperty.pchChoices ? Json(ChoicesOf(cProperty)) : Json()},
            {"unit", Text(cProperty.pchUnit)},
            {"meaning", Text(cProperty.pchMeaning)},
            {"required", pchKind ? Json(cProperty.b4Required != 0) : Json()}};
}

Json Element(const VESK::ElementDescription& cElement) {
    Json cProperties = Json::array();
    for (const VESK::PropertyDescription* const pProperty : PropertiesOf(cElement)) {
        cProperties.push_back(Property(*pProperty));
    }
    return {{"type", cElement.pchType},
            {"meaning", Text(cElement.pchMeaning)},
            {"originates", cElement.b4Originates != 0},
            {"sinkPads", Pads(cElement.SinkPads)},
            {"sourcePads", Pads(cElement.SourcePads)},
            {"properties", cProperties}};
}

} // namespace

std::string JsonOf(const std::vector<const VESK::ElementDescription*>& cElements,
                   const std::vector<const VESK::ObjectDescription*>& cObjects) {
    Json cAll = {{"types", Json::array()}, {"objects", Json::array()}};
    for (const VESK::ElementDescription* const pElement : cElements) {
        cAll["types"].push_back(Element(*pElement));
    }
    for (const VESK::ObjectDescription* const pObject : cObjects) {
        cAll["objects"].push_back({{"type", pObject->pchType}, {"meaning", Text(pObject->pchMeaning)}});
    }
    return cAll.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace FwPipe
