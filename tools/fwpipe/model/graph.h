// SPDX-License-Identifier: MIT
// The way of objects between the elements of one pipeline.
#ifndef FWPIPE_MODEL_GRAPH_H
#define FWPIPE_MODEL_GRAPH_H

#include "model.h"

#include <vector>

namespace FwPipe {

// The connections that remain: those whose elements are known and which no later one replaces. Marks the others.
class Graph {
public:
    explicit Graph(Pipeline& cPipeline);

    // The connections that leave an element.
    const std::vector<const Connection*>& From(int iElement) const {
        return m_cFrom[static_cast<std::size_t>(iElement)];
    }

    // The elements that objects from this one reach, itself included.
    std::vector<bool> ReachedFrom(int iElement) const;

    // Elements that lead objects back to themselves: groups in which each element reaches every other.
    std::vector<std::vector<int>> Loops() const;

private:
    std::vector<std::vector<const Connection*>> m_cFrom;
};

} // namespace FwPipe

#endif
