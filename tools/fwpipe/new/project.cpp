// SPDX-License-Identifier: MIT
#include "new/project.h"

#include "message.h"
#include "new/templates.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace FwPipe {

namespace {

bool IsSmall(char ch) {
    return ch >= 'a' && ch <= 'z';
}

bool IsCapital(char ch) {
    return ch >= 'A' && ch <= 'Z';
}

bool IsDigit(char ch) {
    return ch >= '0' && ch <= '9';
}

char Lower(char ch) {
    return IsCapital(ch) ? static_cast<char>(ch - 'A' + 'a') : ch;
}

char Upper(char ch) {
    return IsSmall(ch) ? static_cast<char>(ch - 'a' + 'A') : ch;
}

// The name as a part of class names.
std::string ClassNameOf(std::string cName) {
    cName.front() = Upper(cName.front());
    return cName;
}

void Replace(std::string& cText, const std::string& cOld, const std::string& cNew) {
    for (std::size_t u = cText.find(cOld); u != std::string::npos; u = cText.find(cOld, u + cNew.size())) {
        cText.replace(u, cOld.size(), cNew);
    }
}

std::string Filled(std::string cText, const std::string& cName) {
    Replace(cText, "Placeholder", ClassNameOf(cName));
    Replace(cText, "placeholder", FileNameOf(cName));
    return cText;
}

// Creates the file. Returns false with the reason in errno.
bool Write(const std::string& cPath, const std::string& cText) {
    std::FILE* const pFile = std::fopen(cPath.c_str(), "wxe");
    if (!pFile) {
        return false;
    }
    const bool bWritten = std::fwrite(cText.data(), 1, cText.size(), pFile) == cText.size();
    const int iError = errno;
    const bool bClosed = std::fclose(pFile) == 0;
    errno = bWritten ? errno : iError;
    return bWritten && bClosed;
}

void Remove(const std::string& cFolder, const std::vector<std::string>& cFiles) {
    for (const std::string& cFile : cFiles) {
        unlink(cFile.c_str());
    }
    rmdir(cFolder.c_str());
}

} // namespace

std::string FileNameOf(const std::string& cName) {
    std::string cFileName = cName;
    std::transform(cName.begin(), cName.end(), cFileName.begin(), Lower);
    return cFileName;
}

std::string WhyNoName(const std::string& cName) {
    constexpr std::size_t Longest = 64;
    const bool bLetters = std::all_of(cName.begin(), cName.end(),
                                      [](char ch) { return IsSmall(ch) || IsCapital(ch) || IsDigit(ch); });
    if (cName.empty() || cName.size() > Longest || !bLetters || IsDigit(cName.front())) {
        return "a name begins with a letter and has at most 64 letters and digits";
    }
    const std::string cType = 'E' + ClassNameOf(cName);
    if (std::none_of(cType.begin(), cType.end(), IsSmall)) {
        return cType + " may be a macro of the C library; use a name with small letters";
    }
    if (FileNameOf(cName) == "fwlib") {
        return "libfwlib.so is the library";
    }
    if (VESK::FindElementDescription(GetPluginDescription(), cType.c_str()) || cType == "EObject") {
        return cType + " is a type of the library";
    }
    return "";
}

bool WriteProject(const std::string& cFolder, const std::string& cName) {
    constexpr mode_t Everyone = 0777; // less the umask
    if (mkdir(cFolder.c_str(), Everyone) != 0) {
        ReportErrno("cannot create", cFolder);
        return false;
    }
    std::vector<std::string> cFiles;
    for (const Template* pTemplate = PluginTemplates; pTemplate->pchFile; ++pTemplate) {
        cFiles.push_back(cFolder + '/' + Filled(pTemplate->pchFile, cName));
        if (!Write(cFiles.back(), Filled(pTemplate->pchText, cName))) {
            ReportErrno("cannot write", cFiles.back());
            Remove(cFolder, cFiles);
            return false;
        }
    }
    return true;
}

} // namespace FwPipe
