// SPDX-License-Identifier: MIT
// fwpipe recover: the whole objects at the front of a damaged object stream, as a file of their own.
#include "command.h"
#include "file.h"
#include "interrupt.h"
#include "message.h"
#include "objectscan.h"
#include "progress.h"

#include <algorithm>
#include <cerrno>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace FwPipe {

namespace {

struct Options {
    std::string cFile;
    std::string cOut;
    bool bInPlace = false;
    bool bForce = false;
};

// What was found: ullEnd is where the whole objects end.
struct Found {
    unsigned long long ullObjects = 0;
    unsigned long long ullEnd = 0;
    const char* pchReason = nullptr; // null when nothing stands behind them
};

const char* const Examples =
    R"(Keeps every whole object from the front and cuts off the rest; the input is left as it is unless --in-place
says otherwise. Recovering a recovered file changes nothing.

Examples:
  fwpipe recover objects.txt                  writes objects.txt.recovered
  fwpipe recover objects.txt -o whole.txt     writes whole.txt, which must not exist
  fwpipe recover --in-place objects.txt       puts the whole objects in the place of the file, in one step

Exit status:
  0         the whole objects are in the file, whether something was cut or not
  1         the file could not be read, or the result not written: nothing was changed; or only the report of it
            could not be written
  2         wrong usage
  130, 143  ended by SIGINT or SIGTERM; nothing was changed
)";

int Refuse(const std::string& cComplaint) {
    Complain(cComplaint);
    return ExitFailed;
}

int ComplainErrno(const char* pchWhat, const std::string& cName) {
    ReportErrno(pchWhat, cName);
    return ExitFailed;
}

int Scan(const Options& cOptions, const File& cInput, unsigned long long ullSize, Found& cFound) {
    ObjectScan cScan(cInput.Get());
    Progress cProgress(true, "objects");
    while (cScan.Next()) {
        if (cProgress.Due()) {
            cProgress.Show(cScan.Whole(), cScan.End(), ullSize);
        }
    }
    cProgress.Stop();
    cFound = {cScan.Whole(), cScan.Offset(), cScan.Reason()};
    if (cScan.ReadError() != 0) {
        errno = cScan.ReadError();
        return ComplainErrno("cannot read", cOptions.cFile);
    }
    return Interrupt() ? ExitSignal + Interrupt() : ExitDone;
}

int Copy(const Options& cOptions, const File& cInput, unsigned long long ullEnd, NewFile& cOutput) {
    std::vector<char> cPiece(0x40000);
    for (unsigned long long ull = 0; ull < ullEnd;) {
        const auto uLength =
            static_cast<std::size_t>(std::min<unsigned long long>(cPiece.size(), ullEnd - ull));
        const ssize_t iRead = pread(cInput.Get(), cPiece.data(), uLength, static_cast<off_t>(ull));
        if (Interrupt()) {
            return ExitSignal + Interrupt();
        }
        if (iRead == 0) {
            return Refuse(cOptions.cFile + " became shorter while it was read");
        }
        if (iRead < 0) {
            return ComplainErrno("cannot read", cOptions.cFile);
        }
        if (!cOutput.Write(cPiece.data(), static_cast<std::size_t>(iRead))) {
            return ComplainErrno("cannot write", cOptions.cOut);
        }
        ull += static_cast<unsigned long long>(iRead);
    }
    return ExitDone;
}

// A whole copy of the input's first ullEnd bytes under the name, or an error and no change.
int WriteOut(const Options& cOptions, const File& cInput, unsigned long long ullEnd) {
    struct stat Model = {};
    NewFile cOutput(cOptions.cOut);
    if (!cOutput.IsOpen() || fstat(cInput.Get(), &Model) != 0) {
        return ComplainErrno("cannot write", cOptions.cOut);
    }
    const int iCopied = Copy(cOptions, cInput, ullEnd, cOutput);
    if (iCopied != ExitDone) {
        return iCopied;
    }
    const bool bTaken = cOutput.TakeAfter(Model) || !cOptions.bInPlace; // not every file system has all modes
    return bTaken && cOutput.PutInPlace(cOptions.bInPlace || cOptions.bForce)
               ? ExitDone
               : ComplainErrno("cannot write", cOptions.cOut);
}

