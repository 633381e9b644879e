// SPDX-License-Identifier: MIT
// Input: the length of a file, the file, then requests. Each returns the file's bytes, or 0.
#include "../targets.h"

void fuzz::Lut(Input& in) {
    const std::string file = files["t.lut"] = in.Bytes(in.Byte());
    VESK::MFColorTable table;
    CLAIM(table.SetFilename(VESK::Text("t")) == 1);
    unsigned int header = 7, expected = 7;
    for (std::size_t u = 4; file.size() >= 4 && u > 0; --u) {
        expected = expected << 8 | static_cast<unsigned char>(file[u - 1]);
    }
    CLAIM(table.GetHeaderSize(&header) == (file.size() >= 4) && header == expected);
    for (int requests = 0; !in.Empty() && requests < 16; ++requests) {
        const bool padded = in.Byte() & 1;
        const int offset = static_cast<signed char>(in.Byte()), count = static_cast<signed char>(in.Byte());
        const int size = padded ? static_cast<short>(in.Short()) : count;
        unsigned char* pData = reinterpret_cast<unsigned char*>(&header);
        const int iGot =
            padded ? table.GetData(offset, count, size, &pData) : table.GetData(offset, count, &pData);
        if (offset < 0 || size < count) {
            CLAIM(iGot == 0 && pData == reinterpret_cast<unsigned char*>(&header));
        } else if (count < 0 ||
                   (count > 0 &&
                    static_cast<std::size_t>(offset) + static_cast<unsigned int>(count) > file.size())) {
            CLAIM(iGot == 0 && pData == nullptr);
        } else {
            const std::string bytes =
                std::string(static_cast<std::size_t>(size - count), '\0') +
                (count > 0 ? file.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(count))
                           : "");
            CLAIM(iGot == 1 && std::memcmp(pData, bytes.data(), bytes.size()) == 0);
            table.DeleteData(pData);
        }
    }
}
