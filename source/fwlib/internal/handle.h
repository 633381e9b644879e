// SPDX-License-Identifier: MIT
// A file handle and its stream have the same address; no other file of the library relies on that. The calls that
// streams make for each line are inline: in 32-bit code, one more call takes a tenth of the time of a short line.
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

// glibc shows the state of a stream only in fields that are stable because its own macros use them. With other C
// libraries, the callers always take their slow path.
#ifdef __GLIBC__

// True if the stream buffers nothing and caches no position: it and its descriptor then write to the same position.
inline bool InStep(const std::FILE* pFile) {
    return pFile->_IO_write_ptr == pFile->_IO_write_base && pFile->_IO_read_ptr == pFile->_IO_read_end &&
           pFile->_offset == -1;
}

// True if stdio has not used the stream yet: then only reads and writes on its descriptor moved the position.
inline bool Untouched(const std::FILE* pFile) {
    return !pFile->_IO_buf_base;
}

// If the stream's buffer contains the complete next line and the line fits, copies it without its newline and returns
// its length. Otherwise returns -1.
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
