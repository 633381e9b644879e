// SPDX-License-Identifier: MIT
#include "feedback.h"

#include "elements.h"
#include "message.h"

#include <fwlib/fwlib.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace FwPipe {

namespace {

struct Node {
    VESK::EObject* pElement;
    std::vector<std::size_t> cNext; // the elements that its source pads are connected to
    std::size_t uTried = 0;         // how many of them were tried
    enum { New, Open, Done } State = New;
};

// All elements except pipelines: the pads of a pipeline are those of inner elements, which have nodes of their own.
std::vector<Node> Connected(VESK::EPipeline& cPipeline) {
    std::vector<Node> cNodes;
    std::unordered_map<const VESK::SINKPAD*, std::size_t> cOwners;
    ForEach(cPipeline, [&](VESK::EObject& cElement) {
        if (!VESK::EPipeline::From(&cElement)) {
            const VESK::Byte4Type b4Pads = cElement.GetSinkPadCount();
            for (VESK::Byte4Type b4 = 0; b4 < b4Pads; ++b4) {
                cOwners.emplace(cElement.GetSinkPad(static_cast<VESK::Byte2Type>(b4)), cNodes.size());
            }
            cNodes.push_back({&cElement, {}});
        }
    });
    for (Node& cNode : cNodes) {
        const VESK::Byte4Type b4Pads = cNode.pElement->GetSourcePadCount();
        for (VESK::Byte4Type b4 = 0; b4 < b4Pads; ++b4) {
            const VESK::SOURCEPAD* const pPad =
                cNode.pElement->GetSourcePad(static_cast<VESK::Byte2Type>(b4));
            const auto It = pPad && pPad->m_pSinkPad ? cOwners.find(pPad->m_pSinkPad) : cOwners.end();
            if (It != cOwners.end()) {
                cNode.cNext.push_back(It->second);
            }
        }
    }
    return cNodes;
}

// The loop is the end of the path, from the element uBack on.
void Warn(const std::vector<Node>& cNodes, const std::vector<std::size_t>& cPath, std::size_t uBack) {
    std::string cNames;
    for (std::size_t u = cPath.size(); u-- > 0;) {
        cNames.insert(0, Shown(*cNodes[cPath[u]].pElement) + " -> ");
        if (cPath[u] == uBack) {
            break;
        }
    }
    cNames += Shown(*cNodes[uBack].pElement);
    Complain("warning: connections lead back to where they came from: " + cNames);
}

// Follows all connections from one element. Not recursive, as a chain of elements may be too long for the stack.
void Follow(std::vector<Node>& cNodes, std::size_t uFirst) {
    std::vector<std::size_t> cPath = {uFirst};
    cNodes[uFirst].State = Node::Open;
    while (!cPath.empty()) {
        Node& cNode = cNodes[cPath.back()];
        if (cNode.uTried == cNode.cNext.size()) {
            cNode.State = Node::Done;
            cPath.pop_back();
            continue;
        }
        const std::size_t uNext = cNode.cNext[cNode.uTried++];
        if (cNodes[uNext].State == Node::Open) {
            Warn(cNodes, cPath, uNext);
        } else if (cNodes[uNext].State == Node::New) {
            cNodes[uNext].State = Node::Open;
            cPath.push_back(uNext);
        }
    }
}

} // namespace

void WarnOfFeedback(VESK::EPipeline& cPipeline) {
    std::vector<Node> cNodes = Connected(cPipeline);
    for (std::size_t u = 0; u < cNodes.size(); ++u) {
        if (cNodes[u].State == Node::New) {
            Follow(cNodes, u);
        }
    }
}

} // namespace FwPipe
