// SPDX-License-Identifier: MIT
// fwlib_scale: the library at the ends of its ranges. Prints what it saw and exits with 1 when a promise is broken.
//
//   fwlib_scale FOLDER    needs about 5 GiB there, for recordings
#include <fwlib/fwlib.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace VESK;

bool bKept = true;

void Tell(bool bHolds, const std::string& Line) {
    bKept &= bHolds;
    std::printf("%s: %s\n", Line.c_str(), bHolds ? "ok" : "BROKEN");
    std::fflush(stdout);
}

class Clock {
public:
    double Seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_Start).count();
    }

private:
    std::chrono::steady_clock::time_point m_Start = std::chrono::steady_clock::now();
};

std::string InSeconds(const Clock& cClock) {
    char achText[32];
    std::snprintf(achText, sizeof achText, "%.2f s", cClock.Seconds());
    return achText;
}

// Exact, where the resident memory also tells which pages the system has taken back for a while.
std::size_t HeapInUse() {
    const struct mallinfo2 Info = mallinfo2();
    return Info.uordblks + Info.hblkhd;
}

// Counts what arrives and compares the number that each object of an ESource carries.
class Count final : public EObject {
public:
    int Initialize() override { return AddSinkPad(new SINKPAD(this, 0)); }
    int DataArrived(QObject* pObject, Byte2Type) override {
        unsigned int uCount = 0;
        pObject->m_cProperties.GetProperty(Key::Count, &uCount, 0, Section::Standard);
        ullWrong += uCount != ullArrived % 1000;
        ++ullArrived;
        return 1;
    }
    unsigned long long ullArrived = 0;
    unsigned long long ullWrong = 0;
};

void Name(EObject& cElement, const char* pchName) {
    cElement.m_cProperties.SetProperty(Key::Name, Text(pchName), Section::Standard);
}

// A chain of the elements, named e0, e1 ..., the first of which runs.
std::unique_ptr<EPipeline> ChainOf(const std::vector<EObject*>& cElements, FRAMEWORK* pFramework) {
    auto pPipe = std::make_unique<EPipeline>();
    pPipe->m_cProperties.SetProperty(Key::SinkElement, Text("e0"), Section::Standard);
    for (std::size_t u = 0; u < cElements.size(); ++u) {
        const std::string Own = "e" + std::to_string(u);
        Name(*cElements[u], Own.c_str());
        cElements[u]->m_pFramework = pFramework;
        pPipe->AddElement(cElements[u]);
        if (u > 0) {
            std::string Before = "e" + std::to_string(u - 1);
            std::string Here = Own;
            pPipe->Connect(Before.data(), 0, Here.data(), 0);
        }
    }
    return pPipe->Initialize() ? std::move(pPipe) : nullptr;
}

void SendABillion() {
    auto* const pCount = new Count;
    const auto pPipe = ChainOf({new ESource, new EPassthrough, pCount}, nullptr);
    bool bRun = pPipe != nullptr;
    for (int i = 0; i < 1000 && bRun; ++i) {
        bRun = pPipe->Run();
    }
    const std::size_t uBefore = HeapInUse();
    const Clock cClock;
    for (int i = 1000; i < 1000000 && bRun; ++i) {
        bRun = pPipe->Run();
    }
    const std::size_t uAfter = HeapInUse(); // before the text of the report is on it
    Tell(bRun && pCount->ullArrived == 1000000000ULL && pCount->ullWrong == 0 && uAfter == uBefore,
         std::to_string(pCount->ullArrived) + " objects, " + std::to_string(uBefore) +
             " bytes of heap before and " + std::to_string(uAfter) + " after, " + InSeconds(cClock));
}

template <class Element>
Element* OnFile(const std::string& Path) {
    auto* const pElement = new Element;
    pElement->m_cProperties.SetProperty(Key::Filename, Text(Path.c_str()), Section::Standard);
    pElement->m_cProperties.SetProperty(Key::Strict, 1, Section::Standard);
    return pElement;
}

// Ten million objects, recorded, replayed, and recorded again: the same bytes.
void RecordTenMillion(const std::string& Folder, FRAMEWORK& cFramework) {
    const std::string First = Folder + "/first";
    const std::string Second = Folder + "/second";
    const Clock cClock;
    {
        const auto pRecord = ChainOf({new ESource, OnFile<ESerialize>(First)}, nullptr);
        for (int i = 0; i < 10000 && pRecord; ++i) {
            pRecord->Run();
        }
    }
    auto* const pCount = new Count;
    auto* const pSecond = OnFile<ESerialize>(Second);
    pSecond->m_cProperties.SetProperty(Key::Passthrough, 1, Section::Standard);
    {
        const auto pReplay = ChainOf({OnFile<EDeserialize>(First), pSecond, pCount}, &cFramework);
        while (pReplay && pReplay->Run()) {
        }
        const std::string Compare = "cmp -s " + First + " " + Second;
        Tell(pCount->ullArrived == 10000000 && pCount->ullWrong == 0 && std::system(Compare.c_str()) == 0,
             std::to_string(pCount->ullArrived) + " objects recorded and replayed equal, " +
                 InSeconds(cClock));
    }
    unlink(First.c_str());
    unlink(Second.c_str());
}

