// SPDX-License-Identifier: MIT
// A player that feeds a recorder, kept from input to input, since a player's buffer is large.
#ifndef FWLIB_FUZZ_DECK_H
#define FWLIB_FUZZ_DECK_H

#include "support.h"
#include "world.h"

namespace fuzz {

// Serves every type of object.
struct Anything : VESK::LibraryFactory {
    VESK::QObject* CreateQObject(char*) override { return new VESK::QObject; }
};

constexpr int MostObjects = 8; // a line makes one

struct Deck {
    explicit Deck(const char* strict) {
        framework.m_ppPlugins[0]->m_pFactory = &types;
        files[""];
        for (VESK::EObject* element :
             {static_cast<VESK::EObject*>(&player), static_cast<VESK::EObject*>(&recorder)}) {
            element->m_pFramework = &framework;
            element->m_cProperties.SetProperty(VESK::Key::Strict, VESK::Text(strict),
                                               VESK::Section::Standard);
            element->m_cProperties.SetProperty(VESK::Key::Filename, VESK::Text(""), VESK::Section::Standard);
        }
        CLAIM(player.Initialize() && recorder.Initialize());
        player.GetSourcePad(0)->m_pSinkPad = recorder.GetSinkPad(0);
        Insert(nullptr, nullptr);
    }
    void Insert(std::FILE* from, std::FILE* to) {
        VESK::fwfclose(player.m_pReader->m_pFile);
        VESK::fwfclose(recorder.m_pWriter->m_pFile);
        player.m_pReader->SetFile(reinterpret_cast<char*>(from));
        recorder.m_pWriter->SetFile(reinterpret_cast<char*>(to));
    }
    // How many objects of one file came to the other, up to the most.
    int Copy(const char* from, const char* to) {
        player.m_pReader->SetFile(reinterpret_cast<char*>(OpenFile(from, "r")));
        recorder.m_pWriter->SetFile(reinterpret_cast<char*>(OpenFile(to, "w")));
        int objects = 0;
        while (objects < MostObjects && player.Run()) {
            ++objects;
        }
        Insert(nullptr, nullptr);
        return objects;
    }
    Anything types;
    OwnFramework framework;
    VESK::EDeserialize player;
    VESK::ESerialize recorder;
};

} // namespace fuzz

#endif
