// SPDX-License-Identifier: MIT
#include "output.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FwPipe {

namespace {

// The stream's own when it writes on a terminal. Lines leave it at once, but their bytes stay in it.
char achLines[BUFSIZ];

int iFailure = 0; // what errno told when a write here failed first

// False when the stream has failed. Its functions do not always tell what they did not write, but its state does.
bool Remember() {
    if (!std::ferror(stdout)) {
        return true;
    }
    iFailure = iFailure ? iFailure : errno;
    return false;
}

// Whether both standard streams go to one file, in which their lines have to stand in the order they were printed. A
// device keeps none.
bool SharesErrors() {
    struct stat Output = {};
    struct stat Errors = {};
    return fstat(STDOUT_FILENO, &Output) == 0 && fstat(STDERR_FILENO, &Errors) == 0 &&
           Output.st_dev == Errors.st_dev && Output.st_ino == Errors.st_ino && !S_ISCHR(Output.st_mode);
}

} // namespace

void PrepareStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a write past the limit of a file's size fails then, and is told
    for (int iStream = STDIN_FILENO; iStream <= STDERR_FILENO; ++iStream) {
        if (fcntl(iStream, F_GETFD) < 0) {
            // Opened the wrong way round: using the stream fails as it would when it is closed.
            open("/dev/null", iStream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
    if (isatty(STDOUT_FILENO)) {
        // The stream would decide this at its first line, which may be one that is held back.
        std::setvbuf(stdout, achLines, _IOLBF, sizeof achLines);
    } else if (SharesErrors()) {
        std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    }
}

bool Print(const std::string& cText) {
    errno = 0;
    std::fwrite(cText.data(), 1, cText.size(), stdout);
    return Remember();
}

bool SendOn() {
    errno = 0;
    std::fflush(stdout);
    return Remember();
}

bool OutputArrived() {
    if (SendOn()) {
        return true;
    }
    const char* const pchReason = iFailure ? std::strerror(iFailure) : "an earlier write failed";
    std::fprintf(stderr, "fwpipe: standard output could not be written: %s\n", pchReason);
    return false;
}

bool PrintedOnTerminal() {
    const bool bPrinted = achLines[0] != '\0';
    achLines[0] = '\0';
    return bPrinted;
}

HeldOutput::HeldOutput() : m_iHeld(memfd_create("fwpipe", MFD_CLOEXEC)), m_iOutput(-1) {
    std::fflush(stdout);
    if (m_iHeld >= 0) {
        m_iOutput = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    }
    if (m_iOutput >= 0 && dup2(m_iHeld, STDOUT_FILENO) < 0) {
        close(m_iOutput);
        m_iOutput = -1;
    }
}

HeldOutput::~HeldOutput() {
    if (m_iOutput >= 0) {
        std::fflush(stdout);
        std::clearerr(stdout); // what went wrong so far concerns the held lines
        if (dup2(m_iOutput, STDOUT_FILENO) < 0) {
            close(STDOUT_FILENO); // an error at the next line rather than lines that nobody sees
        }
        close(m_iOutput);
    }
    if (m_iHeld >= 0) {
        close(m_iHeld);
    }
}

bool HeldOutput::Holds() const {
    return m_iOutput >= 0;
}

void HeldOutput::Show() const {
    std::fflush(stdout);
    char achPiece[4096];
    off_t iFrom = 0;
    ssize_t iLength;
    while ((iLength = pread(m_iHeld, achPiece, sizeof achPiece, iFrom)) > 0) {
        std::fwrite(achPiece, 1, static_cast<std::size_t>(iLength), stderr);
        iFrom += iLength;
    }
}

} // namespace FwPipe
