// SPDX-License-Identifier: MIT
// The element that originates a pipeline's data, and the number of objects that it sends.
//
// Counters are inserted after its connected source pads: one more virtual call for each object there, and no cost
// elsewhere. Pads that the element connects itself during a run are not counted.
#ifndef FWPIPE_ORIGIN_H
#define FWPIPE_ORIGIN_H

#include <list>
#include <memory>
#include <string>

namespace VESK {
class EObject;
class EPipeline;
} // namespace VESK

namespace FwPipe {

struct Deliveries {
    unsigned long long ullSent = 0;
    unsigned long long ullRefused = 0; // the part of them whose delivery returned 0
};

// Must outlive the pipeline, as an element may have copied a connection to a counter.
class Origin {
public:
    Origin();
    ~Origin();
    Origin(const Origin&) = delete;
    Origin& operator=(const Origin&) = delete;

    // Watch inserts the counters, Restore removes them. Watch needs an initialized pipeline; it does nothing if no
    // element is to run. Restore keeps connections that the element changed; it does nothing without the element.
    void Watch(VESK::EPipeline& cPipeline);
    void Restore(VESK::EPipeline& cPipeline);

    VESK::EObject* Living(const VESK::EPipeline& cPipeline) const; // the element, or null if it was destroyed

    const std::string& Name() const { return m_cName; } // for messages
    Deliveries Counted() const;                         // over all pads

    // Reports how many objects were refused. Returns true if there were any.
    bool TellRefused() const;

private:
    class Counter;

    VESK::EObject* m_pElement = nullptr;
    std::string m_cName;
    std::list<Counter> m_cCounters; // one for each pad
};

// Watches while it exists.
class OriginWatch {
public:
    OriginWatch(Origin& cOrigin, VESK::EPipeline& cPipeline);
    ~OriginWatch();
    OriginWatch(const OriginWatch&) = delete;
    OriginWatch& operator=(const OriginWatch&) = delete;

private:
    Origin& m_cOrigin;
    VESK::EPipeline& m_cPipeline;
};

} // namespace FwPipe

#endif
