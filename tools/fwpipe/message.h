// SPDX-License-Identifier: MIT
// The messages of the tool itself, not of the library or the elements.
#ifndef FWPIPE_MESSAGE_H
#define FWPIPE_MESSAGE_H

#include <cstdio>
#include <string>

namespace FwPipe {

// The text for this stream: escaped if that is a terminal, which a file name could otherwise control; unchanged
// elsewhere, so that a program finds the name it passed.
std::string ShownOn(std::FILE* pStream, const std::string& cText);

// Prints "fwpipe: TEXT" as a line on standard error, in the form of ShownOn. The text has no newline.
void Complain(const std::string& cText);

// Prints "fwpipe: WHAT NAME: REASON", with the reason in errno.
void ReportErrno(const char* pchWhat, const std::string& cName);

} // namespace FwPipe

#endif
