// SPDX-License-Identifier: MIT
// PROPERTIES: an ordered list of (section, key, value) texts, the settings of every element, data object and framework.
//
// Values are texts; the typed overloads convert them. Keys and sections are compared byte for byte. The library uses
// only the section "Standard"; other sections come from configuration files. A list contains each pair of section and
// key at most once, in the order in which the pairs were first added, and at most 65,520 entries. The list owns copies
// of all texts; callers get copies in their own buffers. Unless stated otherwise, operations return 1 for success, and
// 0 on failure or when the entry does not exist. They print nothing. When there is not enough memory, the entries are
// unchanged. Texts are zero-terminated; with a null key or section, nothing is found or stored. One thread at a time.
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

    // Stores the entry's index. If there is no such entry, *pb2Index is unchanged.
    int FindProperty(char* pchKey, Byte2Type* pb2Index, char* pchSection);

    // Copies the value, truncated to b2Length - 1 characters, and a terminator. If the key is missing, copies the
    // default, where null means the empty text, and returns 0. b2Length is the buffer's size in bytes, at least 1.
    int GetProperty(char* pchKey, char* pchBuffer, Byte2Type b2Length, char* pchDefault, char* pchSection);

    // Convert the value like fwatoi: white space, sign, digits up to the first other character; 0 without digits;
    // clamped to a signed 32-bit number, of which Byte2Type gets the low 16 bits. The 64-bit forms clamp to a signed
    // 64-bit number. A pointer is parsed like "%p". If the key is missing, they store the default and return 0.
    int GetProperty(char* pchKey, int* piValue, int iDefault, char* pchSection);
    int GetProperty(char* pchKey, unsigned int* puValue, unsigned int uDefault, char* pchSection);
    int GetProperty(char* pchKey, Byte2Type* pb2Value, Byte2Type b2Default, char* pchSection);
    int GetProperty(char* pchKey, long long* pllValue, long long llDefault, char* pchSection);
    int GetProperty(char* pchKey, unsigned long long* pullValue, unsigned long long ullDefault,
                    char* pchSection);
    int GetProperty(char* pchKey, void** ppValue, void* pDefault, char* pchSection);

    // Stores the value's length in characters, 65,535 for a longer value. If the key is missing, *pb2Length is
    // unchanged.
    int GetPropertyLength(char* pchKey, Byte2Type* pb2Length, char* pchSection);

    // Replaces the value, or appends an entry if there is none. A null value is stored as the empty text.
    int SetProperty(char* pchKey, char* pchValue, char* pchSection);

    // Store the number as decimal text, or a pointer like "%p". An unsigned int is stored as the int with the same
    // bits: values from 2,147,483,648 become negative texts, which the unsigned int getter converts back.
    int SetProperty(char* pchKey, int iValue, char* pchSection);
    int SetProperty(char* pchKey, unsigned int uValue, char* pchSection);
    int SetProperty(char* pchKey, Byte2Type b2Value, char* pchSection);
    int SetProperty(char* pchKey, long long llValue, char* pchSection);
    int SetProperty(char* pchKey, void* pValue, char* pchSection);

    // Splits "key=value" at its first "=", which is overwritten with a terminator, and sets the entry. A text without
    // "=" is ignored. Nothing is trimmed. Always returns 1.
    int AddKeyValuePair(char* pchSection, char* pchPair);

    // Stores the length of the key in characters, 65,535 for a longer one. Returns 0 for an index that is not below
    // GetNumberOfProperties.
    int GetKeyLength(Byte2Type b2Index, Byte2Type* pb2Length);

    // Copy complete texts of the entry at an index below GetNumberOfProperties. The caller's buffers must have room for
    // them and a terminator. GetKeyValuePair returns 0 for an entry of another section; its buffers may be null.
    int GetKeyName(Byte2Type b2Index, char* pchKey);
    int GetKeyValuePair(Byte2Type b2Index, char* pchSection, char* pchKey, char* pchValue);

    // Sets every entry of the other list in this one, in the order of the other. Always returns 1, even when there was
    // not enough memory for all entries.
    int Copy(PROPERTIES* pProperties);

    int Reset(); // removes all entries; returns 1

    // Configuration files: sections "[name]" with lines key=value. Nothing is trimmed, and there are no comments. Lines
    // are read in pieces of at most 255 characters.

    // Reads the next line, without its newline; the empty text at the end of the file. uSize is the buffer's size in
    // bytes; a longer line is read in pieces. Always returns 1.
    int ReadLine(char* pFile, char* pchBuffer, unsigned int uSize);

    // Reads up to and including the section's header line. Returns 0 when the file ends before it.
    int FindSection(char* pFile, char* pchSection);

    // Sets the entries of the file's first section of that name, in the section of the same name of this list. Returns
    // 0 when the file cannot be read or has no such section, or when the name is longer than 253 characters.
    int ReadConfig(char* pchFileName, char* pchSection);

    // Writes all entries, a block for each section, except those of the section "". Returns 0, with the file unchanged,
    // for an empty list and for a list with an entry that the format cannot represent: one with a newline, a key and
    // value of more than 1,021 characters together, or a section's name of more than 1,019. Also returns 0 when writing
    // fails: the file, which is emptied first, then contains only the first part of the text. Some entries are written
    // but read back differently: a key that contains "=" or begins with "[", a line of more than 255 characters, and a
    // section's name of more than 253.
    int SaveConfig(char* pchFileName);

    // The same, but only for a list that ReadConfig would read back unchanged, section by section. For any other list,
    // returns 0 with the file unchanged, and stores the index of an entry that would be lost in *pb2Lost. If none would
    // be lost, stores the number of entries. pb2Lost may be null.
    int SaveConfig(char* pchFileName, Byte2Type* pb2Lost);

    // The list in an object stream: a line with the number of entries, then a line key=value for each entry, without
    // sections. Serialize passes each line to one WriteData call and returns 1; the lines are those of the list when
    // writing began, even if WriteData changes it. Deserialize sets every entry in "Standard" and keeps other entries.
    // It returns 0 when the stream ends or a line has no "="; the entries before it are set.
    int Serialize(SWrite* pWriter);
    int Deserialize(SRead* pReader);

    // The order of the fields is part of the binary interface. A host may store texts of its own in the arrays, in
    // blocks from malloc, which the list then owns. A text ends at its first zero byte.
    Byte2Type m_b2PropertyCapacity; // slots in each array; 0 if there are no arrays
    Byte2Type m_b2PropertyCount;
    char** m_pachSections;
    char** m_pachKeys;
    char** m_pachValues;
};

} // namespace VESK

#endif
