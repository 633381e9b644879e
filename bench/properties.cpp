// SPDX-License-Identifier: MIT
// Rows that read, set and duplicate properties.
#include "rows.h"

#include <fwlib/fwlib.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unordered_map>
#include <vector>

namespace {

using namespace VESK;

enum Shape { Distinct, ShortPrefix, LongPrefix };

constexpr const char* ShapeNames[] = {"keys unlike", "keys alike", "long keys alike"};

// A key as lists of that shape have them.
std::string KeyOf(Shape eShape, int iNumber) {
    const std::string Digits = std::to_string(1000 + iNumber).substr(1);
    switch (eShape) {
    case Distinct:
        return std::string(1, static_cast<char>('A' + iNumber * 7 % 26)) + Digits;
    case ShortPrefix:
        return "key" + Digits;
    default:
        return "acquisition.parameter." + Digits;
    }
}

// Entries of that shape, whose values are texts of numbers.
struct Filled {
    Filled(Shape eShape, int iEntries) : Last(KeyOf(eShape, iEntries - 1)) {
        for (int i = 0; i < iEntries; ++i) {
            cList.SetProperty(KeyOf(eShape, i).data(), 100000 + i, Section::Standard);
        }
    }

    PROPERTIES cList;
    std::string Last; // the key of the last entry
};

// What a caller passes in; the compiler knows nothing about the text.
char* Opaque(std::string& Text) {
    char* volatile pch = Text.data();
    return pch;
}

// The bare loop over the list's own arrays: the value, or null.
const char* WalkEntries(const PROPERTIES& cList, const char* pchKey, const char* pchSection) {
    for (Byte2Type b2 = 0; b2 < cList.m_b2PropertyCount; ++b2) {
        if (std::strcmp(cList.m_pachKeys[b2], pchKey) == 0 &&
            std::strcmp(cList.m_pachSections[b2], pchSection) == 0) {
            return cList.m_pachValues[b2];
        }
    }
    return nullptr;
}

void LibraryText(benchmark::State& cState, Filled& cFilled) {
    char* const pchKey = Opaque(cFilled.Last);
    char achValue[32];
    for (auto _ : cState) {
        benchmark::DoNotOptimize(
            cFilled.cList.GetProperty(pchKey, achValue, sizeof achValue, nullptr, Section::Standard));
        benchmark::ClobberMemory();
    }
}

void BareText(benchmark::State& cState, Filled& cFilled) {
    char* const pchKey = Opaque(cFilled.Last);
    char achValue[32];
    for (auto _ : cState) {
        const char* const pchFound = WalkEntries(cFilled.cList, pchKey, Section::Standard);
        if (pchFound) {
            const std::size_t uLength = strnlen(pchFound, sizeof achValue - 1);
            std::memcpy(achValue, pchFound, uLength);
            achValue[uLength] = '\0';
        }
        benchmark::DoNotOptimize(pchFound);
        benchmark::ClobberMemory();
    }
}

void LibraryInteger(benchmark::State& cState, Filled& cFilled) {
    char* const pchKey = Opaque(cFilled.Last);
    int iValue = 0;
    for (auto _ : cState) {
        benchmark::DoNotOptimize(cFilled.cList.GetProperty(pchKey, &iValue, 0, Section::Standard));
        benchmark::ClobberMemory();
    }
}

void BareInteger(benchmark::State& cState, Filled& cFilled) {
    char* const pchKey = Opaque(cFilled.Last);
    int iValue = 0;
    for (auto _ : cState) {
        const char* const pchFound = WalkEntries(cFilled.cList, pchKey, Section::Standard);
        if (pchFound) {
            iValue = static_cast<int>(std::strtol(pchFound, nullptr, 10));
        }
        benchmark::DoNotOptimize(&iValue);
        benchmark::ClobberMemory();
    }
}

void AddReadingRows(Shape eShape, int iEntries) {
    const auto pFilled = std::make_shared<Filled>(eShape, iEntries);
    const std::string Place = ", last of " + std::to_string(iEntries) + ", " + ShapeNames[eShape];
    AddRow(
        "text" + Place, iEntries == 2 ? 1.30 : 1.20,
        [pFilled](benchmark::State& cState) { LibraryText(cState, *pFilled); },
        [pFilled](benchmark::State& cState) { BareText(cState, *pFilled); });
    AddRow(
        "integer" + Place, 1.20, [pFilled](benchmark::State& cState) { LibraryInteger(cState, *pFilled); },
        [pFilled](benchmark::State& cState) { BareInteger(cState, *pFilled); });
}

void LibrarySet(benchmark::State& cState, int iEntries) {
    Filled cFilled(ShortPrefix, iEntries);
    char* const pchKey = Opaque(cFilled.Last);
    int iValue = 0;
    for (auto _ : cState) {
        cFilled.cList.SetProperty(pchKey, iValue, Section::Standard);
        iValue = (iValue + 1) % 100000;
    }
}

// The key is a string already, so nothing is copied to look it up.
void HashedSet(benchmark::State& cState, int iEntries) {
    std::unordered_map<std::string, std::string> cMap;
    for (int i = 0; i < iEntries; ++i) {
        cMap[KeyOf(ShortPrefix, i)] = std::to_string(100000 + i);
    }
    const std::string Last = KeyOf(ShortPrefix, iEntries - 1);
    int iValue = 0;
    for (auto _ : cState) {
        cMap[Last] = std::to_string(iValue);
        benchmark::ClobberMemory();
        iValue = (iValue + 1) % 100000;
    }
}

constexpr int DuplicatedEntries = 32; // the type among them

void FillObject(QObject& cObject) {
    for (int i = 1; i < DuplicatedEntries; ++i) {
        cObject.m_cProperties.SetProperty(KeyOf(ShortPrefix, i).data(), 100000 + i, Section::Standard);
    }
}

void LibraryDuplicate(benchmark::State& cState) {
    QObject cObject;
    FillObject(cObject);
    for (auto _ : cState) {
        const std::unique_ptr<QObject> pCopy(cObject.Duplicate());
        benchmark::DoNotOptimize(pCopy.get());
    }
}

void* CopyOf(const void* pBlock, std::size_t uLength) {
    void* const pCopy = std::malloc(uLength);
    if (pCopy) {
        std::memcpy(pCopy, pBlock, uLength);
    }
    return pCopy;
}

// The blocks of an object, with the lengths known: its own, then those of the list, which grow twice, then
// all texts. The type is stored at once with the value it ends with, although a duplicate replaces it.
class Blocks {
public:
    explicit Blocks(PROPERTIES& cList) {
        for (Byte2Type b2 = 0; b2 < cList.m_b2PropertyCount; ++b2) {
            for (const char* const pch :
                 {cList.m_pachKeys[b2], cList.m_pachValues[b2], cList.m_pachSections[b2]}) {
                cTexts.push_back({pch, std::strlen(pch) + 1});
            }
        }
    }

