// SPDX-License-Identifier: MIT
// Bytes from outside as text that a terminal only shows: what would act on it is escaped.
#ifndef FWPIPE_ESCAPE_H
#define FWPIPE_ESCAPE_H

#include <string>
#include <string_view>

namespace FwPipe {

// Appends the bytes; as "\xNN", each of its bytes, what a terminal would act on: control characters (those of ASCII,
// DEL, U+0080 to U+009F), the characters that change the direction of text (U+202A to U+202E, U+2066 to U+2069), and
// what is not UTF-8. A backslash becomes "\\", so that the result identifies the bytes.
void AppendEscaped(std::string_view cBytes, std::string& cText);

// Appends the bytes as a JSON string with its quotation marks. The same characters become "\uNNNN". What is not UTF-8
// cannot stand in JSON: with bBytes, each such byte becomes the four characters "\xNN", and a backslash two. Raw, only
// what JSON demands is escaped.
void AppendJson(std::string_view cBytes, bool bBytes, bool bRaw, std::string& cText);

bool IsUtf8(std::string_view cBytes);

} // namespace FwPipe

#endif
