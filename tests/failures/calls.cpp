// SPDX-License-Identifier: MIT
#include "failures/calls.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

void* apHeld[4096];

template <class Pointer>
Pointer Hold(Pointer pTaken) {
    if (pTaken && now.watched) {
        apHeld[held++] = pTaken;
        errno = EDOM; // which a call that succeeds may do
    }
    return pTaken;
}

void Drop(void* pGiven) {
    void** const pp = std::find(apHeld, apHeld + held, pGiven);
    if (pp != apHeld + held) {
        *pp = apHeld[--held];
    }
}

template <class Answer>
Answer Same(Answer Real) {
    return Real;
}

bool Fails(const char* pchCall, int iError) {
    if (now.untilFailure == 0 || --now.untilFailure > 0) {
        return false;
    }
    now.untilFailure = now.lasting ? 1 : 0;
    now.failed = pchCall;
    errno = iError;
    return true;
}

bool Fails(const char* pchCall, std::FILE* pFile) {
    const bool bFails = Fails(pchCall, EIO);
    pFile->_flags |= bFails ? _IO_ERR_SEEN : 0;
    return bFails;
}

// How many of so many bytes a call writes: what the disk takes, of which the last call of the process leaves none,
// half or all.
std::size_t Part(std::size_t u) {
    errno = u > now.room ? ENOSPC : errno;
    u = std::min(u, now.room);
    now.room -= u;
    return now.untilDeath == 1 ? u * now.moment / 2 : u;
}

// Ends the process without any more of its code, as a kill does, if this call is its last.
void DieHere(bool bHere) {
    if (bHere && now.untilDeath == 1) {
        _exit(1 + now.stored);
    }
}

// Behind each writing call.
template <class Answer>
Answer Lives(Answer Real) {
    DieHere(true);
    now.untilDeath -= now.untilDeath > 0;
    return Real;
}

} // namespace

#define WRAP(result, name, parameters, arguments, error, failure, keep)                                      \
    extern "C" result __real_##name parameters;                                                              \
    extern "C" result __wrap_##name parameters {                                                             \
        return Fails(#name, error) ? failure : keep(__real_##name arguments);                                \
    }
#define WRAP_GIVING(result, name, parameters, arguments)                                                     \
    extern "C" result __real_##name parameters;                                                              \
    extern "C" result __wrap_##name parameters {                                                             \
        return Drop(p), __real_##name arguments;                                                             \
    }

WRAP(void*, malloc, (std::size_t u), (u), ENOMEM, nullptr, Hold)
WRAP(void*, calloc, (std::size_t u, std::size_t v), (u, v), ENOMEM, nullptr, Hold)
WRAP(std::FILE*, fopen, (const char* a, const char* b), (a, b), EMFILE, nullptr, Hold)
WRAP(std::FILE*, fopen64, (const char* a, const char* b), (a, b), EMFILE, nullptr, Hold)
WRAP(std::size_t, fread, (void* p, std::size_t u, std::size_t v, std::FILE* f), (p, u, v, f), f, 0, Same)
WRAP(char*, fgets, (char* p, int i, std::FILE* f), (p, i, f), f, nullptr, Same)
WRAP(std::size_t, __fread_chk, (void* p, std::size_t w, std::size_t u, std::size_t v, std::FILE* f),
     (p, w, u, v, f), f, 0, Same)
WRAP(char*, __fgets_chk, (char* p, std::size_t w, int i, std::FILE* f), (p, w, i, f), f, nullptr, Same)
WRAP(int, fgetc, (std::FILE * f), (f), f, EOF, Same)
WRAP(int, fseek, (std::FILE * f, long l, int i), (f, l, i), EIO, -1, Same)
WRAP(off64_t, lseek64, (int i, off64_t o, int j), (i, o, j), EIO, -1, Same)
WRAP(int, fstat64, (int i, struct stat64* p), (i, p), EIO, -1, Same)
WRAP(void*, dlsym, (void* p, const char* a), (p, a), EINVAL, nullptr, Same)
WRAP(int, pthread_setspecific, (pthread_key_t k, const void* p), (k, p), ENOMEM, ENOMEM, Same)
WRAP_GIVING(void, free, (void* p), (p))
WRAP_GIVING(int, dlclose, (void* p), (p))
WRAP_GIVING(void, _ZdlPv, (void* p), (p))

