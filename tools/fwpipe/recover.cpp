// SPDX-License-Identifier: MIT
// fwpipe recover: copies the complete objects of a damaged object stream to a new file.
#include "command.h"
#include "file.h"
#include "found.h"
#include "interrupt.h"
#include "message.h"
#include "newfile.h"
#include "rights.h"
#include "watch.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>
#include <vector>

namespace FwPipe {

namespace {

struct Options {
    std::string cFile;
    std::string cOut;
    bool bInPlace = false;
    bool bForce = false;
    bool bResync = false;
};

const char* const Examples =
    R"(Copies the complete objects at the start of FILE to a new file, OUT. Complete objects after damage are counted,
and copied only with --resync. --resync continues at the next line where a complete object begins. Another complete
object or the end of the file must follow this object, and its property QObjectType, if present, must equal its first
line.

--in-place replaces FILE by the result. It fails if another process has FILE open for writing, if FILE changes
meanwhile, or if the path FILE then refers to another file. Owner, mode, access control list and extended attributes
are copied to the result.

Examples:
  fwpipe recover objects.txt                  writes objects.txt.recovered
  fwpipe recover --resync objects.txt         also keeps complete objects after damage
  fwpipe recover objects.txt -o new.txt       writes new.txt, which must not exist
  fwpipe recover --in-place objects.txt       replaces objects.txt, in one step

Exit status:
  0         FILE consists of complete objects only, or is empty
  1         no complete object was found, FILE could not be read, or the result could not be written; no file was
            changed. Exceptions: --in-place --force emptied FILE; a process wrote to FILE at the moment when it was
            replaced; the result was written, but standard output could not be
  2         wrong usage
  3         complete objects were kept, and the other data was omitted
  129, 130, 143
            ended by SIGHUP, SIGINT or SIGTERM; nothing was changed
)";

int Refuse(const std::string& cComplaint) {
    Complain(cComplaint);
    return ExitFailed;
}

int RefuseErrno(const char* pchWhat, const std::string& cName) {
    ReportErrno(pchWhat, cName);
    return ExitFailed;
}

std::string Objects(unsigned long long ullCount) {
    return std::to_string(ullCount) + (ullCount == 1 ? " complete object" : " complete objects");
}

int Scan(const Options& cOptions, const File& cInput, unsigned long long ullSize, Found& cFound) {
    cFound = FindWhole(cInput.Get(), ullSize, cOptions.bResync);
    if (cFound.iReadError != 0) {
        errno = cFound.iReadError;
        return RefuseErrno("cannot read", cOptions.cFile);
    }
    return Interrupt() ? ExitSignal + Interrupt() : ExitDone;
}

int CopyPart(const Options& cOptions, const File& cInput, unsigned long long ullBegin,
             unsigned long long ullEnd, NewFile& cOutput) {
    std::vector<char> cPiece(static_cast<std::size_t>(std::min(0x40000ULL, ullEnd - ullBegin)));
    for (unsigned long long ull = ullBegin; ull < ullEnd;) {
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
            return RefuseErrno("cannot read", cOptions.cFile);
        }
        if (!cOutput.Write(cPiece.data(), static_cast<std::size_t>(iRead))) {
            return RefuseErrno("cannot write", cOptions.cOut);
        }
        ull += static_cast<unsigned long long>(iRead);
    }
    return ExitDone;
}

int Copy(const Options& cOptions, const File& cInput, const Found& cFound, NewFile& cOutput) {
    unsigned long long ullBegin = 0;
    for (const Gap& cGap : cFound.cGaps) {
        const int iCopied = CopyPart(cOptions, cInput, ullBegin, cGap.ullBegin, cOutput);
        if (iCopied != ExitDone) {
            return iCopied;
        }
        ullBegin = cGap.ullEnd;
    }
    return CopyPart(cOptions, cInput, ullBegin, cFound.ullSize, cOutput);
}

// Fails if another process wrote to the file, or opened it for writing, since it was opened.
int CheckUnchanged(const Options& cOptions, const File& cInput, const struct stat& Before,
                   const char* pchConsequence) {
    struct stat Now = {};
    if (HasWriter(cInput.Get())) {
        return Refuse(cOptions.cFile + " was opened for writing meanwhile" + pchConsequence);
    }
    const bool bChanged = fstat(cInput.Get(), &Now) == 0 && !IsUnchanged(Before, Now);
    return !bChanged ? ExitDone : Refuse(cOptions.cFile + " was changed meanwhile" + pchConsequence);
}

