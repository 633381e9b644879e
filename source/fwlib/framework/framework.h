// SPDX-License-Identifier: MIT
// FRAMEWORK: the first object a host creates. It is the list of framework-wide settings, keeps the loaded
// plugins, creates objects by type name, and writes the lines that elements report.
//
// It has no types of its own: the built-in ones come with AddPlugin("libfwlib.so"). Everything created
// through a plugin must be destroyed before the framework, whose destructor unloads the plugins' code; a Debug build
// of the library aborts when it is not. An exception that leaves a plugin's factory is reported on standard error
// and counts as null. One thread at a time; threads may each have a framework of their own.
#ifndef FWLIB_FRAMEWORK_FRAMEWORK_H
#define FWLIB_FRAMEWORK_FRAMEWORK_H

#include "fwlib/export.h"
#include "fwlib/properties/properties.h"
#include "fwlib/types.h"

#include <cstdarg>

namespace VESK {

class FWLIB_EXPORT FRAMEWORK : public PROPERTIES {
public:
    FRAMEWORK();
    ~FRAMEWORK();

    // Ask the plugins' factories in load order: the first object returned counts, and the caller owns it. When there
    // is none, "FRAMEWORK::<operation>: Could not instantiate: %s\n" goes to standard error and null comes
    // back.
    EObject* CreateElement(char* pchType); // its m_pFramework is this framework
    QObject* CreateQObject(char* pchType);
    void* CreateObject(char* pchType);

    // Trace lines on standard output: "type - name: " of an element, or "name: ", and the formatted text,
    // which ends its own line. Nothing for null. The level is not examined here: EObject::Message filters.
    void Message(EObject* pElement, int iLevel, const char* pchFormat, va_list Values) FWLIB_PRINTF(4, 0);
    void Message(char* pchName, int iLevel, const char* pchFormat, va_list Values) FWLIB_PRINTF(4, 0);

    // An error line on standard error: "ERROR: type - name: " and the formatted text. Sets m_bError. When the framework's
    // property "EndErrorLines" is not 0, a newline follows a text that does not end with one.
    void ErrorMessage(EObject* pElement, const char* pchFormat, va_list Values) FWLIB_PRINTF(3, 0);

    // A loaded plugin owned by the caller, or null after the plugin's own report.
    PLUGIN* LoadPlugin(char* pchPath);

    // Loads a plugin and keeps it. 0 when it cannot be loaded, when memory is out or when there are 65,520
    // plugins. The same path may be added again and is then asked twice.
    int AddPlugin(char* pchPath);

    // Provides nothing: returns 1 and leaves the component pointer alone.
    int GetDataRecorderComponentPortal(char* pchName, KESTRAN::IComponent** ppComponent);

    // The fields in their order are part of the binary interface.
    int m_bError; // 1 once an error line was written; never cleared by the library
    Byte2Type m_b2PluginCapacity;
    Byte2Type m_b2PluginCount;
    PLUGIN** m_ppPlugins; // owned, as are the plugins, in load order
};

} // namespace VESK

#endif
