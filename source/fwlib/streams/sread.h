// SPDX-License-Identifier: MIT
// SRead: an abstract stream of text lines being read.
//
// A concrete reader implements ReadLine; everything else is built on it. Each Deserialize takes the next
// line, whatever its key says, and converts the text behind its first "=" by the rules of strtol (strtoul for
// the unsigned ones), clamped to 32 bits. It returns 1, and 0 with the value untouched at the end of the
// stream, for a line without "=" and for a null destination. One thread at a time.
#ifndef FWLIB_STREAMS_SREAD_H
#define FWLIB_STREAMS_SREAD_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT SRead {
public:
    SRead();
    SRead(const SRead&) = delete;
    SRead& operator=(const SRead&) = delete;

    // The order of the virtual operations is part of the binary interface.
    virtual ~SRead();

    // The next line without its newline, or null at the end. The reader owns the line, which is valid until
    // the next ReadLine and may be written to.
    virtual char* ReadLine() = 0;

    // A null destination still takes a line.
    int Deserialize(int* piValue);
    int Deserialize(unsigned int* puValue);

    // The low bits of the number are stored. A null destination takes no line.
    int Deserialize(short* psValue);
    int Deserialize(char* pchValue);
    int Deserialize(unsigned short* pusValue);
    int Deserialize(unsigned char* pbValue);

    // Takes a line and decodes the block record in it into at most iCount bytes. 1 when all of them came; 0 when
    // the text holds fewer, with the whole groups that it holds decoded and the rest untouched, and at the end of
    // the stream, for a line without "=" and for a null destination. Characters are not checked for their range.
    int DeserializeBlock(unsigned char* pData, int iCount);

    // The inverse of SWrite::Compress: writes the blocks' bytes and returns their count, a multiple of 120. 0 when
    // the source is empty or not the coding of whole blocks, or when they are more than b4Room. The target must not
    // overlap the source; bytes of the target after the returned count are undefined. The flag is that of Compress. Any
    // source is safe.
    static Byte4Type Decompress(unsigned char* pTarget, Byte4Type b4Room, unsigned char* pSource,
                                Byte4Type b4Length, unsigned char bFlag);
};

} // namespace VESK

#endif
