// SPDX-License-Identifier: MIT
#include "heldoutput.h"

#include "file.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <fcntl.h>
#include <iostream>
#include <new>
#include <streambuf>
#include <sys/mman.h>
#include <unistd.h>

namespace FwPipe {

namespace {

constexpr int Signals[] = {SIGINT, SIGTERM, SIGHUP};

// Not members, as signal handlers read them. -1: none.
int iAll = -1;    // a memory file with everything that is held
int iErrors = -1; // one with the part for standard error
int iOutput = -1; // a duplicate of the former standard output

std::FILE* pErrors = nullptr; // the former stream of standard error

void ShowFile(int iFile) {
    char achPiece[4096];
    off_t iFrom = 0;
    ssize_t iLength;
    while ((iLength = pread(iFile, achPiece, sizeof achPiece, iFrom)) > 0 &&
           WriteAll(STDERR_FILENO, achPiece, static_cast<std::size_t>(iLength))) {
        iFrom += iLength;
    }
}

// Writes for the stream in place of standard error. What cannot be held is printed.
ssize_t HoldErrors(void*, const char* pch, std::size_t uLength) {
    bool bHeld = false;
    if (iAll >= 0) {
        std::fflush(stdout); // these lines were printed before
        bHeld = WriteAll(iErrors, pch, uLength) && WriteAll(iAll, pch, uLength);
    }
    return bHeld || WriteAll(STDERR_FILENO, pch, uLength) ? static_cast<ssize_t>(uLength) : 0;
}

// A stream that is never closed, as an element may have stored it. Null when there is not enough memory.
std::FILE* HoldingStream() {
    static std::FILE* pStream = nullptr;
    if (!pStream) {
        pStream = fopencookie(nullptr, "w", {nullptr, HoldErrors, nullptr, nullptr});
        if (pStream) {
            std::setvbuf(pStream, nullptr, _IONBF, 0);
            std::fwide(pStream, -1); // otherwise perror would not write to it
            pStream->_fileno = STDERR_FILENO;
        }
    }
    return pStream;
}

// For the C++ streams, which would otherwise write to the descriptor.
class ErrorBuffer final : public std::streambuf {
    int overflow(int iCharacter) override {
        return iCharacter == traits_type::eof() ? 0 : std::fputc(iCharacter, stderr);
    }
    std::streamsize xsputn(const char* pch, std::streamsize iCount) override {
        return static_cast<std::streamsize>(std::fwrite(pch, 1, static_cast<std::size_t>(iCount), stderr));
    }
};

void ExchangeErrors() {
    // Never destroyed: the C++ library flushes its streams after the destructors of static objects.
    alignas(ErrorBuffer) static char achPlace[sizeof(ErrorBuffer)];
    static std::streambuf* const pHolding = new (achPlace) ErrorBuffer;
    static std::streambuf* pOther = pHolding;
    static std::streambuf* pOtherLog = pHolding;
    pOther = std::cerr.rdbuf(pOther);
    pOtherLog = std::clog.rdbuf(pOtherLog);
}

void EndShowing(int iSignal) {
    ShowHeldAtEnd();
    std::signal(iSignal, SIG_DFL);
    std::raise(iSignal);
}

void Exchange(void (*pFrom)(int), void (*pTo)(int)) {
    for (const int iSignal : Signals) {
        struct sigaction Action = {};
        if (sigaction(iSignal, nullptr, &Action) == 0 && Action.sa_handler == pFrom) {
            std::signal(iSignal, pTo);
        }
    }
}

void Forget(int& iFile) {
    if (iFile >= 0) {
        close(iFile);
    }
    iFile = -1;
}

void ForgetAll() {
    Forget(iAll);
    Forget(iErrors);
    Forget(iOutput);
}

} // namespace

HeldOutput::HeldOutput() {
    std::fflush(stdout);
    iAll = memfd_create("fwpipe", MFD_CLOEXEC);
    iErrors = memfd_create("fwpipe", MFD_CLOEXEC);
    iOutput = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    std::FILE* const pStream = HoldingStream();
    if (iAll < 0 || iErrors < 0 || iOutput < 0 || !pStream || dup2(iAll, STDOUT_FILENO) < 0) {
        const int iReason = errno;
        ForgetAll();
        errno = iReason;
        return;
    }
    pErrors = stderr;
    stderr = pStream;
    ExchangeErrors();
    Exchange(SIG_DFL, EndShowing);
    std::atexit([] { // for an element that calls exit
        std::fflush(stdout);
        ShowHeldAtEnd();
    });
}

HeldOutput::~HeldOutput() {
    if (!Holds()) {
        return;
    }
    Exchange(EndShowing, SIG_DFL);
    ExchangeErrors();
    stderr = pErrors;
    std::fflush(stdout);
    std::clearerr(stdout); // earlier errors concern the held lines
    if (dup2(iOutput, STDOUT_FILENO) < 0) {
        close(STDOUT_FILENO); // an error at the next line is better than lost lines
    }
    ShowFile(iErrors);
    ForgetAll();
}

bool HeldOutput::Holds() const {
    return iOutput >= 0;
}

void HeldOutput::ShowAll() {
    std::fflush(stdout);
    ShowFile(iAll);
    Forget(iErrors);
    Forget(iAll);
}

void ShowHeldAtEnd() {
    ShowFile(iAll);
}

} // namespace FwPipe
