// SPDX-License-Identifier: MIT
#include "fwlib/framework/failurewatch.h"

#include "fwlib/framework/messages.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pthread.h>

namespace VESK {

namespace {

constexpr std::size_t FailureTextSize = 1024; // longer texts are truncated

struct FailureTexts {
    Failure cFailure;
    bool bFailed;
    char achFile[FailureTextSize];
    char achText[FailureTextSize];
    char achPending[FailureTextSize]; // the first error of the line that is executed
};

struct ThreadState {
    BuildPlace* pPlace;
    FailureTexts* pTexts; // owned; null until the first error
    bool bEnded;          // the thread is ending, and its texts were freed
    bool bUntold;         // there was no memory for the texts of the last failure
    unsigned int uWatches;
    bool bPending; // achPending has a text
    bool bNoted;   // an inner watch has noted the failure
};

__thread ThreadState cThread __attribute__((tls_model("initial-exec")));

pthread_once_t Once = PTHREAD_ONCE_INIT;
pthread_key_t Key;
bool bKey = false;

const Failure Untold = {"", 0, "not enough memory for the reason"};

void FreeTexts(void* pTexts) {
    std::free(pTexts);
    cThread.pTexts = nullptr;
    cThread.bEnded = true;
}

// Without a key, the texts of a thread would not be freed at its end.
void CreateKey() {
    bKey = pthread_key_create(&Key, FreeTexts) == 0;
}

FailureTexts* Texts() {
    if (!cThread.pTexts && !cThread.bEnded && pthread_once(&Once, CreateKey) == 0 && bKey) {
        auto* const pTexts = static_cast<FailureTexts*>(std::calloc(1, sizeof(FailureTexts)));
        if (pTexts && pthread_setspecific(Key, pTexts) == 0) {
            cThread.pTexts = pTexts;
        } else {
            std::free(pTexts);
        }
    }
    return cThread.pTexts;
}

} // namespace

BuildPlace::BuildPlace(const char* pchBuilt) : pchFile(pchBuilt), b4Line(0), m_pOuter(cThread.pPlace) {
    cThread.pPlace = this;
}

BuildPlace::~BuildPlace() {
    cThread.pPlace = m_pOuter;
}

const BuildPlace* PresentPlace() {
    return cThread.pPlace;
}

FailureWatch::FailureWatch() {
    if (cThread.uWatches++ == 0) {
        cThread.bNoted = false;
    }
    cThread.bPending = false;
}

FailureWatch::~FailureWatch() {
    --cThread.uWatches;
}

int FailureWatch::Judge(int iResult, const char* pchText, const char* pchFile) {
    if (iResult) {
        cThread.bNoted = false; // what an inner watch noted did not matter
        cThread.bPending = false;
        return iResult;
    }
    FailureTexts* const pTexts = cThread.bNoted ? nullptr : Texts();
    cThread.bUntold = !pTexts && (cThread.bUntold || !cThread.bNoted);
    cThread.bNoted = true;
    if (pTexts) {
        const BuildPlace* const pPlace = cThread.pPlace;
        std::snprintf(pTexts->achFile, FailureTextSize, "%s", pPlace ? pPlace->pchFile : pchFile);
        std::snprintf(pTexts->achText, FailureTextSize, "%s",
                      cThread.bPending ? pTexts->achPending : pchText);
        pTexts->cFailure = {pTexts->achFile, pPlace ? pPlace->b4Line : 0, pTexts->achText};
        pTexts->bFailed = true;
    }
    return iResult;
}

void NoteError(const char* pchBegin, const char* pchFormat, va_list Values) {
    FailureTexts* const pTexts =
        cThread.uWatches > 0 && !cThread.bNoted && !cThread.bPending ? Texts() : nullptr;
    if (!pTexts) {
        return;
    }
    const auto uBegin =
        static_cast<std::size_t>(std::snprintf(pTexts->achPending, FailureTextSize, "%s", pchBegin));
    if (uBegin < FailureTextSize) {
        std::vsnprintf(pTexts->achPending + uBegin, FailureTextSize - uBegin, pchFormat, Values);
    }
    pTexts->achPending[std::strcspn(pTexts->achPending, "\n")] = '\0';
    cThread.bPending = true;
}

const Failure* LastFailure() {
    return cThread.bUntold                             ? &Untold
           : cThread.pTexts && cThread.pTexts->bFailed ? &cThread.pTexts->cFailure
                                                       : nullptr;
}

} // namespace VESK
