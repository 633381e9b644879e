// SPDX-License-Identifier: MIT
// PLUGIN: supplies a framework with a factory. FWPLUGIN: a plugin in a shared object.
//
// A plugin's shared object exports GetFactory (entry.h). The factory belongs to the shared object and is
// never deleted; the shared object is closed when the plugin is destroyed.
#ifndef FWLIB_FRAMEWORK_PLUGIN_H
#define FWLIB_FRAMEWORK_PLUGIN_H

#include "fwlib/export.h"
#include "fwlib/types.h"

namespace VESK {

class FWLIB_EXPORT PLUGIN {
public:
    PLUGIN();
    PLUGIN(const PLUGIN&) = delete;
    PLUGIN& operator=(const PLUGIN&) = delete;

    // The order of the virtual operations is part of the binary interface.
    virtual ~PLUGIN();
    virtual int Initialize(FRAMEWORK* pFramework) = 0; // 1 when the factory was obtained

    // The factory, lent; without one, reports "ERROR: PLUGIN::GetFactory(): Factory is NULL!\n" on
    // standard error and returns null.
    Factory* GetFactory();

    // The fields in their order are part of the binary interface.
    FRAMEWORK* m_pFramework; // lent
    Factory* m_pFactory;     // lent by the shared object; null until Initialize
};

class FWLIB_EXPORT FWPLUGIN : public PLUGIN {
public:
    enum : unsigned int { PathSize = 256 };

    // The path of the shared object, at most 255 characters. The loader searches for a name without a slash;
    // "libfwlib.so" is always this library. With a null or longer path, Initialize fails.
    explicit FWPLUGIN(char* pchPath);
    ~FWPLUGIN() override;

    // Opens the shared object, obtains its factory and initializes it. Reports on standard error and returns
    // 0 when it cannot be opened, is no regular file, is truncated, exports no GetFactory of its own, or returns no
    // factory.
    int Initialize(FRAMEWORK* pFramework) override;

    char m_achPath[PathSize]; // empty if the path was too long
    void* m_pHandle;          // the loader's; null until Initialize
};

} // namespace VESK

#endif
