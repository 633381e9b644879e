// SPDX-License-Identifier: MIT
#include "loadererror.h"

#include "message.h"

#include <fwlib/fwlib.h>

#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <filesystem>
#include <memory>

namespace FwPipe {

namespace {

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

// The argument of that line if it is a plugin line; otherwise empty. A pipe is not read again.
std::string PluginOf(const std::string& cFile, VESK::Byte4Type b4Line) {
    std::error_code cError;
    char* const pFile = std::filesystem::is_regular_file(cFile, cError)
                            ? VESK::fwfopen(VESK::Text(cFile.c_str()), VESK::Text("r"))
                            : nullptr;
    std::string cPlugin;
    if (pFile) {
        VESK::PipeReader cReader = VESK::PipeReader::OfFile(pFile);
        VESK::PipeLine cLine;
        while (cPlugin.empty() && cReader.Next(cLine) && cLine.b4Line <= b4Line) {
            const VESK::PipeKeyword* const pWord = cLine.b4Line == b4Line && cLine.uTokens > 1
                                                       ? VESK::FindPipeKeyword(cLine.apchTokens[0])
                                                       : nullptr;
            cPlugin = pWord && pWord->Word == VESK::PipeWord::Plugin ? cLine.apchTokens[1] : "";
        }
        VESK::fwfclose(pFile);
    }
    return cPlugin;
}

} // namespace

void ExplainLoaderError(const std::string& cLine, const std::string& cName) {
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

void ExplainFailedPlugin() {
    const VESK::Failure* const pFailure = VESK::LastFailure();
    const std::string cPlugin = pFailure ? PluginOf(pFailure->pchFile, pFailure->b4Line) : "";
    if (pFailure && !cPlugin.empty()) {
        ExplainLoaderError(pFailure->pchText, cPlugin);
    }
}

} // namespace FwPipe
