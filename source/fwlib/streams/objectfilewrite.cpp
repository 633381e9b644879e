// SPDX-License-Identifier: MIT
// The writer of ESerialize; objectfileopen.cpp opens its file.
#include "fwlib/streams/objectfilewrite.h"

#include "fwlib/internal/handle.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace VESK {

namespace {

constexpr std::size_t FirstCapacity = 4096; // of the block in which an object is collected
constexpr std::size_t LargestObject = INT32_MAX;
constexpr long long Unknown = -1; // a position

// Writes all bytes, in several calls if the system truncates or interrupts one. Returns the number of bytes written.
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

// Writes to a stream without a descriptor. If only the flush fails, returns one byte less, as the number is unknown.
std::size_t PrintAll(std::FILE* pFile, const char* pchData, std::size_t uLength) {
    errno = 0;
    const std::size_t uWritten = std::fwrite(pchData, 1, uLength, pFile);
    return std::fflush(pFile) == 0 || uWritten < uLength ? uWritten : uLength - 1;
}

long long SizeOf(int iFile) {
    struct stat Status;
    return fstat(iFile, &Status) == 0 ? Status.st_size : Unknown;
}

} // namespace

ObjectFileWrite::ObjectFileWrite(bool bStrict)
    : m_bStrict(bStrict),
      m_pFileSeen(nullptr),
      m_bNamed(false),
      m_bRegular(false),
      m_bAppends(false),
      m_bLost(false),
      m_bEnded(false),
      m_bReported(false),
      m_iReason(0),
      m_ullLost(0),
      m_llNext(Unknown),
      m_llStart(Unknown),
      m_ullDone(0),
      m_bUsed(false),
      m_bAtEnd(false),
      m_pchObject(nullptr),
      m_uLength(0),
      m_uCapacity(0) {
    OwnClass<ObjectFileWrite>::Know(*this);
}

ObjectFileWrite::~ObjectFileWrite() {
    for (ObjectAtHand* p = pObjectAtHand; p; p = p->pOuter) {
        p->pWriter = p->pWriter == this ? nullptr : p->pWriter;
    }
    fwfree(m_pchObject);
}

void ObjectFileWrite::NoticeFile() {
    if (m_pFileSeen != m_pFile) {
        BeginFile();
    }
}

void ObjectFileWrite::BeginFile() {
    m_pFileSeen = m_pFile;
    m_bNamed = m_bLost = m_bEnded = m_bReported = m_bRegular = m_bAppends = false;
    m_llNext = m_llStart = Unknown;
    m_ullDone = 0;
    m_bUsed = false;
    m_cOpen.Note(m_pFile);
    struct stat Status;
    const int iFile = m_pFile ? fileno(StreamOf(m_pFile)) : -1;
    if (iFile >= 0) {
        m_bRegular = fstat(iFile, &Status) == 0 && S_ISREG(Status.st_mode);
        m_bAppends = (fcntl(iFile, F_GETFL) & O_APPEND) != 0;
    }
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
        TakeBack(); // the lines already written
    }
}

Byte4Type ObjectFileWrite::WriteData(char* pchData, Byte4Type b4Length) {
    NoticeFile();
    if (m_bLost || m_bEnded) {
        m_bLost = true;
        return 0;
    }
    return m_bStrict ? Gather(pchData, b4Length) : Put(pchData, b4Length);
}

// Writes to the descriptor: stdio takes a third of a short write's time, and does not return how much of a failed one
// was written. A flush first makes the positions of stream and descriptor equal, whatever the host did.
std::size_t ObjectFileWrite::WriteThrough(const char* pchData, std::size_t uLength) {
    std::FILE* const pFile = StreamOf(m_pFile);
    if (!InStep(pFile) && std::fflush(pFile) != 0) {
        return 0;
    }
    const int iFile = fileno(pFile);
    if (iFile < 0) {
        return PrintAll(pFile, pchData, uLength);
    }
    if (m_ullDone == 0 && !m_bUsed && !m_bStrict) {
        m_llStart = !m_bRegular                               ? Unknown
                    : m_llNext != Unknown && Untouched(pFile) ? m_llNext
                    : m_bAppends                              ? SizeOf(iFile)
                                                              : lseek(iFile, 0, SEEK_CUR);
    }
    return WriteAll(iFile, pchData, uLength);
}

