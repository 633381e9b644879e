// SPDX-License-Identifier: MIT
// fwpipe: the host program for pipe files, and tools for recordings. Each subcommand has its own file.
#include "command.h"
#include "message.h"
#include "output.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <unistd.h>

namespace {

constexpr FwPipe::AddCommand Commands[] = {FwPipe::AddRun,   FwPipe::AddLaunch,  FwPipe::AddCheck,
                                           FwPipe::AddGraph, FwPipe::AddTest,    FwPipe::AddRecover,
                                           FwPipe::AddDump,  FwPipe::AddInspect, FwPipe::AddNew};

// Lists the options that an option excludes in the order of their names, not of their addresses.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option* pOption) const override {
        std::string cText = CLI::Formatter::make_option_opts(pOption);
        const std::size_t uExcludes = cText.find(" Excludes:");
        if (uExcludes == std::string::npos) {
            return cText;
        }
        std::set<std::string> cNames;
        for (const CLI::Option* const pExcluded : pOption->get_excludes()) {
            cNames.insert(pExcluded->get_name());
        }
        cText.erase(uExcludes + sizeof " Excludes:" - 1);
        for (const std::string& cName : cNames) {
            cText += ' ' + cName;
        }
        return cText;
    }
};

int ReportUsage(const CLI::App& cApp, const CLI::ParseError& cError) {
    const auto cNamed = cApp.get_subcommands();
    const std::string cCommand = cNamed.empty() ? "" : cNamed.front()->get_name() + " ";
    const auto cUnknown = cApp.remaining();
    const std::string cComplaint = cNamed.empty() && !cUnknown.empty()
                                       ? "unknown command or option: " + cUnknown.front()
                                       : cError.what();
    FwPipe::Complain(cComplaint);
    std::fprintf(stderr, "Try \"fwpipe %s--help\".\n", cCommand.c_str());
    return FwPipe::ExitUsage;
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

CLI::App& FwPipe::AddFileCommand(CLI::App& cApp, const char* pchName, const char* pchAbout,
                                 const char* pchExamples, std::string& cFile, const char* pchFile) {
    CLI::App* const pCommand = cApp.add_subcommand(pchName, pchAbout);
    pCommand->footer(pchExamples);
    pCommand->add_option("FILE", cFile, pchFile)->required()->type_name("");
    return *pCommand;
}

void FwPipe::AddConfigOption(CLI::App& cCommand, const char* pchAbout, std::string& cConfig) {
    cCommand.add_option("--config", cConfig, pchAbout)
        ->type_name("FILE")
        ->check(CLI::Validator(Unreadable, ""));
}

int FwPipe::Execute(const std::vector<std::string>& cWords) {
    FwPipe::PrepareStreams();
    CLI::App cApp(
        "fwpipe runs, checks, draws and tests pipe files, shows and repairs recordings, describes types, and "
        "begins plugins.",
        "fwpipe");
    cApp.formatter(std::make_shared<HelpFormatter>());
    cApp.set_version_flag("--version", "fwpipe " FWPIPE_VERSION);
    cApp.require_subcommand(1);
    cApp.footer("\"fwpipe COMMAND --help\" shows the options of a command, with examples.");
    FwPipe::Action cChosen;
    for (const FwPipe::AddCommand pAdd : Commands) {
        pAdd(cApp, cChosen);
    }
    int iStatus = FwPipe::ExitDone;
    try {
        cApp.parse(std::vector<std::string>(cWords.rbegin(), cWords.rend())); // takes the last word first
    } catch (const CLI::Success& cHelp) {
        cApp.exit(cHelp);
    } catch (const CLI::ParseError& cError) {
        return ReportUsage(cApp, cError);
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
