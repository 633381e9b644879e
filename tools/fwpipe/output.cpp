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

// The stream's own when it writes on a terminal. Lines leave it at once, but their bytes stay in it.
char achLines[BUFSIZ];

int iFailure = 0; // the error number of the first write that failed

// False when the stream has failed. Its functions do not always tell what they did not write, but its state does.
bool Remember() {
    if (!std::ferror(stdout)) {
        return true;
    }
    iFailure = iFailure ? iFailure : errno;
    return false;
}

// Whether both standard streams go to one file, in which their lines must appear in the order they were printed. A
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
    std::signal(SIGXFSZ, SIG_IGN); // a write past the limit of a file's size then fails, and is reported
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

} // namespace FwPipe
