// SPDX-License-Identifier: MIT
#include "origin.h"

#include "elements.h"
#include "message.h"

#include <fwlib/fwlib.h>

#include <algorithm>

namespace FwPipe {

// An element that is inserted between a source pad and its sink pad.
class Origin::Counter final : public VESK::EObject {
public:
    explicit Counter(VESK::SOURCEPAD& cFrom)
        : m_cSinkPad(this, cFrom.m_pSinkPad->m_b2Index), m_cOnward(nullptr) {
        m_cOnward.m_pSinkPad = cFrom.m_pSinkPad;
        cFrom.m_pSinkPad = &m_cSinkPad;
    }

    // Not inlined: the compiler would expect that a counter follows a counter, and test for it at each object.
    [[gnu::noinline]] int DataArrived(VESK::QObject* pObject, VESK::Byte2Type) override {
        ++m_cCounted.ullSent;
        const int iTaken = m_cOnward.Push(pObject);
        if (!iTaken) {
            ++m_cCounted.ullRefused;
        }
        return iTaken;
    }

    // Through these, EndRuns finds the elements that receive the objects.
    VESK::Byte2Type GetSourcePadCount() override { return 1; }
    VESK::SOURCEPAD* GetSourcePad(VESK::Byte2Type b2Position) override {
        return b2Position == 0 ? &m_cOnward : nullptr;
    }

    bool Feeds(const VESK::SOURCEPAD& cFrom) const { return cFrom.m_pSinkPad == &m_cSinkPad; }
    VESK::SINKPAD* Onward() const { return m_cOnward.m_pSinkPad; }
    const Deliveries& Counted() const { return m_cCounted; }

private:
    VESK::SINKPAD m_cSinkPad;
    VESK::SOURCEPAD m_cOnward; // has no owner, as it is always connected
    Deliveries m_cCounted;
};

namespace {

template <class Call>
void ForEachConnected(VESK::EObject& cElement, const Call& cCall) {
    const VESK::Byte4Type b4Count = cElement.GetSourcePadCount();
    for (VESK::Byte4Type b4 = 0; b4 < b4Count; ++b4) {
        VESK::SOURCEPAD* const pPad = cElement.GetSourcePad(static_cast<VESK::Byte2Type>(b4));
        if (pPad && pPad->m_pSinkPad) {
            cCall(*pPad);
        }
    }
}

} // namespace

Origin::Origin() = default;

Origin::~Origin() = default;

void Origin::Watch(VESK::EPipeline& cPipeline) {
    m_pElement = Originator(cPipeline);
    if (!m_pElement) {
        return;
    }
    m_cName = Shown(*m_pElement);
    ForEachConnected(*m_pElement, [this](VESK::SOURCEPAD& cPad) { m_cCounters.emplace_back(cPad); });
}

void Origin::Restore(VESK::EPipeline& cPipeline) {
    VESK::EObject* const pElement = Living(cPipeline);
    if (!pElement) {
        return;
    }
    // The element may have replaced pads or connections.
    auto It = m_cCounters.begin();
    ForEachConnected(*pElement, [&](VESK::SOURCEPAD& cPad) {
        if (It == m_cCounters.end() || !It->Feeds(cPad)) {
            It = std::find_if(m_cCounters.begin(), m_cCounters.end(),
                              [&cPad](const Counter& cCounter) { return cCounter.Feeds(cPad); });
        }
        if (It != m_cCounters.end()) {
            cPad.m_pSinkPad = It->Onward();
            ++It;
        }
    });
}

VESK::EObject* Origin::Living(const VESK::EPipeline& cPipeline) const {
    return m_pElement && Has(cPipeline, m_pElement) ? m_pElement : nullptr;
}

Deliveries Origin::Counted() const {
    Deliveries cSum;
    for (const Counter& cCounter : m_cCounters) {
        cSum.ullSent += cCounter.Counted().ullSent;
        cSum.ullRefused += cCounter.Counted().ullRefused;
    }
    return cSum;
}

bool Origin::TellRefused() const {
    const Deliveries cCounted = Counted();
    if (cCounted.ullRefused > 0) {
        Complain(std::to_string(cCounted.ullRefused) + " of " + std::to_string(cCounted.ullSent) +
                 " objects from " + m_cName + " were refused downstream");
    }
    return cCounted.ullRefused > 0;
}

OriginWatch::OriginWatch(Origin& cOrigin, VESK::EPipeline& cPipeline)
    : m_cOrigin(cOrigin), m_cPipeline(cPipeline) {
    m_cOrigin.Watch(m_cPipeline);
}

OriginWatch::~OriginWatch() {
    m_cOrigin.Restore(m_cPipeline);
}

} // namespace FwPipe
