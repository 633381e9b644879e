// SPDX-License-Identifier: MIT
// What an element without a description shows of itself when it is created and initialized.
#ifndef FWPIPE_INSPECT_REVEALED_H
#define FWPIPE_INSPECT_REVEALED_H

#include <fwlib/fwlib.h>

#include <deque>
#include <string>
#include <vector>

namespace FwPipe {

class Revealed {
public:
    enum class Kind { None, Element, Object, Failed };

    // Creates an object of the type, initializes it if it is an element, and destroys it. An element has no properties
    // then, so it takes its defaults. Returns None if the factory creates no such type, and Failed after a report if the
    // plugin threw an exception.
    Kind Create(VESK::FRAMEWORK& cFramework, VESK::Factory& cFactory, const std::string& cType);

    // Valid after Create returned Element, as long as this object exists. The pads are those after Initialize, the
    // properties those that were asked for, of a kind that is not known. There is no meaning.
    VESK::ElementDescription Description() const;

    bool IsInitialized() const { return m_bInitialized; } // whether Initialize returned 1

private:
    static void Note(void* pContext, const VESK::PROPERTIES& cList, const char* pchKey,
                     const char* pchSection);
    void Examine(VESK::EObject& cElement);

    std::string m_cType;
    VESK::EObject* m_pElement = nullptr;
    bool m_bOriginates = false;
    bool m_bInitialized = false;
    VESK::Byte4Type m_b4SinkPads = 0;
    VESK::Byte4Type m_b4SourcePads = 0;
    std::deque<std::string> m_cKeys; // keeps the texts where they are
    std::vector<VESK::PropertyDescription> m_cProperties;
    std::vector<const VESK::PropertyDescription*> m_cTable;
};

} // namespace FwPipe

#endif