// The same before the file is replaced; also fails if the path is another file now.
int CheckReplaceable(const Options& cOptions, const Place& cPlace, const File& cInput,
                     const struct stat& Before) {
    struct stat Named = {};
    const int iStatus = CheckUnchanged(cOptions, cInput, Before, "; left unchanged");
    if (iStatus == ExitDone && (!cPlace.Stat(Named) || !IsSame(Before, Named))) {
        return Refuse(cOptions.cFile + " is another file by now; nothing is changed");
    }
    return iStatus;
}

// Writes what is to be kept to the file, or fails without a change. Only --in-place requires that all rights are kept.
int WriteOut(const Options& cOptions, const Place& cPlace, const File& cInput, const struct stat& Before,
             const Found& cFound) {
    NewFile cOutput(cPlace);
    if (cOutput.Get() < 0) {
        return RefuseErrno("cannot write", cOptions.cOut);
    }
    int iStatus = Copy(cOptions, cInput, cFound, cOutput);
    if (iStatus != ExitDone) {
        return iStatus;
    }
    std::string cLost = TakeAttributes(cOutput.Get(), cInput.Get());
    if (!TakeRights(cOutput.Get(), cInput.Get()) && cOptions.bInPlace) {
        return RefuseErrno("cannot keep the owner, mode and access control list of", cOptions.cFile);
    }
    cLost = TakeAttributes(cOutput.Get(), cInput.Get());
    if (!cOutput.Sync()) {
        return RefuseErrno("cannot write", cOptions.cOut);
    }
    iStatus = Interrupt() ? ExitSignal + Interrupt() : ExitDone;
    if (iStatus == ExitDone && cOptions.bInPlace) {
        iStatus = CheckReplaceable(cOptions, cPlace, cInput, Before);
    }
    if (iStatus != ExitDone) {
        return iStatus;
    }
    if (!cOutput.PutInPlace(cOptions.bInPlace || cOptions.bForce)) {
        return RefuseErrno("cannot write", cOptions.cOut);
    }
    if (!cLost.empty()) {
        Complain(cOptions.cOut + " has lost extended attributes: " + cLost);
    }
    return cOptions.bInPlace ? CheckUnchanged(cOptions, cInput, Before,
                                              ", just as it was replaced: what was written is lost")
                             : ExitDone;
}

void Report(const Options& cOptions, const Found& cFound) {
    const std::string cShown = ShownOn(stdout, cOptions.cFile);
    const char* const pchFile = cShown.c_str();
    unsigned long long ullBytes = cFound.ullSize;
    for (const Gap& cGap : cFound.cGaps) {
        ullBytes -= cGap.ullEnd - cGap.ullBegin;
    }
    std::printf("%s: %s, %llu bytes, kept in %s\n", pchFile, Objects(cFound.ullKept).c_str(), ullBytes,
                ShownOn(stdout, cOptions.cOut).c_str());
    for (const Gap& cGap : cFound.cGaps) {
        std::printf("%s: cut at byte %llu, %llu bytes: no complete object there: %s\n", pchFile,
                    cGap.ullBegin, cGap.ullEnd - cGap.ullBegin, cGap.pchReason);
    }
    if (cFound.cGaps.empty()) {
        std::printf("%s: nothing to cut\n", pchFile);
    }
    if (cFound.ullBehind > 0) {
        std::printf("%s: cut with it: %s behind the damage; --resync keeps them\n", pchFile,
                    Objects(cFound.ullBehind).c_str());
    }
}

// Fails if the result must not be written to this path.
int CheckPlace(const Options& cOptions, const Place& cPlace, const struct stat& Input) {
    const std::string& cOut = cOptions.cOut;
    struct stat Status = {};
    if (cOptions.bInPlace) {
        return ExitDone;
    }
    if (lstat(cOut.c_str(), &Status) != 0) {
        return errno == ENOENT && cPlace.Folder() >= 0 ? ExitDone : RefuseErrno("cannot write", cOut);
    }
    const bool bKnown = cPlace.Folder() >= 0 && cPlace.Stat(Status); // false: a link to no file
    if (bKnown && IsSame(Status, Input)) {
        return Refuse(cOut + " is the input itself; --in-place would replace it");
    }
    if (!cOptions.bForce) {
        return Refuse(cOut + " exists; --force would replace it");
    }
    return bKnown && S_ISREG(Status.st_mode) ? ExitDone : Refuse(cOut + " is not a regular file");
}

