// SPDX-License-Identifier: MIT
// Input: lines. Each is read as a number by all that reads one, alike in both widths; then the number is stored
// in every form, over that text, and stands there as it is written by hand.
#include "../models.h"
#include "../targets.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

namespace {

char* const Key = VESK::Text("n");
char* const Section = VESK::Section::Standard;

template <class Value, class Expected>
void Got(VESK::PROPERTIES& list, Expected expected) {
    Value value = static_cast<Value>(~expected);
    CLAIM(list.GetProperty(Key, &value, value, Section) == 1 && value == static_cast<Value>(expected));
    CLAIM(list.GetProperty(VESK::Text("none"), &value, Value{5}, Section) == 0 && value == Value{5});
}

void Read(VESK::PROPERTIES& list, const char* text) {
    const fuzz::Number number(text);
    CLAIM(VESK::fwatoi(VESK::Text(text)) == number.Signed());
    CLAIM(VESK::fwatol(VESK::Text(text)) == (sizeof(long) == 8 ? number.Long() : number.Signed()));
    char hex[24], *end = nullptr, *behind = nullptr;
    std::strtoull(text, &behind, 10);
    const bool in = number.magnitude <= (sizeof(long) == 8 ? INT64_MAX : UINT32_MAX);
    errno = EINTR; // stays when the number is in range
    CLAIM(!in || VESK::fwstrtoul(text, &end, 10) == static_cast<unsigned long>(number.Long()));
    CLAIM(errno == EINTR && (!in || end == behind));
    CLAIM(in || sizeof(long) == 8 || (VESK::fwstrtoul(text, &end, 10) == ULONG_MAX && errno == ERANGE));
    std::snprintf(hex, sizeof hex, "%lxz", static_cast<unsigned long>(number.Long()));
    CLAIM(VESK::fwstrtoul(hex, &end, 16) == static_cast<unsigned long>(number.Long()) && *end == 'z');
    Got<int>(list, number.Signed());
    Got<unsigned int>(list, number.Signed());
    Got<VESK::Byte2Type>(list, number.Signed());
    Got<long long>(list, number.Long());
    Got<unsigned long long>(list, number.Long());
}

// Leaves no zeros where the next call's variables lie.
[[gnu::noinline]] void SoilStack() {
    volatile char soil[1024];
    for (volatile char& c : soil) {
        c = '#';
    }
}

template <class Value>
void Stored(VESK::PROPERTIES& list, Value value, const std::string& expected) {
    SoilStack();
    CLAIM(list.SetProperty(Key, value, Section) == 1);
    CLAIM(list.m_b2PropertyCount == 1 && list.m_pachValues[0] == expected);
}

void Store(VESK::PROPERTIES& list, long long value) {
    const auto number = static_cast<int>(value);
    Stored(list, number, std::to_string(number));
    Stored(list, value, std::to_string(value));
    Stored(list, static_cast<unsigned int>(value), std::to_string(number));
    Stored(list, static_cast<VESK::Byte2Type>(value), std::to_string(value & 0xFFFF));
    void *const pointer = reinterpret_cast<void*>(static_cast<std::uintptr_t>(value)), *read = &list;
    char text[32];
    std::snprintf(text, sizeof text, "%p", pointer);
    Stored(list, pointer, text);
    CLAIM(list.GetProperty(Key, &read, &list, Section) == 1 && read == pointer);
    CLAIM(list.GetProperty(VESK::Text("none"), &read, &list, Section) == 0 && read == &list);
}

} // namespace

void fuzz::Numbers(Input& in) {
    while (!in.Empty()) {
        const ExactText line(in.Line());
        VESK::PROPERTIES list;
        CLAIM(list.SetProperty(Key, line.Chars(), Section));
        Read(list, line.Chars());
        Store(list, Number(line.Chars()).Long());
    }
}
