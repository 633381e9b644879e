// SPDX-License-Identifier: MIT
// The properties' sides of rows beside peers, and beside a standard hash map of strings.
#include "peers.h"

#include <fwlib/fwlib.h>

#include <cstring>
#include <string>
#include <unordered_map>

namespace {

using namespace VESK;

constexpr int Entries = 16;

std::string KeyOf(int iEntry) {
    return "A" + std::to_string(iEntry);
}

void Fill(PROPERTIES& cList) {
    for (int i = 0; i < Entries; ++i) {
        cList.SetProperty(KeyOf(i).data(), Text("100000"), Section::Standard);
    }
}

using Map = std::unordered_map<std::string, std::string>;

Map FilledMap() {
    Map cMap;
    for (int i = 0; i < Entries; ++i) {
        cMap[KeyOf(i)] = "100000";
    }
    return cMap;
}

// The key is a C text, as a caller of the library has it.
void MapGet(benchmark::State& cState) {
    const Map cMap = FilledMap();
    const std::string Last = KeyOf(Entries - 1);
    char achText[32];
    for (auto _ : cState) {
        std::strncpy(achText, cMap.find(Last.c_str())->second.c_str(), sizeof achText - 1);
        benchmark::DoNotOptimize(&achText);
        benchmark::ClobberMemory();
    }
}

void MapSet(benchmark::State& cState) {
    Map cMap = FilledMap();
    const std::string Last = KeyOf(Entries - 1);
    for (auto _ : cState) {
        cMap[Last.c_str()] = "123456";
        benchmark::ClobberMemory();
    }
}

void MapCopy(benchmark::State& cState) {
    const Map cMap = FilledMap();
    for (auto _ : cState) {
        const Map cCopy(cMap);
        benchmark::DoNotOptimize(&cCopy);
    }
}

} // namespace

Measured LibraryGet() {
    return [](benchmark::State& cState) {
        PROPERTIES cList;
        Fill(cList);
        std::string Last = KeyOf(Entries - 1);
        char achText[32];
        for (auto _ : cState) {
            cList.GetProperty(Last.data(), achText, sizeof achText, nullptr, Section::Standard);
            benchmark::DoNotOptimize(&achText);
            benchmark::ClobberMemory();
        }
    };
}

Measured LibrarySetText() {
    return [](benchmark::State& cState) {
        PROPERTIES cList;
        Fill(cList);
        std::string Last = KeyOf(Entries - 1);
        for (auto _ : cState) {
            cList.SetProperty(Last.data(), Text("123456"), Section::Standard);
        }
    };
}

Measured LibraryCopy() {
    return [](benchmark::State& cState) {
        PROPERTIES cList;
        Fill(cList);
        for (auto _ : cState) {
            PROPERTIES cCopy;
            cCopy.Copy(&cList);
            benchmark::DoNotOptimize(&cCopy);
        }
    };
}

void AddMapRows() {
    AddRow("text got, last of 16, hash map", NoBar, LibraryGet(), MapGet);
    AddRow("text set, last of 16, hash map", NoBar, LibrarySetText(), MapSet);
    AddRow("16 properties copied, hash map", NoBar, LibraryCopy(), MapCopy);
}
