// SPDX-License-Identifier: MIT
// fwpipe dump: what an object stream holds.
#include "checks.h"
#include "command.h"
#include "file.h"
#include "interrupt.h"
#include "objectscan.h"
#include "output.h"
#include "progress.h"
#include "shown.h"

#include <algorithm>
#include <cerrno>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace FwPipe {

namespace {

struct Options {
    std::string cFile = "-"; // standard input
    bool bOneLine = false;
    bool bJson = false;
    unsigned long long ullHead = 0; // 0 for all
    std::vector<std::string> cWhere;
};

const char* const Examples = R"(Examples:
  fwpipe dump objects.txt                       a block for each object
  fwpipe dump --oneline --head 10 objects.txt   the first ten, a line each
  fwpipe dump --where Count=7 objects.txt       the objects with that property
  fwpipe run --quiet record.pipe | fwpipe dump  from a pipeline that records to standard output
  fwpipe dump --json objects.txt                {"type":"QObject","offset":0,"properties":[["Count","0"]]}

The last line counts the objects; with --json it goes to standard error.

Exit status:
  0         every object that was asked for is shown
  1         the stream is damaged: standard error tells where, and what is whole before it is shown; or the stream
            could not be read, or standard output not be written
  2         wrong usage
  130, 143  ended by SIGINT or SIGTERM
)";

bool Holds(const ObjectScan& cScan, const std::string& cCondition) {
    const std::size_t uEquals = cCondition.find('=');
    const std::string_view cKey = std::string_view(cCondition).substr(0, uEquals);
    const std::string_view cValue = std::string_view(cCondition).substr(uEquals + 1);
    for (std::size_t u = 0; u < cScan.Properties(); ++u) {
        if (cScan.Property(u) == std::make_pair(cKey, cValue)) {
            return true;
        }
    }
    return false;
}

bool IsAskedFor(const Options& cOptions, const ObjectScan& cScan) {
    return std::all_of(cOptions.cWhere.begin(), cOptions.cWhere.end(),
                       [&cScan](const std::string& cCondition) { return Holds(cScan, cCondition); });
}

// What a progress line can call the whole: the rest of a file, or 0 for what has no size.
unsigned long long SizeOf(const File& cInput) {
    struct stat Status = {};
    const bool bSized = fstat(cInput.Get(), &Status) == 0 && S_ISREG(Status.st_mode);
    const off_t iAt = bSized ? lseek(cInput.Get(), 0, SEEK_CUR) : 0;
    return Status.st_size > iAt && bSized ? static_cast<unsigned long long>(Status.st_size - iAt) : 0;
}

// Answers how many were shown. Ends early when that is enough, and when nobody takes them.
unsigned long long ShowAll(const Options& cOptions, const File& cInput, ObjectScan& cScan) {
    const ShowObject pShow = cOptions.bJson ? ShowJson : cOptions.bOneLine ? ShowLine : ShowBlock;
    const unsigned long long ullSize = SizeOf(cInput);
    Progress cProgress(!isatty(STDOUT_FILENO), "objects"); // or the two would be mixed
    unsigned long long ullShown = 0;
    bool bArrives = true;
    std::string cText;
    while ((cOptions.ullHead == 0 || ullShown < cOptions.ullHead) && bArrives && cScan.Next()) {
        if (IsAskedFor(cOptions, cScan)) {
            cText.clear();
            pShow(cScan, cText);
            bArrives = Print(cText);
            ++ullShown;
        }
        if (cProgress.Due()) {
            cProgress.Show(cScan.Whole(), cScan.End(), ullSize);
        }
    }
    return ullShown;
}

void Summarize(const Options& cOptions, const ObjectScan& cScan, unsigned long long ullShown) {
    std::FILE* const pStream = cOptions.bJson ? stderr : stdout;
    if (!cOptions.cWhere.empty()) {
        std::fprintf(pStream, "%llu of ", ullShown);
    }
    std::fprintf(pStream, "%llu object%s%s\n", cScan.Whole(), cScan.Whole() == 1 ? "" : "s",
                 ullShown == cOptions.ullHead && ullShown > 0 ? ", the rest not read" : "");
}

// Says why there was no further object: the exit status.
int Judge(const std::string& cName, const ObjectScan& cScan) {
    if (cScan.ReadError() != 0) {
        errno = cScan.ReadError();
        ReportErrno("cannot read", cName);
        return ExitFailed;
    }
    if (cScan.Reason()) {
        std::fprintf(stderr, "fwpipe: no whole object at byte %llu of %s: %s\n", cScan.Offset(),
                     cName.c_str(), cScan.Reason());
        return ExitFailed;
    }
    return ExitDone;
}

int Dump(const Options& cOptions) {
    CatchInterrupts();
    const bool bStandard = cOptions.cFile == "-";
    const std::string cName = bStandard ? "standard input" : cOptions.cFile;
    const File cInput(bStandard ? STDIN_FILENO : open(cOptions.cFile.c_str(), O_RDONLY | O_CLOEXEC));
    if (cInput.Get() < 0) {
        ReportErrno("cannot read", cName);
        return ExitFailed;
    }
    ObjectScan cScan(cInput.Get());
    const unsigned long long ullShown = ShowAll(cOptions, cInput, cScan);
    if (Interrupt()) {
        return ExitSignal + Interrupt();
    }
    if (std::ferror(stdout)) {
        return ExitDone; // which is told, and turned into a failure, at the end of every command
    }
    Summarize(cOptions, cScan, ullShown);
    // Sent before the reason, where both go to one place.
    return SendOn() ? Judge(cName, cScan) : ExitDone;
}

} // namespace

void AddDump(CLI::App& cApp, Action& cChosen) {
    const auto pOptions = std::make_shared<Options>();
    CLI::App* const pDump = cApp.add_subcommand("dump", "Show the objects of an object stream");
    pDump->footer(Examples);
    pDump->add_option("FILE", pOptions->cFile, "The object stream; standard input for \"-\" or when absent")
        ->type_name("");
    CLI::Option* const pOneLine = pDump->add_flag("--oneline", pOptions->bOneLine, "A line for each object");
    pDump->add_flag("--json", pOptions->bJson, "A line of JSON for each object")->excludes(pOneLine);
    pDump->add_option("--head", pOptions->ullHead, "Show the first N objects that are asked for")
        ->type_name("N")
        ->check(CLI::Validator(NotACount, ""));
    pDump
        ->add_option("--where", pOptions->cWhere,
                     "Show objects that have this property; given more than once, that have all of them")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false) // what follows is the next argument
        ->check(CLI::Validator(NotACondition, ""));
    pDump->callback([pOptions, &cChosen] { cChosen = [pOptions] { return Dump(*pOptions); }; });
}

} // namespace FwPipe