void Report(const Options& cOptions, const Found& cFound, const File& cInput, struct stat Status) {
    fstat(cInput.Get(), &Status); // now, as the file may have grown
    const char* const pchFile = cOptions.cFile.c_str();
    std::printf("%s: %llu whole object%s, %llu bytes, kept in %s\n", pchFile, cFound.ullObjects,
                cFound.ullObjects == 1 ? "" : "s", cFound.ullEnd, cOptions.cOut.c_str());
    if (cFound.pchReason) {
        // It may have shrunk as well.
        const auto ullSize = std::max(static_cast<unsigned long long>(Status.st_size), cFound.ullEnd);
        std::printf("%s: cut at byte %llu, %llu bytes: no whole object there: %s\n", pchFile, cFound.ullEnd,
                    ullSize - cFound.ullEnd, cFound.pchReason);
    } else {
        std::printf("%s: nothing to cut\n", pchFile);
    }
}

// An error when the result must not go where it was asked for.
int CheckPlace(const Options& cOptions, const struct stat& Input) {
    const std::string& cOut = cOptions.cOut;
    struct stat Status = {};
    if (cOptions.bInPlace) {
        return ExitDone;
    }
    if (lstat(cOut.c_str(), &Status) != 0) {
        return errno == ENOENT ? ExitDone : ComplainErrno("cannot write", cOut);
    }
    const bool bKnown = stat(cOut.c_str(), &Status) == 0; // else a link to nothing
    if (bKnown && Status.st_dev == Input.st_dev && Status.st_ino == Input.st_ino) {
        return Refuse(cOut + " is the input itself; --in-place would replace it");
    }
    if (!cOptions.bForce) {
        return Refuse(cOut + " exists; --force would replace it");
    }
    return bKnown && S_ISREG(Status.st_mode) ? ExitDone : Refuse(cOut + " is not a regular file");
}

int Recover(const Options& cOptions) {
    CatchInterrupts();
    const File cInput(
        open(cOptions.cFile.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)); // a pipe must not wait
    struct stat Status = {};
    if (cInput.Get() < 0 || fstat(cInput.Get(), &Status) != 0) {
        return ComplainErrno("cannot read", cOptions.cFile);
    }
    if (!S_ISREG(Status.st_mode)) {
        return Refuse(cOptions.cFile + " is not a regular file");
    }
    Found cFound;
    int iStatus = CheckPlace(cOptions, Status);
    if (iStatus == ExitDone) {
        iStatus = Scan(cOptions, cInput, static_cast<unsigned long long>(Status.st_size), cFound);
    }
    if (iStatus == ExitDone && cOptions.bInPlace && cFound.ullObjects == 0 && cFound.pchReason &&
        !cOptions.bForce) {
        return Refuse(cOptions.cFile + " holds no whole object at its begin (" + cFound.pchReason +
                      ") and stays as it is; --force would empty it");
    }
    const bool bWrite = !cOptions.bInPlace || cFound.pchReason;
    if (iStatus == ExitDone && bWrite) {
        iStatus = WriteOut(cOptions, cInput, cFound.ullEnd);
    }
    if (iStatus == ExitDone) {
        Report(cOptions, cFound, cInput, Status);
    }
    return iStatus;
}

} // namespace

void AddRecover(CLI::App& cApp, Action& cChosen) {
    const auto pOptions = std::make_shared<Options>();
    CLI::App& cRecover =
        AddFileCommand(cApp, "recover", "Keep the whole objects at the front of a damaged object stream",
                       Examples, pOptions->cFile, "The object stream");
    CLI::Option* const pOut =
        cRecover.add_option("-o,--output", pOptions->cOut, "The new file; FILE.recovered when absent")
            ->type_name("OUT");
    cRecover.add_flag("--in-place", pOptions->bInPlace, "Replace FILE, keeping its mode")->excludes(pOut);
    cRecover.add_flag("--force", pOptions->bForce, "Replace an OUT that exists; let --in-place empty FILE");
    cRecover.callback([pOptions, &cChosen] {
        if (pOptions->cOut.empty()) {
            pOptions->cOut = pOptions->cFile + (pOptions->bInPlace ? "" : ".recovered");
        }
        cChosen = [pOptions] { return Recover(*pOptions); };
    });
}

} // namespace FwPipe
