// SPDX-License-Identifier: MIT
#include "support.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace fuzz {

namespace {

struct OwnTypes : VESK::PLUGIN {
    OwnTypes() { m_pFactory = ::GetFactory(); }
    int Initialize(VESK::FRAMEWORK*) override { return 1; }
};

} // namespace

void Broken(const char* claim, const char* file, int line) {
    dprintf(STDERR_FILENO, "%s:%d: does not hold: %s\n", file, line, claim); // the streams are in memory
    std::abort();
}

void Put(Entries& entries, const Entry& entry) {
    for (Entry& old : entries) {
        if (old.section == entry.section && old.key == entry.key) {
            old.value = entry.value;
            return;
        }
    }
    entries.push_back(entry);
}

bool Holds(const VESK::PROPERTIES& list, const Entries& entries) {
    bool equal = list.m_b2PropertyCount == entries.size();
    for (std::size_t u = 0; equal && u < entries.size(); ++u) {
        equal = entries[u].section == list.m_pachSections[u] && entries[u].key == list.m_pachKeys[u] &&
                entries[u].value == list.m_pachValues[u];
    }
    return equal;
}

bool Same(const VESK::PROPERTIES& one, const VESK::PROPERTIES& other) {
    bool equal = one.m_b2PropertyCount == other.m_b2PropertyCount;
    for (unsigned int u = 0; equal && u < one.m_b2PropertyCount; ++u) {
        equal = std::strcmp(one.m_pachSections[u], other.m_pachSections[u]) == 0 &&
                std::strcmp(one.m_pachKeys[u], other.m_pachKeys[u]) == 0 &&
                std::strcmp(one.m_pachValues[u], other.m_pachValues[u]) == 0;
    }
    return equal;
}

bool Modest(VESK::EObject& element) {
    unsigned int pads = 0, passthrough = 0;
    element.m_cProperties.GetProperty(VESK::Key::TotalSourcePads, &pads, 0, VESK::Section::Standard);
    element.m_cProperties.GetProperty(VESK::Key::Passthrough, &passthrough, 0, VESK::Section::Standard);
    bool modest = (pads < 20 || pads > 0xFFFF0000) && passthrough < 20;
    if (auto* const pPipe = dynamic_cast<VESK::EPipeline*>(&element)) {
        modest = modest && pPipe->m_b2ConnectionCount < 8 && pPipe->m_iElementCount < 20;
        for (int i = 0; modest && i < pPipe->m_iElementCount; ++i) {
            modest = Modest(*pPipe->m_ppElements[i]);
        }
        for (unsigned int u = 0; u < pPipe->m_b2ConnectionCount; ++u) {
            modest = modest &&
                     pPipe->m_ppConnections[u]->b2SourceElement < pPipe->m_ppConnections[u]->b2SinkElement;
        }
    }
    return modest;
}

OwnFramework::OwnFramework() {
    m_ppPlugins = static_cast<VESK::PLUGIN**>(VESK::fwmalloc(16 * sizeof(VESK::PLUGIN*)));
    m_b2PluginCapacity = 16;
    m_ppPlugins[m_b2PluginCount++] = new OwnTypes;
}

} // namespace fuzz
