// SPDX-License-Identifier: MIT
// A file handle and the stream behind it are the same address; this is the only place that says so. With it the
// wrappers that streams need for each line: a function more in between costs 32-bit code a tenth of a short line.
#ifndef FWLIB_INTERNAL_HANDLE_H
#define FWLIB_INTERNAL_HANDLE_H

#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace VESK {

inline std::FILE* StreamOf(char* pFile) {
    return reinterpret_cast<std::FILE*>(pFile);
}

inline char* HandleOf(std::FILE* pStream) {
    return reinterpret_cast<char*>(pStream);
}

inline unsigned int WriteItems(void* pBuffer, unsigned int uSize, unsigned int uCount, char* pFile) {
    return static_cast<unsigned int>(std::fwrite(pBuffer, uSize, uCount, StreamOf(pFile)));
}

inline int FlushFile(char* pFile) {
    return std::fflush(StreamOf(pFile));
}

inline char* GetLine(char* pchBuffer, unsigned int uSize, char* pFile) {
    const int iSize = uSize > INT_MAX ? INT_MAX : static_cast<int>(uSize);
    return std::fgets(pchBuffer, iSize, StreamOf(pFile));
}

// The C library shows this state of a stream only in the fields that its own macros use, which are stable. Where
// there are none such, the slower way is taken each time.
#ifdef __GLIBC__

// The stream holds nothing and remembers no position, so that a write to its descriptor comes where one to it would.
inline bool InStep(const std::FILE* pFile) {
    return pFile->_IO_write_ptr == pFile->_IO_write_base && pFile->_IO_read_ptr == pFile->_IO_read_end &&
           pFile->_offset == -1;
}

// stdio has not used the stream yet, so only writes to its descriptor moved it.
inline bool Untouched(const std::FILE* pFile) {
    return !pFile->_IO_buf_base;
}

// Copies the next line without its newline, if the stream holds it whole and it fits: its length, or -1.
inline std::ptrdiff_t HeldLine(std::FILE* pFile, char* pchBuffer, std::size_t uSize) {
    const auto uHeld = static_cast<std::size_t>(pFile->_IO_read_end - pFile->_IO_read_ptr);
    const char* const pchFirst = pFile->_IO_read_ptr;
    const void* const pEnd =
        uHeld > 0 && uSize > 0 ? std::memchr(pchFirst, '\n', uHeld < uSize ? uHeld : uSize) : nullptr;
    if (!pEnd) {
        return -1;
    }
    const std::ptrdiff_t iLength = static_cast<const char*>(pEnd) - pchFirst;
    std::memcpy(pchBuffer, pchFirst, static_cast<std::size_t>(iLength));
    pchBuffer[iLength] = '\0';
    pFile->_IO_read_ptr += iLength + 1;
    return iLength;
}

#else

inline bool InStep(const std::FILE*) {
    return false;
}

inline bool Untouched(const std::FILE*) {
    return false;
}

inline std::ptrdiff_t HeldLine(std::FILE*, char*, std::size_t) {
    return -1;
}

#endif

} // namespace VESK

#endif
