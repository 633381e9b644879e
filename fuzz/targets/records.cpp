// SPDX-License-Identifier: MIT
// Input: four bytes, which are written as each type and read again, then lines that are read as each type. Numbers
// have any length: they clamp to 32 bits.
#include "../models.h"
#include "../targets.h"

namespace {

template <class Value>
void Check(unsigned int bits, const std::string& line) {
    const auto value = static_cast<Value>(bits);
    Value read = static_cast<Value>(~bits);
    fuzz::Writer writer;
    writer.Serialize(VESK::Text("key"), value);
    CLAIM(fuzz::Reader(writer.text).Deserialize(&read) == 1 && read == value);
    const std::size_t equals = line.find('=');
    const bool split = equals != std::string::npos;
    const fuzz::Number number(split ? line.c_str() + equals + 1 : "");
    const bool plain = static_cast<Value>(-1) < 0 || std::is_same<Value, char>::value; // whatever char is
    const Value expected =
        static_cast<Value>(plain ? static_cast<unsigned int>(number.Signed()) : number.Unsigned());
    CLAIM(fuzz::Reader(line + "\n").Deserialize(&read) == split && read == (split ? expected : value));
}

} // namespace

void fuzz::Records(Input& in) {
    const unsigned int bits = in.Short() | in.Short() << 16;
    for (int lines = 0; lines == 0 || (!in.Empty() && lines < 8); ++lines) {
        const std::string line = in.Line();
        Check<int>(bits, line);
        Check<short>(bits, line);
        Check<char>(bits, line);
        Check<unsigned int>(bits, line);
        Check<unsigned short>(bits, line);
        Check<unsigned char>(bits, line);
    }
}
