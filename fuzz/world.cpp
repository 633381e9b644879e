// SPDX-License-Identifier: MIT
#include "world.h"

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <stdio_ext.h>

extern "C" {
std::FILE* __real_fopen(const char* name, const char* mode);
std::FILE* __real_fopen64(const char* name, const char* mode);
void* __real_dlopen(const char* path, int flags);
std::FILE* __wrap_fopen(const char* name, const char* mode);
std::FILE* __wrap_fopen64(const char* name, const char* mode);
void* __wrap_dlopen(const char* path, int flags);
}

namespace fuzz {

std::map<std::string, std::string> files;

namespace {

bool standing = false;
std::string printed;
std::FILE *out, *in, *hostOut, *hostErr, *hostIn;

struct Open {
    std::string& text;
    std::size_t at;
};

ssize_t Read(void* cookie, char* buffer, std::size_t size) {
    auto& file = *static_cast<Open*>(cookie);
    const std::size_t left = file.at < file.text.size() ? file.text.size() - file.at : 0;
    const std::size_t count = size < left ? size : left;
    std::memcpy(buffer, file.text.data() + (count > 0 ? file.at : 0), count);
    file.at += count;
    return static_cast<ssize_t>(count);
}

ssize_t Write(void* cookie, const char* buffer, std::size_t size) {
    static_cast<Open*>(cookie)->text.append(buffer, size);
    return static_cast<ssize_t>(size);
}

int Seek(void* cookie, off64_t* position, int whence) {
    auto& file = *static_cast<Open*>(cookie);
    const auto from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.at : file.text.size();
    const off64_t to = static_cast<off64_t>(from) + *position;
    if (to < 0) {
        return -1;
    }
    file.at = static_cast<std::size_t>(*position = to);
    return 0;
}

int Close(void* cookie) {
    delete static_cast<Open*>(cookie);
    return 0;
}

std::FILE* OpenText(Open* pOpen, const char* mode) {
    return fopencookie(pOpen, mode, {Read, Write, Seek, Close});
}

} // namespace

World::World() {
    static std::string nothing;
    static Open print{printed, 0}, empty{nothing, 0}; // never closed
    if (!out) {
        out = OpenText(&print, "w");
        in = OpenText(&empty, "r");
        hostOut = stdout;
        hostErr = stderr;
        hostIn = stdin;
    }
    stdout = stderr = out;
    stdin = in;
    standing = true;
}

World::~World() {
    standing = false;
    stdout = hostOut;
    stderr = hostErr;
    stdin = hostIn;
    __fpurge(out);
    printed.clear();
    files.clear();
}

std::FILE* OpenFile(const std::string& name, const char* mode) {
    if (*mode == 'w') {
        files[name].clear();
    }
    const auto at = files.find(name);
    if (at == files.end()) {
        errno = ENOENT;
        return nullptr;
    }
    return OpenText(new Open{at->second, 0}, mode);
}

const std::string& Printed() {
    std::fflush(out);
    return printed;
}

} // namespace fuzz

std::FILE* __wrap_fopen(const char* name, const char* mode) {
    return fuzz::standing ? fuzz::OpenFile(name, mode) : __real_fopen(name, mode);
}

std::FILE* __wrap_fopen64(const char* name, const char* mode) {
    return fuzz::standing ? fuzz::OpenFile(name, mode) : __real_fopen64(name, mode);
}

void* __wrap_dlopen(const char* path, int flags) {
    const bool own = std::strcmp(path ? path : "", "libfwlib.so") == 0;
    return !fuzz::standing ? __real_dlopen(path, flags) : own ? __real_dlopen(nullptr, flags) : nullptr;
}
