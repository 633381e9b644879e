// SPDX-License-Identifier: MIT
// The reader of EDeserialize.
#include "fwlib/streams/objectfileread.h"
#include "fwlib/internal/handle.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace VESK {

ObjectFileRead::ObjectFileRead(bool bStrict)
    : m_bStrict(bStrict),
      m_pFileSeen(nullptr),
      m_bNamed(false),
      m_bMayWait(false),
      m_bWaits(false),
      m_bReported(false),
      m_iReadError(0),
      m_ullRead(0),
      m_ullObject(0),
      m_pchLine(nullptr),
      m_uLineSize(0),
      m_pchHeld(nullptr),
      m_uHeld(0),
      m_uHeldSize(0),
      m_uTaken(0) {
    OwnClass<ObjectFileRead>::Know(*this);
}

ObjectFileRead::~ObjectFileRead() {
    std::free(m_pchLine);
    std::free(m_pchHeld);
}

void ObjectFileRead::Restart(bool bNamed) {
    m_bNamed = bNamed;
    m_pFileSeen = m_pFile;
    m_bReported = m_bWaits = m_bMayWait = false;
    m_iReadError = 0;
    m_cLines = ObjectLines();
    m_ullRead = m_ullObject = 0;
    m_uHeld = m_uTaken = 0;
    m_cOpen.Note(m_pFile);
    struct stat Status;
    const int iFile = m_pFile ? fileno(StreamOf(m_pFile)) : -1;
    m_bMayWait = m_pFile && (iFile < 0 || fstat(iFile, &Status) != 0 || !S_ISREG(Status.st_mode));
}

int ObjectFileRead::OpenFile(char* pchFileName) {
    const int iOpened = SFileRead::OpenFile(pchFileName);
    const int iReason = errno;
    Restart(true);
    errno = iReason;
    return iOpened;
}

int ObjectFileRead::SetFile(char* pFile) {
    SFileRead::SetFile(pFile);
    Restart(false);
    return 1;
}

// Appends what the stream has of the next line to the held object. Returns the length of the line if it is complete or
// the last one; otherwise, and when there is not enough memory, -1 with errno.
ssize_t ObjectFileRead::ReadHeld() {
    const char* const pchFirst = m_pchHeld + m_uTaken; // of the next line
    const void* const pEnd = m_uHeld > m_uTaken ? std::memchr(pchFirst, '\n', m_uHeld - m_uTaken) : nullptr;
    if (pEnd) { // an earlier call has read it
        return static_cast<const char*>(pEnd) + 1 - pchFirst;
    }
    const ssize_t iMore = getline(&m_pchLine, &m_uLineSize, StreamOf(m_pFile));
    const std::size_t uMore = iMore > 0 ? static_cast<std::size_t>(iMore) : 0;
    const int iReason = errno;
    if (m_uHeld + uMore > m_uHeldSize) {
        const std::size_t uSize = 2 * (m_uHeld + uMore);
        auto* const pchMore = static_cast<char*>(std::malloc(uSize));
        if (!pchMore) {
            errno = ENOMEM;
            return -1;
        }
        m_uHeld > 0 ? std::memcpy(pchMore, m_pchHeld, m_uHeld) : nullptr;
        std::free(m_pchHeld);
        m_pchHeld = pchMore;
        m_uHeldSize = uSize;
    }
    uMore > 0 ? std::memcpy(m_pchHeld + m_uHeld, m_pchLine, uMore) : nullptr;
    m_uHeld += uMore;
    errno = iReason;
    const bool bWhole = uMore > 0 && m_pchLine[uMore - 1] == '\n';
    return bWhole || (fwfeof(m_pFile) && m_uHeld > m_uTaken) ? static_cast<ssize_t>(m_uHeld - m_uTaken) : -1;
}

