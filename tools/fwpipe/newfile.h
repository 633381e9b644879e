// SPDX-License-Identifier: MIT
// A new file that appears under its name only when it is whole.
#ifndef FWPIPE_NEWFILE_H
#define FWPIPE_NEWFILE_H

#include "file.h"

#include <string>

namespace FwPipe {

// Until it is put in place it has no name, so nothing is left of it however the process ends; on a file system that
// knows no files without names it has one of its own in the folder, which goes with the object and when a signal that
// can be caught ends the process. Only its owner may read it until it gets the rights of its model.
class NewFile {
public:
    explicit NewFile(const Place& cPlace); // lent
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    int Get() const { return m_cFile.Get(); } // -1 for none, with the reason in errno
    bool Write(const char* pchData, std::size_t uLength);

    bool Sync(); // brings the contents to the disk, which has to come before the name

    // Gives it the name in one step: a program that opens the name gets the old file or the new one. False, with the
    // reason in errno, also when the name is taken and must not be.
    bool PutInPlace(bool bReplace);

private:
    bool GiveName(bool bReplace);

    const Place& m_cPlace;
    std::string m_cTemporary; // its name; empty for none
    File m_cFile;
};

} // namespace FwPipe

#endif
