// SPDX-License-Identifier: MIT
// fwpipe run: builds a pipeline from a pipe file, initializes it and runs it: once, several times or until a run
// returns 0.
#include "activeelement.h"
#include "checks.h"
#include "command.h"
#include "ending.h"
#include "failure.h"
#include "feedback.h"
#include "heldoutput.h"
#include "interrupt.h"
#include "origin.h"
#include "output.h"
#include "recorders.h"
#include "replay.h"

#include <fwlib/fwlib.h>

#include <cerrno>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>

namespace FwPipe {

namespace {

struct Options {
    std::string cFile;
    std::string cConfig; // empty for none
    unsigned long long ullRepeat = 1;
    bool bDrain = false;
    bool bQuiet = false;
    bool bLoop = false; // --repeat or --drain was given
    bool bIgnoreRefused = false;
    bool bReport = false;
    RecorderOptions cRecorders;

    Asked Runs() const { return bDrain ? Asked::All : bLoop ? Asked::Number : Asked::One; }
};

const char* const Examples = R"(Examples:
  fwpipe run counter.pipe                    builds, initializes and runs the pipeline once
  fwpipe run --quiet counter.pipe > data     prints only the output of the elements
  fwpipe run --repeat 100 counter.pipe       runs one pipeline a hundred times
  fwpipe run --drain replay.pipe             runs until there is no more data
  fwpipe run --config lab.cfg counter.pipe   reads properties from the sections of lab.cfg
  fwpipe run --keep record.pipe              does not replace a recording

Exit status:
  0         success; with --drain, also when a run returned 0 because there was no more data
  1         building or initializing failed, a run returned 0, an element reported an error, objects were refused, a
            replay ended before the end of its data, a recorder would write a file that another element uses, or
            standard output could not be written
  2         wrong usage
  129, 130, 143
            ended by SIGHUP, SIGINT or SIGTERM; with --repeat or --drain, the first signal ends fwpipe after the
            current run, a second one at once
  128 + N   fwpipe received the fatal signal N while an element ran, for example 139 for SIGSEGV
)";

int Build(Options& cOptions, VESK::EPipeline& cPipeline) {
    char* const pchFile = cOptions.cFile.data();
    return cOptions.cConfig.empty() ? cPipeline.BuildPipe(pchFile)
                                    : cPipeline.BuildPipe(pchFile, 1, cOptions.cConfig.data());
}

// Held lines contain some of the library's reasons for a failure.
int BuildQuietly(Options& cOptions, VESK::EPipeline& cPipeline) {
    HeldOutput cHeld;
    if (!cHeld.Holds()) {
        std::fprintf(stderr, "fwpipe: cannot hold back the progress lines: %s\n", std::strerror(errno));
        return 0;
    }
    const int iBuilt = Build(cOptions, cPipeline);
    if (!iBuilt) {
        cHeld.ShowAll();
    }
    return iBuilt;
}

// The exit status after a step; ExitDone: continue. A signal explains a failure, so it is checked first.
int Judge(int iResult, bool bArrived, const std::string& cComplaint) {
    if (Interrupt()) {
        return ExitSignal + Interrupt();
    }
    if (!iResult) {
        std::fprintf(stderr, "fwpipe: %s\n", cComplaint.c_str());
    }
    return iResult && bArrived ? ExitDone : ExitFailed;
}

// Runs as often as requested, until a run returns 0, output is lost or a signal arrives.
int Loop(const Options& cOptions, VESK::EPipeline& cPipeline, const Origin& cOrigin) {
    const Report cReport(cOptions.bReport);
    ReplayProgress cProgress(cOptions.bDrain, cPipeline, cOrigin);
    unsigned long long ull = 0;
    while (cOptions.bDrain || ull < cOptions.ullRepeat) {
        const int iResult = cPipeline.Run();
        const bool bDrained = cOptions.bDrain && !iResult;
        const bool bArrived = OutputArrived();
        if (iResult && bArrived && !Interrupt()) {
            cProgress.Ran(++ull);
            continue;
        }
        cProgress.Stop();
        cReport.Tell(ull + (iResult ? 1 : 0), cOrigin);
        return Judge(iResult || bDrained, bArrived,
                     "run " + std::to_string(ull + 1) + " of " + cOptions.cFile + " failed");
    }
    cReport.Tell(ull, cOrigin);
    return ExitDone;
}

// With --drain, a refused object ends a replay too; the exit status is then that for refused objects.
int RunAll(const Options& cOptions, VESK::EPipeline& cPipeline, Origin& cOrigin) {
    const OriginWatch cWatch(cOrigin, cPipeline);
    const int iStatus = Loop(cOptions, cPipeline, cOrigin);
    const bool bIgnored = cOptions.bIgnoreRefused && cOrigin.Counted().ullRefused > 0;
    const bool bLost = iStatus == ExitDone && TellRest(cOptions.Runs(), cPipeline, cOrigin) && !bIgnored;
    return bLost ? ExitFailed : iStatus;
}

int Steps(Options& cOptions, VESK::EPipeline& cPipeline, Origin& cOrigin) {
    const int iBuilt = cOptions.bQuiet ? BuildQuietly(cOptions, cPipeline) : Build(cOptions, cPipeline);
    int iStatus = Judge(iBuilt, OutputArrived(), "building " + cOptions.cFile + " failed");
    if (iStatus == ExitDone && !PrepareRecorders(cOptions.cRecorders, cPipeline)) {
        iStatus = ExitFailed;
    }
    if (iStatus == ExitDone) {
        const int iInitialized = InitializeNoting(cPipeline);
        iStatus = Judge(iInitialized, OutputArrived(), "initializing " + cOptions.cFile + " failed");
    }
    if (iStatus == ExitDone) {
        WarnOfFeedback(cPipeline);
        WatchElements(cPipeline);
        iStatus = RunAll(cOptions, cPipeline, cOrigin);
    }
    return iStatus;
}

int Run(Options& cOptions) {
    if (cOptions.bLoop) {
        CatchInterrupts();
    }
    CatchFaults();
    VESK::FRAMEWORK cFramework;
    cFramework.SetProperty(VESK::Key::EndErrorLines, 1, VESK::Section::Standard); // as other lines follow
    Origin cOrigin;
    int iStatus = ExitFailed;
    {
        VESK::EPipeline cPipeline; // destroyed before the framework, which unloads the code of its elements
        cPipeline.m_pFramework = &cFramework;
        Guarded([&] { iStatus = Steps(cOptions, cPipeline, cOrigin); });
        NoteDestruction(cPipeline);
    }
    if (iStatus == ExitDone && cFramework.m_bError) {
        std::fprintf(stderr, "fwpipe: %s ran, but errors were reported\n", cOptions.cFile.c_str());
        iStatus = ExitFailed;
    }
    if (cOrigin.TellRefused() && iStatus == ExitDone && !cOptions.bIgnoreRefused) {
        iStatus = ExitFailed;
    }
    return iStatus;
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

void AddSafeguards(CLI::App& cRun, Options& cOptions) {
    cRun.add_flag("--keep", cOptions.cRecorders.bKeep,
                  "Do not replace recordings: set Existing to \"refuse\" on recorders without this property");
    cRun.add_flag("--shared-files", cOptions.cRecorders.bShared,
                  "Let recorders write files that other elements of the pipeline use");
    cRun.add_flag("--ignore-refused", cOptions.bIgnoreRefused,
                  "Refused objects do not change the exit status");
    cRun.add_flag("--report", cOptions.bReport,
                  "Print runs, objects and time on standard error at the end (default on a terminal)");
}

} // namespace

void AddRun(CLI::App& cApp, Action& cChosen) {
    const auto pOptions = std::make_shared<Options>();
    CLI::App& cRun =
        AddFileCommand(cApp, "run", "Build a pipeline from a pipe file, initialize it and run it", Examples,
                       pOptions->cFile, "The pipe file");
    cRun.add_option("--config", pOptions->cConfig,
                    "Read each element's properties from the section of FILE that has the name of its type")
        ->type_name("FILE")
        ->check(CLI::Validator(Unreadable, ""));
    CLI::Option* const pDrain = cRun.add_flag("--drain", pOptions->bDrain, "Run until a run returns 0");
    CLI::Option* const pRepeat =
        cRun.add_option("--repeat", pOptions->ullRepeat, "Run N times, or until a run returns 0")
            ->type_name("N")
            ->check(CLI::Validator(NotACount, ""))
            ->excludes(pDrain);
    cRun.add_flag("--quiet", pOptions->bQuiet,
                  "Do not print progress lines; a build that fails prints them on standard error");
    AddSafeguards(cRun, *pOptions);
    cRun.callback([pOptions, pDrain, pRepeat, &cChosen] {
        pOptions->bLoop = pDrain->count() > 0 || pRepeat->count() > 0;
        cChosen = [pOptions] { return Run(*pOptions); };
    });
}

} // namespace FwPipe
