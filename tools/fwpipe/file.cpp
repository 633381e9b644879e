// SPDX-License-Identifier: MIT
#include "file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace FwPipe {

namespace {

constexpr mode_t Permissions = 0777;
constexpr mode_t AllModes = 07777;

// The name, or what it leads to, so that a link stays when the file is replaced. Empty, with the reason in errno, when
// that cannot be told.
std::string Resolved(const std::string& cName) {
    char chEnd;
    if (readlink(cName.c_str(), &chEnd, sizeof chEnd) < 0) {
        return errno == EINVAL || errno == ENOENT ? cName : ""; // no link, or who knows
    }
    std::error_code cError;
    std::string cResolved = std::filesystem::canonical(cName, cError).string();
    errno = cError.value();
    return cResolved;
}

bool Rename(const std::string& cFrom, const std::string& cTo, bool bReplace) {
    if (bReplace) {
        return std::rename(cFrom.c_str(), cTo.c_str()) == 0;
    }
    if (renameat2(AT_FDCWD, cFrom.c_str(), AT_FDCWD, cTo.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    // A file system that does not know the flag; that the name is free was then true a moment ago.
    return errno == EINVAL && access(cTo.c_str(), F_OK) != 0 && std::rename(cFrom.c_str(), cTo.c_str()) == 0;
}

// With its slash.
std::string FolderOf(const std::string& cName) {
    const std::size_t uSlash = cName.rfind('/');
    return uSlash == std::string::npos ? "./" : cName.substr(0, uSlash + 1);
}

// So that the new name outlives a power failure. Not every file system can, and the file is whole without it.
void SyncFolderOf(const std::string& cName) {
    const File cFolder(open(FolderOf(cName).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (cFolder.Get() >= 0) {
        fsync(cFolder.Get());
    }
}

} // namespace

File::~File() {
    Close();
}

void File::Close() {
    if (m_iFile > STDIN_FILENO) {
        close(m_iFile);
    }
    m_iFile = -1;
}

NewFile::NewFile(const std::string& cName)
    : m_cName(Resolved(cName)),
      m_cTemporary(FolderOf(m_cName) +
                   ".fwpipe-XXXXXX"), // short, as the name may have the longest length there is
      m_cFile(m_cName.empty() ? -1 : mkostemp(m_cTemporary.data(), O_CLOEXEC)) {
    if (m_cFile.Get() < 0) {
        m_cTemporary.clear();
    }
}

NewFile::~NewFile() {
    if (!m_cTemporary.empty()) {
        unlink(m_cTemporary.c_str());
    }
}

bool NewFile::Write(const char* pchData, std::size_t uLength) {
    while (uLength > 0) {
        const ssize_t iWritten = write(m_cFile.Get(), pchData, uLength);
        if (iWritten < 0 && errno != EINTR) {
            return false;
        }
        if (iWritten > 0) {
            pchData += iWritten;
            uLength -= static_cast<std::size_t>(iWritten);
        }
    }
    return true;
}

bool NewFile::TakeAfter(const struct stat& Model) {
    const bool bOwned = fchown(m_cFile.Get(), Model.st_uid, Model.st_gid) == 0;
    // The bits beyond the permissions lend the owner's rights, so they go only with the owner.
    return fchmod(m_cFile.Get(), Model.st_mode & (bOwned ? AllModes : Permissions)) == 0;
}

bool NewFile::PutInPlace(bool bReplace) {
    if (fsync(m_cFile.Get()) != 0 || !Rename(m_cTemporary, m_cName, bReplace)) {
        return false;
    }
    m_cTemporary.clear();
    SyncFolderOf(m_cName);
    return true;
}

} // namespace FwPipe
