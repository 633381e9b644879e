// SPDX-License-Identifier: MIT
// The plugin described.so: a description written by hand, with all that a table may contain. EOdd is described; EBare is
// not, asks for two keys, and is initialized only with the first. Nor is EThreads.
#include "fwlib/fwlib.h"

#include <atomic>
#include <cstring>
#include <string>
#include <thread>

using namespace VESK;

namespace {

class EBare final : public EObject {
public:
    int Initialize() override {
        int iWidth;
        char achColour[8];
        m_cProperties.GetProperty(Text("Colour"), achColour, sizeof achColour, nullptr, Section::Standard);
        m_cProperties.GetProperty(Text("Elsewhere"), &iWidth, 0, Text("other"));
        EObject::Initialize();
        return AddSourcePad(new SOURCEPAD(this)) && GetValue(*this, "Width", iWidth);
    }
    int DataArrived(QObject*, Byte2Type) override { return 0; }
};

// Asks for its keys in several threads.
class EThreads final : public EObject {
public:
    int Initialize() override {
        std::atomic<int> iReady{0};
        std::thread acThreads[4];
        for (std::thread& cThread : acThreads) {
            cThread = std::thread([this, &iReady] {
                for (++iReady; iReady < 4;) {
                }
                for (int i = 0, iNone; i < 300; ++i) {
                    GetValue(*this, ("k" + std::to_string(i)).c_str(), iNone);
                }
            });
        }
        for (std::thread& cThread : acThreads) {
            cThread.join();
        }
        return EObject::Initialize();
    }
    int DataArrived(QObject*, Byte2Type) override { return 0; }
};

class BareFactory : public LibraryFactory {
public:
    EObject* CreateElement(char* pchType) override {
        return std::strcmp(pchType, "EThreads") == 0 ? static_cast<EObject*>(new EThreads)
               : std::strcmp(pchType, "EBare") == 0  ? new EBare
                                                     : nullptr;
    }
} cFactory;

const PropertyDescription Whole = {"Whole", NumberProperty, 0, "7", "-5", "18446744073709551615", nullptr,
                                   "m",     "a number"};
const PropertyDescription Real = {"Real",  RealProperty, 0,       "0.5",          "-1e3",
                                  nullptr, nullptr,      nullptr, "a real number"};
const PropertyDescription Flag = {"Flag",  FlagProperty, 0,       "yes",  nullptr,
                                  nullptr, nullptr,      nullptr, nullptr};
const PropertyDescription Choice = {"Choice", ChoiceProperty, 1,       nullptr,   nullptr,
                                    nullptr,  "red|green",    nullptr, "a choice"};
const PropertyDescription File = {"File",  FileToReadProperty, 0, "", nullptr, nullptr, nullptr, nullptr,
                                  "a file"};
const PropertyDescription Later = {"Later", 99, 1, "two words", nullptr, nullptr, nullptr, nullptr, "a \xff"};
const PropertyDescription Nameless = {nullptr, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
const PropertyDescription* const Properties[] = {&Whole, &Real,  &Flag,     &Choice,
                                                 &File,  &Later, &Nameless, nullptr};

const ElementDescription Odd = {"EOdd",    "\033[31m red \\ \xc3\xa9", 1, {2, nullptr}, {3, "Whole"},
                                Properties};
const ElementDescription Plain = {"EPlain", nullptr, 0, {0, nullptr}, {0, nullptr}, nullptr};
const ElementDescription Unnamed = {nullptr, "never shown", 0, {0, nullptr}, {0, nullptr}, nullptr};
const ElementDescription* const Elements[] = {&Odd, &Unnamed, &Plain, nullptr};
const ObjectDescription Thing = {"QThing", "a thing"};
const ObjectDescription* const Objects[] = {&Thing, nullptr};
const PluginDescription Description = {PluginDescription::CurrentVersion, FWLIB_VERSION, Elements, Objects};

} // namespace

Factory* GetFactory() {
    return &cFactory;
}

const PluginDescription* GetPluginDescription() {
    return &Description;
}
