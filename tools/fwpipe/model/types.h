// SPDX-License-Identifier: MIT
// The types that a pipe file can use: those of the library, and those of the plugins that were read.
#ifndef FWPIPE_MODEL_TYPES_H
#define FWPIPE_MODEL_TYPES_H

#include <string>
#include <vector>

namespace VESK {
struct ElementDescription;
struct PluginDescription;
struct PropertyDescription;
} // namespace VESK

namespace FwPipe {

// Null if the type does not describe the key.
const VESK::PropertyDescription* FindProperty(const VESK::ElementDescription& cType, const std::string& cKey);

const VESK::ElementDescription& PipelineType(); // what the library says of a nested pipeline

class KnownTypes {
public:
    // The plugin serves types from now on; null: it was not read, so it may serve any.
    void Add(const VESK::PluginDescription* pPlugin, bool bLibrary);

    // Whether some plugin serves the type, or may.
    bool MayServe(const std::string& cType) const;
    const VESK::ElementDescription*
    Find(const std::string& cType) const; // of the first plugin; null for none
    bool IsOfLibrary(const VESK::ElementDescription* pType) const;
    std::vector<std::string> Names() const; // of all that are known, the library included

private:
    std::vector<const VESK::PluginDescription*> m_cPlugins;
    bool m_bAny = false;
};

} // namespace FwPipe

#endif
