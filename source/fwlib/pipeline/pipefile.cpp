// SPDX-License-Identifier: MIT
// The pipe file language. Both building forms run the same code. They differ in two members of Build: the
// configuration file that elements are filled from, and the current element.
#include "fwlib/pipeline/epipeline.h"

#include "fwlib/framework/failurewatch.h"
#include "fwlib/framework/framework.h"
#include "fwlib/framework/say.h"
#include "fwlib/internal/currentelement.h"
#include "fwlib/internal/handle.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/pipeline/pipetext.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <cstdio>
#include <memory>
#include <new>

namespace VESK {

namespace {

constexpr unsigned int MostTokens = 14;
constexpr unsigned int TokenSlots = 16; // all tokens, one more to detect too many, and null
constexpr int DeepestNesting = 64;      // of pipe files; a file that includes itself ends here

struct Build {
    EPipeline& cPipeline;
    BuildForm Form;
    Byte2Type b2ReadConfig;
    char* pchConfigFile;
};

int BuildFile(const Build& cBuild, char* pchPath);

Byte2Type PadNumber(char* pchText) {
    return static_cast<Byte2Type>(fwatoi(pchText));
}

// Lines that set a property always succeed, so one that could not be set is reported as an error of the pipeline.
void SetReported(EPipeline& cPipeline, PROPERTIES& cProperties, char* pchKey, char* pchValue) {
    if (!cProperties.SetProperty(pchKey, pchValue, Section::Standard)) {
        cPipeline.ErrorMessage("Unable to set property %s\n", pchKey);
    }
}

// Deletes an element that AddElement refused, but not if a derived class's AddElement kept it. Returns true if it was
// deleted.
bool DeleteUnlessHeld(const EPipeline& cPipeline, EObject* pElement) {
    for (int i = 0; i < cPipeline.m_iElementCount && i < cPipeline.m_iElementCapacity; ++i) {
        if (cPipeline.m_ppElements[i] == pElement) {
            return false;
        }
    }
    ForgetElement(pElement);
    delete pElement;
    return true;
}

int PluginLine(const Build& cBuild, char** ppchArguments) {
    FRAMEWORK* const pFramework = cBuild.cPipeline.m_pFramework;
    SayStep(cBuild.cPipeline.m_pFramework, "Loading %s\n", ppchArguments[0]);
    if (!pFramework || !pFramework->AddPlugin(ppchArguments[0])) {
        SayError(cBuild.cPipeline.m_pFramework, "Could not load plugin %s\n", ppchArguments[0]);
        return 0;
    }
    return 1;
}

int FrameworkPropertyLine(const Build& cBuild, char** ppchArguments) {
    FRAMEWORK* const pFramework = cBuild.cPipeline.m_pFramework;
    if (pFramework) {
        SayStep(cBuild.cPipeline.m_pFramework, "Setting framework property %s to %s\n", ppchArguments[0],
                ppchArguments[1]);
        SetReported(cBuild.cPipeline, *pFramework, ppchArguments[0], ppchArguments[1]);
    }
    return 1;
}

int PipeLine(const Build& cBuild, char** ppchArguments) {
    std::unique_ptr<EPipeline> pBuilt(new (std::nothrow)
                                          EPipeline); // also deleted when a factory ends the thread
    if (pBuilt) {
        pBuilt->m_pFramework = cBuild.cPipeline.m_pFramework;
    }
    if (!pBuilt ||
        !BuildFile({*pBuilt, cBuild.Form, cBuild.b2ReadConfig, cBuild.pchConfigFile}, ppchArguments[0])) {
        pBuilt.reset();
        SayError(cBuild.cPipeline.m_pFramework, "Could not build pipe %s\n", ppchArguments[0]);
        return 0;
    }
    EPipeline* const pInner = pBuilt.release();
    SetCurrentElement(cBuild.Form, pInner);
    if (!cBuild.cPipeline.AddElement(pInner) && DeleteUnlessHeld(cBuild.cPipeline, pInner)) {
        // The line still succeeds, so this is reported as an error of the pipeline.
        cBuild.cPipeline.ErrorMessage("Unable to add pipe %s\n", ppchArguments[0]);
    }
    return 1;
}

int ElementLine(const Build& cBuild, char** ppchArguments) {
    FRAMEWORK* const pFramework = cBuild.cPipeline.m_pFramework;
    SayStep(cBuild.cPipeline.m_pFramework, "Instantiating %s\n", ppchArguments[0]);
    EObject* const pElement = pFramework ? pFramework->CreateElement(ppchArguments[0]) : nullptr;
    SetCurrentElement(cBuild.Form, pElement);
    if (!pElement) {
        SayError(cBuild.cPipeline.m_pFramework, "Creation of element failed.\n");
        return 0;
    }
    if (cBuild.b2ReadConfig) {
        pElement->m_cProperties.ReadConfig(cBuild.pchConfigFile, ppchArguments[0]);
    }
    if (!cBuild.cPipeline.AddElement(pElement)) {
        DeleteUnlessHeld(cBuild.cPipeline, pElement);
        SayError(cBuild.cPipeline.m_pFramework, "Unable to add element.\n");
        return 0;
    }
    return 1;
}

int PropertyLine(const Build& cBuild, char** ppchArguments) {
    EObject* const pElement = GetCurrentElement(cBuild.Form);
    if (pElement) {
        SayStep(cBuild.cPipeline.m_pFramework, "Setting property %s to %s\n", ppchArguments[0],
                ppchArguments[1]);
        SetReported(cBuild.cPipeline, pElement->m_cProperties, ppchArguments[0], ppchArguments[1]);
    }
    return 1;
}

int SinkLine(const Build& cBuild, char** ppchArguments) {
    SayStep(cBuild.cPipeline.m_pFramework, "Setting sink element to %s\n", ppchArguments[0]);
    SetReported(cBuild.cPipeline, cBuild.cPipeline.m_cProperties, Key::SinkElement, ppchArguments[0]);
    return 1;
}

int SourceLine(const Build& cBuild, char** ppchArguments) {
    SayStep(cBuild.cPipeline.m_pFramework, "Setting source element to %s\n", ppchArguments[0]);
    SetReported(cBuild.cPipeline, cBuild.cPipeline.m_cProperties, Key::SourceElement, ppchArguments[0]);
    return 1;
}

int ConnectLine(const Build& cBuild, char** ppchArguments) {
    SayStep(cBuild.cPipeline.m_pFramework, "Connecting %s(%s) -> %s(%s)\n", ppchArguments[0],
            ppchArguments[1], ppchArguments[2], ppchArguments[3]);
    if (!cBuild.cPipeline.Connect(ppchArguments[0], PadNumber(ppchArguments[1]), ppchArguments[2],
                                  PadNumber(ppchArguments[3]))) {
        SayErrorOnOutput(cBuild.cPipeline.m_pFramework, "Unable to connect pipe\n");
        return 0;
    }
    return 1;
}

int ConfigLine(const Build& cBuild, char** ppchArguments) {
    EObject* const pElement = GetCurrentElement(cBuild.Form);
    if (!pElement) {
        return 1;
    }
    SayStep(cBuild.cPipeline.m_pFramework, "Reading config file %s, section %s\n", ppchArguments[0],
            ppchArguments[1]);
    if (!pElement->m_cProperties.ReadConfig(ppchArguments[0], ppchArguments[1])) {
        SayError(cBuild.cPipeline.m_pFramework, "Unable to read config file/section.\n");
        return 0;
    }
    return 1;
}

struct PipeKey {
    const char* pchKeyword; // null in the last row
    unsigned int uArguments;
    int (*pAction)(const Build&,
                   char**); // its arguments are the tokens after the keyword; returns the result of the line
};

constexpr PipeKey PipeKeys[] = {
    {"plugin", 1, PluginLine},   {"fwprop", 2, FrameworkPropertyLine}, {"pipe", 1, PipeLine},
    {"element", 1, ElementLine}, {"property", 2, PropertyLine},        {"sink", 1, SinkLine},
    {"source", 1, SourceLine},   {"connect", 4, ConnectLine},          {"config", 2, ConfigLine},
    {nullptr, 0, nullptr},
};

unsigned int CountTokens(char** ppchTokens) {
    unsigned int u = 0;
    while (u <= MostTokens && ppchTokens[u]) {
        ++u;
    }
    return u;
}

int ExecuteTokens(const Build& cBuild, char** ppchTokens) {
    const unsigned int uTokens = ppchTokens ? CountTokens(ppchTokens) : 0;
    if (uTokens == 0) {
        return 0;
    }
    const PipeKey* pKey = PipeKeys;
    while (pKey->pchKeyword && fwstrcmp(pKey->pchKeyword, ppchTokens[0]) != 0) {
        ++pKey;
    }
    if (!pKey->pchKeyword) {
        SayErrorOnOutput(cBuild.cPipeline.m_pFramework, "Unknown token %s\n", ppchTokens[0]);
        return 0;
    }
    if (uTokens > MostTokens) {
        SayError(cBuild.cPipeline.m_pFramework, "Too many tokens in a line of %s: at most %u.\n",
                 pKey->pchKeyword, MostTokens);
        return 0;
    }
    if (uTokens - 1 < pKey->uArguments) {
        SayError(cBuild.cPipeline.m_pFramework, "Missing arguments of %s: %u needed, %u given.\n",
                 pKey->pchKeyword, pKey->uArguments, uTokens - 1);
        return 0;
    }
    return pKey->pAction(cBuild, ppchTokens + 1);
}

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

int BuildFile(const Build& cBuild, char* pchPath) {
    const char* const pchShown = pchPath ? pchPath : "(null)";
    FailureWatch cWatch;
    const Nesting cNesting;
    return cWatch.Judge(BeginFile(cBuild, pchShown) && BuildOpened(cBuild, pchPath, pchShown), "", pchShown);
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
