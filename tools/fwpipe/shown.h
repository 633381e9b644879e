// SPDX-License-Identifier: MIT
// Objects as text, for people and for programs.
#ifndef FWPIPE_SHOWN_H
#define FWPIPE_SHOWN_H

#include <string>

namespace FwPipe {

class ObjectScan;

// Appends the current object to a text. If bRaw, bytes are not escaped (escape.h).
using ShowObject = void (*)(const ObjectScan& cScan, bool bRaw, std::string& cText);

void ShowBlock(const ObjectScan& cScan, bool bRaw, std::string& cText); // a line for each property
void ShowLine(const ObjectScan& cScan, bool bRaw, std::string& cText);  // quotes words with spaces

// {"type":TYPE,"offset":BYTE,"properties":{KEY:VALUE,...}}. A key that occurs more than once in the object has an array
// of its values, in order. An object with bytes that are not UTF-8 has "escaped":true after its offset; in its texts,
// each such byte is "\xNN" and a backslash "\\".
void ShowJson(const ObjectScan& cScan, bool bRaw, std::string& cText);

// The same with "properties":[[KEY,VALUE],...].
void ShowJsonPairs(const ObjectScan& cScan, bool bRaw, std::string& cText);

} // namespace FwPipe

#endif
