// SPDX-License-Identifier: MIT
// Files by their descriptors, and places for files that stay the same when folders are renamed meanwhile.
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

// A name in a folder that is open: the file's own, or that of what a link leads to, so that the link stays when the
// file is replaced. Links are followed once, when it is made.
class Place {
public:
    explicit Place(const std::string& cPath);

    int Folder() const { return m_cFolder.Get(); } // -1 for none, with the reason in errno
    const char* Name() const { return m_cName.c_str(); }
    bool Stat(struct stat& Status) const; // of what has the name, or false with the reason in errno
    int OpenToRead() const;               // without waiting for a pipe
    void Sync() const;                    // so that a new name outlives a power failure

private:
    const std::string m_cPath;
    const std::string m_cName;
    File m_cFolder;
};

bool IsSame(const struct stat& One, const struct stat& Other);         // file
bool IsUnchanged(const struct stat& Before, const struct stat& After); // size and time of the last change

} // namespace FwPipe

#endif
