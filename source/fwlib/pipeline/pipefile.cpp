// SPDX-License-Identifier: MIT
// The pipe files: their lines, and files that contain others.
#include "fwlib/pipeline/pipebuild.h"

#include "fwlib/framework/failurewatch.h"
#include "fwlib/framework/say.h"
#include "fwlib/pipeline/pipelanguage.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <memory>

namespace VESK {

namespace {

int ExecuteLine(const Build& cBuild, char** ppchTokens) {
    FailureWatch cWatch;
    return cWatch.Judge(ExecuteTokens(cBuild, ppchTokens), "the line failed");
}

// Executes the lines, up to the first that fails.
int ExecuteLines(const Build& cBuild, PipeReader& cReader, const char* pchName) {
    PipeLine cLine;
    BuildPlace cPlace(pchName);
    while (cReader.Next(cLine)) {
        cPlace.b4Line = cLine.b4Line;
        if (cLine.uTokens > 0 && !ExecuteLine(cBuild, cLine.apchTokens)) {
            return 0;
        }
    }
    cPlace.b4Line = 0;
    return 1;
}

int BuildOpened(const Build& cBuild, char* pchPath, const char* pchShown) {
    // Also closed when a factory ends the thread.
    const std::unique_ptr<char, int (*)(char*)> pFile(pchPath ? fwfopen(pchPath, Text("r")) : nullptr,
                                                      fwfclose);
    if (!pFile) {
        SayErrorOnOutput(cBuild.cPipeline.m_pFramework, "Unable to open pipefile %s\n", pchShown);
        return 0;
    }
    PipeReader cReader = PipeReader::OfFile(pFile.get());
    if (!ExecuteLines(cBuild, cReader, pchShown)) {
        return 0;
    }
    if (cReader.Failed()) {
        SayErrorOnOutput(cBuild.cPipeline.m_pFramework, "Unable to read pipefile %s\n", pchShown);
        return 0;
    }
    return 1;
}

// Begins a file, or a text of that name.
bool BeginFile(const Build& cBuild, const char* pchShown) {
    FRAMEWORK* const pFramework = cBuild.cPipeline.m_pFramework;
    if (!pFramework) {
        SayError(pFramework, "Framework has not been set on EPipeline.\n");
        return false;
    }
    SayStep(pFramework, "Processing pipe file: %s\n", pchShown);
    if (cThreadBuild.iDepth > static_cast<int>(DeepestPipeNesting)) {
        SayError(pFramework, "Pipe files nest more than %u deep: %s\n", DeepestPipeNesting, pchShown);
        return false;
    }
    return true;
}

int BuildText(const Build& cBuild, const char* pchName, const char* pchText) {
    const char* const pchShown = pchName ? pchName : "";
    FailureWatch cWatch;
    const Nesting cNesting;
    if (!pchText) {
        return cWatch.Judge(0, "the text is null", pchShown);
    }
    PipeReader cReader = PipeReader::OfText(pchText);
    return cWatch.Judge(BeginFile(cBuild, pchShown) && ExecuteLines(cBuild, cReader, pchShown), "", pchShown);
}

} // namespace

int BuildFile(const Build& cBuild, char* pchPath) {
    const char* const pchShown = pchPath ? pchPath : "(null)";
    FailureWatch cWatch;
    const Nesting cNesting;
    return cWatch.Judge(BeginFile(cBuild, pchShown) && BuildOpened(cBuild, pchPath, pchShown), "", pchShown);
}

int EPipeline::BuildPipe(char* pchPath) {
    return BuildFile({*this, PlainForm, 0, nullptr}, pchPath);
}

int EPipeline::BuildPipe(char* pchPath, Byte2Type b2ReadConfig, char* pchConfigFile) {
    return BuildFile({*this, ConfiguredForm, b2ReadConfig, pchConfigFile}, pchPath);
}

int EPipeline::BuildPipeText(const char* pchName, const char* pchText) {
    return BuildText({*this, PlainForm, 0, nullptr}, pchName, pchText);
}

int EPipeline::BuildPipeText(const char* pchName, const char* pchText, Byte2Type b2ReadConfig,
                             char* pchConfigFile) {
    return BuildText({*this, ConfiguredForm, b2ReadConfig, pchConfigFile}, pchName, pchText);
}

int EPipeline::ProcessTokens(char** ppchTokens) {
    return ExecuteLine({*this, PlainForm, 0, nullptr}, ppchTokens);
}

int EPipeline::ProcessTokens(char** ppchTokens, Byte2Type b2ReadConfig, char* pchConfigFile) {
    return ExecuteLine({*this, ConfiguredForm, b2ReadConfig, pchConfigFile}, ppchTokens);
}

} // namespace VESK
