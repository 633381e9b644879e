// SPDX-License-Identifier: MIT
#include "filekey.h"

#include <filesystem>
#include <sys/stat.h>

namespace FwPipe {

namespace {

constexpr int MostLinks = 40; // in a chain, the limit of the platform

std::string KeyOf(const struct stat& Status) {
    return S_ISREG(Status.st_mode) || S_ISBLK(Status.st_mode)
               ? std::to_string(Status.st_dev) + ':' + std::to_string(Status.st_ino)
               : "";
}

// The path of a new file of that name. A link may refer to a file that does not exist.
std::string Created(std::filesystem::path cPath) {
    std::error_code cError;
    for (int i = 0; i < MostLinks && std::filesystem::is_symlink(cPath, cError); ++i) {
        cPath = cPath.parent_path() / std::filesystem::read_symlink(cPath, cError);
    }
    const auto cFolder =
        std::filesystem::canonical(cPath.has_parent_path() ? cPath.parent_path() : ".", cError);
    return cError ? "" : cFolder / cPath.filename(); // no file can be created without its folder
}

} // namespace

std::string KeyOfPath(const std::string& cPath) {
    struct stat Status = {};
    return stat(cPath.c_str(), &Status) == 0 ? KeyOf(Status) : Created(cPath);
}

std::string KeyOfStream(int iDescriptor) {
    struct stat Status = {};
    return fstat(iDescriptor, &Status) == 0 ? KeyOf(Status) : "";
}

} // namespace FwPipe
