// SPDX-License-Identifier: MIT
// Files by their descriptors, and file names that stay valid when a folder is renamed.
#ifndef FWPIPE_FILE_H
#define FWPIPE_FILE_H

#include <cstddef>
#include <string>
#include <sys/stat.h>

namespace FwPipe {

// Owns the descriptor, but never closes standard input.
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

// Writes all of it, however often the call is interrupted. False, with the reason in errno, if that is not possible. Signal
// handlers may call it.
bool WriteAll(int iFile, const char* pchData, std::size_t uLength);

// A file name in an open folder. A link is followed once, in the constructor: the name is that of its target, so the
// link remains when the file is replaced.
class Place {
public:
    explicit Place(const std::string& cPath);

    int Folder() const { return m_cFolder.Get(); } // -1 for none, with the reason in errno
    const char* Name() const { return m_cName.c_str(); }
    bool Stat(struct stat& Status) const; // status of the named file; false with the reason in errno
    int OpenToRead() const;               // without waiting for a pipe's writer; -1 with the reason in errno
    void Sync() const; // writes the folder to disk, so that a name survives a power failure

private:
    const std::string m_cPath;
    const std::string m_cName;
    File m_cFolder;
};

bool IsSame(const struct stat& One, const struct stat& Other);         // the same file
bool IsUnchanged(const struct stat& Before, const struct stat& After); // same size and modification time

} // namespace FwPipe

#endif
