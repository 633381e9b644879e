// SPDX-License-Identifier: MIT
#include "watch.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>

namespace FwPipe {

namespace {

bool bLeased = false;

} // namespace

bool WatchForWriters(int iFile) {
    fcntl(iFile, F_SETSIG, SIGURG); // ignored by default; the usual signal would end the process
    bLeased = fcntl(iFile, F_SETLEASE, F_RDLCK) == 0;
    return bLeased || errno != EAGAIN;
}

bool HasWriter(int iFile) {
    return bLeased && fcntl(iFile, F_GETLEASE) == F_UNLCK;
}

} // namespace FwPipe
