// SPDX-License-Identifier: MIT
// QObject: a data object, whose content is a property list. QEOF: the object that ends a stream.
//
// The creator of an object owns it. A derived class stores its type name in "QObjectType", from which a reader creates
// the object again through the framework, and overrides Duplicate. Use GetEOF to recognize a QEOF: its type name is
// "QObject" too.
#ifndef FWLIB_ELEMENTS_QOBJECT_H
#define FWLIB_ELEMENTS_QOBJECT_H

#include "fwlib/export.h"
#include "fwlib/properties/properties.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT QObject {
public:
    QObject(); // sets "QObjectType" to "QObject"
    QObject(const QObject&) = delete;
    QObject& operator=(const QObject&) = delete;

    // The order of the virtual operations is part of the binary interface.

    virtual ~QObject();

    // A new object with the same properties, owned by the caller; null when there is not enough memory. The base class
    // creates a plain QObject, whatever the class of this object.
    virtual QObject* Duplicate();

    // Write and read the object in a stream: a line with the type name (at most 31 characters), then the property list.
    // Both return 1. Deserialize reads only the list, as the caller has read the type line to create the object. If the
    // stream ends early, the properties before the end are set.
    virtual int Serialize(SWrite* pWriter);
    virtual int Deserialize(SRead* pReader);

    virtual int Write(SWrite* pWriter); // writes nothing and returns 1
    virtual int GetEOF();               // returns 0

    int Copy(QObject* pObject); // sets every property of the other object in this one; returns 1

    // The order of the fields is part of the binary interface.
    PROPERTIES m_cProperties;
    Byte2Type m_b2Reserved; // 0; neither copied nor written
};

class FWLIB_EXPORT QEOF : public QObject {
public:
    QEOF();
    ~QEOF() override;
    QObject* Duplicate() override; // returns a QEOF
    int GetEOF() override;         // returns 1
};

} // namespace VESK

#endif
