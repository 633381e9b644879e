// SPDX-License-Identifier: MIT
// A new file that gets its name only when it is complete.
#ifndef FWPIPE_NEWFILE_H
#define FWPIPE_NEWFILE_H

#include "file.h"

#include <string>

namespace FwPipe {

// Until PutInPlace it has no name, so nothing remains however the process ends. On a file system without unnamed files
// it has a temporary name in the folder, which is removed by the destructor and by signals that end the process and can
// be caught. Only the owner may read the file until it gets its final rights.
class NewFile {
public:
    explicit NewFile(const Place& cPlace); // lent
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    int Get() const { return m_cFile.Get(); } // -1 for none, with the reason in errno
    bool Write(const char* pchData, std::size_t uLength) { return WriteAll(Get(), pchData, uLength); }
    bool Sync(); // writes the contents to the disk; call this before PutInPlace

    // Gives the file its name in one step: a program that opens the name gets the old file or the new one. Returns
    // false, with the reason in errno, on failure and if the name exists and bReplace is false.
    bool PutInPlace(bool bReplace);

private:
    bool GiveName(bool bReplace);

    const Place& m_cPlace;
    std::string m_cTemporary; // the temporary name; empty for none
    File m_cFile;
};

} // namespace FwPipe

#endif
