// SPDX-License-Identifier: MIT
// SWrite: an abstract stream of text lines being written.
//
// A concrete writer implements WriteData; everything else is built on it. A typed record is one line: the
// key, "=" and the number in decimal. Records are positional: a reader takes them in the order they were
// written and does not look at keys. A key contains no newline, and no "=" if it is to be read back. Null
// is written as "". The result of WriteData is not examined. One thread at a time.
#ifndef FWLIB_STREAMS_SWRITE_H
#define FWLIB_STREAMS_SWRITE_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT SWrite {
public:
    SWrite();
    SWrite(const SWrite&) = delete;
    SWrite& operator=(const SWrite&) = delete;

    // The order of the virtual operations is part of the binary interface.
    virtual ~SWrite();
    virtual Byte4Type WriteData(char* pchData, Byte4Type b4Length) = 0; // the bytes written

    // Each writes one record in one WriteData call and returns 1. A record longer than 255 characters is
    // written in one call too; in several only when there is no memory to compose it.
    int Serialize(char* pchKey, int iValue);
    int Serialize(char* pchKey, short sValue);
    int Serialize(char* pchKey, char chValue); // -128 to 127
    int Serialize(char* pchKey, unsigned int uValue);
    int Serialize(char* pchKey, unsigned short usValue);
    int Serialize(char* pchKey, unsigned char bValue);

    // Block records carry bytes in one line: the key, "=", and four printable characters for every three bytes.
    // Reading needs the byte count from elsewhere.

    // Writes one record in four WriteData calls; an empty value in three calls for null data; nothing for a
    // null key. A count below 0 is 0. Always returns 1.
    int SerializeBlock(char* pchKey, unsigned char* pData, int iCount);

    // Writes the characters of the bytes in one WriteData call, without key or newline, and returns its
    // result; 0 when there is no memory for them. A last group of one or two bytes is padded with zeros.
    Byte4Type WriteAsciized(char* pchData, unsigned int uCount);

    // Encodes uGroups groups of 3 bytes into 4 characters each, without a terminator, and writes nothing.
    void AsciizeTriplets(char* pchText, unsigned int uGroups, char* pchData);

    // Compresses the complete 120-byte blocks of the source by leaving out zero or repeated 32-bit words
    // (docs/formats.md). Returns the number of bytes written to the target, fewer than b2Length; or 0 when they would not
    // be fewer, and then the target contains the blocks before the first that did not fit. No byte after them is written.
    // The target needs room for b2Length - 1 bytes. It may overlap the source: each block is read after the blocks before
    // it were written. A flag of 2 selects the backward layout, which is read from its end. SRead::Decompress is the inverse.
    Byte2Type Compress(unsigned char* pTarget, unsigned char* pSource, Byte2Type b2Length,
                       unsigned char bFlag);
};

} // namespace VESK

#endif
