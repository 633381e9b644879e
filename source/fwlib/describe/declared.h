// SPDX-License-Identifier: MIT
// What a DeclarationBase has collected.
#ifndef FWLIB_DESCRIBE_DECLARED_H
#define FWLIB_DESCRIBE_DECLARED_H

#include "fwlib/framework/description.h"
#include "fwlib/internal/growth.h"
#include "fwlib/internal/hidden.h"
#include "fwlib/properties/values.h"
#include "fwlib/types.h"

namespace FWLIB_HIDDEN VESK {

// A table of owned objects of a class derived from Entry. The array of pointers ends with null.
template <class Entry, class Own>
class OwnedTable {
public:
    OwnedTable() : m_ppEntries(nullptr), m_b4Capacity(0), m_b4Count(0) {}
    OwnedTable(const OwnedTable&) = delete;
    OwnedTable& operator=(const OwnedTable&) = delete;
    ~OwnedTable() {
        for (Byte4Type b4 = 0; b4 < m_b4Count; ++b4) {
            delete static_cast<Own*>(m_ppEntries[b4]);
        }
        fwfree(m_ppEntries);
    }

    // Adopts the entry. Returns 0, with the entry deleted, when there is not enough memory; also for null.
    int Adopt(Own* pEntry) {
        if (!pEntry || !MakeRoom(m_b4Capacity, m_b4Count + 1, LargestCapacity, m_ppEntries)) {
            delete pEntry;
            return 0;
        }
        m_ppEntries[m_b4Count] = pEntry;
        m_ppEntries[++m_b4Count] = nullptr;
        return 1;
    }

    // Lent until the next Adopt.
    const Entry* const* Begin() const {
        static constexpr const Entry* None[] = {nullptr};
        return m_ppEntries ? m_ppEntries : None;
    }

private:
    Entry** m_ppEntries;
    Byte4Type m_b4Capacity;
    Byte4Type m_b4Count;
};

struct DeclaredProperty : PropertyDescription {
    char achDefault[NumberTextSize]; // of a number: the texts that the description refers to
    char achLeast[NumberTextSize];
    char achMost[NumberTextSize];
};

struct DeclaredPads : PadsDescription {
    bool bDeclared;
};

struct Declared {
    explicit Declared(EObject* pInitialized) : pElement(pInitialized), SinkPads(), SourcePads() {}

    EObject* const pElement; // lent; null when a class is described
    OwnedTable<PropertyDescription, DeclaredProperty> cProperties;
    DeclaredPads SinkPads; // b4Count is what the property says, once it has been read
    DeclaredPads SourcePads;
    bool bWrong = false; // something was reported
    bool bNoMemory = false;
};

inline Declared* Of(void* pState) {
    return static_cast<Declared*>(pState);
}

// A property with that description, owned by the caller until Declare; null when there is not enough memory.
DeclaredProperty* NewProperty(Declared* pDeclared, PropertyKind Kind, const char* pchKey, const char* pchUnit,
                              const char* pchMeaning);

// Adopts the property, unless it has a fault or its key is null, empty or declared before; then it is deleted and that is
// reported. Returns 1 when an element is initialized: *ppchText is the element's text for it, lent, or null without one.
int Declare(Declared& cDeclared, DeclaredProperty* pNew, const char* pchFault, const char** ppchText);

// The first property with that key, lent; null if there is none.
const PropertyDescription* FindProperty(const PropertyDescription* const* ppProperties, const char* pchKey);

// Declares pads: a fixed number, or what the property pchKey says. Returns 0, after a report, when they were before.
int DeclarePads(Declared* pDeclared, DeclaredPads Declared::*pPads, const char* pchKind, Byte4Type b4Count,
                const char* pchKey);

} // namespace VESK

#endif
