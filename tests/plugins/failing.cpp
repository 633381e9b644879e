// SPDX-License-Identifier: MIT
// Elements that fail: EEvery passes each object on, by its last call, so that it leaves no frame on the stack; EBase does
// the same and then returns what came back. EDerived goes through EBase's DataArrived. EForgets is an EEvery that no longer
// has its own address when it throws.
//   source pads   1
//   properties    "Fault": what happens, by the table below; "zero" makes Initialize return 0
//                 "In": DataArrived (when absent), Initialize, Run, Destructor, or End of the runs
//                 "Sends": at the end of the runs an object is sent
//                 "At": the object, counted from 1, at which DataArrived fails; 1 when absent
//                 "Error": an error message of Initialize
// EBorn_FAULT prints on standard error when it is created, and then has that fault.
#include "support/support.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>
#include <stdexcept>
#include <string>
#include <unistd.h>

using namespace VESK;

namespace {

struct Odd {}; // its description is unloaded with the plugin
struct Special : std::runtime_error {
    using std::runtime_error::runtime_error;
};

volatile int iZero = 0;
int* volatile piNowhere = reinterpret_cast<int*>(16);
int (*volatile pNoFunction)() = nullptr;

[[noreturn]] __attribute__((noinline)) void Throw() {
    throw std::runtime_error("boom");
}

struct Fault {
    const char* pchName;
    void (*pHappen)();
};
constexpr Fault Faults[] = {
    {"", [] {}},
    {"error", Throw},
    {"special", [] { throw Special("boom\n"); }},
    {"odd", [] { throw Odd(); }},
    {"number", [] { throw 7; }},
    {"memory", [] { throw std::bad_alloc(); }},
    {"segv", [] { *piNowhere = 1; }},
    {"null", [] { iZero = pNoFunction(); }},
    {"fpe", [] { std::raise(SIGFPE); }},
    {"ill", [] { __builtin_trap(); }},
#if defined(__i386__) || defined(__x86_64__)
    {"lost",
     [] { // where its frame is: what looks for its callers reads from there
         void* volatile pPlace = __builtin_alloca(static_cast<std::size_t>(iZero) + 64);
         asm volatile("movl $16, %%ebp\n\tud2" : : "r"(pPlace) : "memory");
     }},
#endif
    {"bus", [] { std::raise(SIGBUS); }},
    {"abort", [] { std::abort(); }},
    {"sent", [] { std::raise(SIGSEGV); }},
    {"exit", [] { std::exit(3); }},
    {"wait", [] { pause(); }},
};

class EFailing : public EObject {
public:
    explicit EFailing(const char* type) { Set(m_cProperties, "EObjectType", type); }
    ~EFailing() override { Fail("Destructor"); }
    int Initialize() override {
        AddSinkPad(new SINKPAD(this, 0));
        AddSourcePad(new SOURCEPAD(this));
        m_iAt = std::stoi(Own("At", "1"));
        m_pHappen = Find(Own("In", "DataArrived") == "DataArrived" ? Own("Fault") : "").pHappen;
        if (!Own("Error").empty()) {
            ErrorMessage("%s", Own("Error").c_str());
        }
        AtRunsEnd(*this, Ended);
        Fail("Initialize");
        return Own("Fault") != "zero";
    }
    int Run() override { return Fail("Run"), GetSourcePad(0)->Push(nullptr); }

    static const Fault& Find(const std::string& name) {
        for (const Fault& cFault : Faults) {
            if (name == cFault.pchName) {
                return cFault;
            }
        }
        return Faults[0];
    }

protected:
    std::string Own(const char* key, const char* otherwise = "") {
        char text[256];
        m_cProperties.GetProperty(Text(key), text, sizeof text, Text(otherwise), Section::Standard);
        return text;
    }
    void Fail(const char* where) {
        if (Own("In") == where) {
            Find(Own("Fault")).pHappen();
        }
    }

    static int Ended(EObject& element) {
        auto& self = static_cast<EFailing&>(element);
        self.Fail("End");
        QObject object;
        return self.Own("Sends").empty() || self.GetSourcePad(0)->Push(&object);
    }

    int m_iAt = 0;
    void (*m_pHappen)() = nullptr;
};

class EEvery final : public EFailing {
public:
    EEvery() : EFailing("EEvery") {}
    int DataArrived(QObject* pObject, Byte2Type) override {
        if (--m_iAt == 0) {
            m_pHappen();
        }
        return m_b2SourcePadCount && m_ppSourcePads[0]->m_pSinkPad ? m_ppSourcePads[0]->Push(pObject) : 1;
    }
};

class EForgets final : public EFailing {
public:
    EForgets() : EFailing("EForgets") {}
    int DataArrived(QObject* pObject, Byte2Type) override {
        if (--m_iAt == 0 && m_pHappen == Throw) {
            Throw();
        }
        return m_b2SourcePadCount && m_ppSourcePads[0]->m_pSinkPad ? m_ppSourcePads[0]->Push(pObject) : 1;
    }
};

class EBase : public EFailing {
public:
    explicit EBase(const char* type = "EBase") : EFailing(type) {}
    int DataArrived(QObject* pObject, Byte2Type) override {
        if (--m_iAt == 0) {
            m_pHappen();
        }
        const int iResult = m_ppSourcePads[0]->m_pSinkPad ? m_ppSourcePads[0]->Push(pObject) : 1;
        m_iLast = iResult;
        return iResult;
    }
    int m_iLast = 0;
};

class EDerived final : public EBase {
public:
    EDerived() : EBase("EDerived") {}
    int DataArrived(QObject* pObject, Byte2Type b2Index) override {
        return EBase::DataArrived(pObject, b2Index);
    }
};

class FailingFactory : public LibraryFactory {
public:
    EObject* CreateElement(char* pchType) override {
        const std::string type = pchType, born = "EBorn_";
        if (type.compare(0, born.size(), born) == 0) {
            std::fprintf(stderr, "%s\n", "born");
            std::cerr << "born too\n";
            EFailing::Find(type.substr(born.size())).pHappen();
            return new EEvery;
        }
        if (type == "EEvery") {
            return new EEvery;
        }
        if (type == "EForgets") {
            return new EForgets;
        }
        return type == "EBase" ? new EBase : type == "EDerived" ? new EDerived : nullptr;
    }
};

FailingFactory cFactory;

} // namespace

Factory* GetFactory() {
    return &cFactory;
}
