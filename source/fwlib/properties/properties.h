// SPDX-License-Identifier: MIT
// PROPERTIES: an ordered list of (section, key, value) texts, the configuration of every element, data object
// and framework.
//
// Values are texts; the typed overloads convert at the call. Keys and sections compare byte for byte. The
// system itself reads and writes the section "Standard" only; other sections come from configuration files.
// A pair of key and section stands at most once, entries keep the order in which they were first added, and a
// list holds at most 65,520 of them. The list owns copies of all its texts and lends none of them:
// callers get copies in their own buffers. Operations return 1 for success or for an entry found and 0
// otherwise, print nothing, and leave the entries as they were when memory is out. Keys and sections are
// zero-terminated; a null key or section finds nothing and stores nothing. One thread at a time.
#ifndef FWLIB_PROPERTIES_PROPERTIES_H
#define FWLIB_PROPERTIES_PROPERTIES_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT PROPERTIES {
public:
    PROPERTIES();
    ~PROPERTIES();
    PROPERTIES(const PROPERTIES&) = delete;
    PROPERTIES& operator=(const PROPERTIES&) = delete;

    Byte2Type GetNumberOfProperties(); // over all sections

    // Stores the entry's index, or leaves it alone and returns 0.
    int FindProperty(char* pchKey, Byte2Type* pb2Index, char* pchSection);

    // Copies the value, cut to b2Length - 1 characters and terminated; the default when the key is missing,
    // the empty text when that is null too. b2Length is the buffer's size in bytes, at least 1.
    int GetProperty(char* pchKey, char* pchBuffer, Byte2Type b2Length, char* pchDefault, char* pchSection);

    // Convert the value as fwatoi does (white space, sign, digits up to the first other character, 0 without
    // digits, clamped to 32 bits; Byte2Type takes the low 16 bits); the 64-bit forms likewise with 64 bits.
    // A pointer is read as "%p" prints it. The default when the key is missing.
    int GetProperty(char* pchKey, int* piValue, int iDefault, char* pchSection);
    int GetProperty(char* pchKey, unsigned int* puValue, unsigned int uDefault, char* pchSection);
    int GetProperty(char* pchKey, Byte2Type* pb2Value, Byte2Type b2Default, char* pchSection);
    int GetProperty(char* pchKey, long long* pllValue, long long llDefault, char* pchSection);
    int GetProperty(char* pchKey, unsigned long long* pullValue, unsigned long long ullDefault,
                    char* pchSection);
    int GetProperty(char* pchKey, void** ppValue, void* pDefault, char* pchSection);

    // The value's length in characters, 65,535 for longer ones; untouched when the key is missing.
    int GetPropertyLength(char* pchKey, Byte2Type* pb2Length, char* pchSection);

    // Replaces the value in place or appends an entry; a null value is stored as the empty text.
    int SetProperty(char* pchKey, char* pchValue, char* pchSection);

    // Store the number as decimal text. An unsigned int is written as the int of the same 32 bits, so values
    // from 2,147,483,648 stand as negative numbers, which the unsigned int getter reads back.
    int SetProperty(char* pchKey, int iValue, char* pchSection);
    int SetProperty(char* pchKey, unsigned int uValue, char* pchSection);
    int SetProperty(char* pchKey, Byte2Type b2Value, char* pchSection);
    int SetProperty(char* pchKey, long long llValue, char* pchSection);
    int SetProperty(char* pchKey, void* pValue, char* pchSection);

    // Splits "key=value" at its first "=", which is overwritten with a terminator, and sets the entry; a text
    // without "=" stores nothing. Nothing is trimmed. Always returns 1.
    int AddKeyValuePair(char* pchSection, char* pchPair);

    // Copy whole texts of the entry at an index below GetNumberOfProperties; the caller's buffers must hold
    // them and a terminator. GetKeyValuePair returns 0 for an entry of another section; either buffer may be
    // null.
    int GetKeyName(Byte2Type b2Index, char* pchKey);
    int GetKeyValuePair(Byte2Type b2Index, char* pchSection, char* pchKey, char* pchValue);

    // Sets every entry of the other list here, in its order. Always returns 1.
    int Copy(PROPERTIES* pProperties);

    int Reset(); // releases all: the list is as new; 1

    // Configuration files: sections "[name]" with lines key=value, both taken to the letter, without trimming
    // or comments. Lines are read in pieces of at most 255 characters.

    // The next line, without its newline; the empty text at the end of the file. uSize is the buffer's size
    // in bytes. Always returns 1.
    int ReadLine(char* pFile, char* pchBuffer, unsigned int uSize);

    // Reads on to just behind the section's header; 0 when the file ends before it.
    int FindSection(char* pFile, char* pchSection);

    // Sets the entries of the file's first section of that name, filed under that name. 0 when the file
    // cannot be read, holds no such section, or the name is longer than 253 characters.
    int ReadConfig(char* pchFileName, char* pchSection);

    // Writes all entries, a block for each section; those of the section "" are left out. 0, with the file left
    // alone, for an empty list and for one with an entry that the format cannot hold: a newline, a key and value
    // of more than 1,021 characters together, or a section's name of more than 1,019. 0 also when the file could
    // not be written whole: it then holds the front of the text, since it is emptied first. 1 does not say that
    // all comes back: a key with "=" or a "[" in front, a line of more than 255 characters and a section's name of
    // more than 253 are written, and read as something else.
    int SaveConfig(char* pchFileName);

    // The same for a list that ReadConfig would give back as it is, section by section. 0 for any other, with the
    // file left alone and in *pb2Lost, which may be null, the index of an entry that would be lost; if none
    // would, it is the number of entries.
    int SaveConfig(char* pchFileName, Byte2Type* pb2Lost);

    // The list in an object stream: a count line, then a line key=value for each entry, without sections.
    // Writing hands each line to one WriteData call and returns 1; the lines are those of the list as it was when
    // writing began, whatever WriteData does to it. Reading sets every entry in "Standard",
    // keeps what is there, and returns 0 when the stream ends or a line holds no "=", with the entries before
    // it set.
    int Serialize(SWrite* pWriter);
    int Deserialize(SRead* pReader);

    // The fields in their order are part of the binary interface. A host may put texts of its own into the arrays,
    // in blocks of malloc, which the list then owns: a text ends at its first zero byte.
    Byte2Type m_b2PropertyCapacity; // slots in each array; 0 while there are none
    Byte2Type m_b2PropertyCount;
    char** m_pachSections;
    char** m_pachKeys;
    char** m_pachValues;
};

} // namespace VESK

#endif
