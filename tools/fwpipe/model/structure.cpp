// SPDX-License-Identifier: MIT
#include "structure.h"

#include "graph.h"
#include "nearest.h"
#include "settings.h"

#include <algorithm>
#include <cstddef>

namespace FwPipe {

namespace {

using ElementPtr = std::unique_ptr<Element>;

class Structure {
public:
    Structure(Pipeline& cPipeline, bool bInner, bool bPart, Diagnoses& cDiagnoses)
        : m_cPipeline(cPipeline), m_bInner(bInner), m_bPart(bPart), m_cDiagnoses(cDiagnoses) {}

    void Check() {
        for (const ElementPtr& pElement : m_cPipeline.cElements) {
            if (pElement->pNested) {
                Structure(*pElement->pNested, true, false, m_cDiagnoses).Check();
                TakePads(*pElement);
            }
            Complete(*pElement, m_cDiagnoses);
        }
        CheckSink();
        m_iSource = Named(m_cPipeline.cSource);
        for (const Connection& cConnection : m_cPipeline.cConnections) {
            CheckPad(cConnection.cFrom, true);
            CheckPad(cConnection.cTo, false);
        }
        const Graph cGraph(m_cPipeline);
        for (const Connection& cConnection : m_cPipeline.cConnections) {
            TellReplaced(cConnection);
        }
        TellLoops(cGraph);
        if (!m_cPipeline.cConnections.empty()) {
            TellUnnamed();
        }
        if (m_cDiagnoses.ErrorsIn(m_cPipeline.pFile) == 0) {
            TellUnused(cGraph);
        }
    }

private:
    Element& At(int i) const { return *m_cPipeline.cElements[static_cast<std::size_t>(i)]; }

    // A nested pipeline has the pads of two of its elements.
    static void TakePads(Element& cElement) {
        const Pipeline& cNested = *cElement.pNested;
        const int iSink = cNested.Find(cNested.cSink.cText);
        const int iSource = cNested.Find(cNested.cSource.cText);
        const auto Of = [&cNested](int i) -> const Element& {
            return *cNested.cElements[static_cast<std::size_t>(i)];
        };
        cElement.iSinkPads = iSink >= 0 ? Of(iSink).iSinkPads : cNested.bSinkLine ? PadsUnknown : 0;
        cElement.iSourcePads = iSource >= 0 ? Of(iSource).iSourcePads : cNested.bSourceLine ? PadsUnknown : 0;
        cElement.bMayOriginate = iSink >= 0 ? Of(iSink).bMayOriginate : cNested.bSinkLine;
    }

    // The element that a `sink` or `source` line names, or -1; an unknown name is reported.
    int Named(const Token& cName) {
        const int iFound = m_cPipeline.Find(cName.cText);
        if (iFound < 0 && !cName.cText.empty()) {
            m_cDiagnoses.Error(cName.cSpot, "unknown-element", "no element is named \"" + cName.cText + '"',
                               Nearest(cName.cText, m_cPipeline.Names()));
        }
        return iFound;
    }

    std::string Producers() const {
        std::string cNames;
        for (const ElementPtr& pElement : m_cPipeline.cElements) {
            const bool bProducer = pElement->bMayOriginate && (pElement->pDescription || pElement->pNested);
            if (bProducer && pElement->bNamed) {
                cNames += (cNames.empty() ? "" : ", ") + pElement->Shown();
            }
        }
        return cNames;
    }

    void CheckSink() {
        m_iSink = Named(m_cPipeline.cSink);
        if (m_bInner || m_bPart) {
            return;
        }
        if (!m_cPipeline.bSinkLine) {
            const std::string cNames = Producers();
            m_cDiagnoses.Error(m_cPipeline.cLast, "no-sink",
                               "no sink line names the element that runs" +
                                   (cNames.empty() ? "" : "; these could: " + cNames));
        } else if (m_iSink >= 0 && At(m_iSink).pNested && !At(m_iSink).pNested->bSinkLine) {
            m_cDiagnoses.Error(At(m_iSink).pNested->cLast, "no-sink",
                               "no sink line names the element that runs, and " + *m_cPipeline.pFile +
                                   " runs this file");
        } else if (m_iSink >= 0 && !At(m_iSink).bMayOriginate) {
            const std::string cNames = Producers();
            m_cDiagnoses.Error(m_cPipeline.cSink.cSpot, "not-a-producer",
                               At(m_iSink).Shown() + " sends nothing by itself" +
                                   (cNames.empty() ? "" : "; these do: " + cNames));
        }
    }

