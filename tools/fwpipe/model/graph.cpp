// SPDX-License-Identifier: MIT
#include "graph.h"

#include <algorithm>
#include <map>
#include <utility>

namespace FwPipe {

namespace {

std::size_t At(int i) {
    return static_cast<std::size_t>(i);
}

// Finds the groups of elements that reach each other, without recursion: a pipeline may be a chain of 65,535.
class Groups {
public:
    Groups(const Graph& cGraph, std::size_t uElements)
        : m_cGraph(cGraph), m_cNumber(uElements, 0), m_cLowest(uElements, 0), m_cHeld(uElements, false) {
        for (std::size_t u = 0; u < uElements; ++u) {
            if (m_cNumber[u] == 0) {
                Search(static_cast<int>(u));
            }
        }
    }

    std::vector<std::vector<int>> cAll;

private:
    struct Step {
        int iElement;
        std::size_t uNext; // the connection to follow next
    };

    void Enter(int iElement) {
        m_cNumber[At(iElement)] = m_cLowest[At(iElement)] = ++m_iLast;
        m_cHeld[At(iElement)] = true;
        m_cOpen.push_back(iElement);
        m_cSteps.push_back({iElement, 0});
    }

    void Leave() {
        const int iElement = m_cSteps.back().iElement;
        m_cSteps.pop_back();
        if (!m_cSteps.empty()) {
            int& iOuter = m_cLowest[At(m_cSteps.back().iElement)];
            iOuter = std::min(iOuter, m_cLowest[At(iElement)]);
        }
        if (m_cLowest[At(iElement)] == m_cNumber[At(iElement)]) {
            std::vector<int>& cGroup = cAll.emplace_back();
            int iMember;
            do {
                iMember = m_cOpen.back();
                m_cOpen.pop_back();
                m_cHeld[At(iMember)] = false;
                cGroup.push_back(iMember);
            } while (iMember != iElement);
        }
    }

    void Search(int iFirst) {
        Enter(iFirst);
        while (!m_cSteps.empty()) {
            Step& cStep = m_cSteps.back();
            const auto& cFrom = m_cGraph.From(cStep.iElement);
            if (cStep.uNext == cFrom.size()) {
                Leave();
                continue;
            }
            const int iElement = cStep.iElement;
            const int iTo = cFrom[cStep.uNext++]->cTo.iElement;
            if (m_cNumber[At(iTo)] == 0) {
                Enter(iTo);
            } else if (m_cHeld[At(iTo)]) {
                m_cLowest[At(iElement)] = std::min(m_cLowest[At(iElement)], m_cNumber[At(iTo)]);
            }
        }
    }

    const Graph& m_cGraph;
    std::vector<int> m_cNumber, m_cLowest; // as in Tarjan's algorithm; 0: not visited
    std::vector<bool> m_cHeld;
    std::vector<int> m_cOpen;
    std::vector<Step> m_cSteps;
    int m_iLast = 0;
};

} // namespace

Graph::Graph(Pipeline& cPipeline) : m_cFrom(cPipeline.cElements.size()) {
    std::map<std::pair<int, unsigned int>, Connection*> cLast;
    for (Connection& cConnection : cPipeline.cConnections) {
        if (cConnection.cFrom.iElement >= 0 && cConnection.cTo.iElement >= 0) {
            Connection*& pLast = cLast[{cConnection.cFrom.iElement, cConnection.cFrom.uNumber}];
            if (pLast) {
                pLast->bReplaced = true;
            }
            pLast = &cConnection;
        }
    }
    for (const auto& cPad : cLast) {
        m_cFrom[At(cPad.second->cFrom.iElement)].push_back(cPad.second);
    }
}

std::vector<bool> Graph::ReachedFrom(int iElement) const {
    std::vector<bool> cReached(m_cFrom.size(), false);
    std::vector<int> cPending{iElement};
    cReached[At(iElement)] = true;
    while (!cPending.empty()) {
        const int iSender = cPending.back();
        cPending.pop_back();
        for (const Connection* pConnection : From(iSender)) {
            const int iTo = pConnection->cTo.iElement;
            if (!cReached[At(iTo)]) {
                cReached[At(iTo)] = true;
                cPending.push_back(iTo);
            }
        }
    }
    return cReached;
}

std::vector<std::vector<int>> Graph::Loops() const {
    std::vector<std::vector<int>> cLoops;
    for (std::vector<int>& cGroup : Groups(*this, m_cFrom.size()).cAll) {
        const int iFirst = cGroup.front();
        const bool bSelf = std::any_of(From(iFirst).begin(), From(iFirst).end(),
                                       [iFirst](const Connection* p) { return p->cTo.iElement == iFirst; });
        if (cGroup.size() > 1 || bSelf) {
            std::sort(cGroup.begin(), cGroup.end());
            cLoops.push_back(std::move(cGroup));
        }
    }
    return cLoops;
}

} // namespace FwPipe
