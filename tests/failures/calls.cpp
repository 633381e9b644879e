// SPDX-License-Identifier: MIT
#include "failures/calls.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

void* apHeld[4096];
int iHeld = 0;

template <class Pointer>
Pointer Hold(Pointer pTaken) {
    if (pTaken && now.watched) {
        apHeld[iHeld++] = pTaken;
    }
    return pTaken;
}

void Drop(void* pGiven) {
    void** const pp = std::find(apHeld, apHeld + iHeld, pGiven);
    if (pp != apHeld + iHeld) {
        *pp = apHeld[--iHeld];
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

// A call that writes, perhaps the last of the process.
class Writing {
public:
    Writing() : m_bLast(now.untilDeath > 0 && --now.untilDeath == 0) { Die(m_bLast && now.moment == 0); }
    ~Writing() { Die(m_bLast); }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

    bool Last() const { return m_bLast; }
    std::size_t Part(std::size_t u) const { // of so many bytes is written
        if (now.room >= 0 && u > static_cast<std::size_t>(now.room)) {
            u = static_cast<std::size_t>(now.room);
            errno = ENOSPC;
        }
        now.room -= now.room < 0 ? 0 : static_cast<long>(u);
        return m_bLast && now.moment == 1 ? u / 2 : u;
    }

private:
    static void Die(bool bNow) { bNow ? static_cast<void>(raise(SIGKILL)) : static_cast<void>(0); }
    const bool m_bLast;
};

} // namespace

int Held() {
    return iHeld;
}

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
WRAP(int, ftruncate64, (int i, off64_t o), (i, o), EIO, -1, Same)
WRAP(void*, dlsym, (void* p, const char* a), (p, a), EINVAL, nullptr, Same)
WRAP_GIVING(void, free, (void* p), (p))
WRAP_GIVING(int, dlclose, (void* p), (p))
WRAP_GIVING(void, _ZdlPv, (void* p), (p))

// operator delete and new(nothrow), whose symbols have the width in their names.
#if __SIZEOF_POINTER__ == 8
WRAP_GIVING(void, _ZdlPvm, (void* p, std::size_t u), (p, u))
#define NOTHROW_NEW "_ZnwmRKSt9nothrow_t"
#else
WRAP_GIVING(void, _ZdlPvj, (void* p, std::size_t u), (p, u))
#define NOTHROW_NEW "_ZnwjRKSt9nothrow_t"
#endif
void* RealNew(std::size_t u, const std::nothrow_t& cTag) noexcept asm("__real_" NOTHROW_NEW);
void* WrapNew(std::size_t u, const std::nothrow_t& cTag) noexcept asm("__wrap_" NOTHROW_NEW);
void* WrapNew(std::size_t u, const std::nothrow_t& cTag) noexcept {
    return Fails("new", ENOMEM) ? nullptr : Hold(RealNew(u, cTag));
}

extern "C" {

// While room on the disk is short, what it takes is written at the end, which costs one call of the system's.
ssize_t __real_write(int i, const void* p, std::size_t u);
ssize_t __wrap_write(int i, const void* p, std::size_t u) {
    static char achBehind[1 << 16];
    static std::size_t uBehind = 0;
    const Writing cCall;
    const std::size_t uPart = p && Fails("write", EIO) ? 0 : cCall.Part(u);
    if (p && now.room >= 0 && uPart == u && uBehind + u <= sizeof achBehind) {
        std::memcpy(achBehind + std::exchange(uBehind, uBehind + u), p, u);
        return static_cast<ssize_t>(u);
    }
    __real_write(i, achBehind, std::exchange(uBehind, 0));
    return uPart == 0 && u > 0 ? -1 : __real_write(i, p, uPart);
}

// With little room on the disk, what is in the buffer counts as written.
int __real_fflush(std::FILE* f);
int __wrap_fflush(std::FILE* f) {
    const Writing cCall;
    return Fails("fflush", f) || std::ferror(f) ? EOF : now.room < 0 ? __real_fflush(f) : 0;
}

std::size_t __real_fwrite(const void* p, std::size_t u, std::size_t v, std::FILE* f);
std::size_t __wrap_fwrite(const void* p, std::size_t u, std::size_t v, std::FILE* f) {
    const Writing cCall;
    const std::size_t uPart = Fails("fwrite", f) ? 0 : __real_fwrite(p, 1, cCall.Part(u * v), f);
    f->_flags |= uPart < u * v ? _IO_ERR_SEEN : 0;
    return cCall.Last() ? static_cast<std::size_t>(__real_fflush(f)) : uPart / u;
}
int __wrap_fputs(const char* p, std::FILE* f) {
    const std::size_t u = std::strlen(p);
    return __wrap_fwrite(p, 1, u, f) == u ? 0 : EOF;
}

// One that fails has lost all.
int __real_fclose(std::FILE* f);
int __wrap_fclose(std::FILE* f) {
    const Writing cCall;
    const bool bFails = Fails("fclose", EIO);
    now.room < 0 ? 0 : __wrap_write(fileno(f), nullptr, 0);
    if (bFails) {
        __real_fflush(f);
        __real_ftruncate64(fileno(f), 0);
    }
    Drop(f);
    const int iClosed = __real_fclose(f);
    errno = bFails ? EDQUOT : errno;
    return bFails ? EOF : iClosed;
}

ssize_t __real___getdelim(char** pp, std::size_t* pu, int i, std::FILE* f);
ssize_t __wrap___getdelim(char** pp, std::size_t* pu, int i, std::FILE* f) {
    Drop(*pp);
    const ssize_t iRead = Fails("getdelim", f) ? -1 : __real___getdelim(pp, pu, i, f);
    Hold(*pp);
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
