// SPDX-License-Identifier: MIT
// FRAMEWORK: the first object that a host creates. It is the property list of framework-wide settings, owns the loaded
// plugins, creates objects by type name, and prints the messages of elements.
//
// It knows no types itself: AddPlugin("libfwlib.so") adds the built-in ones. Everything created through a plugin must
// be destroyed before the framework, whose destructor unloads the plugins' code; otherwise a Debug build of the library
// aborts. An exception that a plugin's factory throws is reported on standard error, and the result is null. One thread
// at a time; each thread may have a framework of its own.
#ifndef FWLIB_FRAMEWORK_FRAMEWORK_H
#define FWLIB_FRAMEWORK_FRAMEWORK_H

#include "fwlib/export.h"
#include "fwlib/framework/messages.h"
#include "fwlib/properties/properties.h"
#include "fwlib/types.h"

#include <cstdarg>

namespace VESK {

class FWLIB_EXPORT FRAMEWORK : public PROPERTIES {
public:
    FRAMEWORK();
    ~FRAMEWORK();

    // Call the plugins' factories in load order and return the first object that one creates; the caller owns it. If
    // there is none, they report "FRAMEWORK::<operation>: Could not instantiate: %s\n" on standard error and return
    // null.
    EObject* CreateElement(char* pchType); // sets the element's m_pFramework
    QObject* CreateQObject(char* pchType);
    void* CreateObject(char* pchType);

    // Print a trace line on standard output: "type - name: " of an element, or "name: ", and the formatted text, which
    // contains the newline. With a null element or name, nothing is printed. The level is not checked here, but by EObject::Message.
    void Message(EObject* pElement, int iLevel, const char* pchFormat, va_list Values) FWLIB_PRINTF(4, 0);
    void Message(char* pchName, int iLevel, const char* pchFormat, va_list Values) FWLIB_PRINTF(4, 0);

    // Prints an error line on standard error: "ERROR: type - name: " and the formatted text. Sets m_bError. If the
    // framework's property "EndErrorLines" is not 0, appends a newline to a text that does not end with one.
    void ErrorMessage(EObject* pElement, const char* pchFormat, va_list Values) FWLIB_PRINTF(3, 0);

    // Prints a warning line on standard error: "WARNING: type - name: " and the formatted text. Appends a newline like
    // ErrorMessage. Does not change m_bError.
    void WarningMessage(EObject* pElement, const char* pchFormat, va_list Values) FWLIB_PRINTF(3, 0);

    // Passes the lines of this framework, of its elements and of the building of its pipelines to the handler, which
    // replaces printing (messages.h). With a null handler they are printed again. The context is passed to each call; the
    // caller owns it. Text that an element prints itself, for example with printf, is not passed.
    int SetMessageHandler(MessageHandler pHandler, void* pContext);

    // RequestEnd asks the host to end the runs, as if the data had ended. It may be called by any thread and by signal
    // handlers. The request remains until ResetEnd. EndRequested returns 1 after a request, and while the host's query
    // returns a value other than 0; elements call it as EObject::EndRequested. A null query removes the query. If there was
    // not enough memory when the framework was constructed, a request has no effect, and SetEndQuery and SetMessageHandler
    // return 0 and change nothing; otherwise they return 1.
    void RequestEnd();
    void ResetEnd();
    int EndRequested();
    int SetEndQuery(int (*pQuery)(void* pContext), void* pContext);

    // Adds a factory of the host, which is used like that of a plugin; plugins and factories that were added before are
    // called first. The caller owns the factory, which must exist as long as the framework. Calls the factory's Initialize.
    // Returns 0 for null, when there is not enough memory, and when there are 65,520 plugins and factories.
    int AddFactory(Factory* pFactory);

    // Loads a plugin, which the caller owns. Returns null after a report when it cannot be loaded, and when there is
    // not enough memory.
    PLUGIN* LoadPlugin(char* pchPath);

    // Loads a plugin, which the framework owns. Returns 0 when it cannot be loaded, when there is not enough memory, or
    // when there are 65,520 plugins. The same path may be added again: its factory is then called twice.
    int AddPlugin(char* pchPath);

    // Provides nothing: returns 1 and leaves *ppComponent unchanged.
    int GetDataRecorderComponentPortal(char* pchName, KESTRAN::IComponent** ppComponent);

    // The order of the fields is part of the binary interface.
    int m_bError; // 1 after an error line was printed; the library never clears it
    Byte2Type m_b2PluginCapacity;
    Byte2Type m_b2PluginCount;
    PLUGIN** m_ppPlugins; // owned, as are the plugins; in load order
};

} // namespace VESK

#endif
