// SPDX-License-Identifier: MIT
// The words of "fwpipe launch" as the lines of a pipe file: TYPE KEY=VALUE... ! TYPE ... NAME:PAD ! ...
#ifndef FWPIPE_LAUNCH_WORDS_H
#define FWPIPE_LAUNCH_WORDS_H

#include "model/text.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace FwPipe {

// A word that does not fit. uWord counts from 1.
struct WordError : std::runtime_error {
    WordError(unsigned int uNumber, const std::string& cText) : std::runtime_error(cText), uWord(uNumber) {}
    unsigned int uWord;
};

// Returns the lines: plugins, elements with their properties, and connections; no sink line. The line of each token's spot
// is the number of the word that it comes from, 0 for a plugin. Values may contain blanks. Throws WordError.
std::vector<Tokens> LinesOf(const std::vector<std::string>& cPlugins, const std::vector<std::string>& cWords,
                            const std::string* pFile);

// The lines as the text of a pipe file. Throws WordError for what a pipe file cannot hold.
std::string TextOf(const std::vector<Tokens>& cLines);

} // namespace FwPipe

#endif
