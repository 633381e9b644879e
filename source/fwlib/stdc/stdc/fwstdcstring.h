// SPDX-License-Identifier: MIT
// The portability layer: files, memory and texts of the platform, under names that begin with fw.
//
// A file handle is a stream of the standard library (the result of fopen), passed as char*; null means no file. Only
// these functions use it as a stream: other code stores it and passes it on. A function without a comment calls the
// platform function of that name and returns its result unchanged; handles, buffers and texts must be valid and not
// null. Each function is as thread-safe as the platform's.
#ifndef FWLIB_STDC_STDC_FWSTDCSTRING_H
#define FWLIB_STDC_STDC_FWSTDCSTRING_H

#include "fwlib/export.h"
#include "fwlib/types.h"

#include <cstddef>

namespace VESK {

// Files. 32-bit hosts too can open, read, write and close files of 2 GiB and more; fwftell returns -1 for a position
// that does not fit in a long.
FWLIB_EXPORT char* fwfopen(char* pchName, char* pchMode);
FWLIB_EXPORT int fwfclose(char* pFile);
FWLIB_EXPORT int fwflush(char* pFile);
FWLIB_EXPORT int fwfeof(char* pFile);
FWLIB_EXPORT long fwftell(char* pFile);

// Moves the position to iOffset bytes from the start (origin 0), the current position (1) or the end (any other
// origin). Returns 1 on success and 0 on failure: the opposite of fseek.
FWLIB_EXPORT int fwfseek(char* pFile, int iOffset, unsigned char bOrigin);

// Return the number of complete items transferred.
FWLIB_EXPORT unsigned int fwfread(void* pBuffer, unsigned int uSize, unsigned int uCount, char* pFile);
FWLIB_EXPORT unsigned int fwfwrite(void* pBuffer, unsigned int uSize, unsigned int uCount, char* pFile);

// Reads at most uSize - 1 characters, up to and including a newline, and appends a terminator. Returns null at the end
// of the file.
FWLIB_EXPORT char* fwfgets(char* pchBuffer, unsigned int uSize, char* pFile);
FWLIB_EXPORT int fwfputs(char* pchText, char* pFile);

// Returns the next character, or -1 at the end of the file; the byte 255 is -1 too. Store the result in an int, a
// signed char or auto: where char is unsigned, a char never equals -1.
FWLIB_EXPORT SignedByte fwfgetc(char* pFile);

// Formats into a heap block (512 bytes, or one that fits a longer text) and writes the text without its terminator.
// Returns the number of bytes written, or -1 when there is not enough memory or the format fails.
FWLIB_EXPORT int fwfprintf(char* pFile, char const* pchFormat, ...) FWLIB_PRINTF(2, 3);

// Formats into the caller's buffer without a limit: the text and its terminator must fit.
FWLIB_EXPORT int fwsprintf(char* pchBuffer, char const* pchFormat, ...) FWLIB_PRINTF(2, 3);

// Memory.
FWLIB_EXPORT void* fwmalloc(unsigned int uSize);
FWLIB_EXPORT void fwfree(void* pBlock); // null is ignored

// Replaces the caller's block *ppBlock by a new one of uNewSize bytes with the same first bytes, up to the smaller of
// both sizes; the bytes after them are undefined. If *ppBlock is null, only allocates. Returns 1; or 0, with the
// caller's block unchanged, when ppBlock is null or there is not enough memory.
FWLIB_EXPORT int fwrealloc(void** ppBlock, unsigned int uOldSize, unsigned int uNewSize);
FWLIB_EXPORT void* fwmemcpy(void* pTarget, void* pSource, int iCount);
FWLIB_EXPORT void* fwmemset(void* pTarget, char chValue, int iCount);

// Texts.
FWLIB_EXPORT std::size_t fwstrlen(char* pchText);
FWLIB_EXPORT int fwstrcmp(char const* pchLeft, char const* pchRight);
FWLIB_EXPORT int fwstricmp(char const* pchLeft, char const* pchRight); // ignores case
FWLIB_EXPORT char* fwstrncpy(char* pchTarget, char* pchSource, int iCount);
FWLIB_EXPORT char* fwstrncat(char* pchTarget, char* pchSource, int iCount);
FWLIB_EXPORT char* fwstrchr(char const* pchText, char ch);
FWLIB_EXPORT char* fwstrstr(char const* pchText, char const* pchSought);
FWLIB_EXPORT char* fwstrupr(char* pchText); // converts the text to upper case in place and returns it

// Decimal conversions with the rules of strtol and strtoul. A number out of range gives the nearest limit: that of a
// 32-bit int for fwatoi, that of a long or unsigned long for the others.
FWLIB_EXPORT int fwatoi(char* pchText);
FWLIB_EXPORT long fwatol(char* pchText);
FWLIB_EXPORT unsigned long fwstrtoul(char const* pchText, char** ppchEnd, unsigned char bBase);

// Processor time in ticks, and the number of ticks in a second: 1,000,000.
FWLIB_EXPORT long fwclock();
FWLIB_EXPORT long fwgetclockspersec();

// In every build type: ends the process with the platform's assertion report if the argument is 0.
FWLIB_EXPORT void fwassert(Byte4Type b4Expression);

} // namespace VESK

#endif
