// SPDX-License-Identifier: MIT
// A file handle and the stream behind it are the same address; this is the only place that says so.
#ifndef FWLIB_INTERNAL_HANDLE_H
#define FWLIB_INTERNAL_HANDLE_H

#include <cstdio>

namespace VESK {

inline std::FILE* StreamOf(char* pFile) {
    return reinterpret_cast<std::FILE*>(pFile);
}

inline char* HandleOf(std::FILE* pStream) {
    return reinterpret_cast<char*>(pStream);
}

} // namespace VESK

#endif