    void CopyAndRelease() const {
        void* const pObject = std::malloc(sizeof(QObject));
        void** apTables[3];
        for (void**& pTable : apTables) {
            pTable = static_cast<void**>(std::malloc(16 * sizeof(void*)));
        }
        const Text* pText = cTexts.data();
        for (int i = 0; i < DuplicatedEntries; ++i) {
            if (i == 16) {
                for (void**& pTable : apTables) {
                    void** const pGrown = static_cast<void**>(std::malloc(32 * sizeof(void*)));
                    std::memcpy(pGrown, pTable, 16 * sizeof(void*));
                    std::free(pTable);
                    pTable = pGrown;
                }
            }
            for (void** const pTable : apTables) {
                pTable[i] = CopyOf(pText->pch, pText->uSize);
                ++pText;
            }
        }
        benchmark::DoNotOptimize(&apTables);
        benchmark::ClobberMemory();
        for (int i = 0; i < DuplicatedEntries; ++i) {
            for (void** const pTable : apTables) {
                std::free(pTable[i]);
            }
        }
        for (void** const pTable : apTables) {
            std::free(pTable);
        }
        std::free(pObject);
    }

private:
    struct Text {
        const char* pch;
        std::size_t uSize;
    };
    std::vector<Text> cTexts;
};

void BareDuplicate(benchmark::State& cState) {
    QObject cObject;
    FillObject(cObject);
    const Blocks cBlocks(cObject.m_cProperties);
    for (auto _ : cState) {
        cBlocks.CopyAndRelease();
    }
}

} // namespace

void AddPropertyRows() {
    for (const Shape eShape : {Distinct, ShortPrefix, LongPrefix}) {
        for (const int iEntries : {2, 16, 256}) {
            AddReadingRows(eShape, iEntries);
        }
    }
    // As an ESource does for each object, which holds its type and the number. A walk to a later entry has no bar.
    for (const int iEntries : {2, 16}) {
        AddRow(
            "number set in place, last of " + std::to_string(iEntries), iEntries == 2 ? 1.00 : NoBar,
            [iEntries](benchmark::State& cState) { LibrarySet(cState, iEntries); },
            [iEntries](benchmark::State& cState) { HashedSet(cState, iEntries); });
    }
    AddRow("duplicate of 32 properties", 1.20, LibraryDuplicate, BareDuplicate);
}
