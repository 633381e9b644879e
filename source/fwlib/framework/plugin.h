// SPDX-License-Identifier: MIT
// PLUGIN: supplies a framework with a factory. FWPLUGIN: a plugin in a shared object.
//
// A plugin's shared object exports GetFactory (entry.h). The shared object owns the factory, which is never deleted. The
// shared object is closed when the plugin is destroyed.
#ifndef FWLIB_FRAMEWORK_PLUGIN_H
#define FWLIB_FRAMEWORK_PLUGIN_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

struct PluginDescription;

class FWLIB_EXPORT PLUGIN {
public:
    PLUGIN();
    PLUGIN(const PLUGIN&) = delete;
    PLUGIN& operator=(const PLUGIN&) = delete;

    // The order of the virtual operations is part of the binary interface.
    virtual ~PLUGIN();
    virtual int Initialize(FRAMEWORK* pFramework) = 0; // returns 1 if the factory was obtained

    // Returns the factory, lent. If there is none, reports "ERROR: PLUGIN::GetFactory(): Factory is NULL!\n" on
    // standard error and returns null.
    Factory* GetFactory();

    // The order of the fields is part of the binary interface.
    FRAMEWORK* m_pFramework; // lent
    Factory* m_pFactory;     // lent by the shared object; null until Initialize
};

class FWLIB_EXPORT FWPLUGIN : public PLUGIN {
public:
    enum : unsigned int { PathSize = 256 };

    // The path of the shared object, at most 255 characters. A name without a slash is searched for in the folders of
    // FWLIB_PLUGIN_PATH, then in fwlib/plugins beside the library, then by the loader. "libfwlib.so" is always this
    // library. With a null, empty or longer path, Initialize fails.
    explicit FWPLUGIN(char* pchPath);
    ~FWPLUGIN() override;

    // Opens the shared object, obtains its factory and initializes it. Reports on standard error and returns 0 if the
    // file cannot be opened, is not a regular file or is truncated, if it exports no GetFactory of its own, or if that
    // returns null.
    int Initialize(FRAMEWORK* pFramework) override;

    // Returns the description of the plugin's types, lent while the plugin is loaded. Returns null before Initialize, for a
    // plugin without a function GetPluginDescription of its own, and for structures of a version unknown to this library.
    const PluginDescription* GetDescription();

    char m_achPath[PathSize]; // empty if the path was too long
    void* m_pHandle;          // from dlopen; null until Initialize
};

} // namespace VESK

#endif
