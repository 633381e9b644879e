// SPDX-License-Identifier: MIT
// Declaration<T>: the properties and pads of an element class, declared once. Element<T> (element.h) passes it to the
// class's function Declare, to fill the fields of an element in Initialize. FWLIB_PLUGIN (plugintypes.h) does the same to
// describe the class without an element.
//
//   static void Declare(Declaration<ERate>& cDeclare) {
//       cDeclare.SinkPads(1);
//       cDeclare.SourcePads(1);
//       cDeclare.Number("Every", &ERate::m_uEvery, 1000, 1, 1000000, "objects", "objects between two lines");
//   }
//
// Each property has a key, the field that it fills, the default that is used if the property is missing, and its meaning
// in one line. Initialize sets the fields. A unit may be null. Keys, defaults, choices, units and meanings must exist while
// the class's code is loaded: use literals.
//
// Initialize reports each wrong value as an error of the element, with the key, the value and the allowed values, and
// returns 0. It also reports a wrong declaration and returns 0: a key that is null, empty or declared twice, a default
// outside its bounds, choices that are null or empty, pads declared twice, too many pads. The description omits what is
// declared wrongly; of a key that is declared twice it has the first.
#ifndef FWLIB_DESCRIBE_DECLARATION_H
#define FWLIB_DESCRIBE_DECLARATION_H

#include "fwlib/elements/eobject.h"
#include "fwlib/export.h"
#include "fwlib/framework/description.h"
#include "fwlib/types.h"

#include <cstddef>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

namespace VESK {

// T itself. A function parameter of this type is not used to deduce T.
template <class T>
struct SameType {
    using Type = T;
};
template <class T>
using Same = typename SameType<T>::Type;

// The part of Declaration<T> that does not depend on T.
class FWLIB_EXPORT DeclarationBase {
public:
    DeclarationBase(const DeclarationBase&) = delete;
    DeclarationBase& operator=(const DeclarationBase&) = delete;

    // Declare pads, at most 65,520 sink pads and 65,520 source pads; 0 unless declared. Finish creates them. The index of a
    // sink pad is its position.
    void SinkPads(Byte4Type b4Count);
    void SourcePads(Byte4Type b4Count);

    // The same, and declare a number property that sets the number of pads.
    void SinkPadsFrom(const char* pchKey, Byte4Type b4Default, const char* pchMeaning);
    void SourcePadsFrom(const char* pchKey, Byte4Type b4Default, const char* pchMeaning);

    // Call this after all declarations. Creates the pads. Returns 1; or 0, after a report, when a property or a declaration
    // was wrong or a pad could not be created.
    int Finish();

protected:
    explicit DeclarationBase(EObject* pElement); // null: describes only
    ~DeclarationBase();

    // Each reads a property into the caller's variable, or describes it. Returns 1 when there is a value to store.
    int ReadSigned(const char* pchKey, long long* pllValue, long long llDefault, long long llLeast,
                   long long llMost, const char* pchUnit, const char* pchMeaning);
    int ReadUnsigned(const char* pchKey, unsigned long long* pullValue, unsigned long long ullDefault,
                     unsigned long long ullLeast, unsigned long long ullMost, const char* pchUnit,
                     const char* pchMeaning);
    int ReadReal(const char* pchKey, double* pdValue, double dDefault, double dLeast, double dMost,
                 const char* pchUnit, const char* pchMeaning);
    int ReadReal(const char* pchKey, float* pfValue, float fDefault, float fLeast, float fMost,
                 const char* pchUnit, const char* pchMeaning);
    int ReadFlag(const char* pchKey, bool* pbValue, bool bDefault, const char* pchMeaning);
    int ReadChoice(const char* pchKey, Byte4Type* pb4Index, const char* pchDefault, const char* pchChoices,
                   const char* pchMeaning);
    // The text is lent until the element's properties change. A text of b4Size or more characters is refused; 0: no limit.
    int ReadText(const char* pchKey, PropertyKind Kind, const char** ppchValue, const char* pchDefault,
                 Byte4Type b4Size, const char* pchMeaning);

