// SPDX-License-Identifier: MIT
// fwpipe dump: shows the objects of an object stream.
#include "checks.h"
#include "command.h"
#include "file.h"
#include "interrupt.h"
#include "message.h"
#include "objectscan.h"
#include "output.h"
#include "progress.h"
#include "shown.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <deque>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace FwPipe {

namespace {

struct Options {
    std::string cFile = "-"; // standard input
    bool bOneLine = false;
    std::string cJson; // empty for none
    bool bRaw = false;
    bool bCount = false;
    unsigned long long ullHead = 0; // 0 for all
    unsigned long long ullTail = 0; // 0 for all
    std::vector<std::string> cWhere;
};

const char* const Examples = R"(Examples:
  fwpipe dump objects.txt                       prints a block of lines for each object
  fwpipe dump --oneline --head 10 objects.txt   prints the first ten, one line each
  fwpipe dump --oneline --tail 10 objects.txt   prints the last ten
  fwpipe dump --where Count=7 objects.txt       prints the objects with this property
  fwpipe dump --count --where a=b objects.txt   prints only the number of these objects
  fwpipe run --quiet record.pipe | fwpipe dump  reads what a pipeline records to standard output
  fwpipe dump --json objects.txt                {"type":"QObject","offset":0,"properties":{"Count":"0"}}
  fwpipe dump --json=pairs objects.txt          {"type":"QObject","offset":0,"properties":[["Count","0"]]}

The last line states the number of objects; with --json it is printed on standard error.

Control characters, characters that change the direction of text, and bytes that are not UTF-8 are escaped. Each of
their bytes is shown as "\xNN", and a backslash as "\\". In JSON, these characters are shown as "\uNNNN". With --raw
nothing is escaped, except what JSON requires.
In JSON, a key that occurs more than once in an object has an array of its values. An object with bytes that are not
UTF-8 has "escaped":true; in its texts, "\xNN" stands for such a byte and "\\" for a backslash.

Exit status:
  0         all selected objects were shown, and no damage was found; with --head, damage after the last object
            shown is not detected
  1         the recording does not begin with a complete object, or an error occurred while reading or writing
  2         wrong usage
  3         there is damage after complete objects; these were shown, and standard error reports the offset
  129, 130, 143
            ended by SIGHUP, SIGINT or SIGTERM
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

// The size for a progress line: that of the rest of a file; 0 if there is no size.
unsigned long long SizeOf(const File& cInput) {
    struct stat Status = {};
    const bool bSized = fstat(cInput.Get(), &Status) == 0 && S_ISREG(Status.st_mode);
    const off_t iAt = bSized ? lseek(cInput.Get(), 0, SEEK_CUR) : 0;
    return Status.st_size > iAt && bSized ? static_cast<unsigned long long>(Status.st_size - iAt) : 0;
}

ShowObject FormOf(const Options& cOptions) {
    if (!cOptions.cJson.empty()) {
        return cOptions.cJson == "pairs" ? ShowJsonPairs : ShowJson;
    }
    return cOptions.bOneLine ? ShowLine : ShowBlock;
}

// Shows each object at once, or keeps the last ones until the end.
class Shower {
public:
    explicit Shower(const Options& cOptions) : m_cOptions(cOptions), m_pShow(FormOf(cOptions)) {}

    // Returns false when the output is no longer read.
    bool Take(const ObjectScan& cScan) {
        ++m_ullTaken;
        if (m_cOptions.bCount) {
            return true;
        }
        if (m_cOptions.ullTail == 0) {
            m_cText.clear();
            m_pShow(cScan, m_cOptions.bRaw, m_cText);
            return Print(m_cText);
        }
        m_pShow(cScan, m_cOptions.bRaw, m_cLast.emplace_back());
        if (m_cLast.size() > m_cOptions.ullTail) {
            m_cLast.pop_front();
        }
        return true;
    }

