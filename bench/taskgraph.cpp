// SPDX-License-Identifier: MIT
// Beside oneTBB: a message through serial nodes of its flow graph.
#include "peers.h"

#include <tbb/flow_graph.h>

#include <memory>
#include <vector>

namespace {

using Node = tbb::flow::function_node<void*, void*>;

constexpr int Batch = 1000; // messages that are put before the graph is waited for

Measured Graph(int iLength) {
    return [iLength](benchmark::State& cState) {
        tbb::flow::graph cGraph;
        std::vector<std::unique_ptr<Node>> cNodes;
        for (int i = 0; i < iLength; ++i) {
            cNodes.push_back(std::make_unique<Node>(cGraph, tbb::flow::serial, [](void* p) { return p; }));
            if (i > 0) {
                tbb::flow::make_edge(*cNodes[cNodes.size() - 2], *cNodes.back());
            }
        }
        while (cState.KeepRunningBatch(Batch)) {
            for (int i = 0; i < Batch; ++i) {
                cNodes.front()->try_put(&cGraph);
            }
            cGraph.wait_for_all();
        }
    };
}

} // namespace

void AddTbbRows() {
    for (const int iLength : {1, 3, 16}) {
        AddRow("chain of " + std::to_string(iLength) + ", oneTBB", iLength == 3 ? 1.0 / 40 : 1.0,
               LibraryChainOf(iLength), Graph(iLength));
    }
}
