// SPDX-License-Identifier: MIT
// fwpipe run: builds a pipeline from a pipe file, initializes it and runs it: once, several times or until a run
// returns 0.
#include "run.h"

#include "activeelement.h"
#include "checks.h"
#include "command.h"
#include "ending.h"
#include "failure.h"
#include "feedback.h"
#include "heldoutput.h"
#include "interrupt.h"
#include "loadererror.h"
#include "origin.h"
#include "output.h"
#include "reason.h"
#include "replaced.h"
#include "replay.h"

#include <fwlib/fwlib.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <unistd.h>

namespace FwPipe {

namespace {

using BuildFunction = std::function<int(VESK::EPipeline&)>;

const char* const Examples = R"(Examples:
  fwpipe run counter.pipe                    builds, initializes and runs the pipeline once
  fwpipe run --quiet counter.pipe > data     prints only the output of the elements
  fwpipe run --repeat 100 counter.pipe       runs one pipeline a hundred times
  fwpipe run --drain replay.pipe             runs until there is no more data
  fwpipe run --config lab.cfg counter.pipe   reads properties from the sections of lab.cfg
  fwpipe run --keep record.pipe              does not replace a recording
  fwpipe run --set tap.Debug=1 counter.pipe  replaces a property of the element named tap

Exit status:
  0         success; with --drain, also when a run returned 0 because there was no more data; also when an element
            requested the end of the runs
  1         building or initializing failed, a run returned 0, an element reported an error or could not end, objects
            were refused, a replay ended before the end of its data, a recorder would write a file that another element
            uses, or standard output could not be written
  2         wrong usage, also an element that --set names and that does not exist
  129, 130, 143
            ended by SIGHUP, SIGINT or SIGTERM; with --repeat or --drain, the first signal ends fwpipe after the
            current run, a second one at once. Elements that ask for the end notice the first one, also in a single run
  128 + N   fwpipe received the fatal signal N while an element ran, for example 139 for SIGSEGV
)";

// Held lines contain some of the library's reasons for a failure.
int BuildQuietly(const BuildFunction& Build, VESK::EPipeline& cPipeline) {
    HeldOutput cHeld;
    if (!cHeld.Holds()) {
        std::fprintf(stderr, "fwpipe: cannot hold back the progress lines: %s\n", std::strerror(errno));
        return 0;
    }
    const int iBuilt = Build(cPipeline);
    if (!iBuilt) {
        cHeld.ShowAll();
    }
    return iBuilt;
}

// The exit status after a step; ExitDone: continue. A signal explains a failure, so it is checked first.
int StatusOf(int iResult, bool bArrived) {
    return Interrupt() ? ExitSignal + Interrupt() : iResult && bArrived ? ExitDone : ExitFailed;
}

void TellFailure(const std::string& cWhat) {
    std::fprintf(stderr, "fwpipe: %s failed\n", cWhat.c_str());
}

struct Outcome {
    unsigned long long ullRuns = 0; // that returned 1
    bool bFailed = false;           // the last run returned 0, not because the data had ended
    int iStatus = ExitFailed;       // also when an element throws
};

// Runs as often as requested, until a run returns 0, output is lost, a signal arrives or an element requests the end.
void Loop(const RunOptions& cOptions, VESK::EPipeline& cPipeline, const Origin& cOrigin,
          EndRequests& cRequests, Outcome& cOutcome) {
    ReplayProgress cProgress(cOptions.bDrain, cPipeline, cOrigin);
    while ((cOptions.bDrain || cOutcome.ullRuns < cOptions.ullRepeat) && !cRequests.Any()) {
        const int iResult = cPipeline.Run();
        const bool bDrained = !iResult && (cOptions.bDrain || cRequests.Any());
        const bool bArrived = OutputArrived();
        cOutcome.ullRuns += iResult ? 1 : 0;
        if (!iResult || !bArrived || Interrupt()) {
            cOutcome.iStatus = StatusOf(iResult || bDrained, bArrived);
            cOutcome.bFailed = !iResult && !bDrained && !Interrupt();
            return;
        }
        cProgress.Ran(cOutcome.ullRuns);
    }
    cOutcome.iStatus = StatusOf(1, true);
}

// Tells the elements that there are no more runs. Returns false after a report.
bool End(const RunOptions& cOptions, VESK::EPipeline& cPipeline) {
    int iEnded = 0;
    if (Guarded([&] { iEnded = cPipeline.EndRuns(); }) && !iEnded) {
        TellFailure("ending " + cOptions.cFile);
    }
    return OutputArrived() && iEnded;
}

Asked AskedRuns(const RunOptions& cOptions) {
    return cOptions.bDrain ? Asked::All : cOptions.bLoop ? Asked::Number : Asked::One;
}

// Reports on runs that no element ended by an exception. With --drain, a refused object ends a replay too; the exit
// status is then that for refused objects.
int TellRuns(const RunOptions& cOptions, const VESK::EPipeline& cPipeline, const Origin& cOrigin,
             const Outcome& cRuns, bool bRequested) {
    if (cRuns.bFailed) {
        TellFailure("run " + std::to_string(cRuns.ullRuns + 1) + " of " + cOptions.cFile);
    }
    const bool bIgnored = cOptions.bIgnoreRefused && cOrigin.Counted().ullRefused > 0;
    const bool bLost = cRuns.iStatus == ExitDone && !bRequested &&
                       TellRest(AskedRuns(cOptions), cPipeline, cOrigin) && !bIgnored;
    return bLost ? ExitFailed : cRuns.iStatus;
}

int RunAll(const RunOptions& cOptions, VESK::EPipeline& cPipeline, Origin& cOrigin, EndRequests& cRequests) {
    const OriginWatch cWatch(cOrigin, cPipeline);
    const Report cReport(cOptions.bReport);
    Outcome cRuns;
    const bool bRan = Guarded([&] { Loop(cOptions, cPipeline, cOrigin, cRequests, cRuns); });
    const bool bRequested = cRequests.Any();
    const bool bEnded = End(cOptions, cPipeline);
    if (!bRan) {
        return ExitFailed;
    }
    cReport.Tell(cRuns.ullRuns, cOrigin);
    const int iStatus = TellRuns(cOptions, cPipeline, cOrigin, cRuns, bRequested);
    return Interrupt() ? ExitSignal + Interrupt() : bEnded ? iStatus : ExitFailed;
}

int Steps(RunOptions& cOptions, const BuildFunction& Build, VESK::EPipeline& cPipeline, Origin& cOrigin,
          EndRequests& cRequests) {
    const int iBuilt = cOptions.bQuiet ? BuildQuietly(Build, cPipeline) : Build(cPipeline);
    int iStatus = StatusOf(iBuilt, OutputArrived());
    if (!iBuilt && !Interrupt()) {
        ExplainFailedPlugin();
        TellFailedBuild(cOptions.cFile, cOptions.cConfig);
    }
    if (iStatus == ExitDone && !ReplaceProperties(cOptions.cSettings, cPipeline)) {
        iStatus = ExitUsage;
    }
    if (iStatus == ExitDone && !PrepareRecorders(cOptions.cRecorders, cPipeline)) {
        iStatus = ExitFailed;
    }
    if (iStatus != ExitDone) {
        return iStatus;
    }
    const int iInitialized = InitializeNoting(cPipeline);
    iStatus = StatusOf(iInitialized, OutputArrived());
    if (!iInitialized && !Interrupt()) {
        TellFailedInitialization(cOptions.cFile, cOptions.cConfig);
    }
    if (iStatus == ExitDone) {
        WarnOfFeedback(cPipeline);
        WatchElements(cPipeline);
        return RunAll(cOptions, cPipeline, cOrigin, cRequests);
    }
    if (iInitialized) {
        End(cOptions, cPipeline);
    }
    return iStatus;
}

void AddSafeguards(const Command& cRun, RunOptions& cOptions) {
    cRun.AddFlag("--keep", cOptions.cRecorders.bKeep,
                 "Do not replace recordings: set Existing to \"refuse\" on recorders without this property");
    cRun.AddFlag("--shared-files", cOptions.cRecorders.bShared,
                 "Let recorders write files that other elements of the pipeline use");
    cRun.AddFlag("--ignore-refused", cOptions.bIgnoreRefused,
                 "Refused objects do not change the exit status");
    cRun.AddFlag("--report", cOptions.bReport,
                 "Print runs, objects and time on standard error at the end (default on a terminal)");
}

// Before the other options, as their files are seen from that folder.
void AddFolder(const Command& cCommand) {
    cCommand
        .AddOption(
            "-C",
            [](const std::string& cFolder) {
                return chdir(cFolder.c_str()) == 0
                           ? std::string()
                           : "cannot change to " + cFolder + ": " + std::strerror(errno);
            },
            "Run as from that folder")
        .Shows("DIR");
}

} // namespace

