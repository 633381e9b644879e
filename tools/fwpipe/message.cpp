// SPDX-License-Identifier: MIT
#include "message.h"

#include "escape.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace FwPipe {

std::string ShownOn(std::FILE* pStream, const std::string& cText) {
    if (!isatty(fileno(pStream))) {
        return cText;
    }
    std::string cEscaped;
    AppendEscaped(cText, cEscaped);
    return cEscaped;
}

void Complain(const std::string& cText) {
    std::fprintf(stderr, "fwpipe: %s\n", ShownOn(stderr, cText).c_str());
}

void ReportErrno(const char* pchWhat, const std::string& cName) {
    const char* const pchReason = std::strerror(errno); // before errno changes
    Complain(std::string(pchWhat) + ' ' + cName + ": " + pchReason);
}

} // namespace FwPipe
