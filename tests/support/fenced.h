// SPDX-License-Identifier: MIT
// Memory between two pages that nobody may touch, so that an access outside ends the test.
#ifndef FWLIB_TESTS_SUPPORT_FENCED_H
#define FWLIB_TESTS_SUPPORT_FENCED_H

#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using Bytes = std::basic_string<unsigned char>;

inline Bytes BytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

class Fenced {
public:
    static constexpr unsigned char Untouched = 0xE7;

    explicit Fenced(std::size_t atLeast)
        : m_uPage(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          m_uSize((atLeast / m_uPage + 1) * m_uPage),
          m_pMapped(static_cast<unsigned char*>(
              mmap(nullptr, m_uSize + 2 * m_uPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
        mprotect(m_pMapped + m_uPage, m_uSize, PROT_READ | PROT_WRITE);
    }
    ~Fenced() { munmap(m_pMapped, m_uSize + 2 * m_uPage); }
    Fenced(const Fenced&) = delete;
    Fenced& operator=(const Fenced&) = delete;

    // Room for so many bytes, some way from the front or the back fence, all around it untouched.
    unsigned char* Room(std::size_t size, bool back = true, std::size_t away = 0) {
        std::memset(m_pMapped + m_uPage, Untouched, m_uSize);
        return m_pMapped + m_uPage + (back ? m_uSize - size - away : away);
    }
    unsigned char* Hold(const Bytes& bytes, bool back = true, std::size_t away = 0) {
        return static_cast<unsigned char*>(
            std::memcpy(Room(bytes.size(), back, away), bytes.data(), bytes.size()));
    }

    // Whether nothing but the bytes at the place changed since.
    bool OnlyHas(const Bytes& bytes, const unsigned char* place) const {
        const auto before = static_cast<std::size_t>(place - (m_pMapped + m_uPage));
        const Bytes all =
            Bytes(before, Untouched) + bytes + Bytes(m_uSize - before - bytes.size(), Untouched);
        return std::memcmp(all.data(), m_pMapped + m_uPage, m_uSize) == 0;
    }

private:
    std::size_t m_uPage, m_uSize;
    unsigned char* m_pMapped;
};

#endif
