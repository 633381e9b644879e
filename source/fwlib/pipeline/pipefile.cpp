// SPDX-License-Identifier: MIT
// The pipe files: their lines, and files that contain others.
#include "fwlib/pipeline/pipebuild.h"

#include "fwlib/framework/failurewatch.h"
#include "fwlib/framework/say.h"
#include "fwlib/internal/handle.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/pipeline/pipetext.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstdio>
#include <cstring>
#include <memory>

namespace VESK {

namespace {

constexpr int DeepestNesting = 64; // of pipe files; a file that includes itself ends here

int ExecuteLine(const Build& cBuild, char** ppchTokens) {
    FailureWatch cWatch;
    return cWatch.Judge(ExecuteTokens(cBuild, ppchTokens), "the line failed");
}

// Splits the line in place at blanks and tabs into tokens, then null. Stops after one token more than a line may have.
void SplitLine(char* pchLine, char* (&apchTokens)[TokenSlots]) {
    unsigned int u = 0;
    char* pch = pchLine;
    while (u < TokenSlots - 1) {
        pch += std::strspn(pch, " \t");
        if (*pch == '\0') {
            break;
        }
        apchTokens[u++] = pch;
        pch += std::strcspn(pch, " \t");
        if (*pch != '\0') {
            *pch++ = '\0';
        }
    }
    apchTokens[u] = nullptr;
}

// Executes the lines, up to the first that fails.
int ExecuteLines(const Build& cBuild, PipeText& cText, const char* pchName) {
    char achLine[PipeLineSize];
    char* apchTokens[TokenSlots];
    BuildPlace cPlace(pchName);
    while (cText.Next(achLine)) {
        cPlace.b4Line = cText.Line();
        SplitLine(achLine, apchTokens);
        if (apchTokens[0] && apchTokens[0][0] != '#' && !ExecuteLine(cBuild, apchTokens)) {
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
    PipeText cText(pFile.get());
    if (!ExecuteLines(cBuild, cText, pchShown)) {
        return 0;
    }
    if (std::ferror(StreamOf(pFile.get()))) { // a directory, for example, can be opened but not read
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
    if (cThreadBuild.iDepth > DeepestNesting) {
        SayError(pFramework, "Pipe files nest more than %d deep: %s\n", DeepestNesting, pchShown);
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
    PipeText cText(pchText);
    return cWatch.Judge(BeginFile(cBuild, pchShown) && ExecuteLines(cBuild, cText, pchShown), "", pchShown);
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
