// SPDX-License-Identifier: MIT
#include "holder.h"

#include "knownelements.h"

#include <fwlib/fwlib.h>

#include <algorithm>
#include <unwind.h>

namespace FwPipe {

namespace {

#if defined(FWPIPE_X86) && defined(__x86_64__)
constexpr int Kept[] = {3, 6, 12, 13, 14, 15}; // rbx, rbp, r12 to r15: registers that functions preserve
constexpr bool ArgumentsOnStack = false;
#elif defined(FWPIPE_X86)
constexpr int Kept[] = {3, 5, 6, 7}; // ebx, ebp, esi, edi
constexpr bool ArgumentsOnStack = true;
#else
constexpr int Kept[] = {0}; // not used
constexpr bool ArgumentsOnStack = false;
#endif
constexpr int KeptCount = KnowsInstructions ? sizeof Kept / sizeof *Kept : 0;

constexpr int MostClasses = 256;
constexpr int MostCodes = 256;      // different functions on one stack
constexpr int MostFrames = 1 << 18; // frames of elements: as many as fit in a stack of the usual size
constexpr int MostSteps = 1 << 28;  // frames times elements; with more, only the innermost frames count
constexpr int MostElements = 131072;

// A function on the stack, and the classes that it may belong to. bAny: at least one.
struct Seen {
    Code cCode;
    bool bAny;
    bool abClass[MostClasses];
};

struct Frame {
    int iSeen; // -1 for none
    Address auKept[sizeof Kept / sizeof *Kept];
};

// A frame of an element.
struct Stop {
    int iSeen;
    int iHint;      // the element in its registers or argument, or -1
    bool bDelivery; // otherwise another function of the same element called it
};

struct Search {
    KnownElements* pKnown;
    Address uBottom;
    Frame cInner;          // the frame that it called
    bool bInnerOfElements; // its code is in a file with code of elements
    bool bBegan;
    bool bOrBehind;
    bool bUnsure; // a table is too small
    int iSeens;
    int iStops;
    Seen acSeen[MostCodes];
    Stop acStops[MostFrames];
};

Search cSearch; // too large for the signal stack
bool abNow[MostElements];
bool abNext[MostElements];
int aiPending[MostElements];

int SeenAt(const Code& cCode) {
    for (int i = 0; i < cSearch.iSeens; ++i) {
        if (cSearch.acSeen[i].cCode.uBegin == cCode.uBegin) {
            return i;
        }
    }
    if (!cCode.uBegin || cSearch.iSeens == MostCodes) {
        cSearch.bUnsure |= cCode.uBegin != 0;
        return -1;
    }
    Seen& cSeen = cSearch.acSeen[cSearch.iSeens];
    cSeen.cCode = cCode;
    cSeen.bAny = false;
    const auto& cClasses = cSearch.pKnown->Classes();
    for (std::size_t u = 0; u < cClasses.size(); ++u) {
        cSeen.abClass[u] = Continues(cClasses[u].cDataArrived, cCode) || Continues(cClasses[u].cRun, cCode);
        cSeen.bAny |= cSeen.abClass[u];
    }
    return cSearch.iSeens++;
}

bool Fits(int iElement, int iSeen) {
    return cSearch.acSeen[iSeen]
        .abClass[cSearch.pKnown->Elements()[static_cast<std::size_t>(iElement)].iClass];
}

// The element in a register that the frame has changed and that its caller preserves, or in its first argument.
int Hint(const Frame& cFrame, const Frame& cCaller, Address uFrameEnd) {
    if (ArgumentsOnStack) {
        const int iElement = cSearch.pKnown->Find(
            *reinterpret_cast<void* const*>(uFrameEnd)); // NOLINT(performance-no-int-to-ptr)
        if (iElement >= 0) {
            return iElement;
        }
    }
    int iHint = -1;
    for (int i = 0; i < KeptCount; ++i) {
        if (cFrame.auKept[i] == cCaller.auKept[i]) {
            continue;
        }
        const int iElement = cSearch.pKnown->Find(
            reinterpret_cast<const void*>(cFrame.auKept[i])); // NOLINT(performance-no-int-to-ptr)
        if (iElement >= 0 && Fits(iElement, cFrame.iSeen)) {
            if (iHint >= 0 && iHint != iElement) {
                return -1;
            }
            iHint = iElement;
        }
    }
    return iHint;
}

bool OfElements(const Code& cCode) {
    const void* const pModule = ModuleOf(cCode);
    const auto& cClasses = cSearch.pKnown->Classes();
    return pModule && std::any_of(cClasses.begin(), cClasses.end(),
                                  [=](const ElementClass& cClass) { return cClass.pModule == pModule; });
}

// Evaluates the previous frame, now that its caller is known.
void Settle(const Frame& cCaller, Address uReturn, bool bReturns, Address uFrameEnd) {
    const Frame& cFrame = cSearch.cInner;
    const Call Kind = bReturns ? CallBefore(uReturn) : Call::Other;
    if (cFrame.iSeen < 0 || !cSearch.acSeen[cFrame.iSeen].bAny) {
        cSearch.bOrBehind |= cSearch.iStops == 0 && Kind == Call::Delivery && cSearch.bInnerOfElements;
        return;
    }
    const Code cCalled = Kind == Call::Direct ? CodeAt(TargetOf(uReturn)) : Code();
    Stop& cStop = cSearch.acStops[cSearch.iStops++];
    cStop = {cFrame.iSeen, Hint(cFrame, cCaller, uFrameEnd),
             !Continues(cCalled, cSearch.acSeen[cFrame.iSeen].cCode)};
}

_Unwind_Reason_Code SeeFrame(_Unwind_Context* pContext, void*) {
    int iExact = 0;
    const Address uReturn = _Unwind_GetIPInfo(pContext, &iExact);
    const Code cCode = CodeAt(iExact ? uReturn : uReturn - 1);
    const bool bBottom = cCode.uBegin == cSearch.uBottom;
    Frame cFrame = {bBottom ? -1 : SeenAt(cCode), {}};
    for (int i = 0; i < KeptCount; ++i) {
        cFrame.auKept[i] = _Unwind_GetGR(pContext, Kept[i]);
    }
    if (cSearch.bBegan) {
        Settle(cFrame, uReturn, !iExact && cCode.uBegin, _Unwind_GetCFA(pContext));
    }
    cSearch.bBegan = true;
    cSearch.cInner = cFrame;
    cSearch.bInnerOfElements = cSearch.iStops == 0 && OfElements(cCode);
    return bBottom || cSearch.iStops == MostFrames ? _URC_NORMAL_STOP : _URC_NO_REASON;
}

// Marks the elements that this one sends to, also through elements that may leave no frame.
void MarkReached(int iSender) {
    const auto& cElements = cSearch.pKnown->Elements();
    int iPending = 1;
    aiPending[0] = iSender;
    while (iPending > 0) {
        const auto u = static_cast<std::size_t>(aiPending[--iPending]);
        for (int i = cElements[u].iFirstReceiver; i < cElements[u + 1].iFirstReceiver; ++i) {
            const int iReceiver = cSearch.pKnown->Receivers()[static_cast<std::size_t>(i)];
            const auto uClass =
                static_cast<std::size_t>(cElements[static_cast<std::size_t>(iReceiver)].iClass);
            if (!abNext[iReceiver] && cSearch.pKnown->Classes()[uClass].bMayLeave) {
                aiPending[iPending++] = iReceiver;
            }
            abNext[iReceiver] = true;
        }
    }
}

// Keeps only the marked elements that fit the frame. Returns their number.
int Narrow(const Stop& cStop, const bool* pbFrom) {
    const bool bHint = cStop.iHint >= 0 && pbFrom[cStop.iHint];
    int iLeft = 0;
    for (int i = 0; i < cSearch.pKnown->Count(); ++i) {
        abNow[i] = pbFrom[i] && (bHint ? i == cStop.iHint : Fits(i, cStop.iSeen));
        iLeft += abNow[i] ? 1 : 0;
    }
    return iLeft;
}

// Replaces the elements that may have sent by those that may have received.
int Step(const Stop& cStop) {
    std::fill_n(abNext, cSearch.pKnown->Count(), false);
    for (int i = 0; i < cSearch.pKnown->Count(); ++i) {
        if (abNow[i]) {
            MarkReached(i);
        }
    }
    return Narrow(cStop, abNext);
}

// The outermost element is the one that originates the data, unless frames are missing.
int Begin(const Stop& cStop, bool bOutermost) {
    const int iOrigin = cSearch.pKnown->Origin();
    const bool bRun = bOutermost && iOrigin >= 0 && Fits(iOrigin, cStop.iSeen);
    std::fill_n(abNext, cSearch.pKnown->Count(), !bRun);
    if (bRun) {
        abNext[iOrigin] = true;
    }
    return Narrow(cStop, abNext);
}

// Returns how many elements may have had the object; they are marked. After the runs, the element that is told sends.
int FollowObject() {
    const int iStops = std::min(cSearch.iStops, MostSteps / cSearch.pKnown->Count());
    const bool bWhole = iStops == cSearch.iStops && iStops < MostFrames;
    const int iEnding = bWhole ? cSearch.pKnown->Find(VESK::EndingElement()) : -1;
    std::fill_n(abNow, cSearch.pKnown->Count(), false);
    int iLeft = 0;
    if (iEnding >= 0) {
        abNow[iEnding] = true;
        iLeft = 1;
    }
    for (int i = iStops - 1; i >= 0; --i) {
        const Stop& cStop = cSearch.acStops[i];
        if (i == iStops - 1 && iEnding < 0) {
            iLeft = Begin(cStop, bWhole && !VESK::EndingElement());
        } else if (cStop.bDelivery) {
            iLeft = Step(cStop);
        }
    }
    return iLeft;
}

} // namespace

Holder FindHolder(KnownElements& cKnown, Address uBottom) {
    constexpr Holder Unknown = {nullptr, false};
    cSearch.pKnown = &cKnown;
    cSearch.uBottom = uBottom;
    cSearch.bBegan = cSearch.bInnerOfElements = cSearch.bOrBehind = cSearch.bUnsure = false;
    cSearch.iSeens = cSearch.iStops = 0;
    if (cKnown.Count() <= 0 || cKnown.Count() > MostElements || cKnown.Classes().size() > MostClasses) {
        return Unknown;
    }
    cKnown.Examine();
    _Unwind_Backtrace(SeeFrame, nullptr);
    if (FollowObject() != 1 || cSearch.bUnsure) {
        return Unknown;
    }
    const auto u = static_cast<std::size_t>(std::find(abNow, abNow + cKnown.Count(), true) - abNow);
    const auto& cElements = cKnown.Elements();
    return {&cElements[u].cLabel,
            cSearch.bOrBehind && cElements[u].iFirstReceiver < cElements[u + 1].iFirstReceiver};
}

} // namespace FwPipe
