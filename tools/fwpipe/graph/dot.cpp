// SPDX-License-Identifier: MIT
#include "formats.h"

#include "palette.h"

#include "../escape.h"

#include <algorithm>

namespace FwPipe {

namespace {

// Text in a label with markup.
std::string Marked(const std::string& cText) {
    std::string cMarked;
    for (char ch : Readable(cText)) {
        switch (ch) {
        case '&':
            cMarked += "&amp;";
            break;
        case '<':
            cMarked += "&lt;";
            break;
        case '>':
            cMarked += "&gt;";
            break;
        case '"':
            cMarked += "&quot;";
            break;
        case '\\': // of \N and others
            cMarked += "\\\\";
            break;
        default:
            cMarked += ch;
        }
    }
    return cMarked;
}

// Text in quotation marks. Graphviz reads entities and escapes such as \N in it.
std::string Quoted(const std::string& cText) {
    std::string cQuoted = "\"";
    for (char ch : Readable(cText)) {
        switch (ch) {
        case '&':
            cQuoted += "&amp;";
            break;
        case '"':
            cQuoted += "\\\"";
            break;
        case '\\':
            cQuoted += "\\\\";
            break;
        case '\n':
            cQuoted += "\\n";
            break;
        default:
            cQuoted += ch;
        }
    }
    return cQuoted + '"';
}

const char* ColourOf(PadState State) {
    switch (State) {
    case PadState::Connected:
        return Palette::Pad;
    case PadState::Unused:
        return Palette::Unused;
    case PadState::Open:
        return Palette::Open;
    case PadState::Wrong:
        break;
    }
    return Palette::Wrong;
}

std::string Column(const std::vector<Port>& cPorts, char chKind, unsigned int uHidden) {
    if (cPorts.empty()) {
        return "";
    }
    std::string cText =
        R"(<td cellpadding="0" border="0"><table border="0" cellborder="1" cellspacing="2" cellpadding="3">)";
    for (const Port& cPort : cPorts) {
        const std::string cNumber = std::to_string(cPort.uNumber);
        cText += "<tr><td port=\"";
        cText += chKind + cNumber;
        cText += std::string("\" bgcolor=\"") + ColourOf(cPort.State) + "\">";
        cText += cNumber + "</td></tr>";
    }
    if (uHidden > 0) {
        cText += std::string("<tr><td bgcolor=\"") + Palette::Open + "\">" + std::to_string(uHidden) +
                 " more</td></tr>";
    }
    return cText + "</table></td>";
}

class DotText {
public:
    explicit DotText(const Picture& cPicture) : m_cPicture(cPicture), m_cInner(cPicture.cNodes.size()) {
        for (int i = 0; i < static_cast<int>(cPicture.cNodes.size()); ++i) {
            const int iParent = cPicture.At(i).iParent;
            (iParent < 0 ? m_cTop : m_cInner[static_cast<std::size_t>(iParent)]).push_back(i);
        }
        m_cText = "digraph {\n"
                  "  graph [rankdir=LR fontname=\"Arial\" fontsize=12 nodesep=0.3 ranksep=0.6 bgcolor=\"" +
                  std::string(Palette::Paper) + "\" fontcolor=\"" + Palette::Ink +
                  "\" tooltip=" + Quoted(cPicture.cFile) +
                  "]\n  node [shape=plain fontname=\"Arial\" fontsize=12 color=\"" + Palette::Line +
                  "\" fontcolor=\"" + Palette::Ink + "\"]\n  edge [arrowsize=0.7 color=\"" + Palette::Line +
                  "\"]\n";
        for (int i : m_cTop) {
            Add(i, "  ");
        }
        for (const Edge& cEdge : cPicture.cEdges) {
            AddEdge(cEdge);
        }
        m_cText += "}\n";
    }

