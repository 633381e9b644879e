// SPDX-License-Identifier: MIT
// Short ways to fill and read property lists, files, an element that records, and streams in memory.
#ifndef FWLIB_TESTS_SUPPORT_SUPPORT_H
#define FWLIB_TESTS_SUPPORT_SUPPORT_H

#include "fwlib/fwlib.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

inline int Set(VESK::PROPERTIES& list, const char* key, const char* value, const char* section = "Standard") {
    return list.SetProperty(VESK::Text(key), VESK::Text(value), VESK::Text(section));
}

// All of a list in its order: "section.key=value section.key=value".
inline std::string Entries(const VESK::PROPERTIES& list) {
    std::string text;
    for (unsigned int u = 0; u < list.m_b2PropertyCount; ++u) {
        text += (u ? " " : "") + std::string(list.m_pachSections[u]) + "." + list.m_pachKeys[u] + "=" +
                list.m_pachValues[u];
    }
    return text;
}

inline std::string FileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A folder that is removed with everything in it.
class Scratch {
public:
    Scratch() : m_strPath(FWLIB_TEST_SCRATCH "/scratch-XXXXXX") {
        if (!mkdtemp(m_strPath.data())) {
            std::abort();
        }
    }
    ~Scratch() { std::filesystem::remove_all(m_strPath); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    std::string Path(const std::string& name) const { return m_strPath + "/" + name; }
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }

private:
    std::string m_strPath;
};

// Records what arrives and answers what it is told to.
class Probe : public VESK::EObject {
public:
    explicit Probe(const char* name = nullptr) {
        if (name) {
            Set(m_cProperties, "Name", name);
        }
    }
    int DataArrived(VESK::QObject* pObject, VESK::Byte2Type b2Index) override {
        objects.push_back(pObject);
        index = b2Index;
        return answer;
    }

    std::vector<VESK::QObject*> objects;
    int index = -1;
    int answer = 1;
};

// Each WriteData call is one piece.
class MemoryWrite : public VESK::SWrite {
public:
    VESK::Byte4Type WriteData(char* pchData, VESK::Byte4Type b4Length) override {
        pieces.emplace_back(pchData, b4Length);
        return 0; // what a writer whose disk is full answers
    }
    std::string All() const {
        std::string all;
        for (const std::string& piece : pieces) {
            all += piece;
        }
        return all;
    }

    std::vector<std::string> pieces;
};

class MemoryRead : public VESK::SRead {
public:
    explicit MemoryRead(const std::string& text) : m_strRest(text) {}
    char* ReadLine() override {
        if (m_strRest.empty()) {
            return nullptr;
        }
        const std::size_t end = m_strRest.find('\n');
        m_strLine = m_strRest.substr(0, end);
        m_strRest.erase(0, end == std::string::npos ? end : end + 1);
        return m_strLine.data();
    }
    bool AtEnd() const { return m_strRest.empty(); }

private:
    std::string m_strRest;
    std::string m_strLine;
};

#endif