// Copies the next line to the buffer of the mode, where the caller may change it; if not strict, only as much as fits.
ssize_t ObjectFileRead::HandOut(std::size_t uLength) {
    if (!m_bStrict && uLength >= m_b4LineBufferSize) {
        uLength = m_b4LineBufferSize - 1;
    }
    // The line was read in several parts, and the buffer fits the last one.
    if (m_bStrict && uLength >= m_uLineSize) {
        std::free(m_pchLine);
        m_uLineSize = uLength + 1;
        m_pchLine = static_cast<char*>(std::malloc(m_uLineSize));
    }
    char* const pchLine = m_bStrict ? m_pchLine : m_pchLineBuffer;
    if (!pchLine) {
        m_uLineSize = 0;
        errno = ENOMEM;
        return -1;
    }
    std::memcpy(pchLine, m_pchHeld + m_uTaken, uLength);
    pchLine[uLength] = '\0';
    m_uTaken += uLength;
    return static_cast<ssize_t>(uLength);
}

// No line was read: the stream has no more data yet, has ended, or failed.
void ObjectFileRead::EndLines() {
    const bool bLater = errno == EAGAIN || errno == EINTR;
    if (m_bMayWait && !fwfeof(m_pFile) && bLater) {
        m_bWaits = true;
        std::clearerr(StreamOf(m_pFile)); // otherwise it would not read again
        return;
    }
    if (!fwfeof(m_pFile)) {
        m_iReadError = errno != 0 ? errno : EIO;
    }
    if (m_cLines.Now() != ObjectLines::TypeNext) { // lines of the object's class may be missing
        m_cLines.Break(ObjectLines::EndFault());
    }
}

// Reads the next line with its newline into m_pchLine. Returns its length, or -1.
ssize_t ObjectFileRead::ReadWhole() {
    const std::ptrdiff_t iLength =
        HeldLine(StreamOf(m_pFile), m_pchLine, m_uLineSize > 0 ? m_uLineSize - 1 : 0);
    if (iLength < 0) {
        return getline(&m_pchLine, &m_uLineSize, StreamOf(m_pFile));
    }
    m_pchLine[iLength] = '\n';
    m_pchLine[iLength + 1] = '\0';
    return iLength + 1;
}

char* ObjectFileRead::ReadLine() {
    if (!m_pFile || m_bWaits || m_cLines.Now() == ObjectLines::Broken) {
        return nullptr;
    }
    errno = 0;
    if (!m_bStrict && !m_bMayWait) {
        char* const pchWhole = SFileRead::ReadLine();
        pchWhole ? static_cast<void>(0) : EndLines();
        return pchWhole;
    }
    ssize_t iLength = m_bMayWait ? ReadHeld() : ReadWhole();
    iLength = m_bMayWait && iLength > 0 ? HandOut(static_cast<std::size_t>(iLength)) : iLength;
    if (iLength < 0) {
        EndLines();
        return nullptr;
    }
    char* const pchLine = m_bStrict ? m_pchLine : m_pchLineBuffer;
    m_ullRead += static_cast<unsigned long long>(iLength);
    if (m_bStrict) {
        m_cLines.Take(pchLine, static_cast<std::size_t>(iLength));
    }
    if (m_cLines.Now() == ObjectLines::Broken) {
        return nullptr;
    }
    pchLine[iLength - 1] = pchLine[iLength - 1] == '\n' ? '\0' : pchLine[iLength - 1];
    return pchLine;
}

void ObjectFileRead::BeginObject() {
    if (m_pFile && m_pFile != m_pFileSeen) { // set by a host
        Restart(false);
    }
    if (m_bWaits) { // the lines so far are returned again
        m_ullRead = m_ullObject;
    } else {
        m_uHeld -= m_uTaken;
        m_uHeld > 0 ? std::memmove(m_pchHeld, m_pchHeld + m_uTaken, m_uHeld) : nullptr;
    }
    m_uTaken = 0;
    m_bWaits = false;
    m_cLines.Restart();
    if (m_cLines.Now() != ObjectLines::Broken) { // otherwise the offset is that of the invalid object
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
    if (!m_bStrict || m_bWaits) {
        return !m_bWaits;
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
    const bool bOther = m_pFile && m_pFile != m_pFileSeen; // set by a host
    return m_bNamed && !bOther          ? m_achFileName
           : !m_pFile                   ? "a file without a name"
           : m_pFile == HandleOf(stdin) ? "standard input"
                                        : "a stream of the host";
}

} // namespace VESK