    std::string m_cText;

private:
    void Add(int i, const std::string& cIndent) {
        const Node& cNode = m_cPicture.At(i);
        if (cNode.Kind != NodeKind::Cluster) {
            AddNode(i, cIndent);
            return;
        }
        const std::string cId = std::to_string(i);
        m_cText += cIndent + "subgraph cluster_" + cId + " {\n" + cIndent + "  graph [id=\"n" + cId +
                   "\" style=\"" + (cNode.bReached ? "rounded,filled" : "rounded,filled,dashed") +
                   "\" fillcolor=\"" + Palette::Cluster + "\" color=\"" + Palette::Line + "\" label=<" +
                   Title(cNode) + "> tooltip=" + Quoted(TooltipOf(cNode)) + "]\n";
        const auto& cInner = m_cInner[static_cast<std::size_t>(i)];
        for (int iInner : cInner) {
            Add(iInner, cIndent + "  ");
        }
        if (NeedsOwnNode(cNode) || cInner.empty()) {
            AddNode(i, cIndent + "  ");
        }
        m_cText += cIndent + "}\n";
    }

    // Connections with a nested pipeline end at its sink or source element; without such a line in its file, at a node
    // that stands for the pipeline.
    static bool NeedsOwnNode(const Node& cNode) {
        return !cNode.cSinkPorts.empty() || !cNode.cSourcePorts.empty();
    }

    static std::string Title(const Node& cNode) {
        const std::string cName = Marked(cNode.cShort);
        const std::string cType = Marked(cNode.Kind == NodeKind::Missing ? "no such element"
                                         : cNode.bKnown                  ? cNode.cType
                                                                         : cNode.cType + " ?");
        std::string cTitle = cName.empty() ? "" : "<b>" + cName + "</b><br/>";
        cTitle += cType.empty() ? "?" : cType;
        cTitle += cNode.bSink ? "<br/>sink element" : "";
        return cTitle + (cNode.bReached ? "" : "<br/>not reached");
    }

    void AddNode(int i, const std::string& cIndent) {
        const Node& cNode = m_cPicture.At(i);
        const bool bCluster = cNode.Kind == NodeKind::Cluster;
        const char* const pchFill = cNode.Kind == NodeKind::Missing ? Palette::Wrong
                                    : cNode.bSink                   ? Palette::Sink
                                    : !cNode.bReached               ? Palette::Unreached
                                                                    : Palette::Element;
        const std::string cId = (bCluster ? "p" : "n") + std::to_string(i);
        m_cText +=
            cIndent + 'n' + std::to_string(i) + " [id=\"" + cId +
            "\" label=<<table border=\"1\" cellborder=\"0\" cellspacing=\"0\" cellpadding=\"4\" style=\"" +
            (cNode.bReached && cNode.bKnown ? "solid" : "dashed") + "\" bgcolor=\"" + pchFill + "\"><tr>" +
            Column(cNode.cSinkPorts, 'i', 0) + "<td cellpadding=\"6\">" +
            (bCluster ? "pipeline" : Title(cNode)) + "</td>" +
            Column(cNode.cSourcePorts, 'o', cNode.uHidden) +
            "</tr></table>> tooltip=" + Quoted(TooltipOf(cNode)) + "]\n";
    }

    void AddEdge(const Edge& cEdge) {
        m_cText += "  n" + std::to_string(m_cPicture.From(cEdge)) + ":o" + std::to_string(cEdge.uFromPad) +
                   ":e -> n" + std::to_string(m_cPicture.To(cEdge)) + ":i" + std::to_string(cEdge.uToPad) +
                   ":w [tooltip=" + Quoted(TooltipOf(m_cPicture, cEdge)) +
                   (cEdge.bReplaced ? " style=dotted" : "") + "]\n";
    }

    const Picture& m_cPicture;
    std::vector<int> m_cTop;
    std::vector<std::vector<int>> m_cInner;
};

} // namespace

std::string Readable(const std::string& cText) {
    const char* const pchReplacement = "\xEF\xBF\xBD";
    std::string cReadable;
    for (std::size_t u = 0; u < cText.size();) {
        std::size_t uLength = 1; // of the character
        while (uLength <= 4 && !IsUtf8(std::string_view(cText).substr(u, uLength))) {
            ++uLength;
        }
        const auto ch = static_cast<unsigned char>(cText[u]);
        const bool bControl = (ch < 0x20 && ch != '\n') || ch == 0x7F;
        const bool bBad = uLength > 4 || bControl;
        uLength = bBad ? 1 : uLength;
        cReadable += bBad ? pchReplacement : cText.substr(u, uLength);
        u += uLength;
    }
    return cReadable;
}

std::string DotOf(const Picture& cPicture) {
    return DotText(cPicture).m_cText;
}

} // namespace FwPipe
