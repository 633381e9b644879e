// SPDX-License-Identifier: MIT
// What all subcommands of fwpipe share: the functions that add them to the command line, and the exit statuses. A new
// subcommand is one file with such a function, a line here and a row in the table of main.cpp.
#ifndef FWPIPE_COMMAND_H
#define FWPIPE_COMMAND_H

#include "commandline.h"

#include <string>
#include <vector>

namespace FwPipe {

enum ExitStatus {
    ExitDone = 0,
    ExitFailed = 1, // a step returned 0, an error was reported, or the output could not be written
    ExitUsage = 2,
    ExitCut = 3,     // a recording is damaged after complete objects, which were shown or kept
    ExitSignal = 128 // plus the number of the signal
};

// Executes a command line, without the name of the program, and returns the exit status.
int Execute(const std::vector<std::string>& cWords);

// Adds the subcommand to the program.
using AddCommand = void (*)(const Command& cProgram);

// Adds a subcommand with one required file argument.
Command AddFileCommand(const Command& cProgram, const char* pchName, const char* pchAbout,
                       const char* pchExamples, std::string& cFile, const char* pchFile);

// Adds --config, which requires a regular file that can be read.
void AddConfigOption(const Command& cCommand, const char* pchAbout, std::string& cConfig);

void AddRun(const Command& cProgram);
void AddLaunch(const Command& cProgram);
void AddCheck(const Command& cProgram);
void AddGraph(const Command& cProgram);
void AddRecover(const Command& cProgram);
void AddDump(const Command& cProgram);
void AddInspect(const Command& cProgram);
void AddTest(const Command& cProgram);
void AddNew(const Command& cProgram);

} // namespace FwPipe

#endif
