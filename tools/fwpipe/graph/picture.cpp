// SPDX-License-Identifier: MIT
#include "picture.h"

#include "../model/graph.h"

#include <algorithm>
#include <set>
#include <utility>

namespace FwPipe {

namespace {

class Drawing {
public:
    explicit Drawing(Picture& cPicture) : m_cPicture(cPicture) {}

    void AddPipeline(Pipeline& cPipeline, int iParent, bool bReached) {
        const int iSink = cPipeline.Find(cPipeline.cSink.cText);
        const std::vector<bool> cReached = iSink < 0 ? std::vector<bool>(cPipeline.cElements.size(), true)
                                                     : Graph(cPipeline).ReachedFrom(iSink);
        std::vector<int> cOf; // the node of each element
        for (std::size_t u = 0; u < cPipeline.cElements.size(); ++u) {
            cOf.push_back(AddElement(*cPipeline.cElements[u], iParent, bReached && cReached[u]));
        }
        for (const Connection& cConnection : cPipeline.cConnections) {
            Edge& cEdge = m_cPicture.cEdges.emplace_back();
            cEdge.iFrom = EndOf(cConnection.cFrom, cOf, iParent);
            cEdge.iTo = EndOf(cConnection.cTo, cOf, iParent);
            cEdge.uFromPad = cConnection.cFrom.uNumber;
            cEdge.uToPad = cConnection.cTo.uNumber;
            cEdge.uLine = cConnection.cLine.uLine;
            cEdge.bReplaced = cConnection.bReplaced;
        }
        const int iSource = cPipeline.Find(cPipeline.cSource.cText);
        const int iEntry = iSink < 0 ? -1 : cOf[static_cast<std::size_t>(iSink)];
        const int iExit = iSource < 0 ? -1 : cOf[static_cast<std::size_t>(iSource)];
        if (iParent >= 0) {
            m_cPicture.At(iParent).iEntry = iEntry;
            m_cPicture.At(iParent).iExit = iExit;
        } else {
            MarkSink(iEntry);
            m_iExit = iExit;
        }
    }

    void AddPorts() {
        std::vector<std::set<unsigned int>> cTaken(m_cPicture.cNodes.size()),
            cGiven(m_cPicture.cNodes.size());
        for (const Edge& cEdge : m_cPicture.cEdges) {
            cGiven[static_cast<std::size_t>(m_cPicture.From(cEdge))].insert(cEdge.uFromPad);
            cTaken[static_cast<std::size_t>(m_cPicture.To(cEdge))].insert(cEdge.uToPad);
        }
        int iExit = m_iExit; // objects leave the file there
        while (iExit >= 0 && m_cPicture.At(iExit).iExit >= 0) {
            iExit = m_cPicture.At(iExit).iExit;
        }
        for (std::size_t u = 0; u < m_cPicture.cNodes.size(); ++u) {
            Node& cNode = m_cPicture.cNodes[u];
            const PadState Free = static_cast<int>(u) == iExit ? PadState::Unused : PadState::Open;
            if (cNode.Kind ==
                NodeKind::Cluster) { // its pads are those of its elements, as far as these are known
                Ports(cNode.iEntry < 0 ? cNode.iSinkPads : 0, cTaken[u], PadState::Unused, cNode.cSinkPorts);
                Ports(cNode.iExit < 0 ? cNode.iSourcePads : 0, cGiven[u], Free, cNode.cSourcePorts);
                continue;
            }
            Ports(cNode.iSinkPads, cTaken[u], PadState::Unused, cNode.cSinkPorts);
            cNode.uHidden = Ports(cNode.iSourcePads, cGiven[u], Free, cNode.cSourcePorts);
        }
    }

private:
    int AddNode(NodeKind Kind, const std::string& cName, int iParent) {
        Node& cNode = m_cPicture.cNodes.emplace_back();
        cNode.Kind = Kind;
        cNode.cShort = cName;
        cNode.cName = iParent < 0 ? cName : m_cPicture.At(iParent).cName + '/' + cName;
        cNode.iParent = iParent;
        return static_cast<int>(m_cPicture.cNodes.size()) - 1;
    }

