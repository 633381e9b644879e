// SPDX-License-Identifier: MIT
// SRead: an abstract stream of text lines being read.
//
// A concrete reader implements ReadLine; everything else uses it. Each Deserialize reads the next line, whatever its
// key, and converts the text after its first "=" like strtol (strtoul for unsigned types), clamped to 32 bits. It
// returns 1; or 0, with the value unchanged, at the end of the stream, for a line without "=" and for a null
// destination. One thread at a time.
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

    // Returns the next line without its newline, or null at the end. The reader owns the line, which is valid until the
    // next ReadLine; the caller may write to it.
    virtual char* ReadLine() = 0;

    // A line is read even if the destination is null.
    int Deserialize(int* piValue);
    int Deserialize(unsigned int* puValue);

    // The low bits of the number are stored. No line is read if the destination is null.
    int Deserialize(short* psValue);
    int Deserialize(char* pchValue);
    int Deserialize(unsigned short* pusValue);
    int Deserialize(unsigned char* pbValue);

    // Reads a line and decodes its block record into at most iCount bytes. Returns 1 if all of them were decoded.
    // Returns 0 if the text has fewer: its complete groups are decoded, and the rest is unchanged. Also returns 0 at
    // the end of the stream, for a line without "=" and for a null destination. Characters are not checked.
    int DeserializeBlock(unsigned char* pData, int iCount);

    // The inverse of SWrite::Compress: writes the blocks' bytes and returns their number, a multiple of 120. Returns 0
    // if the source is empty or is not the coding of complete blocks, or if these need more than b4Room bytes. The
    // target must not overlap the source; target bytes after the returned number are undefined. The flag is that of
    // Compress. Any source is safe.
    static Byte4Type Decompress(unsigned char* pTarget, Byte4Type b4Room, unsigned char* pSource,
                                Byte4Type b4Length, unsigned char bFlag);
};

} // namespace VESK

#endif
