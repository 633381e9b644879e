// SPDX-License-Identifier: MIT
// Files by their descriptors: one that closes itself, and a new one that appears under its name only when it is whole.
#ifndef FWPIPE_FILE_H
#define FWPIPE_FILE_H

#include <string>
#include <sys/stat.h>

namespace FwPipe {

// Owns the descriptor, but leaves standard input open.
class File {
public:
    explicit File(int iFile) : m_iFile(iFile) {}
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    int Get() const { return m_iFile; } // -1 for none
    void Close();

private:
    int m_iFile;
};

// Written beside its name, or beside what a link of that name leads to, as a temporary that goes when the object
// does, unless it was put in place.
class NewFile {
public:
    explicit NewFile(const std::string& cName);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool IsOpen() const { return m_cFile.Get() >= 0; } // else the reason is in errno
    bool Write(const char* pchData, std::size_t uLength);
    bool TakeAfter(const struct stat& Model); // mode, or false; where it is allowed owner and group

    // Brings the contents to the disk, then the name, in one step: whoever opens the name gets all of the old file or
    // all of the new one. False, with the reason in errno, also when the name is taken and must not be.
    bool PutInPlace(bool bReplace);

private:
    const std::string m_cName;
    std::string m_cTemporary; // empty for none
    File m_cFile;
};

} // namespace FwPipe

#endif
