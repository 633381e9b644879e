// SPDX-License-Identifier: MIT
// SFileRead: a stream read from a file, or from standard input.
//
// Lines are returned in one buffer of 262,144 bytes: a line of more than 262,143 characters is returned in pieces. The
// reader owns its handle and closes it when it is destroyed or opens another file, unless it is standard input. One
// thread at a time.
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

    // Opens the file in mode "r"; the name is truncated to 255 characters, and null means standard input. If the file
    // cannot be opened, there is no file, without a report.
    explicit SFileRead(char* pchFileName);

    // The order of the virtual operations is part of the binary interface.
    ~SFileRead() override;

    // Returns the next line without its newline, in the reader's buffer; null at the end of the file, at an error, and
    // without a file or a line buffer.
    char* ReadLine() override;

    // Reads up to b4Length raw bytes and returns the number of bytes read; 0 without a file.
    virtual Byte4Type ReadBlock(char* pchBuffer, Byte4Type b4Length);

    virtual int OpenFile(char* pchFileName); // closes the present file first; 1 if the new one was opened
    virtual int SetFile(char* pFile); // takes ownership of the handle; does not close the old one; returns 1
    virtual Byte4Type GetFileSize();  // returns 0

    // The order of the fields is part of the binary interface.
    char m_achFileName[FileNameSize]; // of the file opened last
    char* m_pFile;                    // owned, except standard input; null if there is none
    char* m_pchLineBuffer;            // owned; null when there was no memory for it
    Byte4Type m_b4LineBufferSize;
};

} // namespace VESK

#endif
