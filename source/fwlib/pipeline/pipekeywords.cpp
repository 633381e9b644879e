// SPDX-License-Identifier: MIT
// What the line of each keyword of the pipe file language does.
#include "fwlib/pipeline/pipebuild.h"

#include "fwlib/framework/framework.h"
#include "fwlib/framework/say.h"
#include "fwlib/pipeline/pipelanguage.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <memory>
#include <new>

namespace VESK {

namespace {

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

int NestedPipeLine(const Build& cBuild, char** ppchArguments) {
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

// The arguments are the tokens after the keyword; the result is the line's.
using LineAction = int (*)(const Build&, char** ppchArguments);

constexpr LineAction Actions[] = {PluginLine,  FrameworkPropertyLine, NestedPipeLine,
                                  ElementLine, PropertyLine,          SinkLine,
                                  SourceLine,  ConnectLine,           ConfigLine};
static_assert(sizeof Actions / sizeof *Actions == PipeKeywordCount, "in the order of PipeWord");

unsigned int CountTokens(char** ppchTokens) {
    unsigned int u = 0;
    while (u <= MostPipeTokens && ppchTokens[u]) {
        ++u;
    }
    return u;
}

} // namespace

int ExecuteTokens(const Build& cBuild, char** ppchTokens) {
    const unsigned int uTokens = ppchTokens ? CountTokens(ppchTokens) : 0;
    if (uTokens == 0) {
        return 0;
    }
    const PipeKeyword* const pKey = FindPipeKeyword(ppchTokens[0]);
    if (!pKey) {
        SayErrorOnOutput(cBuild.cPipeline.m_pFramework, "Unknown token %s\n", ppchTokens[0]);
        return 0;
    }
    if (uTokens > MostPipeTokens) {
        SayError(cBuild.cPipeline.m_pFramework, "Too many tokens in a line of %s: at most %u.\n",
                 pKey->pchWord, MostPipeTokens);
        return 0;
    }
    if (uTokens - 1 < pKey->uArguments) {
        SayError(cBuild.cPipeline.m_pFramework, "Missing arguments of %s: %u needed, %u given.\n",
                 pKey->pchWord, pKey->uArguments, uTokens - 1);
        return 0;
    }
    return Actions[static_cast<unsigned int>(pKey->Word)](cBuild, ppchTokens + 1);
}

} // namespace VESK
