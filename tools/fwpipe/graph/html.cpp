// SPDX-License-Identifier: MIT
#include "formats.h"
#include "page.h"

#include <nlohmann/json.hpp>

namespace FwPipe {

namespace {

using Json = nlohmann::ordered_json;

Json Count(int iPads) {
    return iPads < 0 ? Json() : Json(iPads);
}

// What the script shows of each node. A "<" could end the script element.
std::string DataOf(const Picture& cPicture) {
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

std::string Escaped(const std::string& cText) {
    std::string cEscaped;
    for (char ch : Readable(cText)) {
        cEscaped += ch == '&' ? "&amp;" : ch == '<' ? "&lt;" : std::string(1, ch);
    }
    return cEscaped;
}

std::string Inserted(const Picture& cPicture, const std::string& cName) {
    if (cName == "TITLE") {
        return Escaped(cPicture.cFile);
    }
    if (cName == "SVG") {
        const std::string cSvg = SvgOf(cPicture);
        return cSvg.substr(cSvg.find("<svg"));
    }
    return cName == "DATA" ? DataOf(cPicture) : cName == "CSS" ? PageCss : PageJs;
}

} // namespace

std::string HtmlOf(const Picture& cPicture) {
    const std::string cTemplate = PageHtml;
    std::string cPage;
    std::size_t uDone = 0;
    std::size_t uBegin;
    while ((uBegin = cTemplate.find("{{", uDone)) != std::string::npos) {
        const std::size_t uEnd = cTemplate.find("}}", uBegin);
        cPage += cTemplate.substr(uDone, uBegin - uDone);
        cPage += Inserted(cPicture, cTemplate.substr(uBegin + 2, uEnd - uBegin - 2));
        uDone = uEnd + 2;
    }
    return cPage + cTemplate.substr(uDone);
}

} // namespace FwPipe
