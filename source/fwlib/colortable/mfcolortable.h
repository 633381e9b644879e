// SPDX-License-Identifier: MIT
// MFColorTable: reads a colour lookup table, a file of raw bytes whose name ends in ".lut" and which begins with the
// size of its header, 32 bits little-endian. What the bytes behind that mean is the caller's business.
//
// Offsets count bytes from the start of the file. Operations return 1, or 0 for every failure, without a file and for
// negative offsets and counts included, and print nothing. The object owns its file and closes it. One thread at
// a time.
#ifndef FWLIB_COLORTABLE_MFCOLORTABLE_H
#define FWLIB_COLORTABLE_MFCOLORTABLE_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT MFColorTable {
public:
    static constexpr unsigned int FileNameSize = 256;

    MFColorTable(); // without a file
    ~MFColorTable();
    MFColorTable(const MFColorTable&) = delete;
    MFColorTable& operator=(const MFColorTable&) = delete;

    // Opens the file of that name with ".lut" appended, always, and closes the one it had. A null name and one longer
    // than 251 characters return 0 and leave it without a file.
    int SetFilename(char* pchName);

    int GetHeaderSize(unsigned int* puSize); // as the file stores it; not checked against anything
    int SetPosition(int iOffset);
    int GetBlock(unsigned char* pBuffer,
                 int iCount); // at the position; 1 only when all bytes came, also for none

    // Hand out a new block that the caller releases with DeleteData: the file's iCount bytes at the offset, in the
    // second form at the end of a block of iSize bytes, at least iCount, that is zero before them. When the bytes
    // cannot be had, and for a negative count, the out-pointer is null; it is left alone for an offset that cannot be
    // reached and for a size below the count.
    int GetData(int iOffset, int iCount, unsigned char** ppData);
    int GetData(int iOffset, int iCount, int iSize, unsigned char** ppData);
    void DeleteData(unsigned char* pData); // null is ignored

    // The fields in their order are part of the binary interface.
    char m_achFileName[FileNameSize]; // extension included
    char* m_pFile;                    // owned; null when there is none
};

} // namespace VESK

#endif
