// SPDX-License-Identifier: MIT
// A chain of elements as one would write it by hand, with no more to it than the same tests and virtual
// calls. The bodies of the virtual operations stand in a file of their own, out of the compiler's sight.
#ifndef FWLIB_BENCH_HANDWRITTEN_H
#define FWLIB_BENCH_HANDWRITTEN_H

#include <memory>
#include <vector>

struct Node;

struct SinkEnd {
    Node* pOwner;
    unsigned short b2Index;
};

struct Node {
    virtual ~Node() = default;
    virtual int Arrived(void* pObject, unsigned short b2Index) = 0;
    virtual unsigned short EndCount() = 0;
    virtual struct SourceEnd* End(unsigned short b2Position) = 0;

    SinkEnd cSink = {this, 0};
};

struct SourceEnd {
    SinkEnd* pPeer = nullptr;

    int Push(void* pObject) const {
        const SinkEnd* const pTo = pPeer;
        if (!pTo) {
            return 0;
        }
        Node* const pReceiver = pTo->pOwner;
        return pReceiver ? pReceiver->Arrived(pObject, pTo->b2Index) : 0;
    }
};

// Holds its source end by a pointer, as an element holds its pads.
struct Forwarder : Node {
    Forwarder();
    int Arrived(void* pObject, unsigned short b2Index) override;
    unsigned short EndCount() override;
    SourceEnd* End(unsigned short b2Position) override;

    std::unique_ptr<SourceEnd> pSource;
};

// Holds its source end in itself, which saves a step of the way from one object to the next.
struct FlatForwarder : Node {
    int Arrived(void* pObject, unsigned short b2Index) override;
    unsigned short EndCount() override;
    SourceEnd* End(unsigned short b2Position) override;

    SourceEnd cSource;
};

struct Swallower : Node {
    int Arrived(void* pObject, unsigned short b2Index) override;
    unsigned short EndCount() override;
    SourceEnd* End(unsigned short b2Position) override;
};

struct Fork : Node {
    int Arrived(void* pObject, unsigned short b2Index) override;
    unsigned short EndCount() override;
    SourceEnd* End(unsigned short b2Position) override;

    std::vector<SourceEnd> cSources;
};

#endif
