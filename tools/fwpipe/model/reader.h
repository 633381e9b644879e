// SPDX-License-Identifier: MIT
// Reads pipe files into models, and reports what is wrong with single lines.
#ifndef FWPIPE_MODEL_READER_H
#define FWPIPE_MODEL_READER_H

#include "model.h"
#include "plugins.h"
#include "types.h"

#include <fwlib/fwlib.h>

#include <memory>
#include <string>
#include <vector>

namespace FwPipe {

struct CheckOptions {
    bool bLoad = false;
    bool bPart = false;
    std::string cConfig; // empty for none
    std::vector<std::string> cPlugins;
};

class Reader {
public:
    Reader(const CheckOptions& cOptions, Plugins& cPlugins, Diagnoses& cDiagnoses);

    // The outermost file. Returns null after a report when it cannot be read.
    std::unique_ptr<Pipeline> ReadFile(const std::string& cPath);

    // Lines that were not read from a file; pFile is their name.
    std::unique_ptr<Pipeline> ReadLines(const std::string* pFile, const std::vector<Tokens>& cLines);
    void ReadInto(Pipeline& cPipeline, const std::vector<Tokens>& cLines); // more lines of a pipeline

private:
    using LineReader = void (Reader::*)(const Tokens&);
    static const LineReader LineReaders[];

    void ReadLine(const Tokens& cTokens);
    const VESK::PipeKeyword* KeywordOf(const Token& cToken);
    std::unique_ptr<Pipeline> ReadText(const std::string& cPath, const std::string& cShown,
                                       const Spot& cFrom);
    std::unique_ptr<Pipeline> ReadNested(const Token& cPath);

    void PluginLine(const Tokens& cTokens);
    void FrameworkPropertyLine(const Tokens& cTokens);
    void PipeLine(const Tokens& cTokens);
    void ElementLine(const Tokens& cTokens);
    void PropertyLine(const Tokens& cTokens);
    void SinkLine(const Tokens& cTokens);
    void SourceLine(const Tokens& cTokens);
    void ConnectLine(const Tokens& cTokens);
    void ConfigLine(const Tokens& cTokens);

    Element& AddElement(const Tokens& cTokens);
    void LoadPlugin(const Token& cPath);
    void Set(const Token& cKey, const Token& cValue);
    void TellOrphan(const Spot& cSpot, const char* pchIgnored, const char* pchSet);
    void CheckTypeSection(const Element& cElement);
    void ReadEnd(const Token& cElement, const Token& cNumber, Pad& cPad);

    const CheckOptions& m_cOptions;
    Plugins& m_cPlugins;
    Diagnoses& m_cDiagnoses;
    KnownTypes m_cTypes;
    std::vector<std::string> m_cOpen; // the files that are being read, without links; the outermost first
    Pipeline* m_pPipeline = nullptr;  // of the innermost
    Element* m_pCurrent = nullptr;    // lent by its pipeline
    int m_iCurrent = -1;              // its index, or -1 if it is of another file
};

} // namespace FwPipe

#endif
