// SPDX-License-Identifier: MIT
// Rows that write typed records and objects to memory, and read objects from it.
#include "rows.h"

#include <fwlib/fwlib.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

namespace {

using namespace VESK;

// Of an object, besides its type.
constexpr const char* PropertyKeys[] = {
    "Width",   "Height",   "Depth", "Timestamp", "Sequence", "Exposure",    "Gain",     "Offset",
    "Channel", "Position", "Mode",  "Unit",      "Operator", "Temperature", "Filename", "Instrument"};
constexpr int Properties = sizeof PropertyKeys / sizeof PropertyKeys[0];

class MemoryWrite final : public SWrite {
public:
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override {
        std::memcpy(m_achText + m_uLength, pchData, b4Length);
        m_uLength += b4Length;
        return b4Length;
    }
    void Restart() { m_uLength = 0; }
    std::string Text() const { return {m_achText, m_uLength}; }

private:
    char m_achText[8192];
    std::size_t m_uLength = 0;
};

// The lines, split beforehand. They are copied all at once, since whoever reads them writes to them.
class MemoryRead final : public SRead {
public:
    explicit MemoryRead(const std::string& Lines) : m_Lines(Lines), m_cNow(Lines.size()) {
        m_cStarts.push_back(0);
        for (std::size_t u = 0; u < m_Lines.size(); ++u) {
            if (m_Lines[u] == '\n') {
                m_Lines[u] = '\0';
                m_cStarts.push_back(u + 1);
            }
        }
        m_cStarts.pop_back();
    }
    char* ReadLine() override {
        return m_uNext < m_cStarts.size() ? m_cNow.data() + m_cStarts[m_uNext++] : nullptr;
    }
    void Restart() {
        std::memcpy(m_cNow.data(), m_Lines.data(), m_Lines.size());
        m_uNext = 0;
    }

private:
    std::string m_Lines;
    std::vector<char> m_cNow;
    std::vector<std::size_t> m_cStarts;
    std::size_t m_uNext = 0;
};

void Fill(QObject& cObject) {
    for (int i = 0; i < Properties; ++i) {
        cObject.m_cProperties.SetProperty(Text(PropertyKeys[i]), 1000 * i + 7, Section::Standard);
    }
}

// As an ESource's objects are, and a little more: four properties with the type.
void FillFew(QObject& cObject) {
    for (const int i : {0, 4, 10}) {
        cObject.m_cProperties.SetProperty(Text(PropertyKeys[i]), 1000 * i + 7, Section::Standard);
    }
}

// Keys that differ in their last characters only.
void FillAlike(QObject& cObject) {
    for (int i = 0; i < Properties; ++i) {
        cObject.m_cProperties.SetProperty(("parameter" + std::to_string(i)).data(), 1000 * i + 7,
                                          Section::Standard);
    }
}

using Filling = void (*)(QObject&);

std::string Lines(Filling pFill) {
    QObject cObject;
    pFill(cObject);
    MemoryWrite cWriter;
    cObject.Serialize(&cWriter);
    return cWriter.Text();
}

nlohmann::json JsonOf(const QObject& cObject) {
    nlohmann::json cJson;
    for (Byte2Type b2 = 0; b2 < cObject.m_cProperties.m_b2PropertyCount; ++b2) {
        cJson[cObject.m_cProperties.m_pachKeys[b2]] = cObject.m_cProperties.m_pachValues[b2];
    }
    return cJson;
}

// The compiler knows nothing about the writer behind the reference.
SWrite& Opaque(SWrite& cWriter) {
    SWrite* volatile p = &cWriter;
    return *p;
}

void WriteBareLine(SWrite& cWriter, const char* pchKey, const char* pchValue, std::size_t uValue) {
    char achLine[1024];
    const std::size_t uKey = std::strlen(pchKey);
    std::memcpy(achLine, pchKey, uKey);
    achLine[uKey] = '=';
    std::memcpy(achLine + uKey + 1, pchValue, uValue);
    achLine[uKey + 1 + uValue] = '\n';
    cWriter.WriteData(achLine, static_cast<Byte4Type>(uKey + uValue + 2));
}

void WriteBareNumber(SWrite& cWriter, const char* pchKey, int iValue) {
    char achNumber[16];
    const auto uLength = static_cast<std::size_t>(
        std::to_chars(achNumber, achNumber + sizeof achNumber, iValue).ptr - achNumber);
    WriteBareLine(cWriter, pchKey, achNumber, uLength);
}

void LibraryNumbers(benchmark::State& cState, int iFirst) {
    MemoryWrite cMemory;
    SWrite& cWriter = Opaque(cMemory);
    std::string Key = "parameter";
    for (auto _ : cState) {
        cMemory.Restart();
        for (int i = 0; i < Properties; ++i) {
            cWriter.Serialize(Key.data(), iFirst + i);
        }
        benchmark::ClobberMemory();
    }
}

void BareNumbers(benchmark::State& cState, int iFirst) {
    MemoryWrite cMemory;
    SWrite& cWriter = Opaque(cMemory);
    const std::string Key = "parameter";
    for (auto _ : cState) {
        cMemory.Restart();
        for (int i = 0; i < Properties; ++i) {
            WriteBareNumber(cWriter, Key.c_str(), iFirst + i);
        }
        benchmark::ClobberMemory();
    }
}

void LibraryWrite(benchmark::State& cState) {
    QObject cObject;
    Fill(cObject);
    MemoryWrite cMemory;
    SWrite& cWriter = Opaque(cMemory);
    for (auto _ : cState) {
        cMemory.Restart();
        cObject.Serialize(&cWriter);
        benchmark::ClobberMemory();
    }
}

// The type is the list's first property.
void BareWrite(benchmark::State& cState) {
    QObject cObject;
    Fill(cObject);
    const PROPERTIES& cList = cObject.m_cProperties;
    MemoryWrite cMemory;
    SWrite& cWriter = Opaque(cMemory);
    for (auto _ : cState) {
        cMemory.Restart();
        cWriter.WriteData(cList.m_pachValues[0], static_cast<Byte4Type>(std::strlen(cList.m_pachValues[0])));
        cWriter.WriteData(Text("\n"), 1);
        WriteBareNumber(cWriter, "m_b2PropertyCount", cList.m_b2PropertyCount);
        for (Byte2Type b2 = 0; b2 < cList.m_b2PropertyCount; ++b2) {
            WriteBareLine(cWriter, cList.m_pachKeys[b2], cList.m_pachValues[b2],
                          std::strlen(cList.m_pachValues[b2]));
        }
        benchmark::ClobberMemory();
    }
}

void JsonDump(benchmark::State& cState) {
    QObject cObject;
    Fill(cObject);
    const nlohmann::json cJson = JsonOf(cObject);
    for (auto _ : cState) {
        const std::string Dumped = cJson.dump();
        benchmark::DoNotOptimize(Dumped.data());
    }
}

void LibraryRead(benchmark::State& cState, Filling pFill) {
    MemoryRead cReader(Lines(pFill));
    for (auto _ : cState) {
        cReader.Restart();
        cReader.ReadLine();
        QObject cObject;
        cObject.Deserialize(&cReader);
        benchmark::DoNotOptimize(&cObject);
    }
}

char* CopyOf(const char* pchText) {
    const std::size_t uSize = std::strlen(pchText) + 1;
    return static_cast<char*>(std::memcpy(std::malloc(uSize), pchText, uSize));
}

// Splits the lines and copies the key, the value and the section of each; tables of the right size hold them. No
// key is looked for.
void BareRead(benchmark::State& cState, Filling pFill) {
    MemoryRead cMemory(Lines(pFill));
    SRead* volatile pOpaque = &cMemory;
    SRead& cReader = *pOpaque;
    for (auto _ : cState) {
        cMemory.Restart();
        cReader.ReadLine();
        const auto uCount = static_cast<std::size_t>(std::atoi(std::strchr(cReader.ReadLine(), '=') + 1));
        auto** const pTexts = static_cast<char**>(std::malloc(3 * uCount * sizeof(char*)));
        for (std::size_t u = 0; u < 3 * uCount; u += 3) {
            char* const pchLine = cReader.ReadLine();
            char* const pchEquals = std::strchr(pchLine, '=');
            *pchEquals = '\0';
            pTexts[u] = CopyOf(pchLine);
            pTexts[u + 1] = CopyOf(pchEquals + 1);
            pTexts[u + 2] = CopyOf(Section::Standard);
        }
        benchmark::DoNotOptimize(pTexts);
        for (std::size_t u = 0; u < 3 * uCount; ++u) {
            std::free(pTexts[u]);
        }
        std::free(pTexts);
    }
}

void JsonParse(benchmark::State& cState, Filling pFill) {
    QObject cObject;
    pFill(cObject);
    const std::string Dumped = JsonOf(cObject).dump();
    for (auto _ : cState) {
        const nlohmann::json cJson = nlohmann::json::parse(Dumped);
        benchmark::DoNotOptimize(&cJson);
    }
}

} // namespace

