// SPDX-License-Identifier: MIT
// fwpipe launch: builds a pipeline from the words of the command line, and runs it.
#include "command.h"
#include "launch/words.h"
#include "message.h"
#include "model/loadedplugins.h"
#include "model/reader.h"
#include "model/structure.h"
#include "nearest.h"
#include "output.h"
#include "run.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>

namespace FwPipe {

namespace {

struct Options : RunOptions {
    std::vector<std::string> cPlugins;
    std::vector<std::string> cWords;
    bool bPrint = false;
};

const char* const Examples = R"(Examples:
  fwpipe launch ESource ! ESink
  fwpipe launch --quiet ESource ! ESerialize Filename=objects.rec
  fwpipe launch ESource ! ETee Name=t ! ESink  t:1 ! EDevNull
  fwpipe launch --plugin ./librate.so ESource ! ERate ! EDevNull
  fwpipe launch --print ESource ! ESink >simple.pipe

"!" connects source pad 0 of an element with sink pad 0 of the next one. KEY=VALUE after a type sets a property; an
element without Name gets one, "source" for an ESource. NAME:PAD at the beginning of a chain is that source pad of an
element before it, at the end of a chain that sink pad. A type without "!" before it begins a new chain. The first
element that originates objects runs. Some shells need a backslash before "!", or quotes.

Exit status:
  as for "fwpipe run"; 2 also for words that do not fit
)";

std::string WordText(const Options& cOptions, unsigned int uWord) {
    return uWord == 0 || uWord > cOptions.cWords.size()
               ? ""
               : "word " + std::to_string(uWord) + ", \"" + cOptions.cWords[uWord - 1] + "\": ";
}

// Other places in a text are words here, not lines.
std::string WithWords(std::string cText) {
    const std::string cLine = " in line ";
    const std::size_t u = cText.find(cLine);
    return u == std::string::npos ? cText : cText.replace(u, cLine.size(), " at word ");
}

// Whether the diagnosis says that a word is wrong. Others warn of what is possible but probably not meant.
bool IsWrong(const Diagnosis& cDiagnosis) {
    static const std::string Wrong[] = {"not-a-number", "out-of-range", "unknown-property",
                                        "replaced-connection"};
    return cDiagnosis.Weight == Severity::Error ||
           std::find(std::begin(Wrong), std::end(Wrong), cDiagnosis.pchId) != std::end(Wrong);
}

// The first element that certainly originates objects, or else may; null for none.
const Element* Origin(const Pipeline& cPipeline) {
    const Element* pFound = nullptr;
    for (const auto& pElement : cPipeline.cElements) {
        if (pElement->bMayOriginate && pElement->pDescription) {
            return pElement.get();
        }
        pFound = pElement->bMayOriginate && !pFound ? pElement.get() : pFound;
    }
    return pFound;
}

// Completes the lines with the sink line. Reports what is wrong with them. Returns whether nothing is.
bool Complete(const Options& cOptions, const std::string* pFile, Diagnoses& cDiagnoses,
              std::vector<Tokens>& cLines) {
    const std::unique_ptr<Plugins> pPlugins = LoadDescriptions();
    const CheckOptions cChecks;
    Reader cReader(cChecks, *pPlugins, cDiagnoses);
    const std::unique_ptr<Pipeline> pPipeline = cReader.ReadLines(pFile, cLines);
    if (const Element* const pOrigin = Origin(*pPipeline)) {
        const Spot& cSpot = pOrigin->cType.cSpot;
        cLines.push_back({{"sink", cSpot}, {pOrigin->cName, cSpot}});
        cReader.ReadInto(*pPipeline, {cLines.back()});
    }
    CheckStructure(*pPipeline, false, cDiagnoses);
    bool bRight = true;
    for (const Diagnosis& cDiagnosis : cDiagnoses.Sorted()) {
        const bool bWrong = IsWrong(cDiagnosis);
        const bool bOrigin = cDiagnosis.pchId == std::string("no-sink");
        Complain((bWrong ? "" : "warning: ") + (bOrigin ? "" : WordText(cOptions, cDiagnosis.cSpot.uLine)) +
                 (bOrigin ? "no element originates objects" : WithWords(cDiagnosis.cText)) +
                 DidYouMean(cDiagnosis.cHint));
        bRight = bRight && !bWrong;
    }
    return bRight;
}

int Build(const std::vector<Tokens>& cLines, std::string& cConfig, VESK::EPipeline& cPipeline) {
    return std::all_of(cLines.begin(), cLines.end(), [&](const Tokens& cTokens) {
        std::vector<char*> cTexts;
        for (const Token& cToken : cTokens) {
            cTexts.push_back(VESK::Text(cToken.cText.c_str()));
        }
        cTexts.push_back(nullptr);
        return (cConfig.empty() ? cPipeline.ProcessTokens(cTexts.data())
                                : cPipeline.ProcessTokens(cTexts.data(), 1, cConfig.data())) != 0;
    });
}

int Launch(Options& cOptions) {
    cOptions.cFile = "the pipeline";
    Diagnoses cDiagnoses;
    const std::string* const pFile = cDiagnoses.File(cOptions.cFile);
    try {
        std::vector<Tokens> cLines = LinesOf(cOptions.cPlugins, cOptions.cWords, pFile);
        if (!Complete(cOptions, pFile, cDiagnoses, cLines)) {
            return ExitUsage;
        }
        if (!cOptions.bPrint) {
            return RunPipeline(cOptions, [&](VESK::EPipeline& cPipeline) {
                return Build(cLines, cOptions.cConfig, cPipeline);
            });
        }
        std::fputs(TextOf(cLines).c_str(), stdout);
        return ExitDone;
    } catch (const WordError& cError) {
        Complain(WordText(cOptions, cError.uWord) + cError.what());
        return ExitUsage;
    }
}

} // namespace

void AddLaunch(const Command& cProgram) {
    const auto pOptions = std::make_shared<Options>();
    const Command cLaunch =
        cProgram.Add("launch", "Build a pipeline from the command line and run it", Examples);
    cLaunch.AddOption("WORD", pOptions->cWords, "TYPE [KEY=VALUE]..., \"!\" or NAME:PAD")
        .Required()
        .Shows("");
    AddRunOptions(cLaunch, *pOptions);
    cLaunch
        .AddOption("--plugin", pOptions->cPlugins, "Load a plugin; may be repeated. The library needs none")
        .Shows("FILE")
        .Single();
    cLaunch.AddFlag("--print", pOptions->bPrint, "Print the pipe file instead of running it");
    cLaunch.Runs([pOptions] { return Launch(*pOptions); });
}

} // namespace FwPipe
