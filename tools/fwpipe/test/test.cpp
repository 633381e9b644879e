// SPDX-License-Identifier: MIT
// fwpipe test: runs the cases of test files and compares what they do with what the files say.
#include "checks.h"
#include "command.h"
#include "interrupt.h"
#include "message.h"
#include "test/cases.h"
#include "test/runcase.h"
#include "test/update.h"
#include "test/written.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dtl/dtl.hpp>
#include <filesystem>
#include <fnmatch.h>
#include <memory>
#include <sstream>

namespace FwPipe {

namespace {

namespace fs = std::filesystem;

struct Options {
    std::vector<std::string> cFiles;
    std::vector<std::string> cLinks;
    std::string cFilter;
    unsigned int uTimeout = 60;
    bool bUpdate = false;
};

struct Count {
    unsigned int uPassed = 0;
    unsigned int uUpdated = 0;
    unsigned int uFailed = 0;
};

const char* const Examples =
    R"(A test file contains cases: a pipe file, objects for its elements, and what is expected.

  --- case warm readings pass
  --- pipe
  plugin libfwlib.so
  plugin librate.so
  element EFilter
  property Name filter
  property Key Celsius
  property Minimum 20
  --- input filter
  QObject
  Celsius=19.5

  QObject
  Celsius=21.5
  --- output filter
  QObject
  Celsius=21.5

docs/pipe-tests.md describes all sections. Each case runs in a process and an empty folder of its own.

Examples:
  fwpipe test filter.test                       runs all cases of the file
  fwpipe test --link build/librate.so *.test    the cases find librate.so in their folders
  fwpipe test --filter warm filter.test         runs the cases whose names contain "warm"
  fwpipe test --update filter.test              writes what the cases do into the file

Exit status:
  0         all cases passed, or were updated
  1         a case failed, or a file could not be written
  2         wrong usage; a file could not be read or is no test file; no case has such a name
  129, 130, 143
            ended by SIGHUP, SIGINT or SIGTERM
)";

// A folder that is removed with everything in it.
class Scratch {
public:
    Scratch() : m_cPath((fs::temp_directory_path() / "fwpipe-test-XXXXXX").string()) {
        if (!mkdtemp(m_cPath.data())) {
            throw std::runtime_error("cannot create " + m_cPath + ": " + std::strerror(errno));
        }
    }
    ~Scratch() {
        std::error_code cError;
        fs::remove_all(m_cPath, cError);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::string& Path() const { return m_cPath; }

private:
    std::string m_cPath;
};

using Lines = std::vector<std::string>;

// Omits the lines long after the first difference, as comparing many lines takes much time and memory.
void Shorten(Lines& cExpected, Lines& cFound) {
    constexpr std::size_t Most = 1000;
    const std::size_t uSame = std::min(cExpected.size(), cFound.size());
    const auto First = std::mismatch(cExpected.begin(),
                                     cExpected.begin() + static_cast<std::ptrdiff_t>(uSame), cFound.begin());
    const auto uEnd = static_cast<std::size_t>(First.first - cExpected.begin()) + Most;
    cExpected.resize(std::min(cExpected.size(), uEnd));
    cFound.resize(std::min(cFound.size(), uEnd));
}

// The text without its lines after the first ones.
std::string Beginning(const std::string& cText) {
    constexpr unsigned int Most = 100;
    std::size_t uEnd = 0;
    for (unsigned int u = 0; u < Most && uEnd < cText.size(); ++u) {
        uEnd = std::min(cText.find('\n', uEnd), cText.size() - 1) + 1;
    }
    const auto uMore = std::count(cText.begin() + static_cast<std::ptrdiff_t>(uEnd), cText.end(), '\n');
    return uMore == 0 ? cText : cText.substr(0, uEnd) + "(" + std::to_string(uMore) + " more lines)\n";
}

// The lines in the form of the test file, as a unified diff.
std::string Shown(const Difference& cDifference) {
    const bool bLine = cDifference.IsInHeading();
    const std::string cName =
        cDifference.cKind + (bLine || cDifference.cArgument.empty() ? "" : " " + cDifference.cArgument);
    Lines cExpected = bLine ? Lines{cDifference.cExpected} : Written(cDifference.cExpected);
    Lines cFound = bLine ? Lines{cDifference.cFound} : Written(cDifference.cFound);
    Shorten(cExpected, cFound);
    dtl::Diff<std::string> cDiff(cExpected, cFound);
    cDiff.compose();
    cDiff.composeUnifiedHunks();
    std::ostringstream cText;
    cText << "--- " << cName << ", expected\n+++ " << cName << ", found\n";
    cDiff.printUnifiedFormat(cText);
    return Beginning(cText.str());
}

void Show(const TestFile& cFile, const Case& cCase, const char* pchResult, const CaseResult& cResult) {
    std::string cText =
        cFile.cPath + ':' + std::to_string(cCase.uLine) + ": " + cCase.cName + ": " + pchResult + '\n';
    cText += cResult.cTrouble.empty() ? "" : cFile.cPath + ':' + cResult.cTrouble + '\n';
    std::fputs(cText.c_str(), stdout);
    for (const Difference& cDifference : cResult.cDifferences) {
        std::fputs(Shown(cDifference).c_str(), stdout);
    }
}

bool Matches(const Options& cOptions, const Case& cCase) {
    return fnmatch(('*' + cOptions.cFilter + '*').c_str(), cCase.cName.c_str(), 0) == 0;
}

std::vector<std::string> Links(const Options& cOptions, const TestFile& cFile) {
    std::vector<std::string> cLinks;
    const auto Add = [&cLinks](const fs::path& cPath) {
        const fs::path cWhole = fs::absolute(cPath).lexically_normal();
        if (!fs::exists(cWhole)) {
            throw TestFileError(0, "no file to link: " + cPath.string());
        }
        cLinks.push_back((cWhole.has_filename() ? cWhole : cWhole.parent_path()).string());
        const fs::path cName = fs::path(cLinks.back()).filename();
        if (std::any_of(cLinks.begin(), cLinks.end() - 1,
                        [&](const fs::path& cOther) { return cOther.filename() == cName; })) {
            throw TestFileError(0, "two links have the name " + cName.string());
        }
    };
    for (const std::string& cLink : cFile.cLinks) {
        Add(fs::path(cFile.cPath).parent_path() / cLink);
    }
    for (const std::string& cLink : cOptions.cLinks) {
        Add(cLink);
    }
    return cLinks;
}

using Update = std::pair<const Case*, CaseResult>;

// Omits what an "also" case has from an earlier case that gets the same text.
void OmitShared(std::vector<Update>& cUpdates) {
    const auto IsShared = [&cUpdates](const Case& cCase, const Difference& cOwn) {
        return cOwn.pSection && cOwn.pSection->uLine < cCase.uLine &&
               std::any_of(cUpdates.begin(), cUpdates.end(), [&](const Update& cUpdate) {
                   const std::vector<Difference>& cOthers = cUpdate.second.cDifferences;
                   return cUpdate.first->uLine < cCase.uLine &&
                          std::any_of(cOthers.begin(), cOthers.end(), [&](const Difference& cOther) {
                              return cOther.pSection && cOther.pSection->uLine == cOwn.pSection->uLine &&
                                     cOther.cFound == cOwn.cFound;
                          });
               });
    };
    for (auto pUpdate = cUpdates.rbegin(); pUpdate != cUpdates.rend(); ++pUpdate) {
        std::vector<Difference>& cOwn = pUpdate->second.cDifferences;
        cOwn.erase(std::remove_if(cOwn.begin(), cOwn.end(),
                                  [&](const Difference& c) { return IsShared(*pUpdate->first, c); }),
                   cOwn.end());
    }
}

// Runs the cases of a file.
void Run(const Options& cOptions, const TestFile& cFile, const std::vector<std::string>& cLinks,
         Count& cCount) {
    std::vector<Update> cUpdates;
    for (const Case& cCase : cFile.cCases) {
        if (!Matches(cOptions, cCase) || Interrupt()) {
            continue;
        }
        const Scratch cScratch;
        CaseResult cResult = RunCase(cCase, {cScratch.Path(), cLinks, cOptions.uTimeout});
        if (cResult.cDifferences.empty() && cResult.cTrouble.empty()) {
            Show(cFile, cCase, "ok", cResult);
            ++cCount.uPassed;
        } else if (cOptions.bUpdate && cResult.cTrouble.empty()) {
            std::printf("%s:%u: %s: updated\n", cFile.cPath.c_str(), cCase.uLine, cCase.cName.c_str());
            ++cCount.uUpdated;
            cUpdates.emplace_back(&cCase, std::move(cResult));
        } else if (!Interrupt()) {
            Show(cFile, cCase, "FAILED", cResult);
            ++cCount.uFailed;
        }
    }
    if (!cUpdates.empty() && !Interrupt()) {
        OmitShared(cUpdates);
        std::vector<std::string> cLines = cFile.cLines;
        for (auto pUpdate = cUpdates.rbegin(); pUpdate != cUpdates.rend(); ++pUpdate) {
            UpdateCase(*pUpdate->first, pUpdate->second, cLines);
        }
        WriteTestFile(cFile, cLines);
    }
}

int Test(const Options& cOptions) {
    std::vector<TestFile> cFiles;
    std::vector<std::vector<std::string>> cLinks;
    for (const std::string& cPath : cOptions.cFiles) {
        try {
            cFiles.push_back(ReadTestFile(cPath));
            cLinks.push_back(Links(cOptions, cFiles.back()));
        } catch (const TestFileError& cError) {
            const std::string cLine = cError.uLine ? ":" + std::to_string(cError.uLine) : "";
            Complain(cPath + cLine + ": " + cError.what());
            return ExitUsage;
        }
    }
    CatchInterrupts();
    Count cCount;
    for (std::size_t u = 0; u < cFiles.size(); ++u) {
        Run(cOptions, cFiles[u], cLinks[u], cCount);
    }
    if (Interrupt()) {
        return ExitSignal + Interrupt();
    }
    if (cCount.uPassed + cCount.uUpdated + cCount.uFailed == 0) {
        Complain("no case has a name that contains \"" + cOptions.cFilter + '"');
        return ExitUsage;
    }
    std::printf("%u passed, ", cCount.uPassed);
    if (cOptions.bUpdate) {
        std::printf("%u updated, ", cCount.uUpdated);
    }
    std::printf("%u failed\n", cCount.uFailed);
    return cCount.uFailed ? ExitFailed : ExitDone;
}

} // namespace

void AddTest(const Command& cProgram) {
    const auto pOptions = std::make_shared<Options>();
    const Command cTest = cProgram.Add("test", "Run the cases of test files", Examples);
    cTest.AddOption("FILE", pOptions->cFiles, "The test files").Required().Shows("...");
    cTest
        .AddOption("--filter", pOptions->cFilter,
                   "Run only cases whose names contain this text; * and ? stand for other characters")
        .Shows("TEXT");
    cTest
        .AddOption("--link", pOptions->cLinks,
                   "Make this file or folder available in the folder of each case; may be repeated")
        .Shows("PATH")
        .Single();
    cTest.AddOption("--timeout", pOptions->uTimeout, "End a case after this many seconds; 0 for never")
        .Shows("SECONDS")
        .ShowsDefault();
    cTest.AddFlag("--update", pOptions->bUpdate,
                  "Write what the cases do into the files as what is expected");
    cTest.Runs([pOptions] { return Test(*pOptions); });
}

} // namespace FwPipe
