// SPDX-License-Identifier: MIT
// SWrite: an abstract stream of text lines being written.
//
// A concrete writer implements WriteData; everything else uses it. A typed record is one line: the key, "=" and the
// number in decimal. A reader reads records in the order in which they were written and ignores their keys. A key must
// not contain a newline, or "=" if it is to be read back. A null key is written as "". The result of WriteData is
// ignored. One thread at a time.
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
    virtual Byte4Type WriteData(char* pchData, Byte4Type b4Length) = 0; // returns the number of bytes written

    // Each writes one record in one WriteData call and returns 1. Only a record of more than 255 characters for which
    // there is not enough memory is written in several calls.
    int Serialize(char* pchKey, int iValue);
    int Serialize(char* pchKey, short sValue);
    int Serialize(char* pchKey, char chValue); // -128 to 127
    int Serialize(char* pchKey, unsigned int uValue);
    int Serialize(char* pchKey, unsigned short usValue);
    int Serialize(char* pchKey, unsigned char bValue);

    // A block record is one line: the key, "=", and four printable characters for every three bytes. To read it, the
    // number of bytes must be known.

    // Writes one record in four WriteData calls; for null data, an empty value in three calls; for a null key, nothing.
    // A count below 0 is 0. Always returns 1.
    int SerializeBlock(char* pchKey, unsigned char* pData, int iCount);

    // Writes the characters of the bytes in one WriteData call, without key or newline, and returns its result; 0 when
    // there is not enough memory. A last group of one or two bytes is padded with zeros.
    Byte4Type WriteAsciized(char* pchData, unsigned int uCount);

    // Encodes uGroups groups of 3 bytes in pchText, 4 characters each, without a terminator. Writes to no stream.
    void AsciizeTriplets(char* pchText, unsigned int uGroups, char* pchData);

    // Compresses the complete 120-byte blocks of the source by leaving out zero or repeated 32-bit words
    // (docs/formats.md). Returns the number of bytes written to the target, less than b2Length. Returns 0 if it would
    // not be less: the target then contains the blocks before the first that did not fit. No byte after them is
    // written. The target needs b2Length - 1 bytes. It may overlap the source: each block is read after the blocks
    // before it were written. A flag of 2 selects the backward layout, which is read from its end. SRead::Decompress is
    // the inverse.
    Byte2Type Compress(unsigned char* pTarget, unsigned char* pSource, Byte2Type b2Length,
                       unsigned char bFlag);
};

} // namespace VESK

#endif
