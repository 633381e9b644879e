// SPDX-License-Identifier: MIT
#include "fwlib/internal/objectfiles.h"

#include "fwlib/internal/handle.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include <cerrno>
#include <unistd.h>

namespace VESK {

namespace {

constexpr std::size_t FirstCapacity = 4096; // of the block that an object is gathered in

// Writes all of it, in as many calls as the system takes; one, unless it is interrupted or cuts a write.
bool WriteWhole(int iFile, const char* pchData, std::size_t uLength) {
    while (uLength > 0) {
        const ssize_t iWritten = write(iFile, pchData, uLength);
        if (iWritten < 0 && errno != EINTR) {
            return false;
        }
        if (iWritten > 0) {
            pchData += iWritten;
            uLength -= static_cast<std::size_t>(iWritten);
        }
    }
    return true;
}

} // namespace

ObjectFileWrite::ObjectFileWrite(char* pchFileName, bool bStrict)
    : SFileWrite(pchFileName, 0),
      m_bReported(false),
      m_bStrict(bStrict),
      m_bLost(false),
      m_bBroken(false),
      m_pchObject(nullptr),
      m_uLength(0),
      m_uCapacity(0) {}

ObjectFileWrite::~ObjectFileWrite() {
    fwfree(m_pchObject);
}

Byte4Type ObjectFileWrite::WriteData(char* pchData, Byte4Type b4Length) {
    if (m_bStrict) {
        return Gather(pchData, b4Length);
    }
    if (m_bLost) {
        return 0;
    }
    const Byte4Type b4Written = SFileWrite::WriteData(pchData, b4Length);
    m_bLost = !m_pFile || std::ferror(StreamOf(m_pFile));
    return b4Written;
}

Byte4Type ObjectFileWrite::Gather(const char* pchData, Byte4Type b4Length) {
    if (m_uCapacity - m_uLength < b4Length) {
        std::size_t uCapacity = m_uCapacity > 0 ? m_uCapacity : FirstCapacity;
        while (uCapacity - m_uLength < b4Length) {
            uCapacity *= 2;
        }
        void* pBlock = m_pchObject;
        if (uCapacity > UINT32_MAX || !fwrealloc(&pBlock, static_cast<unsigned int>(m_uCapacity),
                                                 static_cast<unsigned int>(uCapacity))) {
            m_bLost = true;
            return 0;
        }
        m_pchObject = static_cast<char*>(pBlock);
        m_uCapacity = uCapacity;
    }
    std::memcpy(m_pchObject + m_uLength, pchData, b4Length);
    m_uLength += b4Length;
    return b4Length;
}

int ObjectFileWrite::Store() {
    if (!m_pFile || m_bBroken || fwflush(m_pFile) != 0) {
        return 0;
    }
    const int iFile = fileno(StreamOf(m_pFile));
    const off_t iStart = lseek(iFile, 0, SEEK_CUR);
    if (WriteWhole(iFile, m_pchObject, m_uLength)) {
        return 1;
    }
    m_bBroken = iStart < 0 || ftruncate(iFile, iStart) != 0 || lseek(iFile, iStart, SEEK_SET) != iStart;
    return 0;
}

int ObjectFileWrite::EndObject() {
    if (!m_bStrict) {
        return !m_bLost;
    }
    const int iStored = !m_bLost && Store();
    m_uLength = 0;
    m_bLost = false;
    return iStored;
}

const char* ObjectFileWrite::ShownName() const {
    return m_achFileName[0] != '\0' ? m_achFileName : "standard output";
}

ObjectFileRead::ObjectFileRead(bool bStrict)
    : m_bReported(false),
      m_bStrict(bStrict),
      m_ullRead(0),
      m_ullObject(0),
      m_pchLine(nullptr),
      m_uLineSize(0) {}

ObjectFileRead::~ObjectFileRead() {
    fwfree(m_pchLine);
}

char* ObjectFileRead::ReadLine() {
    if (!m_bStrict) {
        return SFileRead::ReadLine();
    }
    if (!m_pFile || Broken()) {
        return nullptr;
    }
    const ssize_t iLength = getline(&m_pchLine, &m_uLineSize, StreamOf(m_pFile));
    if (iLength < 0) {
        m_cLines.End();
        return nullptr;
    }
    m_ullRead += static_cast<unsigned long long>(iLength);
    m_cLines.Take(m_pchLine, static_cast<std::size_t>(iLength));
    if (Broken()) {
        return nullptr;
    }
    m_pchLine[iLength - 1] = '\0';
    return m_pchLine;
}

void ObjectFileRead::BeginObject() {
    m_ullObject = m_ullRead;
    m_cLines.Restart();
}

int ObjectFileRead::EndObject() {
    if (!m_bStrict) {
        return 1;
    }
    m_cLines.End();
    return m_cLines.Now() == ObjectLines::Whole;
}

void ObjectFileRead::LoseProperty() {
    if (m_bStrict) {
        m_cLines.Break("a property could not be kept");
    }
}

const char* ObjectFileRead::ShownName() const {
    return m_achFileName[0] != '\0' ? m_achFileName : "standard input";
}

} // namespace VESK