void AddRunOptions(const Command& cCommand, RunOptions& cOptions) {
    AddFolder(cCommand);
    AddConfigOption(cCommand,
                    "Read each element's properties from the section of FILE that has the name of its type",
                    cOptions.cConfig);
    cCommand
        .AddOption("--set", cOptions.cSettings,
                   "Replace a property after building; OUTER/INNER.KEY in nested pipelines; may be repeated")
        .Shows("NAME.KEY=VALUE")
        .Single();
    const Option cDrain = cCommand.AddFlag("--drain", cOptions.bDrain, "Run until a run returns 0");
    const Option cRepeat =
        cCommand.AddOption("--repeat", cOptions.ullRepeat, "Run N times, or until a run returns 0")
            .Shows("N")
            .Check(NotACount)
            .Excludes(cDrain);
    cCommand.AddFlag("--quiet", cOptions.bQuiet,
                     "Do not print progress lines; a build that fails prints them on standard error");
    AddSafeguards(cCommand, cOptions);
    cCommand.WhenRead([&cOptions, cDrain, cRepeat] { cOptions.bLoop = cDrain.Given() || cRepeat.Given(); });
}

int RunPipeline(RunOptions& cOptions, const BuildFunction& Build) {
    if (cOptions.bLoop) {
        CatchInterrupts();
    }
    CatchFaults();
    VESK::FRAMEWORK cFramework;
    cFramework.SetProperty(VESK::Key::EndErrorLines, 1, VESK::Section::Standard); // as other lines follow
    EndRequests cRequests(cFramework);
    Origin cOrigin;
    int iStatus = ExitFailed;
    {
        VESK::EPipeline cPipeline; // destroyed before the framework, which unloads the code of its elements
        cPipeline.m_pFramework = &cFramework;
        Guarded([&] { iStatus = Steps(cOptions, Build, cPipeline, cOrigin, cRequests); });
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

void AddRun(const Command& cProgram) {
    const auto pOptions = std::make_shared<RunOptions>();
    const Command cRun =
        AddFileCommand(cProgram, "run", "Build a pipeline from a pipe file, initialize it and run it",
                       Examples, pOptions->cFile, "The pipe file");
    AddRunOptions(cRun, *pOptions);
    cRun.Runs([pOptions] {
        return RunPipeline(*pOptions, [pOptions](VESK::EPipeline& cPipeline) {
            char* const pchFile = pOptions->cFile.data();
            return pOptions->cConfig.empty() ? cPipeline.BuildPipe(pchFile)
                                             : cPipeline.BuildPipe(pchFile, 1, pOptions->cConfig.data());
        });
    });
}

} // namespace FwPipe
