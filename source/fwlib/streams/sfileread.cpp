// SPDX-License-Identifier: MIT
#include "fwlib/streams/sfileread.h"

#include "fwlib/internal/handle.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/filename.h"
#include "fwlib/text.h"

#include <cstring>

namespace VESK {

// Definitions for programs in C++11 and C++14, which have no inline variables.
constexpr unsigned int SFileRead::FileNameSize; // NOLINT(readability-redundant-declaration)
constexpr Byte4Type SFileRead::LineBufferSize;  // NOLINT(readability-redundant-declaration)

namespace {

void CloseOwned(SFileRead& cReader) {
    if (cReader.m_pFile && cReader.m_pFile != HandleOf(stdin)) {
        fwfclose(cReader.m_pFile);
    }
    cReader.m_pFile = nullptr;
}

} // namespace

SFileRead::SFileRead()
    : m_achFileName{},
      m_pFile(nullptr),
      m_pchLineBuffer(static_cast<char*>(fwmalloc(LineBufferSize))),
      m_b4LineBufferSize(LineBufferSize) {}

SFileRead::SFileRead(char* pchFileName) : SFileRead() {
    if (pchFileName) {
        SFileRead::OpenFile(pchFileName);
    } else {
        m_pFile = HandleOf(stdin);
    }
}

SFileRead::~SFileRead() {
    CloseOwned(*this);
    fwfree(m_pchLineBuffer);
}

char* SFileRead::ReadLine() {
    if (!m_pFile || !m_pchLineBuffer) {
        return nullptr;
    }
    const std::size_t uText = m_b4LineBufferSize > 0 ? m_b4LineBufferSize - 1 : 0; // including the newline
    if (HeldLine(StreamOf(m_pFile), m_pchLineBuffer, uText) >= 0) {
        return m_pchLineBuffer;
    }
    if (!GetLine(m_pchLineBuffer, m_b4LineBufferSize, m_pFile)) {
        return nullptr;
    }
    const std::size_t uLength = std::strlen(m_pchLineBuffer);
    if (uLength > 0 && m_pchLineBuffer[uLength - 1] == '\n') {
        m_pchLineBuffer[uLength - 1] = '\0';
    }
    return m_pchLineBuffer;
}

Byte4Type SFileRead::ReadBlock(char* pchBuffer, Byte4Type b4Length) {
    return m_pFile ? fwfread(pchBuffer, 1, b4Length, m_pFile) : 0;
}

int SFileRead::OpenFile(char* pchFileName) {
    CloseOwned(*this);
    if (!pchFileName) {
        return 0;
    }
    CopyName(m_achFileName, pchFileName);
    m_pFile = fwfopen(m_achFileName, Text("r"));
    return m_pFile != nullptr;
}

int SFileRead::SetFile(char* pFile) {
    m_pFile = pFile;
    return 1;
}

Byte4Type SFileRead::GetFileSize() {
    return 0;
}

} // namespace VESK
