// SPDX-License-Identifier: MIT
#include "newfile.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <iterator>
#include <unistd.h>

namespace FwPipe {

namespace {

constexpr mode_t OwnerOnly = 0600;
constexpr unsigned int MostTries = 10000;

// These do not end a process by default, or, the last two, cannot be caught.
constexpr int Harmless[] = {SIGCHLD, SIGCONT, SIGURG, SIGWINCH, SIGTSTP, SIGTTIN, SIGTTOU, SIGKILL, SIGSTOP};

// The temporary name that a signal removes. There is at most one.
char achTemporary[40];
int iTemporaryFolder = -1;

struct sigaction Before[NSIG]; // the former actions
bool bRemoving = false;

void RemoveAndEnd(int iSignal) {
    unlinkat(iTemporaryFolder, achTemporary, 0);
    std::signal(iSignal, SIG_DFL);
    std::raise(iSignal); // delivered when this handler returns
}

// Ignored signals stay ignored, and handlers of sanitizers are kept, as they report more.
bool MustRemove(int iSignal, const struct sigaction& Action) {
    return Action.sa_handler != SIG_IGN && !(Action.sa_flags & SA_SIGINFO) &&
           std::find(std::begin(Harmless), std::end(Harmless), iSignal) == std::end(Harmless);
}

void RemoveOnSignals(int iFolder, const std::string& cName) {
    std::snprintf(achTemporary, sizeof achTemporary, "%s", cName.c_str());
    iTemporaryFolder = iFolder;
    bRemoving = true;
    for (int iSignal = 1; iSignal < NSIG; ++iSignal) {
        if (sigaction(iSignal, nullptr, &Before[iSignal]) == 0 && MustRemove(iSignal, Before[iSignal])) {
            std::signal(iSignal, RemoveAndEnd);
        }
    }
}

// Restores the actions: there is nothing to remove.
void LeaveSignals() {
    achTemporary[0] = '\0'; // no file has this name
    for (int iSignal = 1; bRemoving && iSignal < NSIG; ++iSignal) {
        sigaction(iSignal, &Before[iSignal], nullptr);
    }
    bRemoving = false;
}

// Blocks all signals while it exists.
class Undisturbed {
public:
    Undisturbed() {
        sigset_t All;
        sigfillset(&All);
        sigprocmask(SIG_SETMASK, &All, &m_Before);
    }
    ~Undisturbed() { sigprocmask(SIG_SETMASK, &m_Before, nullptr); }
    Undisturbed(const Undisturbed&) = delete;
    Undisturbed& operator=(const Undisturbed&) = delete;

private:
    sigset_t m_Before;
};

// A new name, for which Make succeeded. It is short, as the final name may have the greatest length that is allowed.
// Empty, with the reason in errno, on failure.
std::string Named(const std::function<bool(const char*)>& Make) {
    for (unsigned int u = 0; u < MostTries; ++u) {
        std::string cName = ".fwpipe-" + std::to_string(getpid()) + '-' + std::to_string(u);
        if (Make(cName.c_str())) {
            return cName;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return "";
}

// The path by which an unnamed file gets a name.
std::string SelfOf(int iFile) {
    return "/proc/self/fd/" + std::to_string(iFile);
}

int OpenUnnamed(int iFolder) {
    const bool bMayBeNamed = access(SelfOf(iFolder).c_str(), F_OK) == 0;
    return bMayBeNamed ? openat(iFolder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, OwnerOnly) : -1;
}

int OpenNamed(int iFolder, std::string& cName) {
    const Undisturbed cUndisturbed;
    int iFile = -1;
    cName = Named([iFolder, &iFile](const char* pchName) {
        iFile = openat(iFolder, pchName, O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW | O_CLOEXEC, OwnerOnly);
        return iFile >= 0;
    });
    if (iFile >= 0) {
        RemoveOnSignals(iFolder, cName);
    }
    return iFile;
}

int OpenEither(int iFolder, std::string& cName) {
    const int iFile = OpenUnnamed(iFolder);
    return iFile >= 0 ? iFile : OpenNamed(iFolder, cName);
}

} // namespace

NewFile::NewFile(const Place& cPlace)
    : m_cPlace(cPlace), m_cFile(OpenEither(cPlace.Folder(), m_cTemporary)) {}

NewFile::~NewFile() {
    if (!m_cTemporary.empty()) {
        unlinkat(m_cPlace.Folder(), m_cTemporary.c_str(), 0);
        LeaveSignals();
    }
}

bool NewFile::GiveName(bool bReplace) {
    const int iFolder = m_cPlace.Folder();
    const char* const pchName = m_cPlace.Name();
    const std::string cSelf = SelfOf(Get());
    if (m_cTemporary.empty() && !bReplace) {
        return linkat(AT_FDCWD, cSelf.c_str(), iFolder, pchName, AT_SYMLINK_FOLLOW) == 0;
    }
    if (m_cTemporary.empty()) {
        m_cTemporary = Named([iFolder, &cSelf](const char* pchOther) {
            return linkat(AT_FDCWD, cSelf.c_str(), iFolder, pchOther, AT_SYMLINK_FOLLOW) == 0;
        });
    }
    const char* const pchTemporary = m_cTemporary.c_str();
    if (m_cTemporary.empty()) {
        return false;
    }
    if (bReplace) {
        return renameat(iFolder, pchTemporary, iFolder, pchName) == 0;
    }
    if (renameat2(iFolder, pchTemporary, iFolder, pchName, RENAME_NOREPLACE) == 0) {
        return true;
    }
    // The file system does not support the flag: the name was free shortly before.
    return errno == EINVAL && faccessat(iFolder, pchName, F_OK, AT_SYMLINK_NOFOLLOW) != 0 &&
           renameat(iFolder, pchTemporary, iFolder, pchName) == 0;
}

bool NewFile::Sync() {
    return fsync(m_cFile.Get()) == 0;
}

bool NewFile::PutInPlace(bool bReplace) {
    const Undisturbed cUndisturbed; // while it may have a temporary name
    const bool bNamed = GiveName(bReplace);
    if (!bNamed && !m_cTemporary.empty()) {
        const int iReason = errno;
        unlinkat(m_cPlace.Folder(), m_cTemporary.c_str(), 0);
        errno = iReason;
    }
    m_cTemporary.clear();
    LeaveSignals();
    if (bNamed) {
        m_cPlace.Sync();
    }
    return bNamed;
}

} // namespace FwPipe
