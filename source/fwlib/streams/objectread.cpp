// SPDX-License-Identifier: MIT
// The reader behind EDeserialize.
#include "fwlib/internal/handle.h"
#include "fwlib/internal/objectfiles.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace VESK {

ObjectFileRead::ObjectFileRead(bool bStrict)
    : m_bStrict(bStrict),
      m_bReported(false),
      m_iReadError(0),
      m_ullRead(0),
      m_ullObject(0),
      m_pchLine(nullptr),
      m_uLineSize(0) {}

ObjectFileRead::~ObjectFileRead() {
    std::free(m_pchLine);
}

void ObjectFileRead::Restart() {
    m_bReported = false;
    m_iReadError = 0;
    m_cLines = ObjectLines();
    m_ullRead = m_ullObject = 0;
}

int ObjectFileRead::OpenFile(char* pchFileName) {
    Restart();
    return SFileRead::OpenFile(pchFileName);
}

int ObjectFileRead::SetFile(char* pFile) {
    Restart();
    return SFileRead::SetFile(pFile);
}

char* ObjectFileRead::ReadLine() {
    if (!m_pFile || m_cLines.Now() == ObjectLines::Broken) {
        return nullptr;
    }
    errno = 0;
    char* const pchWhole = m_bStrict ? nullptr : SFileRead::ReadLine();
    const ssize_t iLength = m_bStrict ? getline(&m_pchLine, &m_uLineSize, StreamOf(m_pFile)) : -1;
    if (!pchWhole && iLength < 0) {
        if (!fwfeof(m_pFile)) {
            m_iReadError = errno != 0 ? errno : EIO;
        }
        if (m_cLines.Now() != ObjectLines::TypeNext) { // a class's own lines may be missing too
            m_cLines.Break("its last lines are missing");
        }
        return nullptr;
    }
    if (pchWhole) {
        return pchWhole;
    }
    m_ullRead += static_cast<unsigned long long>(iLength);
    m_cLines.Take(m_pchLine, static_cast<std::size_t>(iLength));
    if (m_cLines.Now() == ObjectLines::Broken) {
        return nullptr;
    }
    m_pchLine[iLength - 1] = '\0';
    return m_pchLine;
}

void ObjectFileRead::BeginObject() {
    m_cLines.Restart();
    if (m_cLines.Now() != ObjectLines::Broken) { // else the broken one is what the report tells of
        m_ullObject = m_ullRead;
    }
}

void ObjectFileRead::LoseProperty() {
    if (m_bStrict) {
        m_cLines.Break("a property could not be kept");
    }
}

void ObjectFileRead::SkipObject() {
    while (m_bStrict && m_cLines.Now() != ObjectLines::Whole && ReadLine()) {
    }
}

int ObjectFileRead::EndObject() {
    if (!m_bStrict) {
        return 1;
    }
    m_cLines.End();
    return m_cLines.Now() == ObjectLines::Whole;
}

const char* ObjectFileRead::ReasonOnce() {
    const char* const pchReason = m_iReadError != 0                       ? std::strerror(m_iReadError)
                                  : m_cLines.Now() == ObjectLines::Broken ? m_cLines.Reason()
                                                                          : nullptr;
    if (!pchReason || m_bReported) {
        return nullptr;
    }
    m_bReported = true;
    return pchReason;
}

const char* ObjectFileRead::ShownName() const {
    return m_achFileName[0] != '\0' ? m_achFileName : m_pFile ? "standard input" : "a file without a name";
}

} // namespace VESK
