// SPDX-License-Identifier: MIT
#include "fwlib/framework/description.h"

#include "fwlib/text.h"

#include <cstring>

namespace VESK {

namespace {

constexpr PropertyDescription Name = {
    Key::Name, TextProperty, 0,
    nullptr,   nullptr,      nullptr,
    nullptr,   nullptr,      "the name in the pipeline, which lines of the pipe file and messages use"};
constexpr PropertyDescription Debug = {
    Key::Debug,
    NumberProperty,
    0,
    "0",
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    "the level up to which trace lines are printed; if absent, that of the framework"};
constexpr const PropertyDescription* Common[] = {&Name, &Debug, nullptr};

} // namespace

const PropertyDescription* const* CommonProperties() {
    return Common;
}

const ElementDescription* FindElementDescription(const PluginDescription* pPlugin, const char* pchType) {
    if (!pPlugin || !pPlugin->ppElements || !pchType) {
        return nullptr;
    }
    const ElementDescription* const* ppElement = pPlugin->ppElements;
    while (*ppElement && (!(*ppElement)->pchType || std::strcmp((*ppElement)->pchType, pchType) != 0)) {
        ++ppElement; // a description that was written by hand may lack a name
    }
    return *ppElement;
}

} // namespace VESK