    EObject* Described() const { return m_pElement; }

private:
    friend class DescriptionTable;

    EObject* const m_pElement; // lent; null when a class is described
    void* m_pState;            // the library's
};

// Collects the descriptions of a plugin's types; FWLIB_PLUGIN has one for each plugin.
class FWLIB_EXPORT DescriptionTable {
public:
    DescriptionTable();
    ~DescriptionTable(); // the description is lent until then
    DescriptionTable(const DescriptionTable&) = delete;
    DescriptionTable& operator=(const DescriptionTable&) = delete;

    // Describe a type. The content of the declaration is moved into the table. A null or empty type is ignored. Return 1, or
    // 0 when there is not enough memory.
    int AddElement(const char* pchType, const char* pchMeaning, bool bOriginates,
                   DeclarationBase& cDeclaration);
    int AddObject(const char* pchType, const char* pchMeaning);

    // Returns the description of all added types, lent; null when there was not enough memory for one of them.
    // b4LibraryVersion is the FWLIB_VERSION of the plugin's headers.
    const PluginDescription* Get(Byte4Type b4LibraryVersion);

private:
    void* m_pState; // the library's
};

template <class T>
class Declaration : public DeclarationBase {
public:
    explicit Declaration(T* pElement = nullptr) : DeclarationBase(pElement), m_pTarget(pElement) {}

    // A number of any integer type. The bounds are those of the field's type when none are given.
    template <class Owner, class Field>
    void Number(const char* pchKey, Field Owner::*pField, Same<Field> Default, Same<Field> Least,
                Same<Field> Most, const char* pchUnit, const char* pchMeaning) {
        static_assert(std::is_integral<Field>::value && !std::is_same<Field, bool>::value,
                      "Number fills an integer; see Real and Flag");
        ReadNumber(std::is_signed<Field>(), pchKey, pField, Default, Least, Most, pchUnit, pchMeaning);
    }
    template <class Owner, class Field>
    void Number(const char* pchKey, Field Owner::*pField, Same<Field> Default, const char* pchUnit,
                const char* pchMeaning) {
        Number(pchKey, pField, Default, std::numeric_limits<Field>::min(), std::numeric_limits<Field>::max(),
               pchUnit, pchMeaning);
    }

    // A float or double. NaN, infinity and numbers outside the range of the field's type are refused.
    template <class Owner, class Field>
    void Real(const char* pchKey, Field Owner::*pField, Same<Field> Default, Same<Field> Least,
              Same<Field> Most, const char* pchUnit, const char* pchMeaning) {
        static_assert(std::is_same<Field, float>::value || std::is_same<Field, double>::value,
                      "Real fills a float or a double");
        Field Value;
        if (ReadReal(pchKey, &Value, Default, Least, Most, pchUnit, pchMeaning)) {
            m_pTarget->*pField = Value;
        }
    }
    template <class Owner, class Field>
    void Real(const char* pchKey, Field Owner::*pField, Same<Field> Default, const char* pchUnit,
              const char* pchMeaning) {
        Real(pchKey, pField, Default, std::numeric_limits<Field>::lowest(), std::numeric_limits<Field>::max(),
             pchUnit, pchMeaning);
    }

    template <class Owner>
    void Flag(const char* pchKey, bool Owner::*pField, bool bDefault, const char* pchMeaning) {
        bool b;
        if (ReadFlag(pchKey, &b, bDefault, pchMeaning)) {
            m_pTarget->*pField = b;
        }
    }

