// SPDX-License-Identifier: MIT
#include "steps.h"

#include "elements.h"
#include "nearest.h"
#include "test/tap.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace FwPipe {

namespace {

using VESK::EPipeline;
using VESK::QObject;

std::string EntriesOf(const VESK::PROPERTIES& cList) {
    std::string cText;
    for (unsigned int u = 0; u < cList.m_b2PropertyCount; ++u) {
        cText += std::string(u ? " " : "") + cList.m_pachSections[u] + '.' + cList.m_pachKeys[u] + '=' +
                 cList.m_pachValues[u];
    }
    return cText + '\n';
}

// What the framework and the pipeline hold.
std::string Built(const VESK::FRAMEWORK& cFramework, const EPipeline& cPipeline) {
    std::string cText =
        "framework " + EntriesOf(cFramework) + "pipeline " + EntriesOf(cPipeline.m_cProperties);
    for (int i = 0; i < cPipeline.m_iElementCount; ++i) {
        cText += "element " + EntriesOf(cPipeline.m_ppElements[i]->m_cProperties);
    }
    for (unsigned int u = 0; u < cPipeline.m_b2ConnectionCount; ++u) {
        const VESK::CONNECTION& c = *cPipeline.m_ppConnections[u];
        cText += "connection " + std::to_string(c.b2SourceElement) + '(' + std::to_string(c.b2SourcePad) +
                 ") -> " + std::to_string(c.b2SinkElement) + '(' + std::to_string(c.b2SinkPad) + ")\n";
    }
    return cText;
}

class LineReader : public VESK::SRead {
public:
    explicit LineReader(std::vector<std::string> cLines) : m_cLines(std::move(cLines)) {}
    char* ReadLine() override { return m_uNext == m_cLines.size() ? nullptr : m_cLines[m_uNext++].data(); }

private:
    std::vector<std::string> m_cLines;
    std::size_t m_uNext = 0;
};

// The element and pad that the argument of an input or output names: NAME or NAME:PAD.
struct PadPlace {
    VESK::EObject* pElement;
    VESK::Byte2Type b2Pad;
};

PadPlace FindPad(EPipeline& cPipeline, const Section& cSection) {
    const std::string& cText = cSection.cArgument;
    if (VESK::EObject* const pElement = FindElementByPath(cPipeline, cText)) {
        return {pElement, 0};
    }
    const std::size_t uColon = std::min(cText.rfind(':'), cText.size());
    const std::string cName = cText.substr(0, uColon);
    const std::string cPad = cText.substr(std::min(uColon + 1, cText.size()));
    VESK::EObject* const pElement = FindElementByPath(cPipeline, cName);
    const bool bNumber =
        !cPad.empty() && cPad.size() <= 5 && cPad.find_first_not_of("0123456789") == std::string::npos;
    if (pElement && bNumber && std::stoul(cPad) <= 0xffff) {
        return {pElement, static_cast<VESK::Byte2Type>(std::stoul(cPad))};
    }
    const std::string cHint = pElement ? "" : Nearest(cName, ElementPaths(cPipeline));
    throw TestFileError(cSection.uLine, "no element is named \"" + cText + '"' + DidYouMean(cHint));
}

struct Input {
    VESK::SINKPAD* pPad;
    std::vector<std::string> cLines;
    unsigned int uLine; // of the section
};

// Type QEOF is the end of a stream, which no factory creates.
std::unique_ptr<QObject> CreateObject(VESK::FRAMEWORK& cFramework, const std::string& cType) {
    return std::unique_ptr<QObject>(cType == "QEOF" ? new VESK::QEOF
                                                    : cFramework.CreateQObject(VESK::Text(cType.c_str())));
}

class Steps {
public:
    Steps(const Case& cCase, const CaseFolder& cFolder) : m_cCase(cCase), m_cFolder(cFolder) {}

    // Leaves the results in the folder.
    void Make() {
        try {
            EPipeline cPipeline; // destroyed before the framework and the taps
            cPipeline.m_pFramework = &m_cFramework;
            Make(cPipeline);
        } catch (const TestFileError& cError) {
            Leave("trouble", std::to_string(cError.uLine) + ": " + cError.what());
        } catch (const std::exception& cError) {
            Leave("trouble", std::to_string(m_cCase.uLine) + ": " + cError.what());
        }
        Leave("answers", m_cAnswers + (m_cFramework.m_bError ? " error" : ""));
        unsigned int uOutput = 0;
        for (const Tap& cTap : m_cTaps) {
            Leave("output-" + std::to_string(uOutput++), cTap.Text());
        }
    }

private:
    void Leave(const std::string& cName, const std::string& cText) const {
        std::ofstream cStream(m_cFolder.cResults + '/' + cName, std::ios::binary);
        if (!(cStream << cText << std::flush)) {
            throw std::runtime_error("cannot write " + m_cFolder.cResults + '/' + cName);
        }
    }