// operator delete and new(nothrow), whose symbols have the width in their names.
#if __SIZEOF_POINTER__ == 8
WRAP_GIVING(void, _ZdlPvm, (void* p, std::size_t u), (p, u))
WRAP(void*, _ZnwmRKSt9nothrow_t, (std::size_t u, const void* t), (u, t), ENOMEM, nullptr, Hold)
#else
WRAP_GIVING(void, _ZdlPvj, (void* p, std::size_t u), (p, u))
WRAP(void*, _ZnwjRKSt9nothrow_t, (std::size_t u, const void* t), (u, t), ENOMEM, nullptr, Hold)
#endif

extern "C" {

// What is taken out of a file is space again.
int __real_ftruncate64(int i, off64_t o);
int __wrap_ftruncate64(int i, off64_t o) {
    struct stat64 before = {};
    if (Fails("ftruncate", EIO) || __real_fstat64(i, &before) != 0) {
        return -1;
    }
    now.room += now.room == SIZE_MAX ? 0 : static_cast<std::size_t>(before.st_size - o);
    return __real_ftruncate64(i, o);
}

ssize_t __real_write(int i, const void* p, std::size_t u);
ssize_t __wrap_write(int i, const void* p, std::size_t u) {
    const std::size_t uPart = Fails("write", EIO) ? 0 : Part(u);
    return Lives(uPart == 0 && u > 0 ? -1 : __real_write(i, p, uPart));
}

int __real_fflush(std::FILE* f);
int __wrap_fflush(std::FILE* f) {
    DieHere(now.moment == 0);
    return Lives(Fails("fflush", f) || std::ferror(f) ? EOF : __real_fflush(f));
}

std::size_t __real_fwrite(const void* p, std::size_t u, std::size_t v, std::FILE* f);
std::size_t __wrap_fwrite(const void* p, std::size_t u, std::size_t v, std::FILE* f) {
    DieHere(now.moment == 0);
    const std::size_t uPart = Fails("fwrite", f) ? 0 : __real_fwrite(p, 1, Part(u * v), f);
    f->_flags |= uPart < u * v ? _IO_ERR_SEEN : 0;
    now.untilDeath == 1 ? __real_fflush(f) : 0;
    return Lives(uPart / u);
}
int __wrap_fputs(const char* p, std::FILE* f) {
    return __wrap_fwrite(p, 1, std::strlen(p), f) == std::strlen(p) ? 0 : EOF;
}

// One that fails has lost all.
int __real_fclose(std::FILE* f);
int __wrap_fclose(std::FILE* f) {
    DieHere(now.moment == 0);
    const bool bFails = Fails("fclose", EIO);
    if (bFails) {
        __real_fflush(f);
        __real_ftruncate64(fileno(f), 0);
    }
    Drop(f);
    const int iClosed = __real_fclose(f);
    errno = bFails ? EDQUOT : errno;
    return Lives(bFails ? EOF : iClosed);
}

ssize_t __real___getdelim(char** pp, std::size_t* pu, int i, std::FILE* f);
ssize_t __wrap___getdelim(char** pp, std::size_t* pu, int i, std::FILE* f) {
    Drop(*pp);
    const ssize_t iRead = Fails("getdelim", f) ? -1 : __real___getdelim(pp, pu, i, f);
    const int iReason = errno;
    Hold(*pp);
    errno = std::ferror(f) ? iReason : errno; // the rest of the line has not arrived yet
    return iRead;
}
ssize_t __wrap_getline(char** pp, std::size_t* pu, std::FILE* f) {
    return __wrap___getdelim(pp, pu, '\n', f);
}

// The library is linked to this program, so that it is what a plugin line opens.
void* __real_dlopen(const char* p, int i);
void* __wrap_dlopen(const char* p, int i) {
    const bool bOwn = *p == '\0' || std::strcmp(p, "libfwlib.so") == 0;
    return Fails("dlopen", EINVAL) ? nullptr : Hold(__real_dlopen(bOwn ? nullptr : p, i));
}

} // extern "C"
