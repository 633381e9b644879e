// SPDX-License-Identifier: MIT
// What "fwpipe check" reports: a place in a file, a severity, and an identifier that does not change.
#ifndef FWPIPE_MODEL_DIAGNOSIS_H
#define FWPIPE_MODEL_DIAGNOSIS_H

#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace FwPipe {

// Lines and columns count from 1; columns and lengths are bytes. The default is the beginning of a file.
struct Spot {
    const std::string* pFile = nullptr; // lent by the Diagnoses
    unsigned int uLine = 1;
    unsigned int uColumn = 1;
    unsigned int uLength = 0; // 0 for a whole file
};

enum class Severity { Warning, Error };

struct Diagnosis {
    Spot cSpot;
    Severity Weight = Severity::Error;
    const char* pchId = "";
    std::string cText;
    std::string cHint; // the nearest known word; empty for none
};

// The diagnoses of one file and of all files that it uses, in the order in which the files were begun.
class Diagnoses {
public:
    // Begins a file, or continues one that was begun before. Its name is lent until the end.
    const std::string* File(const std::string& cName);

    // A diagnosis that was added before, as of a file that is nested twice, is not added again.
    void Error(const Spot& cSpot, const char* pchId, std::string cText, std::string cHint = "");
    void Warning(const Spot& cSpot, const char* pchId, std::string cText, std::string cHint = "");

    // Those of one file stand together, in the order of its lines.
    std::vector<Diagnosis> Sorted() const;

    std::size_t ErrorsIn(const std::string* pFile) const;
    std::size_t Errors() const { return m_uErrors; }
    std::size_t Warnings() const { return m_cAll.size() - m_uErrors; }

private:
    void Add(Diagnosis cDiagnosis);

    std::deque<std::string> m_cFiles;
    std::vector<Diagnosis> m_cAll;
    std::set<std::tuple<const std::string*, unsigned int, unsigned int, std::string>> m_cKnown;
    std::size_t m_uErrors = 0;
};

} // namespace FwPipe

#endif
