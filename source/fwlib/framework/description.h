// SPDX-License-Identifier: MIT
// The description of a plugin's types, in plain structures. The plugin's function GetPluginDescription (entry.h) returns
// it. Tools read it without creating objects. FWLIB_PLUGIN (plugintypes.h) defines that function; a plugin may also define
// it itself.
//
// All texts and tables are lent while the plugin is loaded. Arrays of pointers end with null. A later version of the
// structures only appends fields.
#ifndef FWLIB_FRAMEWORK_DESCRIPTION_H
#define FWLIB_FRAMEWORK_DESCRIPTION_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

enum PropertyKind {
    TextProperty = 0,
    NumberProperty = 1, // a decimal integer
    RealProperty = 2,   // a decimal number, also with a fraction and an exponent
    FlagProperty = 3,   // 0 or 1; also false, true, no, yes, off, on
    ChoiceProperty = 4, // one of pchChoices
    FileToReadProperty = 5,
    FileToWriteProperty = 6,
};

struct PropertyDescription {
    const char* pchKey;
    Byte4Type b4Kind;       // a PropertyKind
    Byte4Type b4Required;   // 1: Initialize fails without the property
    const char* pchDefault; // as a pipe file gives it; null when there is none
    const char* pchLeast;   // the bounds of a number, as decimal texts; null when there is none
    const char* pchMost;
    const char* pchChoices; // separated by '|'; null for other kinds
    const char* pchUnit;    // null when there is none
    const char* pchMeaning; // one line
};

// The number of pads: b4Count, or the value of the property pchProperty, with b4Count as its default. If this property is
// a text, it names an inner element, and the pads are those of that element.
struct PadsDescription {
    Byte4Type b4Count;
    const char* pchProperty; // null for a fixed number
};

struct ElementDescription {
    const char* pchType;
    const char* pchMeaning; // one line
    Byte4Type b4Originates; // 1: Run sends objects, so the element may be the sink element of a pipeline
    PadsDescription SinkPads;
    PadsDescription SourcePads;
    const PropertyDescription* const* ppProperties; // without those of CommonProperties
};

struct ObjectDescription {
    const char* pchType;
    const char* pchMeaning;
};

struct PluginDescription {
    enum : Byte4Type { CurrentVersion = 1 };

    Byte4Type b4Version;        // of these structures: CurrentVersion
    Byte4Type b4LibraryVersion; // FWLIB_VERSION of the headers that the plugin was compiled with
    const ElementDescription* const* ppElements;
    const ObjectDescription* const* ppObjects;
};

// Returns the properties that every element has, "Name" and "Debug", in an array that ends with null.
FWLIB_EXPORT const PropertyDescription* const* CommonProperties();

// Returns the description of the element type, or null. pPlugin may be null.
FWLIB_EXPORT const ElementDescription* FindElementDescription(const PluginDescription* pPlugin,
                                                              const char* pchType);

} // namespace VESK

#endif
