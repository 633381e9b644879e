// SPDX-License-Identifier: MIT
// fwpipe: the host program for pipe files, and tools for recordings. Each subcommand has its own file.
#include "command.h"
#include "message.h"
#include "output.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <new>
#include <string>
#include <unistd.h>

namespace {

struct NamedCommand {
    const char* pchName;
    FwPipe::AddCommand pAdd;
};
constexpr NamedCommand Commands[] = {
    {"run", FwPipe::AddRun},     {"launch", FwPipe::AddLaunch},   {"check", FwPipe::AddCheck},
    {"graph", FwPipe::AddGraph}, {"test", FwPipe::AddTest},       {"recover", FwPipe::AddRecover},
    {"dump", FwPipe::AddDump},   {"inspect", FwPipe::AddInspect}, {"new", FwPipe::AddNew}};

// Adds the command that the first word names, otherwise all, as the help lists them. Declaring the options of all takes
// longer than building a small pipeline, and a file may have the name of a command.
void AddCommands(const FwPipe::Command& cProgram, const std::vector<std::string>& cWords) {
    const auto pNamed =
        std::find_if(std::begin(Commands), std::end(Commands), [&](const NamedCommand& cCommand) {
            return !cWords.empty() && cWords.front() == cCommand.pchName;
        });
    if (pNamed != std::end(Commands)) {
        pNamed->pAdd(cProgram);
        return;
    }
    for (const NamedCommand& cCommand : Commands) {
        cCommand.pAdd(cProgram);
    }
}

// The library ignores a configuration file that it cannot read, but a user who passes one expects that it is read. Each
// element opens the file again, so a pipe would be empty for the second one.
std::string Unreadable(const std::string& cPath) {
    std::error_code cError;
    if (access(cPath.c_str(), R_OK) != 0) {
        return "cannot read " + cPath;
    }
    return std::filesystem::is_regular_file(cPath, cError)
               ? ""
               : "cannot read " + cPath + " again for each element: it is no regular file";
}

// A line of a stream, for example, may be longer than the memory. Exceptions of elements arrive here too.
int Carry(const FwPipe::Action& cChosen) {
    try {
        return cChosen();
    } catch (const std::bad_alloc& cError) {
        FwPipe::Complain(std::string("not enough memory: ") + cError.what());
    } catch (const std::exception& cError) {
        FwPipe::Complain(cError.what());
    }
    return FwPipe::ExitFailed;
}

} // namespace

FwPipe::Command FwPipe::AddFileCommand(const Command& cProgram, const char* pchName, const char* pchAbout,
                                       const char* pchExamples, std::string& cFile, const char* pchFile) {
    const Command cCommand = cProgram.Add(pchName, pchAbout, pchExamples);
    cCommand.AddOption("FILE", cFile, pchFile).Required().Shows("");
    return cCommand;
}

void FwPipe::AddConfigOption(const Command& cCommand, const char* pchAbout, std::string& cConfig) {
    cCommand.AddOption("--config", cConfig, pchAbout).Shows("FILE").Check(Unreadable);
}

int FwPipe::Execute(const std::vector<std::string>& cWords) {
    PrepareStreams();
    CommandLine cLine(
        "fwpipe runs, checks, draws and tests pipe files, shows and repairs recordings, describes "
        "types, and begins plugins.",
        "\"fwpipe COMMAND --help\" shows the options of a command, with examples.");
    const Command cProgram = cLine.Program();
    cProgram.RequireSubcommand();
    AddCommands(cProgram, cWords);
    Action cChosen;
    int iStatus = cLine.Read(cWords, cChosen);
    if (iStatus != ExitDone) {
        return iStatus;
    }
    if (cChosen) {
        iStatus = Carry(cChosen);
    }
    const bool bPrinted = iStatus == FwPipe::ExitDone || iStatus == FwPipe::ExitCut;
    return bPrinted && !FwPipe::OutputArrived() ? FwPipe::ExitFailed : iStatus;
}

int main(int iArguments, char** ppchArguments) {
    return FwPipe::Execute({ppchArguments + (iArguments > 0), ppchArguments + iArguments});
}
