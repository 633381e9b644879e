// SPDX-License-Identifier: MIT
#include "output.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FwPipe {

namespace {

// The buffer of the stream on a terminal. Lines are flushed at once, but their bytes remain in it.
char achLines[BUFSIZ];

int iFailure = 0; // the error number of the first write that failed

// Returns false if the stream has failed. Its error indicator is reliable; the results of its functions are not always.
bool Remember() {
    if (!std::ferror(stdout)) {
        return true;
    }
    iFailure = iFailure ? iFailure : errno;
    return false;
}

// Whether both output streams go to one file, where lines must be in the order of printing. A device stores no lines.
bool SharesErrors() {
    struct stat Output = {};
    struct stat Errors = {};
    return fstat(STDOUT_FILENO, &Output) == 0 && fstat(STDERR_FILENO, &Errors) == 0 &&
           Output.st_dev == Errors.st_dev && Output.st_ino == Errors.st_ino && !S_ISCHR(Output.st_mode);
}

} // namespace

void PrepareStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a write beyond the file size limit then fails and is reported
    for (int iStream = STDIN_FILENO; iStream <= STDERR_FILENO; ++iStream) {
        if (fcntl(iStream, F_GETFD) < 0) {
            // Opened for the wrong direction, so that using the stream fails as if it were closed.
            open("/dev/null", iStream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
    if (isatty(STDOUT_FILENO)) {
        // Otherwise the stream would decide this at its first line, which may be one that is held back.
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
    static bool bTold = false;
    if (!bTold) {
        const char* const pchReason = iFailure ? std::strerror(iFailure) : "an earlier write failed";
        std::fprintf(stderr, "fwpipe: standard output could not be written: %s\n", pchReason);
    }
    bTold = true;
    return false;
}

bool PrintedOnTerminal() {
    const bool bPrinted = achLines[0] != '\0';
    achLines[0] = '\0';
    return bPrinted;
}

} // namespace FwPipe
