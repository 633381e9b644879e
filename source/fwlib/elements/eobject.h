// SPDX-License-Identifier: MIT
// EObject: the base of every element.
//
// An element owns a property list and its pads, reports through its framework, and lives like this: built (no
// pads), given a framework and properties, initialized (it creates its pads), connected, running, destroyed
// (its pads go with it). A concrete element sets "EObjectType" in its constructor, creates its pads in
// Initialize, does its work in DataArrived, and overrides Run when it originates data.
//
// An object that arrives is lent for the call: the receiver may pass the same object on through its source
// pads, and takes a Duplicate when it wants to keep one; it neither deletes it nor keeps the pointer.
// Everything runs on the caller's thread.
#ifndef FWLIB_ELEMENTS_EOBJECT_H
#define FWLIB_ELEMENTS_EOBJECT_H

#include "fwlib/export.h"
#include "fwlib/properties/properties.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT EObject {
public:
    EObject();

    // The order of the virtual operations is part of the binary interface.

    virtual ~EObject(); // deletes the pads; source pads elsewhere that point at them are left pointing

    // Reads the debug level: "Debug" of this element, else of the framework, else 0. Returns 1. Concrete
    // elements create their pads here, and call this first when they want the level.
    virtual int Initialize();

    // An object has come through the sink pad of that index. 1 when it was handled, 0 on failure.
    virtual int DataArrived(QObject* pObject, Byte2Type b2Index) = 0;

    // Originates data. The base reports "EObject::Run: Should not be called: %s.\n" on standard error: 0.
    virtual int Run();

    virtual Byte2Type GetSinkPadCount();
    virtual SINKPAD* GetSinkPad(Byte2Type b2Position); // null from the count on; the element keeps it
    virtual Byte2Type GetSourcePadCount();
    virtual SOURCEPAD* GetSourcePad(Byte2Type b2Position);

    EObject(const EObject&) = delete;
    EObject& operator=(const EObject&) = delete;

    // Appends the pad, which the element then owns. 0 when memory is out or the list holds 65,520 pads: the
    // pad stays the caller's.
    int AddSinkPad(SINKPAD* pPad);
    int AddSourcePad(SOURCEPAD* pPad);

    // A trace line on standard output, "type - name: " and the text, when the debug level is at least iLevel
    // and there is a framework. The format ends its own line.
    void Message(int iLevel, const char* pchFormat, ...) FWLIB_PRINTF(3, 4);

    // An error line on standard error, "ERROR: type - name: " and the text, which also sets the framework's
    // error flag; nothing without a framework.
    void ErrorMessage(const char* pchFormat, ...) FWLIB_PRINTF(2, 3);

    // The fields in their order are part of the binary interface.
    PROPERTIES m_cProperties;
    FRAMEWORK* m_pFramework; // lent; set by whoever creates the element, null until then
    int m_iDebug;            // the debug level that Initialize found
    Byte2Type m_b2SinkPadCapacity;
    Byte2Type m_b2SinkPadCount;
    SINKPAD** m_ppSinkPads; // owned, as are the pads
    Byte2Type m_b2SourcePadCapacity;
    Byte2Type m_b2SourcePadCount;
    SOURCEPAD** m_ppSourcePads;
};

} // namespace VESK

#endif
