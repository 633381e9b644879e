// SPDX-License-Identifier: MIT
// fwpipe check: reports the mistakes of pipe files without building them.
#include "../command.h"
#include "../model/loadedplugins.h"
#include "../model/reader.h"
#include "../model/structure.h"
#include "../output.h"
#include "show.h"

#include <cstdio>
#include <memory>
#include <unistd.h>

namespace FwPipe {

namespace {

struct Options : CheckOptions {
    std::vector<std::string> cFiles;
    bool bStrict = false;
    bool bJson = false;
};

const char* const Examples = R"(Examples:
  fwpipe check counter.pipe               reports mistakes; opens no plugin and no file of an element
  fwpipe check --load lab.pipe            loads the plugins, and so knows their types
  fwpipe check --part nested.pipe         checks a file that "pipe" lines of other files use
  fwpipe check --config lab.cfg lab.pipe  as "fwpipe run --config lab.cfg lab.pipe" builds it
  fwpipe check --json *.pipe              prints one array for editors and scripts

Each line is FILE:LINE:COLUMN: error: TEXT [ID], or "warning" in place of "error". Lines and columns count from 1, columns
in bytes. docs/check.md explains each ID.

Exit status:
  0  no errors; with --werror no warnings either
  1  errors were reported
  2  wrong usage
)";

std::size_t Count(const Pipeline& cPipeline, std::size_t& uConnections) {
    std::size_t uElements = cPipeline.cElements.size();
    uConnections += cPipeline.cConnections.size();
    for (const auto& pElement : cPipeline.cElements) {
        uElements += pElement->pNested ? Count(*pElement->pNested, uConnections) : 0;
    }
    return uElements;
}

std::string Number(std::size_t u, const char* pchOf) {
    return std::to_string(u) + ' ' + pchOf + (u == 1 ? "" : "s");
}

// Returns whether the file passes.
bool CheckFile(const Options& cOptions, const std::string& cFile, std::string& cJson) {
    const std::unique_ptr<Plugins> pPlugins =
        cOptions.bLoad ? LoadPlugins() : std::make_unique<PluginFiles>();
    Diagnoses cDiagnoses;
    const std::unique_ptr<Pipeline> pPipeline = Reader(cOptions, *pPlugins, cDiagnoses).ReadFile(cFile);
    if (pPipeline) {
        pPlugins->Learn(*pPipeline, cDiagnoses);
        CheckStructure(*pPipeline, cOptions.bPart, cDiagnoses);
        CheckFiles(*pPipeline, cOptions.bLoad, cDiagnoses);
    }
    if (cOptions.bJson) {
        AppendJsonDiagnoses(cDiagnoses, cJson);
    } else {
        ShowDiagnoses(cDiagnoses);
    }
    if (cDiagnoses.Errors() + cDiagnoses.Warnings() == 0 && !cOptions.bJson) {
        std::size_t uConnections = 0;
        const std::size_t uElements = Count(*pPipeline, uConnections);
        std::printf("%s: ok, %s, %s\n", cFile.c_str(), Number(uElements, "element").c_str(),
                    Number(uConnections, "connection").c_str());
    }
    return cDiagnoses.Errors() == 0 && (!cOptions.bStrict || cDiagnoses.Warnings() == 0);
}

int Check(const Options& cOptions) {
    bool bPasses = true;
    std::string cJson;
    for (const std::string& cFile : cOptions.cFiles) {
        bPasses = CheckFile(cOptions, cFile, cJson) && bPasses;
    }
    if (cOptions.bJson) {
        std::printf("[%s]\n", cJson.c_str());
    }
    return OutputArrived() && bPasses ? ExitDone : ExitFailed;
}

} // namespace

void AddCheck(const Command& cProgram) {
    const auto pOptions = std::make_shared<Options>();
    const Command cCheck = cProgram.Add("check", "Report mistakes of pipe files", Examples);
    cCheck.AddOption("FILE", pOptions->cFiles, "The pipe files").Required().Shows("");
    cCheck.AddFlag("--load", pOptions->bLoad,
                   "Load the plugins; create elements of types without a description");
    cCheck.AddFlag("--part", pOptions->bPart,
                   "The files are nested in others: no plugin and no sink line is needed");
    cCheck.AddFlag("--werror", pOptions->bStrict, "Exit status 1 for warnings too");
    cCheck.AddFlag("--json", pOptions->bJson, "Print an array of JSON objects");
    AddConfigOption(cCheck, "As built with this configuration file", pOptions->cConfig);
    cCheck
        .AddOption("--plugin", pOptions->cPlugins, "As with a line \"plugin FILE\" in front; may be repeated")
        .Shows("FILE")
        .Single();
    cCheck.Runs([pOptions] { return Check(*pOptions); });
}

} // namespace FwPipe
