// SPDX-License-Identifier: MIT
// Texts that are equal for two names of one file.
#ifndef FWPIPE_FILEKEY_H
#define FWPIPE_FILEKEY_H

#include <string>

namespace FwPipe {

// Of what the path leads to, through all links, also when that is yet to be created. Empty for what keeps nothing that
// was written, such as /dev/null, a terminal or a pipe.
std::string KeyOfPath(const std::string& cPath);

std::string KeyOfStream(int iDescriptor);

} // namespace FwPipe

#endif