void AddRecordRows() {
    for (const int iFirst : {0, 1000, 100000000}) {
        AddRow(
            "16 records from " + std::to_string(iFirst), 1.40,
            [iFirst](benchmark::State& cState) { LibraryNumbers(cState, iFirst); },
            [iFirst](benchmark::State& cState) { BareNumbers(cState, iFirst); });
    }
    AddRow("object of 17 properties written, bare", 1.35, LibraryWrite, BareWrite);
    AddRow("object of 17 properties written, JSON", 0.25, LibraryWrite, JsonDump);
    const struct {
        Filling pFill;
        const char* pchName;
        double dBar;
    } aRead[] = {{FillFew, "object of 4 properties read", 1.45},
                 {Fill, "object of 17 properties read", 1.50},
                 {FillAlike, "object of 17 keys alike read", 1.50}};
    for (const auto& cRead : aRead) {
        const Filling pFill = cRead.pFill;
        const std::string Name = cRead.pchName;
        const auto Of = [pFill](void (*pMeasured)(benchmark::State&, Filling)) -> Measured {
            return [pFill, pMeasured](benchmark::State& cState) { pMeasured(cState, pFill); };
        };
        AddRow(Name + ", bare", cRead.dBar, Of(LibraryRead), Of(BareRead));
        AddRow(Name + ", JSON", 0.35, Of(LibraryRead), Of(JsonParse));
    }
}
