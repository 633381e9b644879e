// SPDX-License-Identifier: MIT
// A plugin project made from templates.
#ifndef FWPIPE_NEW_PROJECT_H
#define FWPIPE_NEW_PROJECT_H

#include <string>

namespace FwPipe {

// Why a plugin cannot have the name; empty if it can.
std::string WhyNoName(const std::string& cName);

// The name in lower case, which the files have.
std::string FileNameOf(const std::string& cName);

// Creates the folder and its files. Returns false after a report: the folder exists, or something could not be written;
// what was created is removed then.
bool WriteProject(const std::string& cFolder, const std::string& cName);

} // namespace FwPipe

#endif
