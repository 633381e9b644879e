// SPDX-License-Identifier: MIT
// What all subcommands of fwpipe share: the functions that add them to the command line, and the exit statuses. A new
// subcommand is one file with such a function, a line here and a row in the table of main.cpp.
#ifndef FWPIPE_COMMAND_H
#define FWPIPE_COMMAND_H

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace FwPipe {

enum ExitStatus {
    ExitDone = 0,
    ExitFailed = 1, // a step returned 0, an error was reported, or the output could not be written
    ExitUsage = 2,
    ExitCut = 3,     // a recording is damaged after complete objects, which were shown or kept
    ExitSignal = 128 // plus the number of the signal
};

// Executes the command line and returns the exit status. If that is ExitFailed, one line on standard error says why.
using Action = std::function<int()>;

// Executes a command line, without the name of the program, and returns the exit status.
int Execute(const std::vector<std::string>& cWords);

// Adds the subcommand, which stores its action in cChosen if the command line names it.
using AddCommand = void (*)(CLI::App& cApp, Action& cChosen);

// Adds a subcommand with one required file argument.
CLI::App& AddFileCommand(CLI::App& cApp, const char* pchName, const char* pchAbout, const char* pchExamples,
                         std::string& cFile, const char* pchFile);

// Adds --config, which requires a regular file that can be read.
void AddConfigOption(CLI::App& cCommand, const char* pchAbout, std::string& cConfig);

void AddRun(CLI::App& cApp, Action& cChosen);
void AddLaunch(CLI::App& cApp, Action& cChosen);
void AddCheck(CLI::App& cApp, Action& cChosen);
void AddGraph(CLI::App& cApp, Action& cChosen);
void AddRecover(CLI::App& cApp, Action& cChosen);
void AddDump(CLI::App& cApp, Action& cChosen);
void AddInspect(CLI::App& cApp, Action& cChosen);
void AddTest(CLI::App& cApp, Action& cChosen);
void AddNew(CLI::App& cApp, Action& cChosen);

} // namespace FwPipe

#endif