    int AddElement(Element& cElement, int iParent, bool bReached) {
        const int iNode =
            AddNode(cElement.pNested ? NodeKind::Cluster : NodeKind::Element, cElement.cName, iParent);
        Node& cNode = m_cPicture.At(iNode);
        cNode.cType = cElement.cType.cText;
        cNode.uLine = cElement.cLine.uLine;
        cNode.iSinkPads = cElement.iSinkPads;
        cNode.iSourcePads = cElement.iSourcePads;
        cNode.bReached = bReached;
        cNode.bKnown = cElement.bPipe ? cElement.pNested != nullptr : cElement.pDescription != nullptr;
        for (const auto& [cKey, cSetting] : cElement.cProperties) {
            cNode.cProperties[cKey] = cSetting.cValue;
        }
        if (cElement.pNested) {
            AddPipeline(*cElement.pNested, iNode, bReached);
        }
        return iNode;
    }

    int EndOf(const Pad& cPad, const std::vector<int>& cOf, int iParent) {
        if (cPad.iElement >= 0) {
            return cOf[static_cast<std::size_t>(cPad.iElement)];
        }
        const auto [Found, bNew] = m_cMissing.emplace(std::make_pair(iParent, cPad.cElement.cText), 0);
        if (bNew) {
            Found->second = AddNode(NodeKind::Missing, cPad.cElement.cText, iParent);
            m_cPicture.At(Found->second).bKnown = false;
        }
        return Found->second;
    }

    void MarkSink(int iNode) {
        for (; iNode >= 0;
             iNode = m_cPicture.At(iNode).iEntry) { // a nested pipeline runs its own sink element
            m_cPicture.At(iNode).bSink = true;
        }
    }

    // Returns the number of pads that get no port.
    static unsigned int Ports(int iPads, const std::set<unsigned int>& cUsed, PadState Free,
                              std::vector<Port>& cPorts) {
        const auto uPads = static_cast<unsigned int>(std::max(iPads, 0));
        for (unsigned int u : cUsed) {
            cPorts.push_back({u, iPads < 0 || u < uPads ? PadState::Connected : PadState::Wrong});
        }
        unsigned int uFree = 0;
        for (unsigned int u = 0; u < uPads; ++u) {
            if (cUsed.count(u) == 0 && ++uFree <= MostPorts) {
                cPorts.push_back({u, Free});
            }
        }
        std::sort(cPorts.begin(), cPorts.end(),
                  [](const Port& cOne, const Port& cOther) { return cOne.uNumber < cOther.uNumber; });
        return uFree > MostPorts ? uFree - MostPorts : 0;
    }

    Picture& m_cPicture;
    std::map<std::pair<int, std::string>, int> m_cMissing;
    int m_iExit = -1;
};

std::string PadsText(const char* pchKind, int iPads) {
    return std::string(pchKind) + ": " + (iPads < 0 ? "not known" : std::to_string(iPads)) + '\n';
}

} // namespace

int Picture::From(const Edge& cEdge) const {
    int i = cEdge.iFrom;
    while (At(i).iExit >= 0) {
        i = At(i).iExit;
    }
    return i;
}

int Picture::To(const Edge& cEdge) const {
    int i = cEdge.iTo;
    while (At(i).iEntry >= 0) {
        i = At(i).iEntry;
    }
    return i;
}

Picture PictureOf(Pipeline& cPipeline) {
    Picture cPicture;
    cPicture.cFile = *cPipeline.pFile;
    cPicture.cSink = cPipeline.cSink.cText;
    Drawing cDrawing(cPicture);
    cDrawing.AddPipeline(cPipeline, -1, true);
    cDrawing.AddPorts();
    return cPicture;
}

std::string TooltipOf(const Node& cNode) {
    if (cNode.Kind == NodeKind::Missing) {
        return "no element is named " + cNode.cShort;
    }
    std::string cText = cNode.cName + "\ntype: " + cNode.cType + (cNode.bKnown ? "" : " (not known)") +
                        "\nline: " + std::to_string(cNode.uLine) + '\n' +
                        PadsText("sink pads", cNode.iSinkPads) + PadsText("source pads", cNode.iSourcePads);
    cText += cNode.bSink ? "the sink element\n" : "";
    cText += cNode.bReached ? "" : "no object reaches it\n";
    for (const auto& [cKey, cValue] : cNode.cProperties) {
        cText += cKey;
        cText += " = " + cValue + '\n';
    }
    cText.pop_back();
    return cText;
}

std::string TooltipOf(const Picture& cPicture, const Edge& cEdge) {
    return cPicture.At(cEdge.iFrom).cName + ' ' + std::to_string(cEdge.uFromPad) + " to " +
           cPicture.At(cEdge.iTo).cName + ' ' + std::to_string(cEdge.uToPad) +
           "\nline: " + std::to_string(cEdge.uLine) +
           (cEdge.bReplaced ? "\nlost: a later connection replaces it" : "");
}

} // namespace FwPipe
