// SPDX-License-Identifier: MIT
// The list of files that the recorders and replays of this process have open, so that a recorder does not empty one of
// them. All threads share it.
#ifndef FWLIB_STREAMS_FILEINUSE_H
#define FWLIB_STREAMS_FILEINUSE_H

#include "fwlib/internal/hidden.h"

#include <sys/types.h>

namespace FWLIB_HIDDEN VESK {

// A stream's entry in the list. The list allocates no memory.
class FileInUse {
public:
    FileInUse() = default;
    FileInUse(const FileInUse&) = delete;
    FileInUse& operator=(const FileInUse&) = delete;
    ~FileInUse() { Note(nullptr); }

    // Lists this file in place of the former one. Null and files that are not regular are not listed.
    void Note(char* pFile);

    // Opens the file in that mode and lists it. Returns null with the errno of fopen; or with errno 0 if an element of
    // the process has the file open and bShared is false.
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