// Fails if the result must not be written.
int CheckFound(const Options& cOptions, const Found& cFound) {
    const bool bForced = cOptions.bInPlace && cOptions.bForce;
    const std::string cBehind =
        cFound.ullBehind > 0 ? "; --resync keeps " + Objects(cFound.ullBehind) + " behind the damage" : "";
    if (cFound.cGaps.empty() || bForced) {
        return ExitDone;
    }
    if (cFound.ullKept == 0) {
        const char* const pchLack = cOptions.bResync ? " contains no" : " does not begin with a";
        return Refuse(cOptions.cFile + pchLack + " complete object (" + cFound.cGaps.front().pchReason + ")" +
                      (cOptions.bInPlace ? "; left unchanged; --force would empty it" : "") + cBehind);
    }
    if (cOptions.bInPlace && cFound.ullBehind > 0) {
        return Refuse(cOptions.cFile + " is damaged at byte " +
                      std::to_string(cFound.cGaps.front().ullBegin) + " (" + cFound.cGaps.front().pchReason +
                      "); left unchanged; --force would cut it off there" + cBehind);
    }
    return ExitDone;
}

int Recover(const Options& cOptions) {
    CatchInterrupts();
    const Place cPlace(cOptions.cOut);
    const File cInput(cOptions.bInPlace ? cPlace.OpenToRead()
                                        : open(cOptions.cFile.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat Status = {};
    if (cInput.Get() < 0 || fstat(cInput.Get(), &Status) != 0) {
        return RefuseErrno("cannot read", cOptions.cFile);
    }
    if (!S_ISREG(Status.st_mode)) {
        return Refuse(cOptions.cFile + " is not a regular file");
    }
    if (cOptions.bInPlace && !WatchForWriters(cInput.Get())) {
        return Refuse(cOptions.cFile + " is open for writing; left unchanged");
    }
    Found cFound;
    int iStatus = CheckPlace(cOptions, cPlace, Status);
    if (iStatus == ExitDone) {
        iStatus = Scan(cOptions, cInput, static_cast<unsigned long long>(Status.st_size), cFound);
    }
    if (iStatus == ExitDone) {
        iStatus = CheckFound(cOptions, cFound);
    }
    if (iStatus == ExitDone && (!cOptions.bInPlace || !cFound.cGaps.empty())) {
        iStatus = WriteOut(cOptions, cPlace, cInput, Status, cFound);
    }
    if (iStatus != ExitDone) {
        return iStatus;
    }
    Report(cOptions, cFound);
    return cFound.cGaps.empty() ? ExitDone : cFound.ullKept > 0 ? ExitCut : ExitFailed;
}

} // namespace

void AddRecover(const Command& cProgram) {
    const auto pOptions = std::make_shared<Options>();
    const Command cRecover =
        AddFileCommand(cProgram, "recover", "Keep the complete objects at the start of a damaged recording",
                       Examples, pOptions->cFile, "The recording");
    const Option cOut =
        cRecover.AddOption("-o,--output", pOptions->cOut, "The new file; FILE.recovered if absent")
            .Shows("OUT");
    cRecover.AddFlag("--resync", pOptions->bResync, "Also keep complete objects after damage");
    cRecover
        .AddFlag("--in-place", pOptions->bInPlace,
                 "Replace FILE; keep its owner, mode and access control list")
        .Excludes(cOut);
    cRecover.AddFlag(
        "--force", pOptions->bForce,
        "Replace OUT if it exists; allow --in-place to empty FILE or to remove complete objects");
    cRecover.Runs([pOptions] {
        if (pOptions->cOut.empty()) {
            pOptions->cOut = pOptions->cFile + (pOptions->bInPlace ? "" : ".recovered");
        }
        return Recover(*pOptions);
    });
}

} // namespace FwPipe
