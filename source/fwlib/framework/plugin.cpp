// SPDX-License-Identifier: MIT
#include "fwlib/framework/plugin.h"

#include "fwlib/elements/watch.h"
#include "fwlib/framework/description.h"
#include "fwlib/framework/entry.h"
#include "fwlib/framework/factory.h"
#include "fwlib/framework/guarded.h"
#include "fwlib/framework/pluginsearch.h"
#include "fwlib/framework/say.h"
#include "fwlib/internal/textcopy.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/version.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

namespace VESK {

namespace {

using EntryPoint = Factory* (*)();
using Describe = const PluginDescription* (*)();

constexpr const char* OwnFileName = "libfwlib.so";

// The loader's entry for the file that contains the code.
link_map* ObjectOf(EntryPoint pCode) {
    Dl_info Info;
    void* pMap = nullptr;
    const int iFound = dladdr1(reinterpret_cast<void*>(pCode), &Info, &pMap, RTLD_DL_LINKMAP);
    return iFound ? static_cast<link_map*>(pMap) : nullptr;
}

// Whether the file contains all segments that the loader will map: an access to a page after the end of the file ends
// the process. Files that are not shared objects of this width are left for the loader to report.
bool IsWhole(const char* pchPath, const struct stat& Status) {
    std::FILE* const pFile = std::fopen(pchPath, "rbe");
    if (!pFile) {
        return true;
    }
    constexpr unsigned char Class = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
    const auto ullSize = static_cast<unsigned long long>(Status.st_size);
    bool bWhole = true;
    ElfW(Ehdr) Header;
    if (std::fread(&Header, sizeof Header, 1, pFile) == 1 && Header.e_ident[EI_CLASS] == Class &&
        std::fseek(pFile, static_cast<long>(Header.e_phoff), SEEK_SET) == 0) {
        ElfW(Phdr) Part;
        for (int i = 0; bWhole && i < Header.e_phnum && std::fread(&Part, sizeof Part, 1, pFile) == 1; ++i) {
            bWhole = Part.p_type != PT_LOAD ||
                     (Part.p_offset <= ullSize && Part.p_filesz <= ullSize - Part.p_offset);
        }
    }
    std::fclose(pFile);
    return bWhole;
}

// Returns why the path must not be passed to the loader, or null. The loader would wait for the other end of a pipe,
// and read from a device. Names without a slash are not checked, as only the loader can find them.
const char* WhyRefused(const char* pchPath) {
    struct stat Status;
    if (!std::strchr(pchPath, '/') || stat(pchPath, &Status) != 0) {
        return nullptr;
    }
    if (!S_ISREG(Status.st_mode)) {
        return "not a regular file";
    }
    return IsWhole(pchPath, Status) ? nullptr : "file too short";
}

const char* LibraryPath() {
    const link_map* const pOwn = ObjectOf(&::GetFactory);
    return pOwn ? pOwn->l_name : "";
}

// Opens the path. The library's own name means the running library: the loader could find another one, or none, as an
// installation may lack the unversioned link.
void* OpenObject(const char* pchPath) {
    const bool bOwn = fwstrcmp(pchPath, OwnFileName) == 0;
    const link_map* const pOwn = bOwn ? ObjectOf(&::GetFactory) : nullptr;
    void* pHandle = nullptr;
    if (pOwn && pOwn->l_name[0] != '\0') { // empty: it is part of the program
        pHandle = dlopen(pOwn->l_name, RTLD_NOW | RTLD_NOLOAD);
    }
    if (!pHandle) {
        pHandle = dlopen(pchPath, RTLD_NOW);
    }
    return pHandle || !pOwn ? pHandle : dlopen(pOwn->l_name, RTLD_NOW);
}

// Whether the entry point belongs to another library. The loader also searches the libraries that a plugin was linked
// with, such as this one, and would return an entry point of theirs for a plugin without one.
bool IsBorrowed(EntryPoint pEntry, void* pHandle) {
    link_map* pMap = nullptr;
    return dlinfo(pHandle, RTLD_DI_LINKMAP, &pMap) == 0 && pMap != ObjectOf(pEntry);
}

// Before version 1.0 the interface may differ between minor versions.
void WarnOfVersion(FWPLUGIN& cPlugin) {
    const PluginDescription* const pDescription = cPlugin.GetDescription();
    const Byte4Type b4Theirs = pDescription ? pDescription->b4LibraryVersion / 100 : FWLIB_VERSION / 100;
    if (b4Theirs != FWLIB_VERSION / 100) {
        SayWarning(cPlugin.m_pFramework,
                   "FWPLUGIN: Warning: %s was compiled for fwlib %u.%u, this is %u.%u.\n", cPlugin.m_achPath,
                   b4Theirs / 100, b4Theirs % 100, FWLIB_VERSION_MAJOR, FWLIB_VERSION_MINOR);
    }
}

void Close(FWPLUGIN& cPlugin) {
    if (cPlugin.m_pHandle) {
        const unsigned int uBefore = UnloadedObjects(); // those whose code the host unloaded
        dlclose(cPlugin.m_pHandle);
        const unsigned int uUnloaded = UnloadedObjects();
        const unsigned int uObjects = uUnloaded > uBefore ? uUnloaded - uBefore : 0;
        if (uObjects > 0) {
            std::fprintf(stderr,
                         "FWPLUGIN: Error: %s was unloaded before %u of its objects were destroyed.\n",
                         cPlugin.m_achPath, uObjects);
            std::abort();
        }
    }
    cPlugin.m_pHandle = nullptr;
    cPlugin.m_pFactory = nullptr;
}

} // namespace

PLUGIN::PLUGIN() : m_pFramework(nullptr), m_pFactory(nullptr) {}

PLUGIN::~PLUGIN() = default;

Factory* PLUGIN::GetFactory() {
    if (!m_pFactory) {
        SayError(m_pFramework, "ERROR: PLUGIN::GetFactory(): Factory is NULL!\n");
    }
    return m_pFactory;
}

FWPLUGIN::FWPLUGIN(char* pchPath) : m_achPath{}, m_pHandle(nullptr) {
    // A truncated path could name another file.
    if (pchPath && fwstrlen(pchPath) < PathSize) {
        CopyBounded(m_achPath, pchPath);
    }
}

FWPLUGIN::~FWPLUGIN() {
    Close(*this);
}

int FWPLUGIN::Initialize(FRAMEWORK* pFramework) {
    Close(*this); // of an earlier Initialize
    m_pFramework = pFramework;
    const bool bPath = m_achPath[0] != '\0';
    const FoundPlugin cFound(m_achPath, LibraryPath());
    if (const char* const pchRefusal = WhyRefused(cFound.achPath)) {
        SayError(pFramework, "FWPLUGIN: dlopen() Error: %s: %s\n", cFound.achPath, pchRefusal);
        return 0;
    }
    m_pHandle = bPath ? OpenObject(cFound.achPath) : nullptr;
    if (!m_pHandle) {
        const char* const pchReason = bPath ? dlerror() : "the path is empty or longer than 255 characters";
        SayError(pFramework, "FWPLUGIN: dlopen() Error: %s\n", pchReason ? pchReason : m_achPath);
        return 0;
    }
    const auto pEntry = reinterpret_cast<EntryPoint>(dlsym(m_pHandle, "GetFactory"));
    if (!pEntry) {
        const char* const pchReason = dlerror();
        SayError(pFramework, "FWPLUGIN: dlsym() Error: %s\n", pchReason ? pchReason : m_achPath);
        return 0;
    }
    if (IsBorrowed(pEntry, m_pHandle)) {
        SayError(pFramework, "FWPLUGIN: dlsym() Error: %s: undefined symbol: GetFactory\n", m_achPath);
        return 0;
    }
    m_pFactory = Guarded(pFramework, m_achPath, pEntry);
    if (!m_pFactory) {
        SayError(pFramework, "FWPLUGIN: Error: Could not get factory.\n");
        return 0;
    }
    WarnOfVersion(*this);
    Guarded(pFramework, m_achPath, [&] { return m_pFactory->Initialize(pFramework); });
    return 1;
}

const PluginDescription* FWPLUGIN::GetDescription() {
    void* const pSymbol = m_pHandle ? dlsym(m_pHandle, "GetPluginDescription") : nullptr;
    if (!pSymbol || IsBorrowed(reinterpret_cast<EntryPoint>(pSymbol), m_pHandle)) {
        dlerror(); // a missing description is no error that the host should find there
        return nullptr;
    }
    const PluginDescription* const pDescription =
        Guarded(m_pFramework, m_achPath, reinterpret_cast<Describe>(pSymbol));
    return pDescription && pDescription->b4Version == PluginDescription::CurrentVersion ? pDescription
                                                                                        : nullptr;
}

} // namespace VESK
