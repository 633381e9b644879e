// SPDX-License-Identifier: MIT
// The portability layer: the platform's files, memory and texts under names that begin with fw.
//
// A file handle is an open standard-library stream (what fopen returns) carried as char*; null stands for no
// file. Only these functions use it as a stream; everybody else stores it and passes it on. A function
// without a comment passes its arguments to the platform function that its name names and returns that one's
// return unchanged; handles, buffers and texts must then be valid and not null. Each is as safe between
// threads as the platform's.
#ifndef FWLIB_STDC_STDC_FWSTDCSTRING_H
#define FWLIB_STDC_STDC_FWSTDCSTRING_H

#include "fwlib/export.h"
#include "fwlib/types.h"

#include <cstddef>

namespace VESK {

// Files. Those of 2 GiB and more can be opened, read, written and closed on 32-bit hosts too; a position
// that does not fit a long is returned as -1.
FWLIB_EXPORT char* fwfopen(char* pchName, char* pchMode);
FWLIB_EXPORT int fwfclose(char* pFile);
FWLIB_EXPORT int fwflush(char* pFile);
FWLIB_EXPORT int fwfeof(char* pFile);
FWLIB_EXPORT long fwftell(char* pFile);

// Moves the position by iOffset bytes from the start (origin 0), from where it stands (1) or from the end
// (any other origin). Returns 1 when it moved and 0 when it could not: the opposite sense of fseek.
FWLIB_EXPORT int fwfseek(char* pFile, int iOffset, unsigned char bOrigin);

// Return the number of whole items transferred.
FWLIB_EXPORT unsigned int fwfread(void* pBuffer, unsigned int uSize, unsigned int uCount, char* pFile);
FWLIB_EXPORT unsigned int fwfwrite(void* pBuffer, unsigned int uSize, unsigned int uCount, char* pFile);

// Reads at most uSize - 1 characters, stopping after a newline, and terminates them. Null at end of file.
FWLIB_EXPORT char* fwfgets(char* pchBuffer, unsigned int uSize, char* pFile);
FWLIB_EXPORT int fwfputs(char* pchText, char* pFile);

// The next character; -1 at end of file, which looks like the byte 255. Keep it in an int, a signed char or auto:
// where char is unsigned, a char never equals -1.
FWLIB_EXPORT SignedByte fwfgetc(char* pFile);

// Formats into a block from the heap (512 bytes; a longer text takes a block of its size), writes the text
// without its terminator and returns the bytes written, or -1 when no block could be had.
FWLIB_EXPORT int fwfprintf(char* pFile, char const* pchFormat, ...) FWLIB_PRINTF(2, 3);

// Formats into the caller's buffer without a bound: the buffer must hold the text and its terminator.
FWLIB_EXPORT int fwsprintf(char* pchBuffer, char const* pchFormat, ...) FWLIB_PRINTF(2, 3);

// Memory.
FWLIB_EXPORT void* fwmalloc(unsigned int uSize);
FWLIB_EXPORT void fwfree(void* pBlock); // null is ignored

// Moves the caller's block *ppBlock into a fresh one of uNewSize bytes, keeping the first bytes up to the
// smaller size; bytes beyond uOldSize are not cleared. A null block is only allocated. Returns 1, or 0 with
// the caller's block as it was when ppBlock is null or memory could not be had.
FWLIB_EXPORT int fwrealloc(void** ppBlock, unsigned int uOldSize, unsigned int uNewSize);
FWLIB_EXPORT void* fwmemcpy(void* pTarget, void* pSource, int iCount);
FWLIB_EXPORT void* fwmemset(void* pTarget, char chValue, int iCount);

// Texts.
FWLIB_EXPORT std::size_t fwstrlen(char* pchText);
FWLIB_EXPORT int fwstrcmp(char const* pchLeft, char const* pchRight);
FWLIB_EXPORT int fwstricmp(char const* pchLeft, char const* pchRight); // letters without regard to case
FWLIB_EXPORT char* fwstrncpy(char* pchTarget, char* pchSource, int iCount);
FWLIB_EXPORT char* fwstrncat(char* pchTarget, char* pchSource, int iCount);
FWLIB_EXPORT char* fwstrchr(char const* pchText, char ch);
FWLIB_EXPORT char* fwstrstr(char const* pchText, char const* pchSought);
FWLIB_EXPORT char* fwstrupr(char* pchText); // converts the text to upper case in place and returns it

// Decimal conversions by the rules of strtol and strtoul. A number beyond the result's range gives the limit next to
// it: 32 bits for an int on every host, and as wide as a long for the others.
FWLIB_EXPORT int fwatoi(char* pchText);
FWLIB_EXPORT long fwatol(char* pchText);
FWLIB_EXPORT unsigned long fwstrtoul(char const* pchText, char** ppchEnd, unsigned char bBase);

// Processor time in ticks, and the ticks of a second: 1,000,000.
FWLIB_EXPORT long fwclock();
FWLIB_EXPORT long fwgetclockspersec();

// Ends the process with the platform's assertion report when the argument is 0, in every kind of build.
FWLIB_EXPORT void fwassert(Byte4Type b4Expression);

} // namespace VESK

#endif
