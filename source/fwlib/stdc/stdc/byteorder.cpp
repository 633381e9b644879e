// SPDX-License-Identifier: MIT
#include "fwlib/stdc/stdc/byteorder.h"

#include "fwlib/stdc/stdc/fwstdcstring.h"

namespace VESK {

namespace {

enum Order { LittleEndian, BigEndian };

// The number of bits by which the byte at a position is shifted in a value of that size.
template <Order ByteOrder, unsigned int Size>
constexpr unsigned int ShiftOf(unsigned int uPosition) {
    return 8 * (ByteOrder == LittleEndian ? uPosition : Size - 1 - uPosition);
}

template <Order ByteOrder, class Value>
void Compose(unsigned char* pTarget, Value Field) {
    for (unsigned int u = 0; u < sizeof(Value); ++u) {
        pTarget[u] = static_cast<unsigned char>(Field >> ShiftOf<ByteOrder, sizeof(Value)>(u));
    }
}

template <Order ByteOrder, class Value>
Value Assemble(const unsigned char* pSource) {
    Byte4Type b4Field = 0;
    for (unsigned int u = 0; u < sizeof(Value); ++u) {
        b4Field |= Byte4Type{pSource[u]} << ShiftOf<ByteOrder, sizeof(Value)>(u);
    }
    return static_cast<Value>(b4Field);
}

template <class Value>
int WriteBig(char* pFile, Value Field) {
    unsigned char ab[sizeof(Value)];
    Compose<BigEndian>(ab, Field);
    return WriteByteArray(pFile, ab, sizeof ab);
}

template <class Value>
int ReadBig(char* pFile, Value& Field) {
    unsigned char ab[sizeof(Value)];
    if (!ReadByteArray(pFile, ab, sizeof ab)) {
        return 0;
    }
    Field = Assemble<BigEndian, Value>(ab);
    return 1;
}

template <class Value>
int WriteLittle(char* pFile, Value Field) {
    unsigned char ab[sizeof(Value)];
    Compose<LittleEndian>(ab, Field);
    int iAll = 1;
    for (unsigned char& b : ab) {
        iAll &= WriteByteType(pFile, b);
    }
    return iAll;
}

template <class Value>
int ReadLittle(char* pFile, Value& Field) {
    unsigned char ab[sizeof(Value)];
    int iAll = 1;
    for (unsigned char& b : ab) {
        iAll &= ReadByteType(pFile, b);
    }
    if (iAll) {
        Field = Assemble<LittleEndian, Value>(ab);
    }
    return iAll;
}

} // namespace

void CopyByte2TypeToMemoryInLittleEndian(void* pTarget, unsigned short* pusValue) {
    Compose<LittleEndian>(static_cast<unsigned char*>(pTarget), *pusValue);
}

void CopyByte2TypeToMemoryInBigEndian(void* pTarget, unsigned short* pusValue) {
    Compose<BigEndian>(static_cast<unsigned char*>(pTarget), *pusValue);
}

void CopyByte4TypeToMemoryInLittleEndian(void* pTarget, unsigned int* puValue) {
    Compose<LittleEndian>(static_cast<unsigned char*>(pTarget), *puValue);
}

void CopyByte4TypeToMemoryInBigEndian(void* pTarget, unsigned int* puValue) {
    Compose<BigEndian>(static_cast<unsigned char*>(pTarget), *puValue);
}

void CopyLittleEndianInMemoryToByte2Type(unsigned short* pusValue, void* pSource) {
    *pusValue = Assemble<LittleEndian, unsigned short>(static_cast<unsigned char*>(pSource));
}

void CopyLittleEndianInMemoryToByte4Type(unsigned int* puValue, void* pSource) {
    *puValue = Assemble<LittleEndian, unsigned int>(static_cast<unsigned char*>(pSource));
}

void CopyBigEndianInMemoryToByte2Type(unsigned short* pusValue, void* pSource) {
    *pusValue = Assemble<BigEndian, unsigned short>(static_cast<unsigned char*>(pSource));
}

void CopyBigEndianInMemoryToByte4Type(unsigned int* puValue, void* pSource) {
    *puValue = Assemble<BigEndian, unsigned int>(static_cast<unsigned char*>(pSource));
}

int WriteByteArray(char* pFile, unsigned char* pBytes, unsigned int uCount) {
    return fwfwrite(pBytes, 1, uCount, pFile) == uCount;
}

int ReadByteArray(char* pFile, unsigned char* pBytes, unsigned int uCount) {
    return fwfread(pBytes, 1, uCount, pFile) == uCount;
}

int WriteByteType(char* pFile, unsigned char& bValue) {
    return WriteByteArray(pFile, &bValue, 1);
}

int ReadByteType(char* pFile, unsigned char& bValue) {
    return ReadByteArray(pFile, &bValue, 1);
}

int WriteByte2TypeBigEndian(char* pFile, unsigned short& usValue) {
    return WriteBig(pFile, usValue);
}

int WriteByte2TypeLittleEndian(char* pFile, unsigned short& usValue) {
    return WriteLittle(pFile, usValue);
}

int WriteByte2Type(char* pFile, unsigned short& usValue) {
    return WriteByte2TypeBigEndian(pFile, usValue);
}

int ReadByte2TypeBigEndian(char* pFile, unsigned short& usValue) {
    return ReadBig(pFile, usValue);
}

int ReadByte2TypeLittleEndian(char* pFile, unsigned short& usValue) {
    return ReadLittle(pFile, usValue);
}

int ReadByte2Type(char* pFile, unsigned short& usValue) {
    return ReadByte2TypeBigEndian(pFile, usValue);
}

int WriteByte4TypeBigEndian(char* pFile, unsigned int& uValue) {
    return WriteBig(pFile, uValue);
}

int WriteByte4TypeLittleEndian(char* pFile, unsigned int& uValue) {
    return WriteLittle(pFile, uValue);
}

int WriteByte4Type(char* pFile, unsigned int& uValue) {
    return WriteByte4TypeBigEndian(pFile, uValue);
}

int ReadByte4TypeBigEndian(char* pFile, unsigned int& uValue) {
    return ReadBig(pFile, uValue);
}

int ReadByte4TypeLittleEndian(char* pFile, unsigned int& uValue) {
    return ReadLittle(pFile, uValue);
}

int ReadByte4Type(char* pFile, unsigned int& uValue) {
    return ReadByte4TypeBigEndian(pFile, uValue);
}

} // namespace VESK
