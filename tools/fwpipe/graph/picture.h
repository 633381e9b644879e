// SPDX-License-Identifier: MIT
// What is to be drawn of a pipe file: elements, the pads of each, and connections, nested pipelines included.
#ifndef FWPIPE_GRAPH_PICTURE_H
#define FWPIPE_GRAPH_PICTURE_H

#include <map>
#include <string>
#include <vector>

namespace FwPipe {

struct Pipeline;

enum class PadState {
    Connected,
    Open,   // a source pad that nothing is connected to, so its objects are refused
    Unused, // a sink pad without a connection, which is no mistake
    Wrong   // connected, but the element has no such pad
};

struct Port {
    unsigned int uNumber = 0;
    PadState State = PadState::Unused;
};

enum class NodeKind {
    Element,
    Cluster, // a nested pipeline that could be read
    Missing  // a connection names it, but there is no such element
};

struct Node {
    NodeKind Kind = NodeKind::Element;
    std::string cName; // with those of the enclosing pipelines: outer/inner
    std::string cShort;
    std::string cType; // of a nested pipeline its file
    unsigned int uLine = 0;
    int iParent = -1;   // index of a cluster
    int iSinkPads = -1; // -1: not known
    int iSourcePads = -1;
    std::map<std::string, std::string> cProperties;
    std::vector<Port> cSinkPorts, cSourcePorts; // at most MostPorts without a connection
    unsigned int uHidden = 0;                   // further source pads, all open
    bool bSink = false;                         // the element that runs
    bool bReached = true;                       // objects from there reach it
    bool bKnown = true;                         // its type is known
    int iEntry = -1;                            // of a cluster: the node that has its sink pads
    int iExit = -1;                             // the node that has its source pads

    std::string Label() const { return cShort.empty() ? cType : cShort; }
};

constexpr unsigned int MostPorts = 16;

struct Edge {
    int iFrom = 0, iTo = 0; // indexes of nodes, which may be clusters
    unsigned int uFromPad = 0, uToPad = 0;
    unsigned int uLine = 0;
    bool bReplaced = false; // a later connection replaces it
};

struct Picture {
    std::string cFile;
    std::string cSink;        // empty without a sink line
    std::vector<Node> cNodes; // a cluster stands before what it contains
    std::vector<Edge> cEdges;

    const Node& At(int i) const { return cNodes[static_cast<std::size_t>(i)]; }
    Node& At(int i) { return cNodes[static_cast<std::size_t>(i)]; }

    // The node at which a connection with this one ends: of a cluster the element that has its pads, if there is one.
    int From(const Edge& cEdge) const;
    int To(const Edge& cEdge) const;
};

// The model is complete: CheckStructure has been called.
Picture PictureOf(Pipeline& cPipeline);

// The text in UTF-8: bytes that are not become U+FFFD, and so do control characters other than newlines.
std::string Readable(const std::string& cText);

// For people: type, place, state, pads and properties, each in a line.
std::string TooltipOf(const Node& cNode);
std::string TooltipOf(const Picture& cPicture, const Edge& cEdge);

} // namespace FwPipe

#endif
