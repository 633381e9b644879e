// SPDX-License-Identifier: MIT
// SFileWrite: a stream written to a file, or to standard output.
//
// WriteData always flushes, so what was written is in the file even if the process is killed. The writer owns its
// handle and closes it when it is destroyed, unless it is standard output. One thread at a time.
#ifndef FWLIB_STREAMS_SFILEWRITE_H
#define FWLIB_STREAMS_SFILEWRITE_H

#include "fwlib/export.h"
#include "fwlib/streams/swrite.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT SFileWrite : public SWrite {
public:
    static constexpr unsigned int FileNameSize = 256;

    SFileWrite(); // no file: WriteData returns 0

    // Opens the file for writing and empties it, in mode "wb" if uBinary is not 0, otherwise "w". The name is truncated
    // to 255 characters, and null means standard output. If the file cannot be opened, there is no file, without a
    // report.
    SFileWrite(char* pchFileName, unsigned int uBinary);

    // The order of the virtual operations is part of the binary interface.
    ~SFileWrite() override;

    // Writes, flushes, and returns the number of bytes written to the stream. An error at the flush is not returned: it
    // sets the error indicator of the stream m_pFile.
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override;

    void SetFile(char* pFile); // takes ownership of an open handle; does not close the old one

    // The order of the fields is part of the binary interface.
    char m_achFileName[FileNameSize]; // empty when no name was given
    char* m_pFile;                    // owned, except standard output; null if there is none
};

} // namespace VESK

#endif
