// SPDX-License-Identifier: MIT
#include "fwlib/framework/entry.h"

#include "fwlib/builtin/factories.h"
#include "fwlib/elements/pad.h"
#include "fwlib/framework/framework.h"
#include "fwlib/pipeline/epipeline.h"

#include <new>

namespace {

// The library as a plugin. All of it is constant, so it is complete before any code of the library runs.
class flibfactory final : public VESK::PluginFactory {
public:
    constexpr flibfactory() : PluginFactory(flibfactorylist) {}

private:
    static VESK::Factory* flibfactorylist[3];
};

FACTORY::FWLibFactory cFWlib;
FACTORY::FWElementsFactory cFWElements;

VESK::Factory* flibfactory::flibfactorylist[3] = {&cFWlib, &cFWElements, nullptr};

flibfactory flibfactoryobject;

} // namespace

VESK::Factory* GetFactory() {
    return &flibfactoryobject;
}

namespace VESK {

void Pullin() {
    new (std::nothrow) FRAMEWORK;
    new (std::nothrow) EPipeline;
    new (std::nothrow) SOURCEPAD(nullptr);
}

} // namespace VESK
