// SPDX-License-Identifier: MIT
// The element that originates a pipeline's data, and what becomes of the objects that it sends.
//
// Its connected source pads are led past a counter: one more virtual call for each object there, and none anywhere
// else. A pad that the element itself connects while it runs leaves the counter aside.
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
    unsigned long long ullRefused = 0; // of them: the delivery returned 0
};

// Outlives the pipeline, since an element may have copied a connection.
class Origin {
public:
    Origin();
    ~Origin();
    Origin(const Origin&) = delete;
    Origin& operator=(const Origin&) = delete;

    // Between the two every delivery is counted. Watch wants the pipeline initialized; it finds nothing when no
    // element is to run.
    void Watch(VESK::EPipeline& cPipeline);
    void
    Restore(VESK::EPipeline& cPipeline); // connects the pads, if the element still lives, as they would be

    VESK::EObject* Living(const VESK::EPipeline& cPipeline) const; // the element, or null

    const std::string& Name() const { return m_cName; } // for messages
    Deliveries Counted() const;                         // over all pads

    // Says how many objects were refused. True when there were any.
    bool TellRefused() const;

private:
    class Counter;

    VESK::EObject* m_pElement = nullptr;
    std::string m_cName;
    std::list<Counter> m_cCounters; // one for each pad
};

// Watches while it lives, whatever ends it.
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
