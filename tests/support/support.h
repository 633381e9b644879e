// SPDX-License-Identifier: MIT
// Short ways to fill and read property lists, files, an element that records, and streams in memory.
#ifndef FWLIB_TESTS_SUPPORT_SUPPORT_H
#define FWLIB_TESTS_SUPPORT_SUPPORT_H

#include "fwlib/fwlib.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

inline int Set(VESK::PROPERTIES& list, const char* key, const std::string& value,
               const char* section = "Standard") {
    return list.SetProperty(VESK::Text(key), VESK::Text(value.c_str()), VESK::Text(section));
}

// All of a list in its order: "section.key=value section.key=value".
inline std::string EntriesOf(const VESK::PROPERTIES& list) {
    std::string text;
    for (unsigned int u = 0; u < list.m_b2PropertyCount; ++u) {
        text += (u ? " " : "") + std::string(list.m_pachSections[u]) + "." + list.m_pachKeys[u] + "=" +
                list.m_pachValues[u];
    }
    return text;
}

inline std::string FileText(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// A folder that is removed with everything in it.
class Scratch {
public:
    Scratch() {
        if (!mkdtemp(m_achPath)) {
            std::abort();
        }
    }
    ~Scratch() { std::filesystem::remove_all(m_achPath); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    std::string Path(const std::string& name) const { return m_achPath + ("/" + name); }
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }

private:
    char m_achPath[sizeof FWLIB_TEST_SCRATCH + 32] = FWLIB_TEST_SCRATCH "/scratch-XXXXXX";
};

// Records what arrives and returns what it is told to.
class Probe : public VESK::EObject {
public:
    Probe() = default;
    explicit Probe(const char* name) { Set(m_cProperties, "Name", name); }
    int DataArrived(VESK::QObject* pObject, VESK::Byte2Type b2Index) override {
        objects.push_back(pObject);
        contents += (pObject ? EntriesOf(pObject->m_cProperties) : "null") + "\n";
        index = b2Index;
        return answer;
    }

    std::vector<VESK::QObject*> objects;
    std::string contents; // the objects' properties as they arrived, a line each
    int index = -1;
    int answer = 1;
};

// Each WriteData call is one piece.
class MemoryWrite : public VESK::SWrite {
public:
    VESK::Byte4Type WriteData(char* pchData, VESK::Byte4Type b4Length) override {
        pieces.emplace_back(pchData, b4Length);
        all += pieces.back();
        return 0; // what a writer whose disk is full answers
    }

    std::vector<std::string> pieces;
    std::string all;
};

class MemoryRead : public VESK::SRead {
public:
    explicit MemoryRead(const std::string& text) : m_cText(text) {}
    char* ReadLine() override { return std::getline(m_cText, m_strLine) ? m_strLine.data() : nullptr; }

private:
    std::istringstream m_cText;
    std::string m_strLine;
};

#endif
