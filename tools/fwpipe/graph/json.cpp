// SPDX-License-Identifier: MIT
#include "formats.h"

#include <nlohmann/json.hpp>

namespace FwPipe {

namespace {

using Json = nlohmann::ordered_json;

Json Count(int iPads) {
    return iPads < 0 ? Json() : Json(iPads);
}

} // namespace

std::string JsonOf(const Picture& cPicture) {
    Json cElements = Json::array();
    for (const Node& cNode : cPicture.cNodes) {
        if (cNode.Kind != NodeKind::Missing) {
            cElements.push_back(
                {{"name", cNode.cName},
                 {"type", cNode.cType},
                 {"line", cNode.uLine},
                 {"parent", cNode.iParent < 0 ? Json() : Json(cPicture.At(cNode.iParent).cName)},
                 {"sinkPads", Count(cNode.iSinkPads)},
                 {"sourcePads", Count(cNode.iSourcePads)},
                 {"properties", Json(cNode.cProperties)}});
        }
    }
    Json cConnections = Json::array();
    for (const Edge& cEdge : cPicture.cEdges) {
        cConnections.push_back({{"from", cPicture.At(cEdge.iFrom).cName},
                                {"fromPad", cEdge.uFromPad},
                                {"to", cPicture.At(cEdge.iTo).cName},
                                {"toPad", cEdge.uToPad},
                                {"line", cEdge.uLine}});
    }
    const Json cAll = {{"file", cPicture.cFile},
                       {"sink", cPicture.cSink.empty() ? Json() : Json(cPicture.cSink)},
                       {"elements", cElements},
                       {"connections", cConnections}};
    return cAll.dump(1, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string PageDataOf(const Picture& cPicture) {
    Json cElements = Json::array();
    for (const Node& cNode : cPicture.cNodes) {
        cElements.push_back({{"name", cNode.cName},
                             {"type", cNode.cType},
                             {"line", cNode.uLine},
                             {"known", cNode.bKnown},
                             {"sink", cNode.bSink},
                             {"reached", cNode.bReached},
                             {"sinkPads", Count(cNode.iSinkPads)},
                             {"sourcePads", Count(cNode.iSourcePads)},
                             {"properties", Json(cNode.cProperties)},
                             {"tooltip", TooltipOf(cNode)}});
    }
    Json cConnections = Json::array();
    for (const Edge& cEdge : cPicture.cEdges) {
        cConnections.push_back({{"from", cEdge.iFrom},
                                {"fromPad", cEdge.uFromPad},
                                {"to", cEdge.iTo},
                                {"toPad", cEdge.uToPad},
                                {"tooltip", TooltipOf(cPicture, cEdge)}});
    }
    const Json cAll = {{"elements", cElements}, {"connections", cConnections}};
    std::string cText;
    for (char ch : cAll.dump(-1, ' ', false, Json::error_handler_t::replace)) {
        cText += ch == '<' ? "\\u003c" : std::string(1, ch);
    }
    return cText;
}

} // namespace FwPipe
