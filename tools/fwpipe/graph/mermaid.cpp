// SPDX-License-Identifier: MIT
#include "formats.h"

#include <cctype>
#include <cstring>

namespace FwPipe {

namespace {

// Mermaid reads markup and lists in labels; as numbers of characters, nothing is special.
std::string Escaped(const std::string& cText) {
    std::string cEscaped;
    for (char ch : Readable(cText)) {
        const auto uch = static_cast<unsigned char>(ch);
        const bool bPlain =
            uch >= 0x80 || std::isalnum(uch) || (!cEscaped.empty() && std::strchr(" -_/:,=", ch));
        cEscaped += bPlain ? std::string(1, ch) : '#' + std::to_string(uch) + ';';
    }
    return cEscaped;
}

std::string Id(int i) {
    return 'n' + std::to_string(i);
}

class MermaidText {
public:
    explicit MermaidText(const Picture& cPicture) : m_cPicture(cPicture), m_cInner(cPicture.cNodes.size()) {
        std::vector<int> cTop;
        for (int i = 0; i < static_cast<int>(cPicture.cNodes.size()); ++i) {
            const int iParent = cPicture.At(i).iParent;
            (iParent < 0 ? cTop : m_cInner[static_cast<std::size_t>(iParent)]).push_back(i);
        }
        for (int i : cTop) {
            Add(i, "  ");
        }
        for (const Edge& cEdge : cPicture.cEdges) {
            m_cText += "  " + Id(cPicture.From(cEdge)) + (cEdge.bReplaced ? " -. \"" : " -- \"") +
                       std::to_string(cEdge.uFromPad) + " to " + std::to_string(cEdge.uToPad) +
                       (cEdge.bReplaced ? " (lost)\" .-> " : "\" --> ") + Id(cPicture.To(cEdge)) + '\n';
        }
        for (int i = 0; i < static_cast<int>(cPicture.cNodes.size()); ++i) {
            AddState(i);
        }
    }

    std::string m_cText = "flowchart LR\n";

private:
    static std::string Label(const Node& cNode) {
        const std::string cType = cNode.Kind == NodeKind::Missing ? "no such element" : cNode.cType;
        return "[\"" + (cNode.cShort.empty() ? "" : Escaped(cNode.cShort) + "<br/>") + Escaped(cType) +
               (cNode.bSink ? "<br/>sink element" : "") + (cNode.bReached ? "" : "<br/>not reached") + "\"]";
    }

    void Add(int i, const std::string& cIndent) {
        const Node& cNode = m_cPicture.At(i);
        const auto& cInner = m_cInner[static_cast<std::size_t>(i)];
        if (cNode.Kind != NodeKind::Cluster || cInner.empty()) {
            m_cText += cIndent + Id(i) + Label(cNode) + '\n';
            return;
        }
        m_cText += cIndent + "subgraph " + Id(i) + Label(cNode) + '\n';
        for (int iInner : cInner) {
            Add(iInner, cIndent + "  ");
        }
        m_cText += cIndent + "end\n";
    }

    void AddState(int i) {
        const Node& cNode = m_cPicture.At(i);
        for (const Port& cPort : cNode.cSourcePorts) {
            if (cPort.State == PadState::Open) {
                const std::string cEnd = Id(i) + 'o' + std::to_string(cPort.uNumber);
                m_cText += "  " + Id(i) + " -. \"" + std::to_string(cPort.uNumber) + "\" .-x " + cEnd +
                           "[\"not connected\"]\n";
            }
        }
        if (cNode.bSink || !cNode.bReached || cNode.Kind == NodeKind::Missing) {
            m_cText += "  style " + Id(i) +
                       (cNode.bSink      ? " stroke-width:3px\n"
                        : cNode.bReached ? " stroke:#c00000,stroke-dasharray:2 2\n"
                                         : " stroke-dasharray:5 5\n");
        }
    }

    const Picture& m_cPicture;
    std::vector<std::vector<int>> m_cInner;
};

} // namespace

std::string MermaidOf(const Picture& cPicture) {
    return MermaidText(cPicture).m_cText;
}

} // namespace FwPipe
