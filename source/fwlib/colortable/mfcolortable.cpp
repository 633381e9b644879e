// SPDX-License-Identifier: MIT
#include "fwlib/colortable/mfcolortable.h"

#include "fwlib/stdc/stdc/byteorder.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstring>

namespace VESK {

// A definition for programs in C++11 and C++14, which have no inline variables.
constexpr unsigned int MFColorTable::FileNameSize; // NOLINT(readability-redundant-declaration)

namespace {

constexpr char Extension[] = ".lut";
constexpr int SizeField = 4; // bytes of the header size
constexpr unsigned char FromStart = 0;

void Close(MFColorTable& cTable) {
    if (cTable.m_pFile) {
        fwfclose(cTable.m_pFile);
    }
    cTable.m_pFile = nullptr;
}

} // namespace

MFColorTable::MFColorTable() : m_achFileName{}, m_pFile(nullptr) {}

MFColorTable::~MFColorTable() {
    Close(*this);
}

int MFColorTable::SetFilename(char* pchName) {
    const std::size_t uLength = pchName ? fwstrlen(pchName) : sizeof m_achFileName;
    if (uLength + sizeof Extension > sizeof m_achFileName) {
        Close(*this);
        m_achFileName[0] = '\0';
        return 0;
    }
    std::memmove(m_achFileName, pchName, uLength);
    Close(*this);
    std::memcpy(m_achFileName + uLength, Extension, sizeof Extension);
    m_pFile = fwfopen(m_achFileName, Text("rb"));
    return m_pFile != nullptr;
}

int MFColorTable::GetHeaderSize(unsigned int* puSize) {
    unsigned char abSize[SizeField];
    if (!puSize || !SetPosition(0) || !GetBlock(abSize, SizeField)) {
        return 0;
    }
    CopyLittleEndianInMemoryToByte4Type(puSize, abSize);
    return 1;
}

int MFColorTable::SetPosition(int iOffset) {
    return m_pFile && iOffset >= 0 && fwfseek(m_pFile, iOffset, FromStart);
}

int MFColorTable::GetBlock(unsigned char* pBuffer, int iCount) {
    if (!m_pFile || iCount <= 0) {
        return m_pFile && iCount == 0;
    }
    return pBuffer && ReadByteArray(m_pFile, pBuffer, static_cast<unsigned int>(iCount));
}

int MFColorTable::GetData(int iOffset, int iCount, unsigned char** ppData) {
    return GetData(iOffset, iCount, iCount, ppData);
}

int MFColorTable::GetData(int iOffset, int iCount, int iSize, unsigned char** ppData) {
    if (!ppData || iSize < iCount || !SetPosition(iOffset)) {
        return 0;
    }
    if (iCount < 0) {
        *ppData = nullptr;
        return 0;
    }
    // A block of 0 bytes is allocated too.
    *ppData = static_cast<unsigned char*>(fwmalloc(static_cast<unsigned int>(iSize > 0 ? iSize : 1)));
    if (!*ppData) {
        return 0;
    }
    const int iZeros = iSize - iCount;
    fwmemset(*ppData, 0, iZeros);
    if (!GetBlock(*ppData + iZeros, iCount)) {
        DeleteData(*ppData);
        *ppData = nullptr;
        return 0;
    }
    return 1;
}

void MFColorTable::DeleteData(unsigned char* pData) {
    fwfree(pData);
}

} // namespace VESK
