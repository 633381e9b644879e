// SPDX-License-Identifier: MIT
#include "runcase.h"

#include "command.h"
#include "interrupt.h"
#include "output.h"
#include "test/steps.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace FwPipe {

namespace {

namespace fs = std::filesystem;

std::string Read(const std::string& cPath) {
    std::ifstream cStream(cPath, std::ios::binary);
    std::ostringstream cText;
    cText << cStream.rdbuf();
    return cStream.is_open() ? cText.str() : "";
}

void Write(const std::string& cPath, const std::string& cText) {
    std::error_code cError;
    fs::create_directories(fs::path(cPath).parent_path(), cError);
    std::ofstream cStream(cPath, std::ios::binary);
    if (!(cStream << cText << std::flush)) {
        throw std::runtime_error("cannot write " + cPath + ": " + std::strerror(errno));
    }
}

// The path of a file of the case. It must be in the case's folder, also if links are followed: what they lead to is not
// the case's own.
std::string PlaceOf(const Section& cSection, const std::string& cFolder) {
    const std::string cName = cSection.cKind == "pipe" ? "main.pipe" : cSection.cArgument;
    const fs::path cPath = fs::weakly_canonical(fs::path(cFolder + '/' + cName));
    if (cPath.string().compare(0, cFolder.size() + 1, fs::canonical(cFolder).string() + '/') != 0) {
        throw TestFileError(cSection.uLine, "the file is not in the folder of the case");
    }
    return cPath.string();
}

CaseFolder Prepare(const Case& cCase, const CaseOptions& cOptions) {
    CaseFolder cFolder{cOptions.cScratch + "/case", cOptions.cScratch + "/results"};
    fs::create_directory(cFolder.cWork);
    fs::create_directory(cFolder.cResults);
    for (const std::string& cLink : cOptions.cLinks) {
        fs::create_symlink(cLink, fs::path(cFolder.cWork) / fs::path(cLink).filename());
    }
    for (const Section& cSection : cCase.cSections) {
        if (cSection.cKind == "pipe" || cSection.cKind == "file") {
            Write(PlaceOf(cSection, cFolder.cWork), cSection.cText);
        }
    }
    const Section* const pInput = cCase.Find("stdin");
    Write(cFolder.cResults + "/in", pInput ? pInput->cText : "");
    return cFolder;
}

// The process of the case. Ends it.
[[noreturn]] void Become(const Case& cCase, const CaseFolder& cFolder, unsigned int uTimeout) {
    for (const int iSignal : {SIGHUP, SIGINT, SIGTERM, SIGALRM}) {
        std::signal(iSignal, SIG_DFL);
    }
    alarm(uTimeout);
    if (chdir(cFolder.cWork.c_str()) != 0 || !std::freopen((cFolder.cResults + "/in").c_str(), "r", stdin) ||
        !std::freopen((cFolder.cResults + "/out").c_str(), "w", stdout) ||
        !std::freopen((cFolder.cResults + "/err").c_str(), "w", stderr)) {
        _exit(ExitUsage);
    }
    int iStatus = ExitDone;
    if (const Section* const pCommand = cCase.Find("fwpipe")) {
        std::vector<std::string> cWords;
        std::istringstream cText(pCommand->cArgument);
        for (std::string cWord; cText >> cWord;) {
            cWords.push_back(cWord);
        }
        iStatus = Execute(cWords);
    } else {
        MakeSteps(cCase, cFolder);
    }
    std::exit(iStatus); // not _exit: checkers look for leaks at an orderly end
}

// The status in the form of a shell.
int Wait(pid_t iProcess) {
    int iStatus = 0;
    while (waitpid(iProcess, &iStatus, 0) < 0) {
        if (errno == EINTR && Interrupt()) {
            kill(iProcess, SIGTERM);
        } else if (errno != EINTR) {
            throw std::runtime_error(std::string("cannot wait for the case: ") + std::strerror(errno));
        }
    }
    return WIFSIGNALED(iStatus) ? ExitSignal + WTERMSIG(iStatus) : WEXITSTATUS(iStatus);
}

// A text with "<loader>" expects any text up to the end of the line there.
std::string HideLoader(const std::string& cExpected, std::string cFound) {
    static const std::string Mark = "<loader>";
    for (std::size_t u = 0; (u = cExpected.find(Mark, u)) < cFound.size(); u += Mark.size()) {
        cFound.replace(u, std::min(cFound.find('\n', u), cFound.size()) - u, Mark);
    }
    return cFound;
}

class Comparison {
public:
    Comparison(const Case& cCase, CaseResult& cResult) : m_cCase(cCase), m_cResult(cResult) {}