    // One of the choices, which '|' separates: "low|medium|high". A std::string gets the choice, an integer or enumeration
    // its position from 0. Without a default the property must be set.
    template <class Owner>
    void Choice(const char* pchKey, std::string Owner::*pField, const char* pchDefault,
                const char* pchChoices, const char* pchMeaning) {
        Byte4Type b4;
        if (!ReadChoice(pchKey, &b4, pchDefault, pchChoices, pchMeaning)) {
            return;
        }
        const char* pch = pchChoices;
        while (b4-- > 0) {
            pch = std::strchr(pch, '|') + 1;
        }
        (m_pTarget->*pField).assign(pch, std::strcspn(pch, "|"));
    }
    template <class Owner, class Field>
    void Choice(const char* pchKey, Field Owner::*pField, const char* pchDefault, const char* pchChoices,
                const char* pchMeaning) {
        static_assert(std::is_integral<Field>::value || std::is_enum<Field>::value,
                      "Choice fills a std::string, an integer or an enumeration");
        Byte4Type b4;
        if (ReadChoice(pchKey, &b4, pchDefault, pchChoices, pchMeaning)) {
            m_pTarget->*pField = static_cast<Field>(b4);
        }
    }

    // A text; FileToRead and FileToWrite state for tools that it is the name of a file. The field is a std::string or an
    // array of characters; a text that does not fit the array is refused. Without a default the property must be set.
    template <class Owner, class Field>
    void Text(const char* pchKey, Field Owner::*pField, const char* pchDefault, const char* pchMeaning) {
        StoreText(TextProperty, pchKey, pField, pchDefault, pchMeaning);
    }
    template <class Owner, class Field>
    void FileToRead(const char* pchKey, Field Owner::*pField, const char* pchDefault,
                    const char* pchMeaning) {
        StoreText(FileToReadProperty, pchKey, pField, pchDefault, pchMeaning);
    }
    template <class Owner, class Field>
    void FileToWrite(const char* pchKey, Field Owner::*pField, const char* pchDefault,
                     const char* pchMeaning) {
        StoreText(FileToWriteProperty, pchKey, pField, pchDefault, pchMeaning);
    }

private:
    template <class Owner, class Field>
    void ReadNumber(std::true_type, const char* pchKey, Field Owner::*pField, Field Default, Field Least,
                    Field Most, const char* pchUnit, const char* pchMeaning) {
        long long ll;
        if (ReadSigned(pchKey, &ll, Default, Least, Most, pchUnit, pchMeaning)) {
            m_pTarget->*pField = static_cast<Field>(ll);
        }
    }
    template <class Owner, class Field>
    void ReadNumber(std::false_type, const char* pchKey, Field Owner::*pField, Field Default, Field Least,
                    Field Most, const char* pchUnit, const char* pchMeaning) {
        unsigned long long ull;
        if (ReadUnsigned(pchKey, &ull, Default, Least, Most, pchUnit, pchMeaning)) {
            m_pTarget->*pField = static_cast<Field>(ull);
        }
    }
    template <class Owner, class Field>
    void StoreText(PropertyKind, const char*, Field Owner::*, const char*, const char*) {
        static_assert(sizeof(Field) == 0, "Text fills a std::string or an array of characters");
    }
    template <class Owner>
    void StoreText(PropertyKind Kind, const char* pchKey, std::string Owner::*pField, const char* pchDefault,
                   const char* pchMeaning) {
        const char* pch;
        if (ReadText(pchKey, Kind, &pch, pchDefault, 0, pchMeaning)) {
            m_pTarget->*pField = pch;
        }
    }
    template <class Owner, std::size_t Size>
    void StoreText(PropertyKind Kind, const char* pchKey, char (Owner::*pField)[Size], const char* pchDefault,
                   const char* pchMeaning) {
        const char* pch;
        if (ReadText(pchKey, Kind, &pch, pchDefault, static_cast<Byte4Type>(Size), pchMeaning)) {
            std::memcpy(m_pTarget->*pField, pch, std::strlen(pch) + 1);
        }
    }

    T* const m_pTarget; // lent; null when the class is described
};

} // namespace VESK

#endif
