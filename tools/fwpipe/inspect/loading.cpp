// SPDX-License-Identifier: MIT
#include "inspect/loading.h"

#include "message.h"

#include <fwlib/fwlib.h>

#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <memory>

namespace FwPipe {

namespace {

void Collect(void* pContext, const VESK::MessageLine& cLine) {
    std::fprintf(cLine.iStream == 1 ? stdout : stderr, "%s\n", cLine.pchText);
    *static_cast<std::string*>(pContext) = cLine.pchText;
}

std::string Demangled(const std::string& cSymbol) {
    int iStatus = 0;
    const std::unique_ptr<char, void (*)(void*)> pName(
        abi::__cxa_demangle(cSymbol.c_str(), nullptr, nullptr, &iStatus), std::free);
    return pName ? pName.get() : cSymbol;
}

// The value of a variable as a part of a list of folders.
std::string Variable(const char* pchName) {
    const char* const pchValue = secure_getenv(pchName);
    return std::string(pchName) + (pchValue ? " (" + std::string(pchValue) + "), " : " (not set), ");
}

// Where a plugin whose name has no slash is looked for.
std::string FoldersOfPlugins() {
    Dl_info Info = {};
    const bool bFound = dladdr(reinterpret_cast<void*>(&GetFactory), &Info) != 0 && Info.dli_fname;
    const std::string cLibrary = bFound ? Info.dli_fname : "";
    const std::string cFolder = cLibrary.substr(0, cLibrary.rfind('/') + 1);
    return Variable("FWLIB_PLUGIN_PATH") + cFolder + "fwlib/plugins, ";
}

// The text between the two parts; empty if one is missing.
std::string Between(const std::string& cLine, const std::string& cBefore, const std::string& cAfter) {
    const std::size_t uBegin = cLine.find(cBefore);
    const std::size_t uEnd = cLine.find(cAfter, uBegin == std::string::npos ? 0 : uBegin);
    return uBegin == std::string::npos || uEnd == std::string::npos
               ? ""
               : cLine.substr(uBegin + cBefore.size(), uEnd - uBegin - cBefore.size());
}

void Explain(const std::string& cLine, const std::string& cName) {
    static constexpr const char* Opening = "Error: ";
    static constexpr const char* Undefined = ": undefined symbol: ";
    const std::string cNeeds = Between(cLine, Opening, Undefined);
    const std::string cMissing = Between(cLine, Opening, ": cannot open shared object file");
    const std::string cLoaders =
        Variable("LD_LIBRARY_PATH") +
        "the RUNPATH of the file that needs it, the loader's cache and system folders";
    if (!cNeeds.empty()) {
        const std::string cRest = cLine.substr(cLine.find(Undefined) + std::string(Undefined).size());
        const std::string cSymbol = cRest.substr(0, cRest.find_first_of(", \t"));
        Complain(cSymbol == "GetFactory"
                     ? cNeeds + " is not a plugin: it has no function GetFactory, which FWLIB_PLUGIN defines"
                     : cNeeds + " needs " + Demangled(cSymbol) +
                           ", which neither it nor a library that was loaded for it defines");
    } else if (!cMissing.empty() && cMissing != cName) {
        Complain(cName + ", or a library that it needs, needs " + cMissing + ", which was looked for in " +
                 cLoaders);
    } else if (!cMissing.empty() && cName.find('/') == std::string::npos) {
        Complain(cName + " was looked for in " + FoldersOfPlugins() + cLoaders);
    }
}

} // namespace

bool Load(VESK::FWPLUGIN& cPlugin, const std::string& cName, VESK::FRAMEWORK& cFramework) {
    std::string cLast;
    cFramework.SetMessageHandler(Collect, &cLast);
    const bool bLoaded = cPlugin.Initialize(&cFramework) == 1;
    cFramework.SetMessageHandler(nullptr, nullptr);
    if (!bLoaded) {
        Explain(cLast, cName);
    }
    return bLoaded;
}

} // namespace FwPipe
