// SPDX-License-Identifier: MIT
// What the targets share: an input taken apart, claims, blocks of exact size, and streams in memory.
#ifndef FWLIB_FUZZ_SUPPORT_H
#define FWLIB_FUZZ_SUPPORT_H

#include "fwlib/fwlib.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace fuzz {

// Ends the process with the place when the claim does not hold.
#define CLAIM(claim) ((claim) ? void() : fuzz::Broken(#claim, __FILE__, __LINE__))
[[noreturn]] void Broken(const char* claim, const char* file, int line);

// A block of the heap of exactly this size, so that the sanitizers see an access outside. The bytes that are not
// given are 0xE7.
class Exact {
public:
    explicit Exact(std::size_t size, const std::string& bytes = "") : m_uSize(size), m_p(new char[size]) {
        const std::size_t given = bytes.size() < size ? bytes.size() : size;
        std::memcpy(m_p.get(), bytes.data(), given);
        std::memset(m_p.get() + given, 0xE7, size - given);
    }
    explicit Exact(const std::string& bytes) : Exact(bytes.size(), bytes) {}

    std::size_t Size() const { return m_uSize; }
    char* Chars() const { return m_p.get(); }
    unsigned char* Data() const { return reinterpret_cast<unsigned char*>(m_p.get()); }
    bool operator==(const Exact& o) const {
        return m_uSize == o.m_uSize && std::memcmp(m_p.get(), o.m_p.get(), m_uSize) == 0;
    }

private:
    std::size_t m_uSize;
    std::unique_ptr<char[]> m_p;
};

// A zero-terminated text in a block of its size.
struct ExactText : Exact {
    explicit ExactText(const std::string& text) : Exact(text.size() + 1, text) {
        Chars()[text.size()] = '\0';
    }
};

// The bytes of an input, taken from its begin; behind its end all numbers are 0 and all texts empty.
class Input {
public:
    Input(const unsigned char* data, std::size_t size) : m_p(data), m_pEnd(data + size) {}

    bool Empty() const { return m_p == m_pEnd; }
    unsigned int Byte() { return Empty() ? 0 : *m_p++; }
    unsigned int Short() {
        const unsigned int low = Byte();
        return low | Byte() << 8;
    }
    std::string Bytes(std::size_t most) {
        const auto left = static_cast<std::size_t>(m_pEnd - m_p);
        const unsigned char* const begin = m_p;
        m_p += most < left ? most : left;
        return {begin, m_p};
    }
    std::string Rest() { return Bytes(SIZE_MAX); }

    // Up to the mark, which is taken too.
    std::string UpTo(char mark) {
        const unsigned char* const begin = m_p;
        const void* const at =
            Empty() ? nullptr : std::memchr(m_p, mark, static_cast<std::size_t>(m_pEnd - m_p));
        m_p = at ? static_cast<const unsigned char*>(at) + 1 : m_pEnd;
        return {begin, at ? m_p - 1 : m_pEnd};
    }
    // A text as the library takes it: up to a newline or a zero byte.
    std::string Line() { return UpTo('\n').c_str(); }

private:
    const unsigned char* m_p;
    const unsigned char* m_pEnd;
};

struct Writer : VESK::SWrite {
    VESK::Byte4Type WriteData(char* pchData, VESK::Byte4Type b4Length) override {
        text.append(pchData, b4Length);
        return b4Length;
    }
    std::string text;
};

// Hands out each line of a text, lent, in a block of its own.
struct Reader : VESK::SRead {
    explicit Reader(const std::string& lent) : text(lent) {}
    char* ReadLine() override {
        if (at >= text.size()) {
            return nullptr;
        }
        const std::size_t newline = text.find('\n', at);
        const std::size_t size = (newline == std::string::npos ? text.size() : newline) - at;
        line.reset(new char[size + 1]);
        std::memcpy(line.get(), text.data() + at, size);
        line[size] = '\0';
        at += size + 1;
        return line.get();
    }
    const std::string& text;
    std::size_t at = 0;
    std::unique_ptr<char[]> line;
};

struct Entry {
    std::string section, key, value;
};
using Entries = std::vector<Entry>;

// Sets an entry as a list does.
void Put(Entries& entries, const Entry& entry);

// Whether the list holds these entries in this order, or what the other one holds.
bool Holds(const VESK::PROPERTIES& list, const Entries& entries);
bool Same(const VESK::PROPERTIES& one, const VESK::PROPERTIES& other);

// Whether objects soon reach an end in the element, which may be a pipeline: few pads, few connections, and these
// lead to later elements only.
bool Modest(VESK::EObject& element);

// A framework that has the library's types without a shared object.
struct OwnFramework : VESK::FRAMEWORK {
    OwnFramework();
};

} // namespace fuzz

#endif
