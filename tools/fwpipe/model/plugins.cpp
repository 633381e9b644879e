// SPDX-License-Identifier: MIT
#include "plugins.h"

#include "text.h"

#include <fwlib/fwlib.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <glob.h>
#include <link.h>
#include <sys/stat.h>
#include <vector>

namespace FwPipe {

namespace {

// The running library's file.
std::string LibraryPath() {
    Dl_info Info = {};
    return dladdr(reinterpret_cast<void*>(&::GetFactory), &Info) && Info.dli_fname ? Info.dli_fname : "";
}

bool IsLibrary(const std::string& cPath) {
    std::error_code cError;
    return cPath == "libfwlib.so" || std::filesystem::equivalent(cPath, LibraryPath(), cError);
}

// Reads structures from a file's content.
template <class Structure>
const Structure* At(const std::string& cContent, std::size_t uOffset, std::size_t uCount = 1) {
    const bool bInside = uOffset <= cContent.size() && uOffset % alignof(Structure) == 0 &&
                         uCount <= (cContent.size() - uOffset) / sizeof(Structure);
    return bInside ? reinterpret_cast<const Structure*>(cContent.data() + uOffset) : nullptr;
}

// Whether the symbol table of the loader, if the file has one in a form that is understood, defines the name.
bool MayDefine(const std::string& cContent, const ElfW(Ehdr) & Header, const char* pchName) {
    const auto* const pSections = At<ElfW(Shdr)>(cContent, Header.e_shoff, Header.e_shnum);
    for (unsigned int u = 0; pSections && u < Header.e_shnum; ++u) {
        const ElfW(Shdr)& Table = pSections[u];
        if (Table.sh_type != SHT_DYNSYM || Table.sh_link >= Header.e_shnum) {
            continue;
        }
        const std::size_t uNames = pSections[Table.sh_link].sh_offset;
        const std::size_t uCount = Table.sh_size / sizeof(ElfW(Sym));
        const auto* const pSymbols = At<ElfW(Sym)>(cContent, Table.sh_offset, uCount);
        for (std::size_t i = 0; pSymbols && i < uCount; ++i) {
            const std::size_t uName = uNames + pSymbols[i].st_name;
            if (pSymbols[i].st_shndx != SHN_UNDEF && uName < cContent.size() &&
                std::strcmp(cContent.c_str() + uName, pchName) == 0) {
                return true;
            }
        }
        return !pSymbols;
    }
    return true;
}

enum class Form { None, OtherProcessor, NoPlugin, Plugin };

Form FormOf(const std::string& cPath) {
    std::string cContent, cOwn;
    ReadAll(cPath, cContent);
    const auto* const pHeader = At<ElfW(Ehdr)>(cContent, 0);
    if (!pHeader || std::memcmp(pHeader->e_ident, ELFMAG, SELFMAG) != 0) {
        return Form::None;
    }
    std::ifstream cProgram("/proc/self/exe", std::ios::binary);
    ElfW(Ehdr) Own = {};
    cProgram.read(reinterpret_cast<char*>(&Own), sizeof Own);
    if (std::memcmp(pHeader->e_ident, Own.e_ident, EI_DATA + 1) != 0 || pHeader->e_machine != Own.e_machine) {
        return Form::OtherProcessor;
    }
    return pHeader->e_type == ET_DYN && MayDefine(cContent, *pHeader, "GetFactory") ? Form::Plugin
                                                                                    : Form::NoPlugin;
}

void AppendFolders(const char* pchList, std::vector<std::string>& cFolders) {
    std::string cFolder;
    for (; pchList; ++pchList) {
        if (*pchList != ':' && *pchList != '\0') {
            cFolder += *pchList;
            continue;
        }
        if (!cFolder.empty()) {
            cFolders.push_back(cFolder);
        }
        cFolder.clear();
        if (*pchList == '\0') {
            return;
        }
    }
}

// The folders that the loader's configuration names.
void AppendConfigured(const std::string& cPattern, int iDepth, std::vector<std::string>& cFolders) {
    glob_t Found = {};
    if (iDepth < 8 && glob(cPattern.c_str(), 0, nullptr, &Found) == 0) {
        for (std::size_t u = 0; u < Found.gl_pathc; ++u) {
            std::ifstream cFile(Found.gl_pathv[u]);
            std::string cLine;
            while (std::getline(cFile, cLine)) {
                if (cLine.rfind("include ", 0) == 0) {
                    const std::string cOther = cLine.substr(8);
                    AppendConfigured(cOther.front() == '/' ? cOther : "/etc/" + cOther, iDepth + 1, cFolders);
                } else if (!cLine.empty() && cLine.front() == '/') {
                    cFolders.push_back(cLine);
                }
            }
        }
    }
    globfree(&Found);
}

// The folders in which a name without a slash is looked for.
std::vector<std::string> SearchedFolders() {
    std::vector<std::string> cFolders;
    AppendFolders(std::getenv("FWLIB_PLUGIN_PATH"), cFolders);
    cFolders.push_back(std::filesystem::path(LibraryPath()).parent_path() / "fwlib/plugins");
    void* const pProgram = dlopen(nullptr, RTLD_LAZY);
    Dl_serinfo Size = {};
    if (pProgram && dlinfo(pProgram, RTLD_DI_SERINFOSIZE, &Size) == 0) {
        std::string cBuffer(Size.dls_size, '\0');
        auto* const pInfo = reinterpret_cast<Dl_serinfo*>(cBuffer.data());
        if (dlinfo(pProgram, RTLD_DI_SERINFOSIZE, pInfo) == 0 &&
            dlinfo(pProgram, RTLD_DI_SERINFO, pInfo) == 0) {
            for (unsigned int u = 0; u < pInfo->dls_cnt; ++u) {
                cFolders.emplace_back(pInfo->dls_serpath[u].dls_name);
            }
        }
    }
    AppendConfigured("/etc/ld.so.conf", 0, cFolders);
    return cFolders;
}

Plugin Unusable(const char* pchId, std::string cReason) {
    return {pchId, std::move(cReason), false, nullptr};
}

Plugin FindByPath(const std::string& cPath) {
    struct stat Status;
    if (stat(cPath.c_str(), &Status) != 0) {
        return Unusable("missing-plugin", "cannot read " + cPath + ": " + std::strerror(errno));
    }
    const Form Found = S_ISREG(Status.st_mode) ? FormOf(cPath) : Form::None;
    if (Found != Form::Plugin) {
        return Unusable("unreadable", cPath + (Found == Form::None ? " is no shared object"
                                               : Found == Form::OtherProcessor
                                                   ? " is for another processor or width"
                                                   : " exports no GetFactory: it is no plugin"));
    }
    return {};
}

} // namespace

Plugin PluginFiles::Find(const std::string& cPath) {
    if (IsLibrary(cPath)) {
        return {nullptr, "", true, nullptr};
    }
    if (cPath.find('/') != std::string::npos) {
        return FindByPath(cPath);
    }
    for (const std::string& cFolder : SearchedFolders()) {
        const std::string cFound = std::filesystem::path(cFolder) / cPath;
        std::error_code cError;
        if (std::filesystem::is_regular_file(cFound, cError) && FormOf(cFound) != Form::OtherProcessor) {
            return FindByPath(cFound);
        }
    }
    const std::filesystem::path cHere = std::filesystem::path(".") / cPath;
    std::error_code cError;
    return Unusable(
        "missing-plugin",
        "the loader finds no " + cPath +
            (std::filesystem::exists(cHere, cError) ? "; for the file in this folder write ./" + cPath : ""));
}

} // namespace FwPipe
