// SPDX-License-Identifier: MIT
#include "fwlib/streams/sfilewrite.h"

#include "fwlib/internal/handle.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/filename.h"
#include "fwlib/streams/objectfilewrite.h"
#include "fwlib/text.h"

namespace VESK {

// A definition for programs in C++11 and C++14, which have no inline variables.
constexpr unsigned int SFileWrite::FileNameSize; // NOLINT(readability-redundant-declaration)

SFileWrite::SFileWrite() : m_achFileName{}, m_pFile(nullptr) {}

SFileWrite::SFileWrite(char* pchFileName, unsigned int uBinary) : m_achFileName{}, m_pFile(HandleOf(stdout)) {
    if (pchFileName) {
        CopyName(m_achFileName, pchFileName);
        m_pFile = fwfopen(m_achFileName, Text(uBinary ? "wb" : "w"));
    }
}

SFileWrite::~SFileWrite() {
    if (m_pFile && m_pFile != HandleOf(stdout)) {
        fwfclose(m_pFile);
    }
}

Byte4Type SFileWrite::WriteData(char* pchData, Byte4Type b4Length) {
    if (!m_pFile) {
        return 0;
    }
    BeforeHostUse(m_pFile); // it may be the stream of a recorder, within an object
    const Byte4Type b4Written = WriteItems(pchData, 1, b4Length, m_pFile);
    FlushFile(m_pFile);
    return b4Written;
}

void SFileWrite::SetFile(char* pFile) {
    m_pFile = pFile;
    // Comparing addresses is not sufficient: a new file often gets the address of one that was closed.
    if (auto* const pRecording = OwnClass<ObjectFileWrite>::Of(this)) {
        pRecording->BeginFile();
    }
}

} // namespace VESK
