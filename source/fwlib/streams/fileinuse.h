// SPDX-License-Identifier: MIT
// The files that the recorders and replays of this process have open, so that a recorder does not empty one of them.
// All threads share them.
#ifndef FWLIB_STREAMS_FILEINUSE_H
#define FWLIB_STREAMS_FILEINUSE_H

#include "fwlib/internal/hidden.h"

#include <sys/types.h>

namespace FWLIB_HIDDEN VESK {

// A stream's place in the list. It takes no memory of its own.
class FileInUse {
public:
    FileInUse() = default;
    FileInUse(const FileInUse&) = delete;
    FileInUse& operator=(const FileInUse&) = delete;
    ~FileInUse() { Note(nullptr); }

    // Lists the handle in place of the one before; null and what is no regular file are not listed.
    void Note(char* pFile);

    // Opens the file, emptied unless it is opened with "r+", and notes it. Null with errno as fopen leaves it, or,
    // when an element of the process has the file open and it is not to be shared, with errno 0.
    char* Open(char* pchName, char* pchMode, bool bShared);

private:
    void Link(char* pFile);
    void Unlink();

    FileInUse* m_pNext = nullptr; // lent
    FileInUse* m_pPrevious = nullptr;
    bool m_bListed = false;
    dev_t m_Device = 0;
    ino_t m_Number = 0;
};

} // namespace VESK

#endif
