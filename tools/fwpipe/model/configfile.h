// SPDX-License-Identifier: MIT
// Configuration files, as `config` lines and --config use them.
#ifndef FWPIPE_MODEL_CONFIGFILE_H
#define FWPIPE_MODEL_CONFIGFILE_H

#include "text.h"

#include <string>
#include <utility>
#include <vector>

namespace FwPipe {

struct ConfigSection {
    Token cName;
    std::vector<std::pair<Token, Token>> cEntries; // key and value
};

// All sections in order. Returns false with the reason in errno. Reports blanks at the ends of keys and headers, and
// carriage returns, once for each file.
bool ReadConfig(const std::string& cPath, Diagnoses& cDiagnoses, std::vector<ConfigSection>& cSections);

} // namespace FwPipe

#endif
