// SPDX-License-Identifier: MIT
// SWrite: an abstract stream of text lines being written.
//
// A concrete writer implements WriteData; everything else is built on it. A typed record is one line: the
// key, "=" and the number in decimal. Records are positional: a reader takes them in the order they were
// written and does not look at keys. A key holds no newline, and no "=" if it is to be read back; null counts
// as empty. What WriteData answers is not examined. One thread at a time.
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

    // Each writes one record in one WriteData call and answers 1. A record longer than 255 characters is
    // written whole too; only when there is no memory to compose it, in pieces.
    int Serialize(char* pchKey, int iValue);
    int Serialize(char* pchKey, short sValue);
    int Serialize(char* pchKey, char chValue); // -128 to 127
    int Serialize(char* pchKey, unsigned int uValue);
    int Serialize(char* pchKey, unsigned short usValue);
    int Serialize(char* pchKey, unsigned char bValue);
};

} // namespace VESK

#endif