    void CheckPad(const Pad& cPad, bool bSource) {
        const int iPads = cPad.iElement < 0 ? PadsUnknown
                          : bSource         ? At(cPad.iElement).iSourcePads
                                            : At(cPad.iElement).iSinkPads;
        if (iPads == PadsUnknown || cPad.cNumber.cText.empty() || static_cast<int>(cPad.uNumber) < iPads) {
            return;
        }
        const std::string cKind = bSource ? "source pad" : "sink pad";
        m_cDiagnoses.Error(cPad.cNumber.cSpot, "unknown-pad",
                           At(cPad.iElement).Shown() + " has no " + cKind + ' ' +
                               std::to_string(cPad.uNumber) +
                               (iPads == 0   ? ": it has none"
                                : iPads == 1 ? ": only 0"
                                             : ": only 0 to " + std::to_string(iPads - 1)));
    }

    void TellReplaced(const Connection& cConnection) {
        const std::pair<int, unsigned int> cFrom(cConnection.cFrom.iElement, cConnection.cFrom.uNumber);
        if (cFrom.first < 0 || cConnection.cTo.iElement < 0) {
            return;
        }
        const auto [Found, bFirst] = m_cFirst.emplace(cFrom, &cConnection);
        if (!bFirst) {
            m_cDiagnoses.Warning(cConnection.cLine, "replaced-connection",
                                 "source pad " + std::to_string(cFrom.second) + " of " +
                                     At(cFrom.first).Shown() + " is connected in line " +
                                     std::to_string(Found->second->cLine.uLine) +
                                     " already; that connection is lost");
            Found->second = &cConnection;
        }
    }

    void TellLoops(const Graph& cGraph) {
        for (const std::vector<int>& cLoop : cGraph.Loops()) {
            std::string cNames;
            const Connection* pLast = nullptr;
            for (int iElement : cLoop) {
                cNames += (cNames.empty() ? "" : ", ") + At(iElement).Shown();
                for (const Connection* p : cGraph.From(iElement)) {
                    const bool bInside = std::binary_search(cLoop.begin(), cLoop.end(), p->cTo.iElement);
                    pLast = bInside && (!pLast || p->cLine.uLine > pLast->cLine.uLine) ? p : pLast;
                }
            }
            m_cDiagnoses.Warning(pLast->cLine, "endless-loop",
                                 "objects come back to the same element: " + cNames);
        }
    }

    void TellUnnamed() {
        for (const ElementPtr& pElement : m_cPipeline.cElements) {
            if (!pElement->bNamed) {
                m_cDiagnoses.Warning(pElement->cLine, "unnamed-element",
                                     pElement->cType.cText + " has no name, so it cannot be connected");
            }
        }
    }

    void TellUnused(const Graph& cGraph) {
        if (m_iSink < 0) {
            return;
        }
        const std::vector<bool> cReached = cGraph.ReachedFrom(m_iSink);
        for (int i = 0; i < static_cast<int>(cReached.size()); ++i) {
            const bool bReached = cReached[static_cast<std::size_t>(i)];
            if (bReached && i != m_iSource) {
                TellOpenPads(cGraph, i);
            } else if (!bReached && At(i).bNamed) {
                m_cDiagnoses.Warning(At(i).cLine, "unreachable-element",
                                     "no object from the sink element " + At(m_iSink).Shown() + " reaches " +
                                         At(i).Shown());
            }
        }
    }

    void TellOpenPads(const Graph& cGraph, int iElement) {
        const int iPads = At(iElement).iSourcePads;
        const int iOpen = iPads - static_cast<int>(cGraph.From(iElement).size());
        if (iOpen <= 0) {
            return;
        }
        unsigned int uFirst = 0; // the pads of the connections are in order
        for (const Connection* pConnection : cGraph.From(iElement)) {
            uFirst += pConnection->cFrom.uNumber == uFirst ? 1 : 0;
        }
        m_cDiagnoses.Warning(At(iElement).cLine, "unconnected-pad",
                             "source pad " + std::to_string(uFirst) + " of " + At(iElement).Shown() +
                                 (iOpen > 1 ? " and " + std::to_string(iOpen - 1) + " more" : "") +
                                 (iOpen > 1 ? " are not connected" : " is not connected"));
    }

    Pipeline& m_cPipeline;
    const bool m_bInner;
    const bool m_bPart;
    Diagnoses& m_cDiagnoses;
    int m_iSink = -1;
    int m_iSource = -1;
    std::map<std::pair<int, unsigned int>, const Connection*> m_cFirst;
};

} // namespace

void CheckStructure(Pipeline& cPipeline, bool bPart, Diagnoses& cDiagnoses) {
    Structure(cPipeline, false, bPart, cDiagnoses).Check();
}

} // namespace FwPipe
