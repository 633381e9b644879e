// SPDX-License-Identifier: MIT
// SFileRead: a stream read from a file, or from standard input.
//
// Lines are handed out in one buffer of 262,144 bytes: a line of more than 262,143 characters comes in pieces.
// The reader owns its handle and closes it when it is destroyed or opens another file, unless it is standard
// input. One thread at a time.
#ifndef FWLIB_STREAMS_SFILEREAD_H
#define FWLIB_STREAMS_SFILEREAD_H

#include "fwlib/export.h"
#include "fwlib/streams/sread.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT SFileRead : public SRead {
public:
    static constexpr unsigned int FileNameSize = 256;
    static constexpr Byte4Type LineBufferSize = 0x40000;

    SFileRead(); // no file until OpenFile or SetFile

    // Opens the file in mode "r" by its name cut to 255 characters; null means standard input. A file that
    // cannot be opened leaves no file, silently.
    explicit SFileRead(char* pchFileName);

    // The order of the virtual operations is part of the binary interface.
    ~SFileRead() override;

    // The next line without its newline; null at the end of the file, at an error, and without a file or a line
    // buffer.
    char* ReadLine() override;

    // Reads up to b4Length raw bytes and returns how many came; 0 without a file.
    virtual Byte4Type ReadBlock(char* pchBuffer, Byte4Type b4Length);

    virtual int OpenFile(char* pchFileName); // closes the file it has first; 1 when the new one was opened
    virtual int SetFile(char* pFile); // takes ownership of an open handle; does not close the old one; 1
    virtual Byte4Type GetFileSize();  // always 0

    // The order of the fields is part of the binary interface.
    char m_achFileName[FileNameSize]; // of the file last opened
    char* m_pFile;                    // owned, but for standard input; null when there is none
    char* m_pchLineBuffer;            // owned; null when there was no memory for it
    Byte4Type m_b4LineBufferSize;
};

} // namespace VESK

#endif
