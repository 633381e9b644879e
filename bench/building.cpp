// SPDX-License-Identifier: MIT
// Rows that build a chain of 1,000 elements from a pipe file.
#include "peers.h"

#include <fwlib/fwlib.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <unordered_map>
#include <vector>

namespace {

using namespace VESK;

constexpr int Elements = 1000;

// A pipe file of a chain, removed at the end.
class ChainFile {
public:
    explicit ChainFile(const std::string& Prefix) {
        char achPath[] = "/tmp/fwlib_bench.XXXXXX";
        const int iFile = mkstemp(achPath);
        std::FILE* const pFile = iFile < 0 ? nullptr : fdopen(iFile, "w");
        if (!pFile) {
            return;
        }
        m_Path = achPath;
        for (int i = 0; i < Elements; ++i) {
            std::fprintf(pFile, "element EPassthrough\nproperty Name %s%d\n", Prefix.c_str(), i);
        }
        for (int i = 1; i < Elements; ++i) {
            std::fprintf(pFile, "connect %s%d 0 %s%d 0\n", Prefix.c_str(), i - 1, Prefix.c_str(), i);
        }
        std::fclose(pFile);
    }
    ~ChainFile() { unlink(m_Path.c_str()); }
    ChainFile(const ChainFile&) = delete;
    ChainFile& operator=(const ChainFile&) = delete;

    char* Path() { return m_Path.data(); }

private:
    std::string m_Path; // empty when it could not be made
};

// The same lines with names that are hashed; it has room for what a chain needs and no more.
class HashedPipe {
public:
    explicit HashedPipe(FRAMEWORK& cFramework) : m_cFramework(cFramework) {}

    int Build(const char* pchPath) {
        std::printf("Processing pipe file: %s\n", pchPath);
        std::FILE* const pFile = std::fopen(pchPath, "r");
        if (!pFile) {
            return 0;
        }
        char achLine[256];
        int iResult = 1;
        while (iResult && std::fgets(achLine, sizeof achLine, pFile)) {
            char* apchTokens[16] = {};
            char* pchRest = nullptr;
            int i = 0;
            for (char* pch = strtok_r(achLine, " \t\r\n", &pchRest); pch && i < 15;
                 pch = strtok_r(nullptr, " \t\r\n", &pchRest)) {
                apchTokens[i++] = pch;
            }
            iResult = i == 0 || Execute(apchTokens);
        }
        std::fclose(pFile);
        return iResult;
    }

private:
    int Execute(char** ppchTokens) {
        if (std::strcmp(ppchTokens[0], "element") == 0) {
            std::printf("Instantiating %s\n", ppchTokens[1]);
            m_cElements.emplace_back(m_cFramework.CreateElement(ppchTokens[1]));
            return m_cElements.back() != nullptr;
        }
        if (std::strcmp(ppchTokens[0], "property") == 0) {
            std::printf("Setting property %s to %s\n", ppchTokens[1], ppchTokens[2]);
            m_cElements.back()->m_cProperties.SetProperty(ppchTokens[1], ppchTokens[2], Section::Standard);
            if (std::strcmp(ppchTokens[1], "Name") == 0) {
                m_cNames.emplace(ppchTokens[2], m_cElements.size() - 1);
            }
            return 1;
        }
        std::printf("Connecting %s(%s) -> %s(%s)\n", ppchTokens[1], ppchTokens[2], ppchTokens[3],
                    ppchTokens[4]);
        const auto pSource = m_cNames.find(ppchTokens[1]);
        const auto pSink = m_cNames.find(ppchTokens[3]);
        if (pSource == m_cNames.end() || pSink == m_cNames.end()) {
            return 0;
        }
        m_cConnections.push_back(std::make_unique<CONNECTION>(
            CONNECTION{static_cast<Byte2Type>(pSource->second), PadNumber(ppchTokens[2]),
                       static_cast<Byte2Type>(pSink->second), PadNumber(ppchTokens[4])}));
        return 1;
    }

    static Byte2Type PadNumber(const char* pchText) {
        return static_cast<Byte2Type>(std::strtol(pchText, nullptr, 10));
    }

    FRAMEWORK& m_cFramework;
    std::vector<std::unique_ptr<EObject>> m_cElements;
    std::unordered_map<std::string, std::size_t> m_cNames;
    std::vector<std::unique_ptr<CONNECTION>> m_cConnections;
};

// Times the building alone: what was built is destroyed off the clock.
template <class Pipe, class Make>
void TimeBuilding(benchmark::State& cState, const std::string& Prefix, const Make& make,
                  int (*pBuild)(Pipe&, char*)) {
    FRAMEWORK cFramework;
    ChainFile cFile(Prefix);
    if (!cFramework.AddPlugin(Text("libfwlib.so"))) {
        cState.SkipWithError("the built-in elements are not to be had");
    }
    for (auto _ : cState) {
        auto pPipe = make(cFramework);
        if (!pBuild(*pPipe, cFile.Path())) {
            cState.SkipWithError("the chain was not built");
        }
        cState.PauseTiming();
        pPipe.reset();
        cState.ResumeTiming();
    }
}

void LibraryBuild(benchmark::State& cState, const std::string& Prefix) {
    TimeBuilding<EPipeline>(
        cState, Prefix,
        [](FRAMEWORK& cFramework) {
            auto pPipe = std::make_unique<EPipeline>();
            pPipe->m_pFramework = &cFramework;
            return pPipe;
        },
        [](EPipeline& cPipe, char* pchPath) { return cPipe.BuildPipe(pchPath); });
}

void HashedBuild(benchmark::State& cState, const std::string& Prefix) {
    TimeBuilding<HashedPipe>(
        cState, Prefix, [](FRAMEWORK& cFramework) { return std::make_unique<HashedPipe>(cFramework); },
        [](HashedPipe& cPipe, char* pchPath) { return cPipe.Build(pchPath); });
}

} // namespace

Measured LibraryBuilding() {
    return [](benchmark::State& cState) { LibraryBuild(cState, "e"); };
}

void AddBuildingRows() {
    for (const char* const pchPrefix : {"e", "acquisition.stage."}) {
        AddRow(
            "pipe of 1000, names " + std::string(pchPrefix) + "0 ...", 10.0,
            [pchPrefix](benchmark::State& cState) { LibraryBuild(cState, pchPrefix); },
            [pchPrefix](benchmark::State& cState) { HashedBuild(cState, pchPrefix); });
    }
}
