// SPDX-License-Identifier: MIT
// The settings of a serializing element for its file.
#ifndef FWLIB_STREAMS_FILESETTINGS_H
#define FWLIB_STREAMS_FILESETTINGS_H

#include "fwlib/internal/hidden.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/properties/properties.h"
#include "fwlib/types.h"

namespace FWLIB_HIDDEN VESK {

struct FileSettings {
    enum class Existing { Replace, Append, Refuse };

    explicit FileSettings(PROPERTIES& cProperties);

    // Return whether the settings are valid. If they are not, the element reports that.
    bool NameFits(EObject& cElement) const;
    bool ReadForWriting(EObject& cElement); // also reads the settings that only a recorder has
    char* Name() { return m_bNamed ? m_achName : nullptr; } // null for a standard stream
    bool Strict() const { return m_uStrict != 0; }
    bool Shared() const { return m_uShared != 0; }
    Existing WhatExists() const { return m_Existing; } // what to do with a file that exists

private:
    char m_achName[FileNameSize];
    bool m_bNamed;
    bool m_bCut; // the name is truncated
    Existing m_Existing;
    unsigned int m_uStrict;
    unsigned int m_uShared;
};

} // namespace VESK

#endif
