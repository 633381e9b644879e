// SPDX-License-Identifier: MIT
#include "fwlib/stdc/stdc/fwstdcstring.h"

#include "fwlib/internal/handle.h"
#include "fwlib/internal/hostuse.h"
#include "fwlib/text.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <strings.h>

// fwassert must report in optimized builds too, where NDEBUG would hide the platform's report function.
#undef NDEBUG
#include <cassert>

namespace VESK {

__thread ObjectAtHand* pObjectAtHand __attribute__((tls_model("initial-exec"))) = nullptr;

namespace {

constexpr unsigned int ScratchSize = 512; // the block that fwfprintf formats into first

} // namespace

char* fwfopen(char* pchName, char* pchMode) {
    return HandleOf(std::fopen(pchName, pchMode));
}

int fwfclose(char* pFile) {
    BeforeHostUse(pFile);
    return std::fclose(StreamOf(pFile));
}

int fwflush(char* pFile) {
    BeforeHostUse(pFile);
    return FlushFile(pFile);
}

int fwfeof(char* pFile) {
    return std::feof(StreamOf(pFile));
}

long fwftell(char* pFile) {
    BeforeHostUse(pFile);
    return std::ftell(StreamOf(pFile));
}

int fwfseek(char* pFile, int iOffset, unsigned char bOrigin) {
    BeforeHostUse(pFile);
    const int iWhence = bOrigin == 0 ? SEEK_SET : bOrigin == 1 ? SEEK_CUR : SEEK_END;
    return std::fseek(StreamOf(pFile), iOffset, iWhence) == 0;
}

unsigned int fwfread(void* pBuffer, unsigned int uSize, unsigned int uCount, char* pFile) {
    return static_cast<unsigned int>(std::fread(pBuffer, uSize, uCount, StreamOf(pFile)));
}

unsigned int fwfwrite(void* pBuffer, unsigned int uSize, unsigned int uCount, char* pFile) {
    BeforeHostUse(pFile);
    return WriteItems(pBuffer, uSize, uCount, pFile);
}

char* fwfgets(char* pchBuffer, unsigned int uSize, char* pFile) {
    return GetLine(pchBuffer, uSize, pFile);
}

int fwfputs(char* pchText, char* pFile) {
    BeforeHostUse(pFile);
    return std::fputs(pchText, StreamOf(pFile));
}

SignedByte fwfgetc(char* pFile) {
    return static_cast<SignedByte>(std::fgetc(StreamOf(pFile)));
}

int fwfprintf(char* pFile, char const* pchFormat, ...) {
    va_list Values;
    va_list ValuesAgain; // for a text that needs a larger block
    va_start(Values, pchFormat);
    va_copy(ValuesAgain, Values);
    int iWritten = -1;
    char* pchScratch = static_cast<char*>(fwmalloc(ScratchSize));
    if (pchScratch) {
        fwmemset(pchScratch, 0, ScratchSize);
        const int iLength = std::vsnprintf(pchScratch, ScratchSize, pchFormat, Values);
        if (iLength >= static_cast<int>(ScratchSize)) {
            const unsigned int uSize = static_cast<unsigned int>(iLength) + 1;
            fwfree(pchScratch);
            pchScratch = static_cast<char*>(fwmalloc(uSize));
            if (pchScratch) {
                std::vsnprintf(pchScratch, uSize, pchFormat, ValuesAgain);
            }
        }
        if (pchScratch && iLength >= 0) {
            iWritten = static_cast<int>(fwfwrite(pchScratch, 1, static_cast<unsigned int>(iLength), pFile));
        }
        fwfree(pchScratch);
    }
    va_end(ValuesAgain);
    va_end(Values);
    return iWritten;
}

int fwsprintf(char* pchBuffer, char const* pchFormat, ...) {
    va_list Values;
    va_start(Values, pchFormat);
    const int iLength = std::vsprintf(pchBuffer, pchFormat, Values);
    va_end(Values);
    return iLength;
}

void* fwmalloc(unsigned int uSize) {
    return std::malloc(uSize);
}

void fwfree(void* pBlock) {
    std::free(pBlock);
}

int fwrealloc(void** ppBlock, unsigned int uOldSize, unsigned int uNewSize) {
    if (!ppBlock) {
        return 0;
    }
    void* const pFresh = fwmalloc(uNewSize);
    if (!pFresh) {
        return 0;
    }
    if (*ppBlock) {
        std::memcpy(pFresh, *ppBlock, uOldSize < uNewSize ? uOldSize : uNewSize);
        fwfree(*ppBlock);
    }
    *ppBlock = pFresh;
    return 1;
}

void* fwmemcpy(void* pTarget, void* pSource, int iCount) {
    return std::memcpy(pTarget, pSource, static_cast<std::size_t>(iCount));
}

void* fwmemset(void* pTarget, char chValue, int iCount) {
    return std::memset(pTarget, chValue, static_cast<std::size_t>(iCount));
}

std::size_t fwstrlen(char* pchText) {
    return std::strlen(pchText);
}

int fwstrcmp(char const* pchLeft, char const* pchRight) {
    return std::strcmp(pchLeft, pchRight);
}

int fwstricmp(char const* pchLeft, char const* pchRight) {
    return strcasecmp(pchLeft, pchRight);
}

char* fwstrncpy(char* pchTarget, char* pchSource, int iCount) {
    return std::strncpy(pchTarget, pchSource, static_cast<std::size_t>(iCount));
}

char* fwstrncat(char* pchTarget, char* pchSource, int iCount) {
    return std::strncat(pchTarget, pchSource, static_cast<std::size_t>(iCount));
}

char* fwstrchr(char const* pchText, char ch) {
    // The platform's overload for writable texts returns a writable position.
    return ::strchr(Text(pchText), ch);
}

char* fwstrstr(char const* pchText, char const* pchSought) {
    return ::strstr(Text(pchText), pchSought);
}

char* fwstrupr(char* pchText) {
    for (char* pch = pchText; *pch; ++pch) {
        *pch = static_cast<char>(std::toupper(static_cast<unsigned char>(*pch)));
    }
    return pchText;
}

int fwatoi(char* pchText) {
    const long lValue = fwatol(pchText);
    if (lValue > INT32_MAX || lValue < INT32_MIN) { // possible only where a long has 64 bits
        errno = ERANGE;
        return lValue > 0 ? INT32_MAX : INT32_MIN;
    }
    return static_cast<int>(lValue);
}

long fwatol(char* pchText) {
    return std::strtol(pchText, nullptr, 10);
}

unsigned long fwstrtoul(char const* pchText, char** ppchEnd, unsigned char bBase) {
    return std::strtoul(pchText, ppchEnd, bBase);
}

long fwclock() {
    return std::clock();
}

long fwgetclockspersec() {
    return 1000000;
}

void fwassert(Byte4Type b4Expression) {
    if (!b4Expression) {
        // A fixed location: programs that read these reports recognize this line by it.
        __assert_fail("b4Expression", "source/fwlib/stdc/stdc/fwstdcstring", 71,
                      "void VESK::fwassert(Byte4Type)");
    }
}

} // namespace VESK
