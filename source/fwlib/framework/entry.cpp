// SPDX-License-Identifier: MIT
#include "fwlib/framework/entry.h"

#include "fwlib/builtin/descriptions.h"
#include "fwlib/builtin/factories.h"
#include "fwlib/colortable/mfcolortable.h"
#include "fwlib/elements/pad.h"
#include "fwlib/framework/framework.h"
#include "fwlib/pipeline/epipeline.h"
#include "fwlib/streams/sfileread.h"
#include "fwlib/version.h"

#include <new>

// The library is a plugin itself. The list contains only addresses, so it is initialized before any code runs.
class flibfactory final : public VESK::PluginFactory {
public:
    flibfactory() : PluginFactory(flibfactorylist) {}

    static VESK::Factory* flibfactorylist[3];
};

static flibfactory flibfactoryobject;
static FACTORY::FWLibFactory cFWlib;
static FACTORY::FWElementsFactory cFWElements;

VESK::Factory* flibfactory::flibfactorylist[3] = {&cFWlib, &cFWElements, nullptr};

VESK::Factory* GetFactory() {
    return &flibfactoryobject;
}

const VESK::PluginDescription* GetPluginDescription() {
    return &VESK::BuiltinDescription;
}

namespace VESK {

Byte4Type GetVersion() {
    return FWLIB_VERSION;
}

void Pullin() {
    new (std::nothrow) FRAMEWORK;
    new (std::nothrow) EPipeline;
    new (std::nothrow) MFColorTable;
    new (std::nothrow) SOURCEPAD(nullptr);
    new (std::nothrow) SFileRead;
}

} // namespace VESK