    void Text(const std::string& cKind, const std::string& cArgument, const std::string& cFound) {
        const Section* const pSection = m_cCase.Find(cKind, cArgument);
        const std::string cExpected = pSection ? pSection->cText : "";
        Compare({cKind, cArgument, pSection, cExpected, HideLoader(cExpected, cFound)});
    }

    // What stands in the heading.
    void Argument(const std::string& cKind, const std::string& cDefault, const std::string& cFound) {
        const Section* const pSection = m_cCase.Find(cKind);
        const std::string cExpected = pSection ? pSection->cArgument : cDefault;
        Compare({cKind, cExpected, pSection, cExpected, cFound});
    }

private:
    void Compare(const Difference& cDifference) {
        if (cDifference.cExpected != cDifference.cFound) {
            m_cResult.cDifferences.push_back(cDifference);
        }
    }

    const Case& m_cCase;
    CaseResult& m_cResult;
};

void Compare(const Case& cCase, const CaseFolder& cFolder, int iStatus, CaseResult& cResult) {
    Comparison cComparison(cCase, cResult);
    const bool bSteps = !cCase.Find("fwpipe");
    cComparison.Text(!bSteps || cCase.Find("stdout") ? "stdout" : "printed", "",
                     Read(cFolder.cResults + "/out"));
    cComparison.Text("stderr", "", Read(cFolder.cResults + "/err"));
    if (bSteps && cResult.cTrouble.empty()) {
        cComparison.Argument("answers", DefaultAnswers(cCase), Read(cFolder.cResults + "/answers"));
    }
    cComparison.Argument("exit", "0", std::to_string(iStatus));
    unsigned int uOutput = 0;
    for (const Section& cSection : cCase.cSections) {
        const std::string& cName = cSection.cArgument;
        if (cSection.cKind == "built") {
            cComparison.Text("built", "", Read(cFolder.cResults + "/built"));
        } else if (cSection.cKind == "left") {
            cComparison.Text("left", cName, Read(cFolder.cWork + '/' + cName));
        } else if (cSection.cKind == "output") {
            cComparison.Text("output", cName,
                             Read(cFolder.cResults + "/output-" + std::to_string(uOutput++)));
        }
    }
}

} // namespace

CaseResult RunCase(const Case& cCase, const CaseOptions& cOptions) {
    CaseResult cResult;
    CaseFolder cFolder;
    try {
        cFolder = Prepare(cCase, cOptions);
    } catch (const TestFileError& cError) {
        cResult.cTrouble = std::to_string(cError.uLine) + ": " + cError.what();
        return cResult;
    }
    std::fflush(nullptr); // nothing that is printed twice
    const pid_t iProcess = fork();
    if (iProcess < 0) {
        throw std::runtime_error(std::string("cannot begin a process: ") + std::strerror(errno));
    }
    if (iProcess == 0) {
        Become(cCase, cFolder, cOptions.uTimeout);
    }
    const int iStatus = Wait(iProcess);
    const std::string cLine = std::to_string(cCase.uLine) + ": ";
    cResult.cTrouble = Read(cFolder.cResults + "/trouble");
    if (iStatus == ExitSignal + SIGALRM && cOptions.uTimeout > 0) {
        cResult.cTrouble =
            cLine + "ended after " + std::to_string(cOptions.uTimeout) + " seconds (--timeout)";
    } else if (iStatus > ExitSignal && !cCase.Find("exit")) {
        cResult.cTrouble = cLine + "ended by a signal: " + strsignal(iStatus - ExitSignal);
    }
    Compare(cCase, cFolder, iStatus, cResult);
    return cResult;
}

} // namespace FwPipe
