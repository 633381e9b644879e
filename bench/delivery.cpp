// SPDX-License-Identifier: MIT
// Rows that pass an object down a chain, and to the pads of a tee.
#include "handwritten.h"
#include "peers.h"

#include <fwlib/fwlib.h>

#include <memory>

// Apart from the functions that it calls, which the compiler would otherwise guess and copy into the loop.
int Fork::Arrived(void* pObject, unsigned short) {
    int iResult = 1;
    for (unsigned short b2 = 0; iResult && b2 < EndCount(); ++b2) {
        const SourceEnd* const pEnd = End(b2);
        iResult = pEnd ? pEnd->Push(pObject) : 0;
    }
    return iResult;
}

namespace {

using namespace VESK;

constexpr double ChainBar = sizeof(void*) == 8 ? 1.10 : 1.80;

// Elements as a user writes them: with a pad that the base owns, and with one that the element holds in
// itself.
class Pass final : public EObject {
public:
    int Initialize() override {
        m_pSource = new SOURCEPAD(this);
        return AddSinkPad(new SINKPAD(this, 0)) && AddSourcePad(m_pSource);
    }
    int DataArrived(QObject* pObject, Byte2Type) override { return m_pSource->Push(pObject); }

private:
    SOURCEPAD* m_pSource = nullptr;
};

class FlatPass final : public EObject {
public:
    int Initialize() override { return AddSinkPad(new SINKPAD(this, 0)); }
    int DataArrived(QObject* pObject, Byte2Type) override { return m_cSource.Push(pObject); }
    SOURCEPAD* GetSourcePad(Byte2Type b2Position) override { return b2Position < 1 ? &m_cSource : nullptr; }

private:
    SOURCEPAD m_cSource{this};
};

class Swallow final : public EObject {
public:
    int Initialize() override { return AddSinkPad(new SINKPAD(this, 0)); }
    int DataArrived(QObject*, Byte2Type) override { return 1; }
};

template <class Pad>
void PushObjects(benchmark::State& cState, Pad& cFirst) {
    QObject cObject;
    if (!cFirst.Push(&cObject)) {
        cState.SkipWithError("the object did not arrive");
    }
    for (auto _ : cState) {
        benchmark::DoNotOptimize(cFirst.Push(&cObject));
    }
}

// A chain of that many elements, the last of which swallows.
template <class Element>
void LibraryChain(benchmark::State& cState, int iLength) {
    std::vector<std::unique_ptr<EObject>> cElements;
    SOURCEPAD cFirst(nullptr);
    SOURCEPAD* pFrom = &cFirst;
    for (int i = 0; i < iLength; ++i) {
        cElements.emplace_back(i + 1 < iLength ? static_cast<EObject*>(new Element) : new Swallow);
        cElements.back()->Initialize();
        pFrom->m_pSinkPad = cElements.back()->GetSinkPad(0);
        pFrom = cElements.back()->GetSourcePad(0);
    }
    PushObjects(cState, cFirst);
}

template <class Forward>
void HandwrittenChain(benchmark::State& cState, int iLength) {
    std::vector<std::unique_ptr<Node>> cNodes;
    SourceEnd cFirst;
    SourceEnd* pFrom = &cFirst;
    for (int i = 0; i < iLength; ++i) {
        cNodes.emplace_back(i + 1 < iLength ? static_cast<Node*>(new Forward) : new Swallower);
        pFrom->pPeer = &cNodes.back()->cSink;
        pFrom = cNodes.back()->End(0);
    }
    PushObjects(cState, cFirst);
}

void LibraryTee(benchmark::State& cState, Byte2Type b2Pads) {
    ETee cTee;
    cTee.m_cProperties.SetProperty(Key::TotalSourcePads, b2Pads, Section::Standard);
    cTee.Initialize();
    std::vector<std::unique_ptr<Swallow>> cEnds;
    for (Byte2Type b2 = 0; b2 < b2Pads; ++b2) {
        cEnds.push_back(std::make_unique<Swallow>());
        cEnds.back()->Initialize();
        cTee.GetSourcePad(b2)->m_pSinkPad = cEnds.back()->GetSinkPad(0);
    }
    SOURCEPAD cFirst(nullptr);
    cFirst.m_pSinkPad = cTee.GetSinkPad(0);
    PushObjects(cState, cFirst);
}

void HandwrittenTee(benchmark::State& cState, Byte2Type b2Pads) {
    const auto pFork = std::make_unique<Fork>();
    pFork->cSources.resize(b2Pads);
    std::vector<std::unique_ptr<Swallower>> cEnds;
    for (SourceEnd& cSource : pFork->cSources) {
        cEnds.push_back(std::make_unique<Swallower>());
        cSource.pPeer = &cEnds.back()->cSink;
    }
    SourceEnd cFirst;
    cFirst.pPeer = &pFork->cSink;
    PushObjects(cState, cFirst);
}

} // namespace

Measured LibraryChainOf(int iLength) {
    return [iLength](benchmark::State& cState) { LibraryChain<FlatPass>(cState, iLength); };
}

Measured LibraryTapsOf(int iLength) {
    return [iLength](benchmark::State& cState) { LibraryChain<EPassthrough>(cState, iLength); };
}

void AddDeliveryRows() {
    for (const int iLength : {3, 16}) {
        const std::string Chain = "chain of " + std::to_string(iLength);
        const auto Flat = [iLength](benchmark::State& cState) {
            HandwrittenChain<FlatForwarder>(cState, iLength);
        };
        AddRow(
            Chain + ", pads apart", ChainBar,
            [iLength](benchmark::State& cState) { LibraryChain<Pass>(cState, iLength); },
            [iLength](benchmark::State& cState) { HandwrittenChain<Forwarder>(cState, iLength); });
        AddRow(
            Chain + ", pads inside", ChainBar,
            [iLength](benchmark::State& cState) { LibraryChain<FlatPass>(cState, iLength); }, Flat);
        AddRow(
            Chain + ", EPassthrough", 1.80,
            [iLength](benchmark::State& cState) { LibraryChain<EPassthrough>(cState, iLength); }, Flat);
    }
    for (const Byte2Type b2Pads : {Byte2Type{2}, Byte2Type{16}}) {
        AddRow(
            "ETee of " + std::to_string(b2Pads), 1.15,
            [b2Pads](benchmark::State& cState) { LibraryTee(cState, b2Pads); },
            [b2Pads](benchmark::State& cState) { HandwrittenTee(cState, b2Pads); });
    }
}
