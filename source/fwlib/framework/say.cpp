// SPDX-License-Identifier: MIT
#include "fwlib/framework/say.h"

#include "fwlib/elements/eobject.h"
#include "fwlib/framework/failurewatch.h"
#include "fwlib/framework/framework.h"
#include "fwlib/framework/living.h"
#include "fwlib/text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace VESK {

namespace {

constexpr std::size_t UsualSize = 512; // longer texts are composed on the heap

__thread bool bHandling __attribute__((tls_model("initial-exec"))); // the thread is in a handler

// What the framework has if lines go to its handler, otherwise null. A handler's own lines are printed.
const FrameworkExtras* Handling(const FRAMEWORK* pFramework) {
    const bool bAny = pFramework && uHandlers.load(std::memory_order_relaxed) > 0 && !bHandling;
    const FrameworkExtras* const pExtras = bAny ? ExtrasOf(pFramework) : nullptr;
    return pExtras && pExtras->pHandler ? pExtras : nullptr;
}

// The formatted text, on the heap if it is longer than the buffer. Truncated when there is not enough memory.
class Composed {
public:
    FWLIB_PRINTF(3, 0) Composed(const Saying& cSaying, const char* pchFormat, va_list Values) {
        va_list Again;
        va_copy(Again, Values);
        const std::size_t uBegin = std::strlen(cSaying.pchBegin) + std::strlen(cSaying.pchBegin2);
        const int iLength = std::vsnprintf(nullptr, 0, pchFormat, Values);
        const std::size_t uNeeded = uBegin + static_cast<std::size_t>(std::max(iLength, 0)) + 1;
        m_pchHeap = uNeeded > UsualSize ? static_cast<char*>(std::malloc(uNeeded)) : nullptr;
        pchText = m_pchHeap ? m_pchHeap : m_achUsual;
        const std::size_t uSize = m_pchHeap ? uNeeded : UsualSize;
        const std::size_t uCopied = std::min(uBegin, uSize - 1);
        std::snprintf(pchText, uSize, "%s%s", cSaying.pchBegin, cSaying.pchBegin2);
        std::vsnprintf(pchText + uCopied, uSize - uCopied, pchFormat, Again);
        va_end(Again);
    }
    ~Composed() { std::free(m_pchHeap); }
    Composed(const Composed&) = delete;
    Composed& operator=(const Composed&) = delete;

    char* pchText;

private:
    char* m_pchHeap;
    char m_achUsual[UsualSize];
};

const char* Property(EObject* pElement, char* pchKey) {
    Byte2Type b2;
    return pElement && pElement->m_cProperties.FindProperty(pchKey, &b2, Section::Standard)
               ? pElement->m_cProperties.m_pachValues[b2]
               : nullptr;
}

FWLIB_PRINTF(3, 0)
void Pass(const FrameworkExtras& cExtras, const Saying& cSaying, const char* pchFormat, va_list Values) {
    const Composed cComposed(cSaying, pchFormat, Values);
    const BuildPlace* const pPlace = PresentPlace();
    MessageLine cLine = {cSaying.Kind,
                         cSaying.iStream,
                         cSaying.iLevel,
                         cSaying.pElement,
                         Property(cSaying.pElement, Key::EObjectType),
                         Property(cSaying.pElement, Key::Name),
                         pPlace ? pPlace->pchFile : nullptr,
                         pPlace ? pPlace->b4Line : 0,
                         nullptr};
    bHandling = true;
    for (char* pch = cComposed.pchText; *pch != '\0';) {
        char* const pchEnd = pch + std::strcspn(pch, "\n");
        const bool bMore = *pchEnd != '\0';
        *pchEnd = '\0';
        cLine.pchText = pch;
        cExtras.pHandler(cExtras.pHandlerContext, cLine);
        pch = pchEnd + (bMore ? 1 : 0);
    }
    bHandling = false;
}

// Whether the formatted text ends with a newline; false when there is not enough memory.
FWLIB_PRINTF(1, 0) bool EndsLine(const char* pchFormat, va_list Values) {
    va_list Again;
    va_copy(Again, Values);
    const auto uLength = static_cast<std::size_t>(std::max(std::vsnprintf(nullptr, 0, pchFormat, Values), 0));
    char* const pchText = uLength > 0 ? static_cast<char*>(std::malloc(uLength + 1)) : nullptr;
    bool bEnds = false;
    if (pchText) {
        std::vsnprintf(pchText, uLength + 1, pchFormat, Again);
        bEnds = pchText[uLength - 1] == '\n';
        std::free(pchText);
    }
    va_end(Again);
    return bEnds;
}

FWLIB_PRINTF(2, 0) void Print(const Saying& cSaying, const char* pchFormat, va_list Values) {
    std::FILE* const pStream = cSaying.iStream == 1 ? stdout : stderr;
    va_list Again;
    va_copy(Again, Values);
    std::fprintf(pStream, "%s%s", cSaying.pchBegin, cSaying.pchBegin2);
    std::vfprintf(pStream, pchFormat, Values);
    if (cSaying.bEndLine && !EndsLine(pchFormat, Again)) {
        std::fputc('\n', pStream);
    }
    va_end(Again);
}

} // namespace

void Say(const Saying& cSaying, const char* pchFormat, va_list Values) {
    if (cSaying.Kind == ErrorMessageKind) {
        va_list Again;
        va_copy(Again, Values);
        NoteError(cSaying.pchBegin, pchFormat, Again);
        va_end(Again);
    }
    if (const FrameworkExtras* const pExtras = Handling(cSaying.pFramework)) {
        Pass(*pExtras, cSaying, pchFormat, Values);
    } else {
        Print(cSaying, pchFormat, Values);
    }
}

void SayStep(const FRAMEWORK* pFramework, const char* pchFormat, ...) {
    va_list Values;
    va_start(Values, pchFormat);
    Say({pFramework, ProgressMessage, 1, nullptr, 0, "", "", false}, pchFormat, Values);
    va_end(Values);
}

void SayError(const FRAMEWORK* pFramework, const char* pchFormat, ...) {
    va_list Values;
    va_start(Values, pchFormat);
    Say({pFramework, ErrorMessageKind, 2, nullptr, 0, "", "", false}, pchFormat, Values);
    va_end(Values);
}

void SayWarning(const FRAMEWORK* pFramework, const char* pchFormat, ...) {
    va_list Values;
    va_start(Values, pchFormat);
    Say({pFramework, WarningMessageKind, 2, nullptr, 0, "", "", false}, pchFormat, Values);
    va_end(Values);
}

void SayErrorOnOutput(const FRAMEWORK* pFramework, const char* pchFormat, ...) {
    va_list Values;
    va_start(Values, pchFormat);
    Say({pFramework, ErrorMessageKind, 1, nullptr, 0, "", "", false}, pchFormat, Values);
    va_end(Values);
}

void SayOutputLine(EObject& cElement, const char* pchLine) {
    if (Handling(cElement.m_pFramework)) {
        SayOutput(cElement, "%s\n", pchLine);
    } else {
        std::puts(pchLine);
    }
}

void SayOutput(EObject& cElement, const char* pchFormat, ...) {
    va_list Values;
    va_start(Values, pchFormat);
    Say({cElement.m_pFramework, OutputMessage, 1, &cElement, 0, "", "", false}, pchFormat, Values);
    va_end(Values);
}

} // namespace VESK