    void Finish() const { std::all_of(m_cLast.begin(), m_cLast.end(), Print); }
    unsigned long long Taken() const { return m_ullTaken; }

private:
    const Options& m_cOptions;
    const ShowObject m_pShow;
    unsigned long long m_ullTaken = 0;
    std::string m_cText;
    std::deque<std::string> m_cLast;
};

// Returns the number of selected objects. Ends early after --head objects, and when the output is no longer read.
unsigned long long ShowAll(const Options& cOptions, const File& cInput, ObjectScan& cScan) {
    Shower cShower(cOptions);
    const unsigned long long ullSize = SizeOf(cInput);
    Progress cProgress(!isatty(STDOUT_FILENO), "objects"); // otherwise objects and progress would be mixed
    bool bArrives = true;
    while ((cOptions.ullHead == 0 || cShower.Taken() < cOptions.ullHead) && bArrives && cScan.Next()) {
        if (IsAskedFor(cOptions, cScan)) {
            bArrives = cShower.Take(cScan);
        }
        if (cProgress.Due()) {
            cProgress.Show(cScan.Whole(), cScan.End(), ullSize);
        }
    }
    if (!Interrupt()) {
        cShower.Finish();
    }
    return cShower.Taken();
}

void Summarize(const Options& cOptions, const ObjectScan& cScan, unsigned long long ullShown) {
    if (cOptions.bCount) {
        std::printf("%llu\n", ullShown);
        return;
    }
    std::FILE* const pStream = cOptions.cJson.empty() ? stdout : stderr;
    if (!cOptions.cWhere.empty()) {
        std::fprintf(pStream, "%llu of ", ullShown);
    }
    std::fprintf(pStream, "%llu object%s%s\n", cScan.Whole(), cScan.Whole() == 1 ? "" : "s",
                 ullShown == cOptions.ullHead && ullShown > 0 ? ", the rest not read" : "");
}

// Reports why there was no further object. Returns the exit status.
int Judge(const std::string& cName, const ObjectScan& cScan) {
    if (cScan.ReadError() != 0) {
        errno = cScan.ReadError();
        ReportErrno("cannot read", cName);
        return ExitFailed;
    }
    if (cScan.Reason()) {
        Complain("no complete object at byte " + std::to_string(cScan.Offset()) + " of " + cName + ": " +
                 cScan.Reason());
        return cScan.Whole() > 0 ? ExitCut : ExitFailed;
    }
    return ExitDone;
}

int Dump(const Options& cOptions) {
    CatchInterrupts();
    const bool bStandard = cOptions.cFile == "-";
    const std::string cName = bStandard ? "standard input" : cOptions.cFile;
    const File cInput(bStandard ? STDIN_FILENO : open(cOptions.cFile.c_str(), O_RDONLY | O_CLOEXEC));
    if (cInput.Get() < 0) {
        if (Interrupt()) { // while it waited for a writer of a fifo
            return ExitSignal + Interrupt();
        }
        ReportErrno("cannot read", cName);
        return ExitFailed;
    }
    ObjectScan cScan(cInput.Get());
    const unsigned long long ullShown = ShowAll(cOptions, cInput, cScan);
    if (Interrupt()) {
        return ExitSignal + Interrupt();
    }
    if (std::ferror(stdout)) {
        return ExitDone; // main reports this and fails
    }
    Summarize(cOptions, cScan, ullShown);
    // Flushed before the reason, as both may go to one file.
    return SendOn() ? Judge(cName, cScan) : ExitDone;
}

} // namespace

void AddDump(const Command& cProgram) {
    const auto pOptions = std::make_shared<Options>();
    const Command cDump = cProgram.Add("dump", "Show the objects of a recording", Examples);
    cDump.AddOption("FILE", pOptions->cFile, "The recording; standard input if absent or \"-\"").Shows("");
    const Option cOneLine = cDump.AddFlag("--oneline", pOptions->bOneLine, "Print one line for each object");
    const Option cJson =
        cDump
            .AddFlag("--json{object}", pOptions->cJson,
                     "Print one line of JSON for each object; --json=pairs prints properties as pairs")
            .OneOf({"object", "pairs"})
            .Excludes(cOneLine);
    const Option cRaw = cDump.AddFlag("--raw", pOptions->bRaw, "Do not escape control characters");
    const Option cHead =
        cDump.AddOption("--head", pOptions->ullHead, "Show only the first N selected objects")
            .Shows("N")
            .Check(NotACount);
    const Option cTail = cDump
                             .AddOption("--tail", pOptions->ullTail,
                                        "Show only the last N selected objects, which are kept in memory")
                             .Shows("N")
                             .Check(NotACount)
                             .Excludes(cHead);
    const Option cCount =
        cDump.AddFlag("--count", pOptions->bCount, "Print only the number of selected objects");
    for (const Option& cOther : {cOneLine, cJson, cRaw, cHead, cTail}) {
        cCount.Excludes(cOther);
    }
    cDump
        .AddOption("--where", pOptions->cWhere,
                   "Select objects that have this property; if repeated, objects that have all of them")
        .Shows("KEY=VALUE")
        .Single() // the next argument is not a second value
        .Check(NotACondition);
    cDump.Runs([pOptions] { return Dump(*pOptions); });
}

} // namespace FwPipe
