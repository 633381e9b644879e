// SPDX-License-Identifier: MIT
// fwpipe graph: draws a pipe file without building it.
#include "../command.h"
#include "../file.h"
#include "../message.h"
#include "../model/loadedplugins.h"
#include "../model/reader.h"
#include "../model/structure.h"
#include "../newfile.h"
#include "../output.h"
#include "formats.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace FwPipe {

namespace {

struct Format {
    const char* pchName;
    const char* pchExtension;
    std::string (*Write)(const Picture&);
};

constexpr Format Formats[] = {{"dot", ".dot", DotOf},
                              {"svg", ".svg", SvgOf},
                              {"mermaid", ".mmd", MermaidOf},
                              {"html", ".html", HtmlOf},
                              {"json", ".json", JsonOf}};

struct Options {
    std::string cFile;
    std::string cOut; // empty for standard output
    std::string cFormat;
};

const char* const Examples = R"(Examples:
  fwpipe graph lab.pipe | dot -Tpng >lab.png  prints the drawing for Graphviz
  fwpipe graph -o lab.html lab.pipe           writes a page to look at in a browser
  fwpipe graph --format json lab.pipe         prints elements and connections for scripts

The format is that of the extension: .dot, .svg, .mmd, .html or .json. SVG and HTML need Graphviz (package graphviz).
Files with mistakes are drawn as far as they are understood. docs/graph.md explains the drawings.

Exit status:
  0  the file was drawn
  1  the file could not be read, or the drawing not be written
  2  wrong usage
)";

const Format* FormatOf(const Options& cOptions) {
    const std::string cExtension = std::filesystem::path(cOptions.cOut).extension();
    const auto Fits = [&](const Format& cFormat) {
        return cOptions.cFormat.empty() ? cExtension == cFormat.pchExtension
                                        : cOptions.cFormat == cFormat.pchName;
    };
    if (cOptions.cFormat.empty() && cOptions.cOut.empty()) {
        return Formats;
    }
    const auto* const pFound = std::find_if(std::begin(Formats), std::end(Formats), Fits);
    return pFound == std::end(Formats) ? nullptr : pFound;
}

// The file in a folder is complete or not there; a device or a pipe is written to.
bool WriteTo(const std::string& cOut, const std::string& cText) {
    const Place cPlace(cOut);
    struct stat Status = {};
    const bool bExists = cPlace.Folder() >= 0 && cPlace.Stat(Status);
    if (bExists && !S_ISREG(Status.st_mode)) {
        const File cDevice(open(cOut.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
        return cDevice.Get() >= 0 && WriteAll(cDevice.Get(), cText.data(), cText.size());
    }
    if (cPlace.Folder() < 0) {
        return false;
    }
    const mode_t iMask = umask(0);
    umask(iMask);
    NewFile cNew(cPlace);
    const mode_t iMode = bExists ? Status.st_mode & 0777 : 0666 & ~iMask;
    return cNew.Get() >= 0 && cNew.Write(cText.data(), cText.size()) && fchmod(cNew.Get(), iMode) == 0 &&
           cNew.Sync() && cNew.PutInPlace(true);
}

// The file without a sink line may be a part of others: what it lacks on its own is no mistake.
bool HasMistakes(const Diagnoses& cDiagnoses, const Pipeline& cPipeline) {
    const std::vector<Diagnosis> cAll = cDiagnoses.Sorted();
    return std::any_of(cAll.begin(), cAll.end(), [&cPipeline](const Diagnosis& cDiagnosis) {
        const std::string cId = cDiagnosis.pchId;
        const bool bPart = !cPipeline.bSinkLine && (cId == "no-sink" || cId == "unknown-type");
        return cDiagnosis.Weight == Severity::Error && !bPart;
    });
}

int Draw(const Options& cOptions) {
    const Format* const pFormat = FormatOf(cOptions);
    if (!pFormat) {
        Complain("the name " + cOptions.cOut +
                 " tells no format: use .dot, .svg, .mmd, .html or .json, or --format");
        return ExitUsage;
    }
    const std::unique_ptr<Plugins> pPlugins = LoadDescriptions();
    const CheckOptions cReading;
    Diagnoses cDiagnoses;
    const std::unique_ptr<Pipeline> pPipeline =
        Reader(cReading, *pPlugins, cDiagnoses).ReadFile(cOptions.cFile);
    if (!pPipeline) {
        Complain(cDiagnoses.Sorted().front().cText);
        return ExitFailed;
    }
    CheckStructure(*pPipeline, false, cDiagnoses);
    const std::string cText = pFormat->Write(PictureOf(*pPipeline));
    if (HasMistakes(cDiagnoses, *pPipeline)) {
        Complain(cOptions.cFile + " has mistakes; \"fwpipe check\" reports them");
    }
    if (cOptions.cOut.empty()) {
        return Print(cText) && OutputArrived() ? ExitDone : (OutputArrived(), ExitFailed);
    }
    if (!WriteTo(cOptions.cOut, cText)) {
        ReportErrno("cannot write", cOptions.cOut);
        return ExitFailed;
    }
    return ExitDone;
}

} // namespace

void AddGraph(const Command& cProgram) {
    const auto pOptions = std::make_shared<Options>();
    const Command cGraph =
        AddFileCommand(cProgram, "graph", "Draw a pipe file", Examples, pOptions->cFile, "The pipe file");
    cGraph.AddOption("-o,--output", pOptions->cOut, "Write to this file").Shows("FILE");
    cGraph.AddOption("--format", pOptions->cFormat, "dot, svg, mermaid, html or json; dot if absent")
        .Shows("FORMAT")
        .OneOf({"dot", "svg", "mermaid", "html", "json"});
    cGraph.Runs([pOptions] { return Draw(*pOptions); });
}

} // namespace FwPipe
