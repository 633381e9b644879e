// SPDX-License-Identifier: MIT
#include "failure.h"

#include "activeelement.h"
#include "heldoutput.h"
#include "holder.h"
#include "knownelements.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <exception>
#include <functional>
#include <new>
#include <string>
#include <typeinfo>
#include <ucontext.h>
#include <unistd.h>
#include <unwind.h>

namespace FwPipe {

namespace {

constexpr int Faults[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr int FaultCount = sizeof Faults / sizeof *Faults;
constexpr Address StackMargin =
    65536; // distance from the stack pointer within which a fault counts as a stack overflow

struct sigaction aBefore[FaultCount]; // the former actions
alignas(16) char achFaultStack[131072];
KnownElements cKnown;
Holder cThrower = {nullptr, false};

} // namespace

extern "C" {
_Unwind_Reason_Code FwPipeNoteThrow(int iVersion, _Unwind_Action Actions, _Unwind_Exception_Class Class,
                                    _Unwind_Exception* pException, _Unwind_Context* pContext);
void FwPipeGuarded(const std::function<void()>& cCall);
}

// Called during the search for the exception's handler, when the stack is still complete.
_Unwind_Reason_Code FwPipeNoteThrow(int, _Unwind_Action Actions, _Unwind_Exception_Class, _Unwind_Exception*,
                                    _Unwind_Context*) {
    if (Actions & _UA_SEARCH_PHASE) {
        cThrower = FindHolder(cKnown, reinterpret_cast<Address>(FwPipeGuarded));
    }
    return _URC_CONTINUE_UNWIND;
}

// Makes FwPipeNoteThrow the personality routine of this frame, so that it is called when an exception passes.
__attribute__((noinline, used)) void FwPipeGuarded(const std::function<void()>& cCall) {
#ifndef __ARM_EABI__ // its unwind tables differ; see unreadstack.cpp
    asm volatile(".cfi_personality 0x1b, FwPipeNoteThrow");
#endif
    cCall();
    asm volatile("" ::: "memory"); // prevents a tail call, which would remove this frame
}

namespace {

const char* Shown(const Holder& cHolder) {
    const Label& cActive = ActiveElement();
    return cActive.achText[0] ? cActive.achText
           : cHolder.pLabel   ? cHolder.pLabel->achText
                              : "unknown element";
}

void Tell(const char* pchWhat) {
    const bool bOrBehind = cThrower.bOrBehind && !ActiveElement().achText[0];
    const std::size_t uLength = std::strlen(pchWhat);
    std::fprintf(stderr, "fwpipe: %s%s: %s%s", Shown(cThrower), bOrBehind ? " or one downstream" : "",
                 pchWhat, uLength > 0 && pchWhat[uLength - 1] == '\n' ? "" : "\n");
}

// The class of the exception as in the source.
std::string TypeOfThrown() {
    const std::type_info* const pType = abi::__cxa_current_exception_type();
    if (!pType) {
        return "an exception of another language";
    }
    int iStatus = 0;
    char* const pchName = abi::__cxa_demangle(pType->name(), nullptr, nullptr, &iStatus);
    std::string cText = std::string("an exception of type ") + (pchName ? pchName : pType->name());
    std::free(pchName);
    return cText;
}

void Append(char (&achLine)[512], const char* pchText) {
    const std::size_t uUsed = std::strlen(achLine);
    std::strncpy(achLine + uUsed, pchText, sizeof achLine - uUsed - 1);
}

void TellFault(const char* pchElement, bool bOrBehind, const char* pchFault, bool bStack) {
    char achLine[512] = "fwpipe: ";
    Append(achLine, pchElement);
    Append(achLine, bOrBehind ? " or one downstream: " : ": ");
    Append(achLine, pchFault);
    Append(achLine, bStack ? " (the stack is full)\n" : "\n");
    [[maybe_unused]] const ssize_t iWritten = write(STDERR_FILENO, achLine, std::strlen(achLine));
}

int iFault = 0; // the fault that is being reported

void Restore() {
    for (int i = 0; i < FaultCount; ++i) {
        sigaction(Faults[i], &aBefore[i], nullptr);
    }
}

// A second fault, during the search for the element: the data for that is damaged.
void GiveUp(int) {
    TellFault("unknown element", false, sigdescr_np(iFault), false);
    Restore();
    signal(iFault, SIG_DFL);
    raise(iFault);
}

#ifdef FWPIPE_X86
#ifdef __x86_64__
constexpr int StackRegister = REG_RSP, CodeRegister = REG_RIP;
#else
constexpr int StackRegister = REG_ESP, CodeRegister = REG_EIP;
#endif

Address StackAt(const ucontext_t& Context) {
    return static_cast<Address>(Context.uc_mcontext.gregs[StackRegister]);
}

Holder HolderAt(ucontext_t& Context) {
    greg_t* const pRegisters = Context.uc_mcontext.gregs;
    const greg_t iCode = pRegisters[CodeRegister];
    const greg_t iStack = pRegisters[StackRegister];
    if (!CodeAt(static_cast<Address>(iCode)).uBegin) {
        // A call of an address without code. After the return address is removed, the stack is that of the caller.
        std::memcpy(&pRegisters[CodeRegister],
                    reinterpret_cast<void*>(iStack), // NOLINT(performance-no-int-to-ptr)
                    sizeof iCode);
        pRegisters[StackRegister] += static_cast<greg_t>(sizeof iCode);
    }
    const Holder cHolder = FindHolder(cKnown, reinterpret_cast<Address>(FwPipeGuarded));
    pRegisters[CodeRegister] = iCode;
    pRegisters[StackRegister] = iStack;
    return cHolder;
}
#else
Address StackAt(const ucontext_t&) {
    return reinterpret_cast<Address>(
        __builtin_frame_address(0)); // of the signal stack: a stack overflow is not recognized
}

Holder HolderAt(ucontext_t&) {
    return FindHolder(cKnown, reinterpret_cast<Address>(FwPipeGuarded));
}
#endif

void OnFault(int iSignal, siginfo_t* pInfo, void* pContext) {
    const int iErrno = errno;
    ucontext_t& Context = *static_cast<ucontext_t*>(pContext);
    const Address uStack = StackAt(Context);
    const bool bStack = iSignal == SIGSEGV && pInfo->si_code > 0 &&
                        reinterpret_cast<Address>(pInfo->si_addr) + StackMargin > uStack &&
                        reinterpret_cast<Address>(pInfo->si_addr) < uStack + StackMargin;
    iFault = iSignal;
    ShowHeldAtEnd();
    for (const int iOther : Faults) {
        if (iOther != SIGABRT) {
            struct sigaction Action = {};
            Action.sa_handler = GiveUp;
            sigaction(iOther, &Action, nullptr);
        }
    }
    const Holder cHolder = HolderAt(Context);
    TellFault(Shown(cHolder), cHolder.bOrBehind && !ActiveElement().achText[0], sigdescr_np(iSignal), bStack);
    Restore();
    if (pInfo->si_code <= 0) {
        raise(iSignal); // signals that were sent do not occur again, as those of an instruction do
    }
    errno = iErrno;
}

} // namespace

void CatchFaults() {
    stack_t Stack = {};
    if (sigaltstack(nullptr, &Stack) == 0 && (Stack.ss_flags & SS_DISABLE)) {
        Stack.ss_sp = achFaultStack;
        Stack.ss_size = sizeof achFaultStack;
        Stack.ss_flags = 0;
        sigaltstack(&Stack, nullptr); // needed for stack overflows
    }
    struct sigaction Action = {};
    Action.sa_sigaction = OnFault;
    Action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER; // a fault during the report calls GiveUp
    for (int i = 0; i < FaultCount; ++i) {
        sigaction(Faults[i], &Action, &aBefore[i]);
    }
}

void WatchElements(VESK::EPipeline& cPipeline) {
    cKnown.Learn(cPipeline);
}

bool Guarded(const std::function<void()>& cCall) {
    cThrower = {nullptr, false};
    try {
        FwPipeGuarded(cCall);
        return true;
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const std::bad_alloc& cError) {
        if (!cThrower.pLabel && !ActiveElement().achText[0]) {
            throw; // not from an element
        }
        Tell(cError.what());
    } catch (const std::exception& cError) {
        Tell(cError.what());
    } catch (...) {
        Tell(TypeOfThrown().c_str());
    }
    return false;
}

} // namespace FwPipe
