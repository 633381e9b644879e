// SPDX-License-Identifier: MIT
// Three elements: a source that reads a table, a filter, and a counter. warm.pipe says how to build and run them.
#include <fstream>
#include <fwlib/fwlib.h>
#include <sstream>
#include <vector>

using namespace VESK;

struct QReading : DataObject<QReading> {
    static constexpr const char* TypeName = "QReading";
    static constexpr const char* Meaning = "a line of a table: a value for each column";
};

struct ECsvSource : Element<ECsvSource> {
    static constexpr const char* TypeName = "ECsvSource";
    static constexpr const char* Meaning = "sends a QReading for each line of a table";
    static void Declare(Declaration<ECsvSource>& cDeclare) {
        cDeclare.SourcePads(1);
        cDeclare.FileToRead("File", &ECsvSource::m_cFile, nullptr, "the first line names the columns");
        cDeclare.Text("Separator", &ECsvSource::m_achSeparator, ",", "the character between two fields");
    }
    int Run() override {
        std::ifstream cTable(m_cFile);
        std::string cLine;
        int iResult = std::getline(cTable, cLine) ? 1 : 0;
        if (!iResult) {
            ErrorMessage("Run(): Unable to read %s\n", m_cFile.c_str());
        }
        const std::vector<std::string> cKeys = Split(cLine);
        for (unsigned uLine = 2; iResult && !EndRequested() && std::getline(cTable, cLine); ++uLine) {
            const std::vector<std::string> cFields = Split(cLine);
            if (cFields.size() != cKeys.size()) {
                WarningMessage("%s:%u: %zu fields\n", m_cFile.c_str(), uLine, cFields.size());
                continue;
            }
            QReading cReading;
            for (std::size_t u = 0; u < cKeys.size(); ++u) {
                SetValue(cReading, cKeys[u].c_str(), cFields[u]);
            }
            iResult = Push(&cReading);
        }
        return iResult;
    }
    std::vector<std::string> Split(const std::string& cLine) {
        std::vector<std::string> cFields;
        std::istringstream cText(cLine + m_achSeparator);
        for (std::string cField; std::getline(cText, cField, *m_achSeparator);) {
            cFields.push_back(cField);
        }
        return cFields;
    }
    std::string m_cFile;
    char m_achSeparator[2];
};

struct EFilter : Element<EFilter> {
    static constexpr const char* TypeName = "EFilter";
    static constexpr const char* Meaning = "drops objects whose value is too small, and forwards the others";
    static void Declare(Declaration<EFilter>& cDeclare) {
        cDeclare.SinkPads(1);
        cDeclare.SourcePads(1);
        cDeclare.Text("Key", &EFilter::m_cKey, nullptr, "key of the value");
        cDeclare.Real("Minimum", &EFilter::m_dMinimum, 0, nullptr, "smallest value that is forwarded");
    }
    int DataArrived(QObject* pObject, Byte2Type) override {
        double dValue = 0;
        return GetValue(*pObject, m_cKey.c_str(), dValue) && dValue < m_dMinimum ? 1 : Push(pObject);
    }
    std::string m_cKey;
    double m_dMinimum;
};

struct ERate : Element<ERate> {
    static constexpr const char* TypeName = "ERate";
    static constexpr const char* Meaning = "prints how many objects arrive, and forwards them";
    static void Declare(Declaration<ERate>& cDeclare) {
        cDeclare.SinkPads(1);
        cDeclare.SourcePads(1);
        cDeclare.Number("Every", &ERate::m_uEvery, 1000, 1, 1000000, "objects", "between two lines");
    }
    int DataArrived(QObject* pObject, Byte2Type) override {
        if (++m_uArrived % m_uEvery == 0) {
            Message(0, "%u objects\n", m_uArrived);
        }
        return Push(pObject);
    }
    int RunsEnded() {
        Message(0, "%u objects, %u after the last line\n", m_uArrived, m_uArrived % m_uEvery);
        return 1;
    }
    unsigned m_uEvery, m_uArrived = 0;
};

FWLIB_PLUGIN(ECsvSource, EFilter, ERate, QReading)
