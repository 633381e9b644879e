// SPDX-License-Identifier: MIT
#include "fwlib/framework/pluginsearch.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace VESK {

namespace {

// Whether the folder, of that length, has a regular file of the name in the subfolder.
bool Join(char (&achPath)[PATH_MAX], const char* pchFolder, std::size_t uLength, const char* pchSubfolder,
          const char* pchName) {
    const int iLength = std::snprintf(achPath, sizeof achPath, "%.*s%s/%s", static_cast<int>(uLength),
                                      pchFolder, pchSubfolder, pchName);
    struct stat Status;
    return uLength > 0 && iLength > 0 && iLength < PATH_MAX && stat(achPath, &Status) == 0 &&
           S_ISREG(Status.st_mode);
}

bool Find(char (&achPath)[PATH_MAX], const char* pchName, const char* pchLibrary) {
    for (const char* pch = secure_getenv("FWLIB_PLUGIN_PATH"); pch && *pch != '\0';) {
        const std::size_t uLength = std::strcspn(pch, ":");
        if (uLength < PATH_MAX && Join(achPath, pch, uLength, "", pchName)) {
            return true;
        }
        pch += uLength + (pch[uLength] == ':' ? 1 : 0);
    }
    const char* const pchEnd = std::strrchr(pchLibrary, '/');
    return pchEnd && Join(achPath, pchLibrary, static_cast<std::size_t>(pchEnd - pchLibrary),
                          "/fwlib/plugins", pchName);
}

} // namespace

FoundPlugin::FoundPlugin(const char* pchName, const char* pchLibrary) {
    const bool bSearch =
        *pchName != '\0' && !std::strchr(pchName, '/') && std::strcmp(pchName, "libfwlib.so") != 0;
    if (!bSearch || !Find(achPath, pchName, pchLibrary)) {
        std::snprintf(achPath, sizeof achPath, "%s", pchName);
    }
}

} // namespace VESK
