// SPDX-License-Identifier: MIT
// Factories create elements, data objects and other objects by type name. Every plugin exports one.
//
//   Factory         the interface; do not delete a factory through it
//   LibraryFactory  a base class that creates nothing: override the operations for your types
//   PluginFactory   several factories, called in order
#ifndef FWLIB_FRAMEWORK_FACTORY_H
#define FWLIB_FRAMEWORK_FACTORY_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

// The create operations return a new object, which the caller owns, or null for an unknown name.
class FWLIB_EXPORT Factory {
public:
    // The order of the virtual operations is part of the binary interface.
    virtual EObject* CreateElement(char* pchType) = 0;
    virtual QObject* CreateQObject(char* pchType) = 0;
    virtual void* CreateObject(char* pchType) = 0;     // of a class that the plugin and its caller agree on
    virtual int Initialize(FRAMEWORK* pFramework) = 0; // called by each framework that loads the plugin

protected:
    ~Factory() = default;
};

class FWLIB_EXPORT LibraryFactory : public Factory {
public:
    EObject* CreateElement(char* pchType) override;
    QObject* CreateQObject(char* pchType) override;
    void* CreateObject(char* pchType) override;
    int Initialize(FRAMEWORK* pFramework) override; // returns 1
};

class FWLIB_EXPORT PluginFactory : public Factory {
public:
    // The list ends with null; it is lent and normally a static table of the plugin. A null list creates nothing.
    explicit PluginFactory(Factory** ppFactories);

    // Return the object of the first factory in the list that creates one.
    EObject* CreateElement(char* pchType) override;
    QObject* CreateQObject(char* pchType) override;
    void* CreateObject(char* pchType) override;
    int Initialize(FRAMEWORK* pFramework) override; // initializes every factory of the list, and returns 1

    Factory** m_ppFactories;
};

} // namespace VESK

#endif
