// SPDX-License-Identifier: MIT
// Rows that record objects to a file, and read a file's lines.
#include "rows.h"

#include <fwlib/fwlib.h>

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace VESK;

constexpr int Objects = 2000; // of a file that is read
constexpr int Properties = 4; // of an object, besides its type

// A file in memory where the system has such a place, removed at the end.
class ScratchFile {
public:
    ScratchFile()
        : m_Path(access("/dev/shm", W_OK) == 0 ? "/dev/shm/fwlib_bench.XXXXXX" : "/tmp/fwlib_bench.XXXXXX") {
        const int iFile = mkstemp(m_Path.data());
        if (iFile >= 0) {
            close(iFile);
        }
    }
    ~ScratchFile() { unlink(m_Path.c_str()); }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    char* Path() { return m_Path.data(); }

private:
    std::string m_Path;
};

struct Recorded : QObject {
    Recorded() {
        for (int i = 0; i < Properties; ++i) {
            m_cProperties.SetProperty(("parameter" + std::to_string(i)).data(), 1000 * i + 7,
                                      Section::Standard);
        }
    }
};

// What a writer is given, call by call.
class Calls final : public SWrite {
public:
    Byte4Type WriteData(char* pchData, Byte4Type b4Length) override {
        cTexts.emplace_back(pchData, b4Length);
        return b4Length;
    }
    std::vector<std::string> cTexts;
};

void Record(benchmark::State& cState, char* pchPath, int iStrict) {
    ESerialize cElement;
    cElement.m_cProperties.SetProperty(Key::Filename, pchPath, Section::Standard);
    cElement.m_cProperties.SetProperty(Key::Strict, iStrict, Section::Standard);
    cElement.Initialize();
    Recorded cObject;
    for (auto _ : cState) {
        if (!cElement.DataArrived(&cObject, 0)) {
            cState.SkipWithError("an object was lost");
            return;
        }
    }
}

void LibraryRecord(benchmark::State& cState) {
    ScratchFile cFile;
    Record(cState, cFile.Path(), 0);
}

void StrictRecord(benchmark::State& cState) {
    ScratchFile cFile;
    Record(cState, cFile.Path(), 1);
}

void BareRecord(benchmark::State& cState) {
    Recorded cObject;
    Calls cCalls;
    cObject.Serialize(&cCalls);
    ScratchFile cFile;
    const int iFile = open(cFile.Path(), O_WRONLY | O_TRUNC);
    for (auto _ : cState) {
        for (const std::string& Text : cCalls.cTexts) {
            if (write(iFile, Text.data(), Text.size()) < 0) {
                cState.SkipWithError("not written");
                return;
            }
        }
    }
    close(iFile);
}

// A file of objects, once in the process.
char* RecordedPath() {
    static ScratchFile cFile;
    static const bool bWritten = [] {
        SFileWrite cWriter(cFile.Path(), 0);
        Recorded cObject;
        for (int i = 0; i < Objects; ++i) {
            cObject.Serialize(&cWriter);
        }
        return true;
    }();
    return bWritten ? cFile.Path() : nullptr;
}

// A file of lines of so many characters or, with 0, of objects.
char* LinesPath(int iLength) {
    static ScratchFile acFiles[2];
    if (iLength == 0) {
        return RecordedPath();
    }
    ScratchFile& cFile = acFiles[iLength > 20];
    struct stat Status;
    if (stat(cFile.Path(), &Status) != 0 || Status.st_size == 0) {
        const std::string Line = std::string(static_cast<std::size_t>(iLength), 'x') + "\n";
        SFileWrite cWriter(cFile.Path(), 0);
        for (int i = 0; i < Objects * Properties; ++i) {
            cWriter.WriteData(Text(Line.c_str()), static_cast<Byte4Type>(Line.size()));
        }
    }
    return cFile.Path();
}

void LibraryLines(benchmark::State& cState, char* pchPath) {
    for (auto _ : cState) {
        SFileRead cReader(pchPath);
        while (const char* const pchLine = cReader.ReadLine()) {
            benchmark::DoNotOptimize(pchLine);
        }
    }
}

void BareLines(benchmark::State& cState, char* pchPath) {
    for (auto _ : cState) {
        std::FILE* const pFile = std::fopen(pchPath, "r");
        char* pchLine = nullptr;
        std::size_t uSize = 0;
        for (ssize_t i = 0; (i = getline(&pchLine, &uSize, pFile)) > 0;) {
            pchLine[i - 1] = '\0';
            benchmark::DoNotOptimize(pchLine);
        }
        std::free(pchLine);
        std::fclose(pFile);
    }
}

void Replay(benchmark::State& cState, int iStrict) {
    FRAMEWORK cFramework;
    cFramework.AddPlugin(Text("libfwlib.so"));
    EDevNull cSink;
    cSink.Initialize();
    for (auto _ : cState) {
        EDeserialize cElement;
        cElement.m_pFramework = &cFramework;
        cElement.m_cProperties.SetProperty(Key::Filename, RecordedPath(), Section::Standard);
        cElement.m_cProperties.SetProperty(Key::Strict, iStrict, Section::Standard);
        cElement.Initialize();
        cElement.GetSourcePad(0)->m_pSinkPad = cSink.GetSinkPad(0);
        int iReplayed = 0;
        while (cElement.Run()) {
            ++iReplayed;
        }
        if (iReplayed != Objects) {
            cState.SkipWithError("not every object was replayed");
            return;
        }
    }
}

} // namespace

void AddRecordingRows() {
    AddRow("object recorded", 1.15, LibraryRecord, BareRecord);
    AddRow("object recorded strictly, to the default", 0.50, StrictRecord, LibraryRecord);
    for (const int iLength : {0, 20, 60}) {
        const std::string Name =
            iLength > 0 ? "lines of " + std::to_string(iLength) + " characters" : "lines of 2000 objects";
        AddRow(
            Name + ", getline", 1.15,
            [iLength](benchmark::State& cState) { LibraryLines(cState, LinesPath(iLength)); },
            [iLength](benchmark::State& cState) { BareLines(cState, LinesPath(iLength)); });
    }
    AddRow(
        "2000 objects replayed, getline", NoBar, [](benchmark::State& cState) { Replay(cState, 0); },
        [](benchmark::State& cState) { BareLines(cState, RecordedPath()); });
    AddRow(
        "2000 objects replayed strictly, getline", NoBar, [](benchmark::State& cState) { Replay(cState, 1); },
        [](benchmark::State& cState) { BareLines(cState, RecordedPath()); });
}
