// SPDX-License-Identifier: MIT
// What the tool says by itself, as opposed to what the library and the elements print.
#ifndef FWPIPE_MESSAGE_H
#define FWPIPE_MESSAGE_H

#include <cstdio>
#include <string>

namespace FwPipe {

// The text as it may stand on the stream: escaped on a terminal, which a file name could act on; elsewhere as it is,
// so that a program finds the name that it gave.
std::string ShownOn(std::FILE* pStream, const std::string& cText);

// Prints "fwpipe: TEXT" as a line on standard error, as ShownOn has it. The text has no newline.
void Complain(const std::string& cText);

// Complains "WHAT NAME: REASON", with the reason for errno.
void ReportErrno(const char* pchWhat, const std::string& cName);

} // namespace FwPipe

#endif
