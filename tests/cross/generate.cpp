// SPDX-License-Identifier: MIT
// Usage: generate FOLDER. Writes the same objects, block records, compressed blocks and fields on every processor.
#include "fwlib/fwlib.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

using namespace VESK;

namespace {

unsigned int uState = 1;

unsigned int Next() {
    uState = uState * 1664525U + 1013904223U;
    return uState >> 8;
}

std::vector<unsigned char> NextBytes(unsigned int uCount) {
    std::vector<unsigned char> bytes(uCount);
    std::generate(bytes.begin(), bytes.end(), [] { return static_cast<unsigned char>(Next()); });
    return bytes;
}

// Objects with numbers of every width, and texts of up to 40 bytes, zero and newline excepted.
void WriteObjects(SFileWrite& cWriter) {
    for (int i = 0; i < 500; ++i) {
        QObject cObject;
        PROPERTIES& cList = cObject.m_cProperties;
        const auto iNumber = static_cast<int>(Next() << (i % 32));
        std::string text = "x";
        for (const unsigned char byte : NextBytes(Next() % 40)) {
            text += static_cast<char>(byte % 254 + (byte % 254 < 9 ? 1 : 2));
        }
        cList.SetProperty(Text("Int"), iNumber, Section::Standard);
        cList.SetProperty(Text("Unsigned"), static_cast<unsigned int>(iNumber), Section::Standard);
        cList.SetProperty(Text("Short"), static_cast<Byte2Type>(iNumber), Section::Standard);
        cList.SetProperty(Text("Long"), static_cast<long long>(iNumber) * iNumber * (i % 2 ? 1 : -1),
                          Section::Standard);
        cList.SetProperty(Text("Text"), text.data(), Section::Standard);
        cObject.Serialize(&cWriter);
    }
}

void WriteRecords(SFileWrite& cWriter) {
    char* const pchKey = Text("k");
    for (unsigned int u = 0; u < 300; ++u) {
        std::vector<unsigned char> bytes = NextBytes(u);
        cWriter.SerializeBlock(pchKey, bytes.data(), static_cast<int>(u));
        const unsigned int uNumber = Next() << 8 | u;
        cWriter.Serialize(pchKey, static_cast<char>(uNumber));
        cWriter.Serialize(pchKey, static_cast<unsigned char>(uNumber));
        cWriter.Serialize(pchKey, static_cast<short>(uNumber));
        cWriter.Serialize(pchKey, static_cast<unsigned short>(uNumber));
        cWriter.Serialize(pchKey, static_cast<int>(uNumber));
        cWriter.Serialize(pchKey, uNumber);
    }
}

// Words that are often zero or repeated, in both layouts.
void WriteCompressed(SFileWrite& cWriter) {
    for (unsigned int u = 0; u < 200; ++u) {
        std::vector<unsigned char> bytes = NextBytes(120 * (1 + u % 4));
        for (std::size_t i = 0; i < bytes.size(); i += 4) {
            if (i > 0 && Next() % 4 > 0) {
                const unsigned char* const pFrom = bytes.data() + i - 4;
                const bool bZero = u % 2 == 0;
                std::transform(pFrom, pFrom + 4, bytes.data() + i,
                               [bZero](unsigned char byte) { return bZero ? 0 : byte; });
            }
        }
        std::vector<unsigned char> coded(bytes.size());
        const Byte2Type b2Size =
            cWriter.Compress(coded.data(), bytes.data(), static_cast<Byte2Type>(bytes.size()),
                             static_cast<unsigned char>(u % 3));
        cWriter.SerializeBlock(Text("c"), coded.data(), b2Size);
    }
}

void WriteFields(char* pFile) {
    for (unsigned int u = 0; u < 64; ++u) {
        unsigned int uValue = Next() << 8 | u;
        auto usValue = static_cast<unsigned short>(uValue);
        WriteByte4TypeBigEndian(pFile, uValue);
        WriteByte4TypeLittleEndian(pFile, uValue);
        WriteByte2TypeBigEndian(pFile, usValue);
        WriteByte2TypeLittleEndian(pFile, usValue);
    }
}

} // namespace

int main(int, char** ppchArguments) {
    const std::string folder = std::string(ppchArguments[1]) + "/";
    SFileWrite cObjects((folder + "objects").data(), 1);
    WriteObjects(cObjects);
    SFileWrite cRecords((folder + "records").data(), 1);
    WriteRecords(cRecords);
    WriteCompressed(cRecords);
    char* const pFields = fwfopen((folder + "fields").data(), Text("wb"));
    WriteFields(pFields);
    return fwfclose(pFields);
}
