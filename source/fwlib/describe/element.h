// SPDX-License-Identifier: MIT
// Element<T> and DataObject<T>: base classes with the code that all element and data object classes have in common.
//
//   class EFilter : public Element<EFilter> {
//   public:
//       static constexpr const char* TypeName = "EFilter";
//       static constexpr const char* Meaning = "forwards objects whose value is large enough";
//       static void Declare(Declaration<EFilter>& cDeclare);                  // properties and pads
//       int DataArrived(QObject* pObject, Byte2Type b2Index) override;        // of an element with sink pads
//       int Run() override;                                                   // of one that sends objects by itself
//       int RunsEnded();                                                      // optional: see runsend.h
//   };
//
// All of these are public. A class that has more to do in Initialize overrides it and calls Element::Initialize first.
#ifndef FWLIB_DESCRIBE_ELEMENT_H
#define FWLIB_DESCRIBE_ELEMENT_H

#include "fwlib/describe/declaration.h"
#include "fwlib/elements/eobject.h"
#include "fwlib/elements/pad.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/elements/runsend.h"
#include "fwlib/text.h"
#include "fwlib/types.h"

#include <new>
#include <type_traits>

namespace VESK {

template <class T>
class Element : public EObject {
public:
    Element() { m_cProperties.SetProperty(Key::EObjectType, VESK::Text(T::TypeName), Section::Standard); }

    // Reads the debug level and the properties that T declares, and creates the pads. Returns 1, or 0 after a report.
    int Initialize() override {
        if (!EObject::Initialize()) {
            return 0;
        }
        T& cSelf = static_cast<T&>(*this);
        Declaration<T> cDeclaration(&cSelf);
        T::Declare(cDeclaration);
        using OwnEnd = std::integral_constant<
            bool, !std::is_same<decltype(&T::RunsEnded), decltype(&Element::RunsEnded)>::value>;
        return cDeclaration.Finish() && RegisterEnd(OwnEnd());
    }

    // Never called; a class that has work to do at the end of the runs declares its own.
    int RunsEnded() { return 1; }

    // Reports an error; a class with sink pads overrides it.
    int DataArrived(QObject*, Byte2Type b2Index) override {
        ErrorMessage("DataArrived(%d): no objects are expected\n", b2Index);
        return 0;
    }

    // Sends the object through a source pad and returns the result of the delivery; 0 with a report when there is no such
    // pad.
    int Push(QObject* pObject, Byte2Type b2Pad = 0) {
        if (b2Pad >= m_b2SourcePadCount) {
            ErrorMessage("Push(): no source pad %d\n", b2Pad);
            return 0;
        }
        return m_ppSourcePads[b2Pad]->Push(pObject);
    }

private:
    static int CallEnd(EObject& cElement) { return static_cast<T&>(cElement).RunsEnded(); }
    int RegisterEnd(std::true_type) { return AtRunsEnd(*this, &CallEnd); }
    int RegisterEnd(std::false_type) { return 1; }
};

template <class T>
class DataObject : public QObject {
public:
    DataObject() {
        static_assert(Length(T::TypeName) < 32, "a stream holds at most 31 characters of a type's name");
        m_cProperties.SetProperty(Key::QObjectType, VESK::Text(T::TypeName), Section::Standard);
    }

    // A T with the same properties, owned by the caller; null when there is not enough memory. A class with fields of its
    // own overrides this.
    QObject* Duplicate() override {
        T* const pCopy = new (std::nothrow) T;
        if (pCopy) {
            pCopy->Copy(this);
        }
        return pCopy;
    }

private:
    static constexpr std::size_t Length(const char* pch) { return pch && *pch ? 1 + Length(pch + 1) : 0; }
};

} // namespace VESK

#endif
