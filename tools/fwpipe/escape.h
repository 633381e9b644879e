// SPDX-License-Identifier: MIT
// Escapes bytes that a terminal would interpret, so that it only displays them.
#ifndef FWPIPE_ESCAPE_H
#define FWPIPE_ESCAPE_H

#include <string>
#include <string_view>

namespace FwPipe {

// The length in bytes of the first character of a text that is not empty. bActs: a terminal would interpret it, see below.
std::size_t FirstCharacter(std::string_view cBytes, bool& bActs);

// Appends the bytes. "\xNN" replaces each byte of a control character (those of ASCII, DEL, U+0080 to U+009F), of a
// character that changes the direction of text (U+202A to U+202E, U+2066 to U+2069), and of anything that is not UTF-8.
// A backslash becomes "\\", so the original bytes can be restored.
void AppendEscaped(std::string_view cBytes, std::string& cText);

// Appends the bytes as a JSON string with quotation marks. The same characters become "\uNNNN". JSON cannot contain
// bytes that are not UTF-8: if bBytes, each becomes the four characters "\xNN", and a backslash becomes two. If bRaw,
// only what JSON requires is escaped.
void AppendJson(std::string_view cBytes, bool bBytes, bool bRaw, std::string& cText);

bool IsUtf8(std::string_view cBytes);

} // namespace FwPipe

#endif
