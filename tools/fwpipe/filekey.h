// SPDX-License-Identifier: MIT
// Keys of files, which are equal if two paths or streams refer to the same file.
#ifndef FWPIPE_FILEKEY_H
#define FWPIPE_FILEKEY_H

#include <string>

namespace FwPipe {

// The key of the file that the path refers to through all links, even if it does not exist yet. Empty for anything that
// stores no data, such as /dev/null, a terminal or a pipe.
std::string KeyOfPath(const std::string& cPath);

std::string KeyOfStream(int iDescriptor);

} // namespace FwPipe

#endif
