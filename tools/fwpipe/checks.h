// SPDX-License-Identifier: MIT
// Checks of arguments: they return an empty text for a valid argument, otherwise an error message.
#ifndef FWPIPE_CHECKS_H
#define FWPIPE_CHECKS_H

#include <string>

namespace FwPipe {

inline std::string NotACount(const std::string& cText) {
    const bool bCount = cText.find_first_not_of("0123456789") == std::string::npos && !cText.empty() &&
                        cText.front() != '0' && cText.size() <= 18;
    return bCount ? "" : cText + " is not a whole number from 1 to 999999999999999999";
}

inline std::string NotACondition(const std::string& cText) {
    return cText.find('=') != std::string::npos ? "" : cText + " is not KEY=VALUE";
}

} // namespace FwPipe

#endif
