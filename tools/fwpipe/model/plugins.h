// SPDX-License-Identifier: MIT
// Plugin files: where they are, whether they can be plugins, and, if they may be loaded, what they tell about themselves.
#ifndef FWPIPE_MODEL_PLUGINS_H
#define FWPIPE_MODEL_PLUGINS_H

#include "model.h"

#include <string>

namespace VESK {
struct PluginDescription;
}

namespace FwPipe {

struct Plugin {
    const char* pchId = nullptr; // of the diagnosis when it cannot be used: "missing-plugin" or "unreadable"
    std::string cReason;
    bool bLibrary = false;
    const VESK::PluginDescription* pDescription = nullptr; // lent; null if it was not loaded or has none
};

class Plugins {
public:
    virtual ~Plugins() = default;
    virtual Plugin Find(const std::string& cPath) = 0;

    // Whether a plugin creates elements of the type, which none describes; true when that is not known.
    virtual bool Creates(const std::string&) { return true; }

    // Completes elements of types without a description, as far as that is possible.
    virtual void Learn(Pipeline&, Diagnoses&) {}
};

// Looks at files only: no plugin is opened by the loader.
class PluginFiles : public Plugins {
public:
    Plugin Find(const std::string& cPath) override;
};

} // namespace FwPipe

#endif
