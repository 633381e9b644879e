// SPDX-License-Identifier: MIT
// fwpipe inspect: shows what the library and plugins tell about their types.
#include "command.h"
#include "described.h"
#include "failure.h"
#include "inspect/json.h"
#include "inspect/loading.h"
#include "inspect/page.h"
#include "inspect/revealed.h"
#include "message.h"
#include "nearest.h"
#include "output.h"

#include <fwlib/fwlib.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace FwPipe {

namespace {

struct Options {
    std::string cPlugin; // both empty if absent
    std::string cType;
    bool bJson = false;
};

const char* const Examples = R"(Examples:
  fwpipe inspect                         lists the types of the library
  fwpipe inspect ETee                    shows the pads and properties of ETee, and an example
  fwpipe inspect ./libcountdown.so       lists the types of a plugin
  fwpipe inspect ./libcountdown.so ECountdown
  fwpipe inspect --json                  prints {"types":[...],"objects":[...]}

A single argument that contains a slash or ".so" is a plugin, any other a type of the library. The path of a plugin is
as in the "plugin" line of a pipe file.

For a type that its plugin does not describe, an element of it is created and initialized without properties. The page
then shows the pads that it has after that, and the keys that it asked for.

Exit status:
  0         success
  1         the plugin cannot be loaded, has no such type or threw an exception, or standard output could not be written
  2         wrong usage
)";

bool IsPath(const std::string& cName) {
    return cName.find('/') != std::string::npos || cName.find(".so") != std::string::npos;
}

int ShowElement(const Options& cOptions, const VESK::ElementDescription& cElement) {
    Print(cOptions.bJson ? JsonOf({&cElement}, {}) : PageOf(cElement, cOptions.cPlugin));
    return ExitDone;
}

int ShowObject(const Options& cOptions, const VESK::ObjectDescription& cObject) {
    Print(cOptions.bJson ? JsonOf({}, {&cObject}) : PageOf(cObject));
    return ExitDone;
}

int ShowAll(const Options& cOptions, const VESK::PluginDescription* pPlugin) {
    if (!pPlugin) {
        Complain(cOptions.cPlugin + " does not describe its types; name one to see what creating it shows");
    }
    Print(cOptions.bJson ? JsonOf(ElementsOf(pPlugin), ObjectsOf(pPlugin))
          : pPlugin      ? ListOfTypes(*pPlugin)
                         : "");
    return ExitDone;
}

int ReportUnknown(const Options& cOptions, const VESK::PluginDescription* pPlugin) {
    std::vector<std::string> cNames;
    for (const VESK::ElementDescription* const pElement : ElementsOf(pPlugin)) {
        cNames.emplace_back(pElement->pchType);
    }
    for (const VESK::ObjectDescription* const pObject : ObjectsOf(pPlugin)) {
        cNames.emplace_back(pObject->pchType);
    }
    const std::string cNear = Nearest(cOptions.cType, cNames);
    Complain("no type " + cOptions.cType + " in " +
             (cOptions.cPlugin.empty() ? "libfwlib.so" : cOptions.cPlugin) +
             (cNear.empty() ? "" : "; similar: " + cNear));
    return ExitFailed;
}

// Shows what a type without a description reveals. Returns whether there is one; *piStatus is the exit status then.
bool Reveal(const Options& cOptions, VESK::FRAMEWORK& cFramework, VESK::Factory& cFactory, int* piStatus) {
    Revealed cRevealed;
    switch (cRevealed.Create(cFramework, cFactory, cOptions.cType)) {
    case Revealed::Kind::Element: {
        VESK::ElementDescription Shown = cRevealed.Description();
        if (!cOptions.bJson) {
            Shown.pchMeaning = "not described; this is what an element without properties shows";
        }
        *piStatus = ShowElement(cOptions, Shown);
        if (!cRevealed.IsInitialized()) {
            Complain("Initialize of " + cOptions.cType + " failed, so pads and keys may be missing here");
        }
        return true;
    }
    case Revealed::Kind::Object:
        *piStatus = ShowObject(cOptions, {cOptions.cType.c_str(), nullptr});
        return true;
    case Revealed::Kind::Failed:
        *piStatus = ExitFailed;
        return true;
    default:
        return false;
    }
}

int Show(const Options& cOptions, VESK::FRAMEWORK& cFramework, VESK::Factory& cFactory,
         const VESK::PluginDescription* pPlugin) {
    if (cOptions.cType.empty()) {
        return ShowAll(cOptions, pPlugin);
    }
    if (const auto* const pElement = VESK::FindElementDescription(pPlugin, cOptions.cType.c_str())) {
        return ShowElement(cOptions, *pElement);
    }
    for (const VESK::ObjectDescription* const pObject : ObjectsOf(pPlugin)) {
        if (cOptions.cType == pObject->pchType) {
            return ShowObject(cOptions, *pObject);
        }
    }
    int iStatus = ExitDone;
    return Reveal(cOptions, cFramework, cFactory, &iStatus) ? iStatus : ReportUnknown(cOptions, pPlugin);
}

int Inspect(Options Chosen) {
    if (Chosen.cType.empty() && !IsPath(Chosen.cPlugin)) {
        Chosen.cType.swap(Chosen.cPlugin);
    }
    if (Chosen.cPlugin == "libfwlib.so") {
        Chosen.cPlugin.clear();
    }
    VESK::FRAMEWORK cFramework;
    if (Chosen.cPlugin.empty()) {
        return Show(Chosen, cFramework, *GetFactory(), GetPluginDescription());
    }
    CatchFaults();
    VESK::FWPLUGIN cPlugin(VESK::Text(Chosen.cPlugin.c_str()));
    if (!Load(cPlugin, Chosen.cPlugin, cFramework)) {
        return ExitFailed;
    }
    return Show(Chosen, cFramework, *cPlugin.GetFactory(), cPlugin.GetDescription());
}

} // namespace

void AddInspect(const Command& cProgram) {
    const auto pOptions = std::make_shared<Options>();
    const Command cInspect = cProgram.Add("inspect", "Show the types of the library or a plugin", Examples);
    cInspect.AddOption("PLUGIN", pOptions->cPlugin, "The plugin; the library if absent").Shows("");
    cInspect.AddOption("TYPE", pOptions->cType, "The type; all types if absent").Shows("");
    cInspect.AddFlag("--json", pOptions->bJson, "Print JSON");
    cInspect.Runs([pOptions] { return Inspect(*pOptions); });
}

} // namespace FwPipe
