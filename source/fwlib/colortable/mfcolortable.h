// SPDX-License-Identifier: MIT
// MFColorTable: reads a colour lookup table, a file of raw bytes whose name ends in ".lut" and which begins with the
// size of its header, 32 bits little-endian. The caller interprets the bytes after that.
//
// Offsets are bytes from the start of the file. Operations return 1, or 0 for every failure, also without a file and
// for negative offsets and counts. They print nothing. The object owns its file and closes it. One thread at a time.
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

    // Closes the present file and opens the file of that name with ".lut" appended in every case. Returns 0, and there
    // is no file, for a null name, for one longer than 251 characters, and when the file cannot be opened.
    int SetFilename(char* pchName);

    int GetHeaderSize(unsigned int* puSize); // as stored in the file, without checks
    int SetPosition(int iOffset);
    // Reads iCount bytes at the position. Returns 1 if all of them were read, also for 0.
    int GetBlock(unsigned char* pBuffer, int iCount);

    // Store in *ppData a new block, which the caller releases with DeleteData: the file's iCount bytes at the offset.
    // In the second form the block has iSize bytes, at least iCount: zeros, then the bytes. On failure *ppData is null,
    // but unchanged for an offset that cannot be reached and for a size below the count.
    int GetData(int iOffset, int iCount, unsigned char** ppData);
    int GetData(int iOffset, int iCount, int iSize, unsigned char** ppData);
    void DeleteData(unsigned char* pData); // null is ignored

    // The order of the fields is part of the binary interface.
    char m_achFileName[FileNameSize]; // extension included
    char* m_pFile;                    // owned; null when there is none
};

} // namespace VESK

#endif
