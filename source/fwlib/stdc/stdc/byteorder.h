// SPDX-License-Identifier: MIT
// Fields of 8, 16 and 32 bits in a named byte order, in memory and in files, the same on every host.
//
// Big-endian: the most significant byte first. The memory functions take the target first, access 2 or 4 bytes at any
// alignment and cannot fail. The file functions return 1 when every byte was transferred. Otherwise they return 0, and
// the position is after the last byte transferred. A file handle must not be null. Functions without a byte order in
// their name are big-endian.
#ifndef FWLIB_STDC_STDC_BYTEORDER_H
#define FWLIB_STDC_STDC_BYTEORDER_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

FWLIB_EXPORT void CopyByte2TypeToMemoryInLittleEndian(void* pTarget, unsigned short* pusValue);
FWLIB_EXPORT void CopyByte2TypeToMemoryInBigEndian(void* pTarget, unsigned short* pusValue);
FWLIB_EXPORT void CopyByte4TypeToMemoryInLittleEndian(void* pTarget, unsigned int* puValue);
FWLIB_EXPORT void CopyByte4TypeToMemoryInBigEndian(void* pTarget, unsigned int* puValue);
FWLIB_EXPORT void CopyLittleEndianInMemoryToByte2Type(unsigned short* pusValue, void* pSource);
FWLIB_EXPORT void CopyLittleEndianInMemoryToByte4Type(unsigned int* puValue, void* pSource);
FWLIB_EXPORT void CopyBigEndianInMemoryToByte2Type(unsigned short* pusValue, void* pSource);
FWLIB_EXPORT void CopyBigEndianInMemoryToByte4Type(unsigned int* puValue, void* pSource);

FWLIB_EXPORT int WriteByteArray(char* pFile, unsigned char* pBytes, unsigned int uCount);
FWLIB_EXPORT int ReadByteArray(char* pFile, unsigned char* pBytes, unsigned int uCount);
FWLIB_EXPORT int WriteByteType(char* pFile, unsigned char& bValue);
FWLIB_EXPORT int ReadByteType(char* pFile, unsigned char& bValue);

FWLIB_EXPORT int WriteByte2TypeBigEndian(char* pFile, unsigned short& usValue);
FWLIB_EXPORT int WriteByte2Type(char* pFile, unsigned short& usValue);
FWLIB_EXPORT int WriteByte4TypeBigEndian(char* pFile, unsigned int& uValue);
FWLIB_EXPORT int WriteByte4Type(char* pFile, unsigned int& uValue);

// Each byte is written by a call of its own. When one fails, the others are still written.
FWLIB_EXPORT int WriteByte2TypeLittleEndian(char* pFile, unsigned short& usValue);
FWLIB_EXPORT int WriteByte4TypeLittleEndian(char* pFile, unsigned int& uValue);

// When a byte is missing, the variable is unchanged.
FWLIB_EXPORT int ReadByte2TypeBigEndian(char* pFile, unsigned short& usValue);
FWLIB_EXPORT int ReadByte2TypeLittleEndian(char* pFile, unsigned short& usValue);
FWLIB_EXPORT int ReadByte2Type(char* pFile, unsigned short& usValue);
FWLIB_EXPORT int ReadByte4TypeBigEndian(char* pFile, unsigned int& uValue);
FWLIB_EXPORT int ReadByte4TypeLittleEndian(char* pFile, unsigned int& uValue);
FWLIB_EXPORT int ReadByte4Type(char* pFile, unsigned int& uValue);

} // namespace VESK

#endif
