// SPDX-License-Identifier: MIT
// fwpipe new: writes a project to begin with.
#include "checks.h"
#include "command.h"
#include "message.h"
#include "new/project.h"
#include "output.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

namespace FwPipe {

namespace {

struct Options {
    std::string cName;
    std::string cDir = ".";
};

const char* const Examples = R"(Examples:
  fwpipe new plugin Rate             writes the folder Rate
  fwpipe new plugin Rate --dir src   writes the folder src/Rate

The folder contains the source of one element, which is named ERate here, a unit test, a pipe file, the files for CMake
and a README. It must not exist yet.

Exit status:
  0         success
  1         the folder exists, or something could not be written; what was written is removed
  2         wrong usage
)";

int NewPlugin(const Options& cOptions) {
    const std::string cFolder = cOptions.cDir == "." ? cOptions.cName : cOptions.cDir + '/' + cOptions.cName;
    if (!WriteProject(cFolder, cOptions.cName)) {
        return ExitFailed;
    }
    Print(ShownOn(stdout, cFolder) + " is written. The next commands:\n  cd " + ShownOn(stdout, cFolder) +
          "\n  cmake --workflow --preset build\n  ctest --preset build\n  fwpipe run " +
          FileNameOf(cOptions.cName) + ".pipe\n");
    return ExitDone;
}

} // namespace

void AddNew(CLI::App& cApp, Action& cChosen) {
    const auto pOptions = std::make_shared<Options>();
    CLI::App* const pNew = cApp.add_subcommand("new", "Write a project to begin with");
    pNew->require_subcommand(1);
    pNew->footer(Examples);
    CLI::App* const pPlugin = pNew->add_subcommand("plugin", "Write a plugin with one element");
    pPlugin->footer(Examples);
    pPlugin
        ->add_option("NAME", pOptions->cName,
                     "The name of the folder, and of the element after an E; letters and digits")
        ->required()
        ->type_name("")
        ->check(CLI::Validator(WhyNoName, ""));
    pPlugin->add_option("--dir", pOptions->cDir, "The folder to write into; the working directory if absent")
        ->type_name("DIR");
    pPlugin->callback([pOptions, &cChosen] { cChosen = [pOptions] { return NewPlugin(*pOptions); }; });
}

} // namespace FwPipe
