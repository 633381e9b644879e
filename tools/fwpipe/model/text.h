// SPDX-License-Identifier: MIT
// The lines of a pipe file as the library reads them, with the place of each token.
#ifndef FWPIPE_MODEL_TEXT_H
#define FWPIPE_MODEL_TEXT_H

#include "diagnosis.h"

#include <string>
#include <vector>

namespace FwPipe {

struct Token {
    std::string cText;
    Spot cSpot;
};

using Tokens = std::vector<Token>;

struct PipeText {
    std::vector<Tokens> cLines; // without empty lines and comments
    Spot cLast;                 // the beginning of the last line
    bool bRead = true;          // false for a file in UTF-16, which has no lines
};

// The content of a regular file or pipe. Returns false with the reason in errno.
bool ReadAll(const std::string& cPath, std::string& cContent);

// Reads a pipe file, and reports lines that are too long and marks at the beginning.
// Returns false with the reason in errno when the file cannot be opened or read.
bool ReadPipeText(const std::string& cPath, const std::string* pFile, Diagnoses& cDiagnoses, PipeText& cText);

} // namespace FwPipe

#endif
