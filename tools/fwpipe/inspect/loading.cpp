// SPDX-License-Identifier: MIT
#include "inspect/loading.h"

#include "loadererror.h"

#include <fwlib/fwlib.h>

#include <cstdio>

namespace FwPipe {

namespace {

void Collect(void* pContext, const VESK::MessageLine& cLine) {
    std::fprintf(cLine.iStream == 1 ? stdout : stderr, "%s\n", cLine.pchText);
    *static_cast<std::string*>(pContext) = cLine.pchText;
}

} // namespace

bool Load(VESK::FWPLUGIN& cPlugin, const std::string& cName, VESK::FRAMEWORK& cFramework) {
    std::string cLast;
    cFramework.SetMessageHandler(Collect, &cLast);
    const bool bLoaded = cPlugin.Initialize(&cFramework) == 1;
    cFramework.SetMessageHandler(nullptr, nullptr);
    if (!bLoaded) {
        ExplainLoaderError(cLast, cName);
    }
    return bLoaded;
}

} // namespace FwPipe