    int Build(EPipeline& cPipeline) const {
        char* const pchPipe = VESK::Text("main.pipe");
        const Section* const pOn = m_cCase.Find("config");
        const Section* const pConfig = pOn ? pOn : m_cCase.Find("noconfig");
        return pConfig ? cPipeline.BuildPipe(pchPipe, pOn ? 1 : 0, VESK::Text(pConfig->cArgument.c_str()))
                       : cPipeline.BuildPipe(pchPipe);
    }

    // Opens the file of standard output anew, unless what building prints counts too.
    void SkipPrinted() const {
        if (!m_cCase.Find("stdout") && !std::freopen((m_cFolder.cResults + "/out").c_str(), "w", stdout)) {
            throw std::runtime_error("cannot open standard output anew");
        }
    }

    // Puts the taps in place and finds the pads of the inputs.
    void Prepare(EPipeline& cPipeline) {
        for (const Section& cSection : m_cCase.cSections) {
            const bool bInput = cSection.cKind == "input";
            if (!bInput && cSection.cKind != "output") {
                continue;
            }
            const PadPlace cPlace = FindPad(cPipeline, cSection);
            VESK::SINKPAD* const pPad = bInput ? cPlace.pElement->GetSinkPad(cPlace.b2Pad) : nullptr;
            if (bInput ? !pPad : !m_cTaps.emplace_back().Insert(*cPlace.pElement, cPlace.b2Pad)) {
                throw TestFileError(cSection.uLine, "the element has no such pad");
            }
            std::vector<std::vector<std::string>> cBlocks;
            AppendInput(bInput ? cSection.cText : "", cBlocks);
            for (std::vector<std::string>& cBlock : cBlocks) {
                m_cInputs.push_back({pPad, std::move(cBlock), cSection.uLine});
            }
        }
    }

    int Deliver(const Input& cInput) {
        LineReader cReader(cInput.cLines);
        const std::string cType = cReader.ReadLine();
        const std::unique_ptr<QObject> pObject = CreateObject(m_cFramework, cType);
        if (!pObject) {
            throw TestFileError(cInput.uLine, "no plugin serves objects of type \"" + cType + '"');
        }
        pObject->Deserialize(&cReader);
        VESK::SOURCEPAD cSource(nullptr);
        cSource.m_pSinkPad = cInput.pPad;
        return cSource.Push(pObject.get());
    }

    int Step(EPipeline& cPipeline, std::size_t uStep) {
        if (uStep == 1) {
            m_bInitialized = cPipeline.Initialize() != 0;
            if (m_bInitialized) {
                Prepare(cPipeline);
            }
            return m_bInitialized;
        }
        return uStep - 2 < m_cInputs.size() ? Deliver(m_cInputs[uStep - 2]) : cPipeline.Run();
    }

    // With a section "answers", makes the steps that it lists; otherwise all, up to the first that fails. Inputs are
    // delivered in any case.
    void Make(EPipeline& cPipeline) {
        const int iBuilt = Build(cPipeline);
        Leave("built", Built(m_cFramework, cPipeline));
        SkipPrinted();
        const Section* const pAnswers = m_cCase.Find("answers");
        std::istringstream cListed(pAnswers ? pAnswers->cArgument : DefaultAnswers(m_cCase));
        m_cAnswers = std::to_string(iBuilt);
        std::string cStep;
        cListed >> cStep;
        for (std::size_t uStep = 1; pAnswers || m_cAnswers.back() != '0';) {
            cStep.clear();
            cListed >> cStep;
            if ((cStep.empty() || cStep == "error") && !(m_bInitialized && uStep - 2 < m_cInputs.size())) {
                break;
            }
            const bool bAgain = cStep.rfind("again=", 0) == 0;
            const int iAnswer = bAgain ? cPipeline.Initialize() : Step(cPipeline, uStep++);
            m_cAnswers += (bAgain ? " again=" : " ") + std::to_string(iAnswer);
        }
        if (m_bInitialized && !cPipeline.EndRuns()) {
            m_cAnswers += " end=0";
        }
    }

    const Case& m_cCase;
    const CaseFolder& m_cFolder;
    std::deque<Tap> m_cTaps;
    std::vector<Input> m_cInputs;
    VESK::FRAMEWORK m_cFramework;
    std::string m_cAnswers;
    bool m_bInitialized = false;
};

} // namespace

void MakeSteps(const Case& cCase, const CaseFolder& cFolder) {
    Steps(cCase, cFolder).Make();
}

std::string DefaultAnswers(const Case& cCase) {
    std::vector<std::vector<std::string>> cBlocks;
    bool bInput = false;
    for (const Section& cSection : cCase.cSections) {
        if (cSection.cKind == "input") {
            bInput = true;
            AppendInput(cSection.cText, cBlocks);
        }
    }
    std::string cAnswers = bInput ? "1 1" : "1 1 1";
    for (std::size_t u = 0; u < cBlocks.size(); ++u) {
        cAnswers += " 1";
    }
    return cAnswers;
}

} // namespace FwPipe
