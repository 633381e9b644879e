// SPDX-License-Identifier: MIT
// SFileWrite: a stream written to a file, or to standard output.
//
// Every WriteData is flushed, so what was written is in the file even if the process is killed. The writer owns
// its handle and closes it when it is destroyed, unless it is standard output. One thread at a time.
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

    // Opens the file for writing, emptied, in mode "wb" when uBinary is not 0 and "w" when it is; a name is cut
    // to 255 characters, and the file of the cut name is opened. A null name means standard output. A file that
    // cannot be opened leaves no file, silently.
    SFileWrite(char* pchFileName, unsigned int uBinary);

    // The order of the virtual operations is part of the binary interface.
    ~SFileWrite() override;

    // Writes and flushes, and returns the bytes that the write reported. What the operating system refuses only
    // at the flush shows in the error indicator of the stream m_pFile.
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override;

    void SetFile(char* pFile); // takes ownership of an open handle; the one it replaces is not closed

    // The order of the fields is part of the binary interface.
    char m_achFileName[FileNameSize]; // empty when no name was given
    char* m_pFile;                    // owned, but for standard output; null when there is none
};

} // namespace VESK

#endif