// 1,100 objects of 4 MiB: a file across 2 and 4 GiB. Cut in its last object, it is replayed to the one before, and
// the offset is told.
void CrossFourGiB(const std::string& Folder, FRAMEWORK& cFramework) {
    constexpr int Objects = 1100;
    const std::string Path = Folder + "/large";
    const std::string Image(4 << 20, 'x');
    const Clock cClock;
    {
        ESerialize* const pRecorder = OnFile<ESerialize>(Path);
        const std::unique_ptr<EObject> pOwner(pRecorder);
        QObject cObject;
        cObject.m_cProperties.SetProperty(Text("Image"), Text(Image.c_str()), Section::Standard);
        int iStored = pRecorder->Initialize();
        for (int i = 0; i < Objects && iStored; ++i) {
            cObject.m_cProperties.SetProperty(Key::Count, i % 1000, Section::Standard);
            iStored = pRecorder->DataArrived(&cObject, 0);
        }
        Tell(iStored, "a recording across 4 GiB");
    }
    std::FILE* const pFile = std::fopen(Path.c_str(), "r");
    const bool bFar = pFile && fseeko(pFile, 0, SEEK_END) == 0;
    const off_t iEnd = bFar ? ftello(pFile) : 0;
    std::fclose(pFile);
    auto* const pCount = new Count;
    const auto pReplay = ChainOf({OnFile<EDeserialize>(Path), pCount}, &cFramework);
    const bool bCut = truncate(Path.c_str(), iEnd - 5) == 0;
    while (pReplay && pReplay->Run()) {
    }
    Tell(bCut && pCount->ullArrived == Objects - 1 && pCount->ullWrong == 0,
         std::to_string(pCount->ullArrived) + " objects of " + std::to_string(iEnd) + " bytes replayed, " +
             InSeconds(cClock));
    unlink(Path.c_str());
}

// A pipeline of as many elements, with as many connections as there can be, built and taken apart.
void BuildLargePipe(int iElements) {
    const Clock cClock;
    std::vector<EObject*> cElements;
    for (int i = 0; i < iElements; ++i) {
        cElements.push_back(new EPassthrough);
    }
    const auto pPipe = ChainOf(cElements, nullptr);
    const int iConnections = iElements - 1 < 65520 ? iElements - 1 : 65520;
    Tell(pPipe && pPipe->m_iElementCount == iElements && pPipe->m_b2ConnectionCount == iConnections,
         "a pipeline of " + std::to_string(iElements) + " elements and " + std::to_string(iConnections) +
             " connections, " + InSeconds(cClock));
}

// One more than the most is refused, and what is there stays.
void FillTables() {
    constexpr int Most = 65520;
    Clock cPads;
    ETee cTee;
    int iPads = 0;
    for (SOURCEPAD* pPad = new SOURCEPAD(&cTee); iPads <= Most; pPad = new SOURCEPAD(&cTee), ++iPads) {
        if (!cTee.AddSourcePad(pPad)) {
            delete pPad;
            break;
        }
    }
    Tell(iPads == Most && cTee.GetSourcePadCount() == Most,
         std::to_string(iPads) + " pads of an element, " + InSeconds(cPads));
    Clock cProperties;
    PROPERTIES cList;
    int iProperties = 0;
    while (iProperties <= Most &&
           cList.SetProperty(("key" + std::to_string(iProperties)).data(), iProperties, Section::Standard)) {
        ++iProperties;
    }
    int iLast = 0;
    Tell(iProperties == Most && cList.GetProperty(Text("key65519"), &iLast, 0, Section::Standard) &&
             iLast == 65519,
         std::to_string(iProperties) + " properties of a list, " + InSeconds(cProperties));
}

// Pipe files that build each other, a thousand deep.
void NestDeeply(const std::string& Folder, FRAMEWORK& cFramework) {
    constexpr int Levels = 1000;
    std::string Path;
    for (int i = Levels; i-- > 0;) {
        const std::string Inner = Path;
        Path = Folder + "/nested" + std::to_string(i);
        std::FILE* const pFile = std::fopen(Path.c_str(), "w");
        if (pFile && !Inner.empty()) {
            std::fprintf(pFile, "pipe %s\nproperty Name inner\n", Inner.c_str());
        }
        if (pFile) {
            std::fclose(pFile);
        }
    }
    const Clock cClock;
    EPipeline cPipe;
    cPipe.m_pFramework = &cFramework;
    const int iBuilt = cPipe.BuildPipe(Path.data());
    for (int i = 0; i < Levels; ++i) {
        unlink((Folder + "/nested" + std::to_string(i)).c_str());
    }
    Tell(iBuilt == 0, "1,000 levels of nesting are refused, " + InSeconds(cClock));
}

} // namespace

int main(int iCount, char** ppchArguments) {
    if (iCount != 2) {
        std::fprintf(stderr, "usage: fwlib_scale FOLDER\n");
        return 2;
    }
    const std::string Folder = ppchArguments[1];
    FRAMEWORK cFramework;
    Tell(cFramework.AddPlugin(Text("libfwlib.so")), "the built-in elements");
    SendABillion();
    FillTables();
    for (const int iElements : {1000, 4000, 16000, 65535}) {
        BuildLargePipe(iElements);
    }
    NestDeeply(Folder, cFramework);
    CrossFourGiB(Folder, cFramework);
    RecordTenMillion(Folder, cFramework);
    return !bKept;
}
