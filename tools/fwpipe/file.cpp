// SPDX-License-Identifier: MIT
#include "file.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace FwPipe {

namespace {

// The path after all links; empty, with the reason in errno, if that is unknown.
std::string Resolved(const std::string& cPath) {
    char chEnd;
    if (readlink(cPath.c_str(), &chEnd, sizeof chEnd) < 0) {
        return errno == EINVAL || errno == ENOENT ? cPath : ""; // EINVAL: not a link
    }
    std::error_code cError;
    std::string cResolved = std::filesystem::canonical(cPath, cError).string();
    errno = cError.value();
    return cResolved;
}

std::size_t NameBegin(const std::string& cPath) {
    return cPath.rfind('/') + 1; // 0 without a folder
}

std::string FolderOf(const std::string& cPath) {
    const std::size_t uName = NameBegin(cPath);
    return uName == 0 ? "." : cPath.substr(0, uName);
}

int OpenFolder(const std::string& cPath) {
    return cPath.empty() ? -1 : open(FolderOf(cPath).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
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

bool WriteAll(int iFile, const char* pchData, std::size_t uLength) {
    while (uLength > 0) {
        const ssize_t iWritten = write(iFile, pchData, uLength);
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

Place::Place(const std::string& cPath)
    : m_cPath(Resolved(cPath)), m_cName(m_cPath.substr(NameBegin(m_cPath))), m_cFolder(OpenFolder(m_cPath)) {}

bool Place::Stat(struct stat& Status) const {
    return fstatat(Folder(), Name(), &Status, AT_SYMLINK_NOFOLLOW) == 0;
}

int Place::OpenToRead() const {
    return openat(Folder(), m_cName.empty() ? "." : Name(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
}

// Not every file system can sync a folder; the file is complete without it.
void Place::Sync() const {
    const File cFolder(openat(Folder(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (cFolder.Get() >= 0) {
        fsync(cFolder.Get());
    }
}

bool IsSame(const struct stat& One, const struct stat& Other) {
    return One.st_dev == Other.st_dev && One.st_ino == Other.st_ino;
}

bool IsUnchanged(const struct stat& Before, const struct stat& After) {
    return Before.st_size == After.st_size && Before.st_mtim.tv_sec == After.st_mtim.tv_sec &&
           Before.st_mtim.tv_nsec == After.st_mtim.tv_nsec;
}

} // namespace FwPipe
