// SPDX-License-Identifier: MIT
#include "rights.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace FwPipe {

namespace {

constexpr mode_t AllModes = 07777;
constexpr mode_t OwnerModes = 0700;
constexpr std::size_t LargestAttribute = 0x10000; // the limit of the system, also for the list of names

const char* const AccessList = "system.posix_acl_access";

// Whether the error means that the attribute does not exist or is not supported.
bool IsAbsent(int iError) {
    return iError == ENODATA || iError == ENOTSUP;
}

// Copies the access control list. Without one, removes the list that the file has from its folder.
bool TakeAccessList(int iFile, int iModel) {
    std::vector<char> cList(LargestAttribute);
    const ssize_t iLength = fgetxattr(iModel, AccessList, cList.data(), cList.size());
    if (iLength >= 0) {
        return fsetxattr(iFile, AccessList, cList.data(), static_cast<std::size_t>(iLength), 0) == 0;
    }
    return IsAbsent(errno) && (fremovexattr(iFile, AccessList) == 0 || IsAbsent(errno));
}

// Also returns true if the file already has the attribute, which may not be writable.
bool TakeAttribute(int iFile, int iModel, const char* pchName) {
    std::vector<char> cValue(LargestAttribute);
    std::vector<char> cOwn(LargestAttribute);
    const ssize_t iLength = fgetxattr(iModel, pchName, cValue.data(), cValue.size());
    if (iLength < 0) {
        return false;
    }
    const auto uLength = static_cast<std::size_t>(iLength);
    return (fgetxattr(iFile, pchName, cOwn.data(), cOwn.size()) == iLength &&
            std::memcmp(cOwn.data(), cValue.data(), uLength) == 0) ||
           fsetxattr(iFile, pchName, cValue.data(), uLength, 0) == 0;
}

} // namespace

bool TakeRights(int iFile, int iModel) {
    struct stat Model = {};
    struct stat Own = {};
    if (fstat(iModel, &Model) != 0 || fstat(iFile, &Own) != 0) {
        return false;
    }
    const bool bOther = Own.st_uid != Model.st_uid || Own.st_gid != Model.st_gid;
    // The new owner must not have more rights than in the model, not even for a moment.
    if (bOther && (fchmod(iFile, 0) != 0 || fchown(iFile, Model.st_uid, Model.st_gid) != 0)) {
        const int iReason = errno;
        // Group and others differ from those of the model, so both get only the rights that both have there.
        const mode_t uBoth = Model.st_mode & (Model.st_mode >> 3) & 07;
        const bool bList = fgetxattr(iModel, AccessList, nullptr, 0) >= 0 || !IsAbsent(errno);
        const bool bOpen = !bList && (fremovexattr(iFile, AccessList) == 0 || IsAbsent(errno));
        fchmod(iFile, (Model.st_mode & OwnerModes) | (bOpen ? uBoth << 3 | uBoth : 0));
        errno = iReason;
        return false;
    }
    if (!TakeAccessList(iFile, iModel)) {
        const int iReason = errno;
        fchmod(iFile, Model.st_mode & OwnerModes);
        errno = iReason;
        return false;
    }
    return fchmod(iFile, Model.st_mode & AllModes) == 0;
}

std::string TakeAttributes(int iFile, int iModel) {
    std::vector<char> cNames(LargestAttribute);
    const ssize_t iNames = flistxattr(iModel, cNames.data(), cNames.size());
    if (iNames < 0) {
        return IsAbsent(errno) ? "" : std::strerror(errno);
    }
    std::string cLost;
    for (ssize_t i = 0; i < iNames;
         i += static_cast<ssize_t>(std::strlen(&cNames[static_cast<std::size_t>(i)])) + 1) {
        const char* const pchName = &cNames[static_cast<std::size_t>(i)];
        if (std::strcmp(pchName, AccessList) != 0 && !TakeAttribute(iFile, iModel, pchName)) {
            cLost += (cLost.empty() ? "" : ", ") + std::string(pchName);
        }
    }
    return cLost;
}

} // namespace FwPipe
