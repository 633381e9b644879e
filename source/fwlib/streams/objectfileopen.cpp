// SPDX-License-Identifier: MIT
// Opening a recorder's file: the settings of serializing elements, and what happens to a file that exists.
#include "fwlib/elements/eobject.h"
#include "fwlib/internal/handle.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/properties/cutnames.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/filename.h"
#include "fwlib/streams/objectfilewrite.h"
#include "fwlib/streams/objectlines.h"
#include "fwlib/text.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace VESK {

namespace {

constexpr const char* Existings[] = {"replace", "append", "refuse"}; // in the order of FileSettings::Existing

// The complete objects at the start of a file, and what follows them.
struct Front {
    long long llWhole = 0; // bytes of the objects
    long long llAll = 0;   // bytes of the file
    const char* pchReason; // why the rest is not a truncated object; null if it is, or if nothing follows
};

// Reads the file up to the first incomplete object. The rest counts as a truncated object only if the file ends with
// it, its first line can be a type, and there is a complete object before it or a valid count in its second line.
Front FrontOf(std::FILE* pFile) {
    Front cFront = {};
    ObjectLines cLines;
    char* pchLine = nullptr;
    std::size_t uSize = 0;
    bool bTyped = true; // the current object's first line can be a type
    bool bCounted = false;
    for (ssize_t i; cLines.Now() != ObjectLines::Broken && (i = getline(&pchLine, &uSize, pFile)) > 0;) {
        const bool bFirst = cLines.Now() == ObjectLines::TypeNext || cLines.Now() == ObjectLines::Whole;
        bTyped = bFirst ? std::strlen(pchLine) <= TypeTextSize && !std::strchr(pchLine, '=') : bTyped;
        if (bFirst) {
            cLines.Restart();
        }
        cLines.Take(pchLine, static_cast<std::size_t>(i));
        cFront.llAll += i;
        bCounted = cLines.Now() == ObjectLines::PropertyNext || (bCounted && !bFirst);
        cFront.llWhole = cLines.Now() == ObjectLines::Whole ? cFront.llAll : cFront.llWhole;
    }
    std::free(pchLine);
    cLines.End();
    const bool bEnded = std::feof(pFile) != 0;
    const bool bCut = bEnded && bTyped && (bCounted || cFront.llWhole > 0);
    if (cLines.Now() == ObjectLines::Broken && !bCut) {
        cFront.pchReason = cLines.Reason();
    } else if (std::ferror(pFile) || !bEnded) {
        cFront.pchReason = std::strerror(errno);
    }
    return cFront;
}

} // namespace

FileSettings::FileSettings(PROPERTIES& cProperties) : m_Existing(Existing::Replace), m_uShared(0) {
    Byte2Type b2Length = 0;
    m_bNamed =
        cProperties.GetProperty(Key::Filename, m_achName, sizeof m_achName, nullptr, Section::Standard);
    cProperties.GetPropertyLength(Key::Filename, &b2Length, Section::Standard);
    m_bCut = m_bNamed && b2Length >= sizeof m_achName;
    cProperties.GetProperty(Key::Strict, &m_uStrict, 0, Section::Standard);
}

bool FileSettings::NameFits(EObject& cElement) const {
    if (m_bCut) {
        cElement.ErrorMessage("Initialize(): Filename is longer than 255 characters: %s...\n", m_achName);
        return false;
    }
    if (m_bNamed && IsCutName(m_achName)) {
        cElement.ErrorMessage("Initialize(): a configuration file holds a longer Filename than %s\n",
                              m_achName);
        return false;
    }
    return true;
}

bool FileSettings::ReadForWriting(EObject& cElement) {
    char achExisting[TypeTextSize];
    cElement.m_cProperties.GetProperty(Key::Shared, &m_uShared, 0, Section::Standard);
    cElement.m_cProperties.GetProperty(Key::Existing, achExisting, sizeof achExisting, Text(Existings[0]),
                                       Section::Standard);
    const char* const* const ppKnown =
        std::find_if(std::begin(Existings), std::end(Existings), [&achExisting](const char* pchKnown) {
            return std::strcmp(pchKnown, achExisting) == 0;
        });
    if (ppKnown == std::end(Existings)) {
        cElement.ErrorMessage("Initialize(): Existing is not replace, append or refuse: %s\n", achExisting);
        return false;
    }
    m_Existing = static_cast<Existing>(ppKnown - Existings);
    return true;
}

// Opens the file by its name. Returns 1, even if it cannot be opened; or 0, after a report, if the settings forbid it.
int ObjectFileWrite::OpenNamed(EObject& cElement, const FileSettings& cSettings) {
    struct stat Status;
    const bool bThere = stat(m_achFileName, &Status) == 0;
    const bool bSpecial = bThere && !S_ISREG(Status.st_mode); // contains no recording that could be lost
    const bool bReplace = bSpecial || cSettings.WhatExists() == FileSettings::Existing::Replace;
    const bool bAppend = !bReplace && bThere && cSettings.WhatExists() == FileSettings::Existing::Append;
    m_pFile = m_cOpen.Open(m_achFileName, Text(bReplace ? "w" : bAppend ? "r+" : "wx"), cSettings.Shared());
    if (!m_pFile && errno == 0) {
        cElement.ErrorMessage("Unable to open %s: this process reads or writes it already\n", m_achFileName);
        return 0;
    }
    if (!m_pFile && !bReplace && errno == EEXIST) {
        cElement.ErrorMessage("Unable to open %s: %s\n", m_achFileName, std::strerror(EEXIST));
        return 0;
    }
    return m_pFile && bAppend ? GoBehindObjects(cElement) : 1;
}

// Truncates the file after its last complete object. Returns 0, after a report, if anything but a truncated object
// follows.
int ObjectFileWrite::GoBehindObjects(EObject& cElement) {
    std::FILE* const pFile = StreamOf(m_pFile);
    Front cFront = FrontOf(pFile);
    const bool bCut = !cFront.pchReason && cFront.llWhole < cFront.llAll;
    if (!cFront.pchReason &&
        ((bCut && ftruncate(fileno(pFile), cFront.llWhole) != 0) || std::fseek(pFile, 0, SEEK_END) != 0)) {
        cFront.pchReason = std::strerror(errno);
    }
    if (cFront.pchReason) {
        cElement.ErrorMessage("Unable to append to %s: no complete object at byte %lld: %s\n", m_achFileName,
                              cFront.llWhole, cFront.pchReason);
        return 0;
    }
    if (bCut) {
        cElement.ErrorMessage("Removed a part of an object from %s: %lld bytes at byte %lld\n", m_achFileName,
                              cFront.llAll - cFront.llWhole, cFront.llWhole);
    }
    return 1;
}

int ObjectFileWrite::Open(EObject& cElement, FileSettings& cSettings) {
    if (!cSettings.NameFits(cElement) || !cSettings.ReadForWriting(cElement)) {
        return 0;
    }
    if (!cSettings.Name()) {
        m_pFile = HandleOf(stdout);
        BeginFile();
        return 1;
    }
    CopyName(m_achFileName, cSettings.Name());
    const int iAccepted = OpenNamed(cElement, cSettings);
    const int iReason = errno;
    BeginFile();
    m_bNamed = true;
    if (!m_pFile && iAccepted) {
        m_iReason = iReason;
        ClaimReport(); // the next line is the report
        cElement.ErrorMessage("Unable to open %s: %s\n", m_achFileName, std::strerror(iReason));
    }
    return iAccepted;
}

} // namespace VESK
