// SPDX-License-Identifier: MIT
// fwpipe: the host program for pipe files, and tools for recordings. Each subcommand has its own file.
#include "command.h"
#include "message.h"
#include "output.h"

#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <unistd.h>

namespace {

constexpr FwPipe::AddCommand Commands[] = {FwPipe::AddRun,   FwPipe::AddLaunch,  FwPipe::AddCheck,
                                           FwPipe::AddGraph, FwPipe::AddTest,    FwPipe::AddRecover,
                                           FwPipe::AddDump,  FwPipe::AddInspect, FwPipe::AddNew};

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
    for (const AddCommand pAdd : Commands) {
        pAdd(cProgram);
    }
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
