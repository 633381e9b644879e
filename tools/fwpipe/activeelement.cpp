// SPDX-License-Identifier: MIT
#include "activeelement.h"

#include <fwlib/fwlib.h>

#include <cstdio>
#include <new>

namespace FwPipe {

namespace {

Label cActive = {};
Label cFailed = {};
int iNamed = 0; // number of elements reported because their Initialize returned 0

class StandIn : public VESK::EObject {
public:
    StandIn(VESK::EPipeline& cPipeline, const VESK::EPipeline& cOuter)
        : m_cPipeline(cPipeline), m_cOuter(cOuter) {}
    int DataArrived(VESK::QObject*, VESK::Byte2Type) override { return 0; }

protected:
    void TakePlace() {
        if (m_iPlace < m_cPipeline.m_iElementCount) {
            m_pElement = m_cPipeline.m_ppElements[m_iPlace];
            m_cPipeline.m_ppElements[m_iPlace] = this;
        }
    }
    void GivePlace() {
        m_cPipeline.m_ppElements[m_iPlace] = m_pElement;
        cActive = LabelOf(*m_pElement);
    }
    VESK::EPipeline* Inner() const {
        return IsPipeline(*m_pElement, m_cOuter) ? static_cast<VESK::EPipeline*>(m_pElement) : nullptr;
    }

    VESK::EPipeline& m_cPipeline;
    const VESK::EPipeline& m_cOuter;
    VESK::EObject* m_pElement = nullptr; // the replaced element, lent
    int m_iPlace = 0;
};

class Initializer final : public StandIn {
public:
    using StandIn::StandIn;

    int Go() {
        TakePlace();
        return m_cPipeline.Initialize();
    }
    int Initialize() override {
        GivePlace();
        const Label cLabel = cActive;
        const VESK::FRAMEWORK* const pFramework = m_cOuter.m_pFramework;
        const int iErrors = pFramework->m_bError;
        const int iBefore = iNamed;
        VESK::EPipeline* const pInner = Inner();
        const int iResult = pInner ? Initializer(*pInner, m_cOuter).Go() : m_pElement->Initialize();
        if (!iResult && iNamed == iBefore && iErrors == pFramework->m_bError) {
            std::fprintf(stderr, "fwpipe: %s: Initialize returned 0\n", cLabel.achText);
            ++iNamed;
        }
        cActive = {};
        if (!iResult && cFailed.achText[0] == '\0') { // not the pipelines around it
            cFailed = cLabel;
        }
        if (iResult) {
            ++m_iPlace;
            TakePlace();
        }
        return iResult;
    }
};

class Destroyer final : public StandIn {
public:
    Destroyer(VESK::EPipeline& cPipeline, const VESK::EPipeline& cOuter, int iPlace)
        : StandIn(cPipeline, cOuter) {
        m_iPlace = iPlace;
        TakePlace();
    }
    ~Destroyer() override {
        GivePlace();
        if (VESK::EPipeline* const pInner = Inner()) {
            Begin(*pInner, m_cOuter, 0);
        }
        delete m_pElement;
        cActive = {};
        Begin(m_cPipeline, m_cOuter, m_iPlace + 1);
    }

    // The pipeline deletes the Destroyer in the element's place. Without memory for it, the other elements are not
    // recorded.
    static void Begin(VESK::EPipeline& cPipeline, const VESK::EPipeline& cOuter, int iPlace) {
        if (iPlace < cPipeline.m_iElementCount) {
            new (std::nothrow) Destroyer(cPipeline, cOuter, iPlace); // NOLINT(bugprone-unused-raii)
        }
    }
};

} // namespace

const Label& ActiveElement() {
    return cActive;
}

const Label& FailedElement() {
    return cFailed;
}

int InitializeNoting(VESK::EPipeline& cPipeline) {
    return Initializer(cPipeline, cPipeline).Go();
}

void NoteDestruction(VESK::EPipeline& cPipeline) {
    Destroyer::Begin(cPipeline, cPipeline, 0);
}

} // namespace FwPipe