Byte4Type ObjectFileWrite::Put(const char* pchData, std::size_t uLength) {
    if (uLength == 0) {
        return 0; // no flush either: its failure would not be reported
    }
    errno = 0;
    const std::size_t uWritten = m_pFile ? WriteThrough(pchData, uLength) : 0;
    m_ullDone += uWritten;
    if (!m_pFile || uWritten < uLength) {
        Lose(errno);
        TakeBack();
    }
    return static_cast<Byte4Type>(uWritten);
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

// Removes the stored part of the object if it is the end of the file; otherwise ends the recording. The object's start
// and length must agree with the file's, as a host or another process may have used the file too.
void ObjectFileWrite::TakeBack() {
    m_uLength = 0;
    if (m_ullDone == 0 && !m_bUsed) {
        return;
    }
    if (m_bUsed && m_pFile) {
        FlushFile(m_pFile); // otherwise the buffered part would be written later
    }
    const int iFile = m_pFile && m_bRegular ? fileno(StreamOf(m_pFile)) : -1;
    const long long llEnd = iFile >= 0 ? lseek(iFile, 0, SEEK_CUR) : Unknown;
    const long long llSize = iFile >= 0 ? SizeOf(iFile) : Unknown;
    const long long llMeant = llEnd - static_cast<long long>(m_ullDone);
    const long long llStart = m_llStart == Unknown ? llMeant : m_llStart;
    const bool bOurs = m_bUsed ? m_bAtEnd && llStart <= llSize : llStart == llMeant && llEnd == llSize;
    m_bEnded = !bOurs || llEnd < 0 || llStart < 0 || ftruncate(iFile, llStart) != 0 ||
               lseek(iFile, llStart, SEEK_SET) != llStart;
    m_ullDone = 0;
}

void ObjectFileWrite::NotePlace() {
    const int iFile = m_pFile && FlushFile(m_pFile) == 0 ? fileno(StreamOf(m_pFile)) : -1;
    const long long llNow = iFile >= 0 ? lseek(iFile, 0, SEEK_CUR) : Unknown;
    m_llStart = llNow < 0 ? Unknown : llNow - static_cast<long long>(m_ullDone);
    m_bAtEnd = m_bRegular && llNow >= 0 && llNow == SizeOf(iFile);
    m_bUsed = true;
}

// Writes what was collected, so that the host finds the stream as if every line had been written.
void ObjectFileWrite::BeforeHostUse(ObjectFileWrite& cWriter, char* pFile) {
    if (pFile != cWriter.m_pFile || cWriter.m_bEnded) {
        return;
    }
    if (!cWriter.m_bUsed) {
        cWriter.NotePlace();
    }
    if (cWriter.m_uLength > 0 && !cWriter.m_bLost) {
        cWriter.Put(cWriter.m_pchObject, cWriter.m_uLength);
        cWriter.m_uLength = 0;
    }
}

// What the host wrote within the object is stored or removed with it.
void ObjectFileWrite::EndHostUse() {
    errno = 0;
    if (m_pFile && FlushFile(m_pFile) != 0 && !m_bLost) {
        Lose(errno);
    }
    if (m_bLost && !m_bEnded) {
        TakeBack();
    }
}

// Collected data that a host wrote before the object is stored with it; written data belongs to the file.
void ObjectFileWrite::BeginObject() {
    NoticeFile();
    m_llNext = m_ullDone == 0 ? m_llNext : Unknown;
    m_ullDone = 0;
    m_llStart = Unknown;
    m_bUsed = false;
}

int ObjectFileWrite::EndObject(bool bKeep) {
    NoticeFile();
    m_bLost = m_bLost || m_bEnded;
    if (m_bStrict && !m_bLost) {
        bKeep ? static_cast<void>(Put(m_pchObject, m_uLength)) : TakeBack();
    }
    m_bUsed ? EndHostUse() : static_cast<void>(0);
    const bool bStored = !m_bLost;
    if (!bStored && bKeep) {
        ++m_ullLost;
    }
    const bool bKnown = m_bNamed && bStored && !m_bUsed && m_llStart != Unknown;
    m_llNext = bKnown ? m_llStart + static_cast<long long>(m_ullDone) : Unknown;
    m_uLength = 0;
    m_ullDone = 0;
    m_bLost = false;
    return bStored;
}

const char* ObjectFileWrite::ShownName() const {
    return m_bNamed                      ? m_achFileName
           : !m_pFile                    ? "a file without a name"
           : m_pFile == HandleOf(stdout) ? "standard output"
                                         : "a stream of the host";
}

bool ObjectFileWrite::ClaimReport() {
    const bool bFirst = !m_bReported;
    m_bReported = true;
    return bFirst;
}

unsigned long long ObjectFileWrite::TakeLost() {
    const unsigned long long ullLost = m_ullLost;
    m_bReported = m_bReported && ullLost == 0;
    m_ullLost = 0;
    return ullLost;
}

} // namespace VESK
