// SPDX-License-Identifier: MIT
// A file handle and the stream behind it are the same address; this is the only place that says so. With it the
// wrappers that streams need for each line: a function more in between costs 32-bit code a tenth of a short line.
#ifndef FWLIB_INTERNAL_HANDLE_H
#define FWLIB_INTERNAL_HANDLE_H

#include <climits>
#include <cstdio>

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

} // namespace VESK

#endif
