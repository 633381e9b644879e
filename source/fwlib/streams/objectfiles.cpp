// SPDX-License-Identifier: MIT
#include "fwlib/internal/objectfiles.h"

#include "fwlib/internal/handle.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cerrno>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

namespace VESK {

namespace {

constexpr std::size_t FirstCapacity = 4096; // of the block that an object is gathered in
constexpr std::size_t LargestObject = INT32_MAX;

// Writes in as many calls as the system takes, one unless it cuts or interrupts it, and answers how much it took.
std::size_t WriteAll(int iFile, const char* pchData, std::size_t uLength) {
    std::size_t uWritten = 0;
    while (uWritten < uLength) {
        const ssize_t iWritten = write(iFile, pchData + uWritten, uLength - uWritten);
        if (iWritten == 0 || (iWritten < 0 && errno != EINTR)) {
            break;
        }
        uWritten += iWritten > 0 ? static_cast<std::size_t>(iWritten) : 0;
    }
    return uWritten;
}

// Takes the last bytes, just written, out of the file again, if it is one whose end they are.
void TakeBack(int iFile, std::size_t uWritten) {
    struct stat Status;
    const off_t iEnd = lseek(iFile, 0, SEEK_CUR);
    const off_t iStart = iEnd - static_cast<off_t>(uWritten);
    if (uWritten > 0 && iEnd >= 0 && fstat(iFile, &Status) == 0 && S_ISREG(Status.st_mode) &&
        Status.st_size == iEnd && ftruncate(iFile, iStart) == 0) {
        lseek(iFile, iStart, SEEK_SET);
    }
}

} // namespace

FileSettings::FileSettings(PROPERTIES& cProperties) {
    m_bNamed =
        cProperties.GetProperty(Key::Filename, m_achName, sizeof m_achName, nullptr, Section::Standard);
    cProperties.GetProperty(Key::Strict, &m_uStrict, 0, Section::Standard);
}

ObjectFileWrite::ObjectFileWrite(char* pchFileName, bool bStrict)
    : SFileWrite(pchFileName, 0),
      m_bStrict(bStrict),
      m_pFileSeen(m_pFile),
      m_bOwnFile(pchFileName && m_pFile),
      m_bLost(false),
      m_bEnded(false),
      m_bReported(false),
      m_iReason(0),
      m_pchObject(nullptr),
      m_uLength(0),
      m_uCapacity(0) {
    if (!m_pFile) {
        Lose(errno);
    }
}

ObjectFileWrite::~ObjectFileWrite() {
    fwfree(m_pchObject);
}

void ObjectFileWrite::NoticeFile() {
    if (m_pFileSeen != m_pFile) {
        BeginFile();
    }
}

void ObjectFileWrite::BeginFile() {
    m_pFileSeen = m_pFile;
    m_bOwnFile = m_bLost = m_bEnded = m_bReported = false;
}

bool ObjectFileWrite::Close() {
    NoticeFile();
    if (!m_pFile || m_pFile == HandleOf(stdout)) {
        return true;
    }
    errno = 0;
    const bool bKept = fwfclose(m_pFile) == 0;
    if (!bKept) {
        Lose(errno);
    }
    m_pFile = nullptr;
    m_pFileSeen = nullptr;
    return bKept;
}

void ObjectFileWrite::LoseBlock() {
    if (!m_bLost) {
        Lose(ENOMEM);
        m_bEnded = !m_bStrict; // its first lines are in the file already
    }
}

Byte4Type ObjectFileWrite::WriteData(char* pchData, Byte4Type b4Length) {
    NoticeFile();
    if (m_bLost || m_bEnded) {
        m_bLost = true;
        return 0;
    }
    if (m_bStrict) {
        return Gather(pchData, b4Length);
    }
    errno = 0;
    const Byte4Type b4Written = Pass(pchData, b4Length);
    if (!m_pFile || std::ferror(StreamOf(m_pFile)) || b4Written < b4Length) {
        Lose(errno);
        m_bEnded = true;
    }
    return b4Written;
}

// The file that the recorder opened itself is nobody else's, so each line goes to it straight: stdio costs a third of
// a short write. Where others write too, stdio keeps the order and the position.
Byte4Type ObjectFileWrite::Pass(char* pchData, Byte4Type b4Length) {
    if (!m_bOwnFile || __fpending(StreamOf(m_pFile)) > 0) {
        return SFileWrite::WriteData(pchData, b4Length);
    }
    return static_cast<Byte4Type>(WriteAll(fileno(StreamOf(m_pFile)), pchData, b4Length));
}

Byte4Type ObjectFileWrite::Gather(const char* pchData, Byte4Type b4Length) {
    if (b4Length == 0) {
        return 0;
    }
    if (b4Length > LargestObject - m_uLength) {
        Lose(ENOMEM);
        return 0;
    }
    if (m_uCapacity - m_uLength < b4Length) {
        std::size_t uCapacity = m_uCapacity > 0 ? m_uCapacity : FirstCapacity;
        while (uCapacity - m_uLength < b4Length) {
            uCapacity *= 2;
        }
        void* pBlock = m_pchObject;
        if (!fwrealloc(&pBlock, static_cast<unsigned int>(m_uCapacity),
                       static_cast<unsigned int>(uCapacity))) {
            Lose(ENOMEM);
            return 0;
        }
        m_pchObject = static_cast<char*>(pBlock);
        m_uCapacity = uCapacity;
    }
    std::memcpy(m_pchObject + m_uLength, pchData, b4Length);
    m_uLength += b4Length;
    return b4Length;
}

void ObjectFileWrite::Lose(int iReason) {
    m_bLost = true;
    m_iReason = iReason != 0 ? iReason : EIO;
}

bool ObjectFileWrite::Store() {
    if (!m_pFile || fwflush(m_pFile) != 0) {
        return false;
    }
    const int iFile = fileno(StreamOf(m_pFile));
    if (iFile < 0) { // a stream that is no file of the system's
        errno = 0;
        return SFileWrite::WriteData(m_pchObject, static_cast<Byte4Type>(m_uLength)) == m_uLength &&
               !std::ferror(StreamOf(m_pFile));
    }
    const std::size_t uWritten = WriteAll(iFile, m_pchObject, m_uLength);
    if (uWritten == m_uLength) {
        return true;
    }
    const int iReason = errno;
    TakeBack(iFile, uWritten);
    errno = iReason;
    return false;
}

int ObjectFileWrite::EndObject(bool bKeep) {
    NoticeFile();
    errno = 0;
    if (m_bStrict && bKeep && !m_bLost && !Store()) {
        Lose(errno);
        m_bEnded = true;
    }
    const int iStored = !m_bLost;
    m_uLength = 0;
    m_bLost = false;
    return iStored;
}

const char* ObjectFileWrite::ShownName() const {
    return m_achFileName[0] != '\0' ? m_achFileName : m_pFile ? "standard output" : "a file without a name";
}

bool ObjectFileWrite::ReportOnce() {
    const bool bFirst = !m_bReported;
    m_bReported = true;
    return bFirst;
}

} // namespace VESK
