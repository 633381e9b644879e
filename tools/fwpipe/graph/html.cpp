// SPDX-License-Identifier: MIT
#include "formats.h"
#include "page.h"

namespace FwPipe {

namespace {

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
    return cName == "DATA" ? PageDataOf(cPicture) : cName == "CSS" ? PageCss : PageJs;
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
