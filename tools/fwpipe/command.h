// SPDX-License-Identifier: MIT
// What every subcommand of fwpipe is made of: a function that adds it to the command line, and the exit
// statuses. A new subcommand is one file with such a function, a line here and a line in the table of
// main.cpp.
#ifndef FWPIPE_COMMAND_H
#define FWPIPE_COMMAND_H

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace FwPipe {

enum ExitStatus {
    ExitDone = 0,
    ExitFailed = 1, // a step returned 0, the framework saw an error, or the output could not be written
    ExitUsage = 2,
    ExitCut = 3,     // a recording is damaged behind complete objects, which are shown or kept
    ExitSignal = 128 // plus the signal's number
};

// Does what the command line asked for and returns the exit status, after one line on standard error when
// that is ExitFailed.
using Action = std::function<int()>;

// Adds the subcommand, which stores its action in cChosen when the command line names it.
using AddCommand = void (*)(CLI::App& cApp, Action& cChosen);

// A subcommand that stands with one file, which the command line must name.
CLI::App& AddFileCommand(CLI::App& cApp, const char* pchName, const char* pchAbout, const char* pchExamples,
                         std::string& cFile, const char* pchFile);

void AddRun(CLI::App& cApp, Action& cChosen);
void AddRecover(CLI::App& cApp, Action& cChosen);
void AddDump(CLI::App& cApp, Action& cChosen);

} // namespace FwPipe

#endif
