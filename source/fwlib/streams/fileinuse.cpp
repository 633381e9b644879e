// SPDX-License-Identifier: MIT
#include "fwlib/streams/fileinuse.h"

#include "fwlib/internal/handle.h"
#include "fwlib/internal/lock.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cerrno>
#include <sys/stat.h>

namespace VESK {

namespace {

pthread_mutex_t Lock = PTHREAD_MUTEX_INITIALIZER;
FileInUse* pFirst = nullptr; // lent

} // namespace

void FileInUse::Note(char* pFile) {
    const Locked cLocked(Lock);
    Unlink();
    Link(pFile);
}

char* FileInUse::Open(char* pchName, char* pchMode, bool bShared) {
    struct stat Status;
    const bool bThere = stat(pchName, &Status) == 0;
    if (bThere && !S_ISREG(Status.st_mode)) { // nothing can be lost there, and opening a named pipe may block
        return fwfopen(pchName, pchMode);
    }
    const Locked cLocked(Lock); // until the file is listed: another thread may open the same
    const bool bFound = bThere || stat(pchName, &Status) == 0;
    for (const FileInUse* p = pFirst; p && bFound && !bShared; p = p->m_pNext) {
        if (p->m_Device == Status.st_dev && p->m_Number == Status.st_ino) {
            errno = 0;
            return nullptr;
        }
    }
    char* const pFile = fwfopen(pchName, pchMode);
    Unlink();
    Link(pFile);
    return pFile;
}

void FileInUse::Link(char* pFile) {
    struct stat Status;
    const int iFile = pFile ? fileno(StreamOf(pFile)) : -1;
    if (iFile < 0 || fstat(iFile, &Status) != 0 || !S_ISREG(Status.st_mode)) {
        return;
    }
    m_Device = Status.st_dev;
    m_Number = Status.st_ino;
    m_bListed = true;
    m_pNext = pFirst;
    if (pFirst) {
        pFirst->m_pPrevious = this;
    }
    pFirst = this;
}

void FileInUse::Unlink() {
    if (!m_bListed) {
        return;
    }
    (m_pPrevious ? m_pPrevious->m_pNext : pFirst) = m_pNext;
    if (m_pNext) {
        m_pNext->m_pPrevious = m_pPrevious;
    }
    m_pNext = m_pPrevious = nullptr;
    m_bListed = false;
}

} // namespace VESK
