// SPDX-License-Identifier: MIT
// fwpipe new: writes a project to begin with.
#include "checks.h"
#include "command.h"
#include "message.h"
#include "new/project.h"
#include "output.h"

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

void AddNew(const Command& cProgram) {
    const auto pOptions = std::make_shared<Options>();
    const Command cNew = cProgram.Add("new", "Write a project to begin with", Examples);
    cNew.RequireSubcommand();
    const Command cPlugin = cNew.Add("plugin", "Write a plugin with one element", Examples);
    cPlugin
        .AddOption("NAME", pOptions->cName,
                   "The name of the folder, and of the element after an E; letters and digits")
        .Required()
        .Shows("")
        .Check(WhyNoName);
    cPlugin.AddOption("--dir", pOptions->cDir, "The folder to write into; the working directory if absent")
        .Shows("DIR");
    cPlugin.Runs([pOptions] { return NewPlugin(*pOptions); });
}

} // namespace FwPipe
