// SPDX-License-Identifier: MIT
#include "wholescan.h"

#include <algorithm>
#include <functional>
#include <fwlib/fwlib.h>
#include <string_view>

namespace FwPipe {

namespace {

using VESK::ObjectLines;

// Longer lines of types and counts, and longer keys with their "=", count as damage.
constexpr std::size_t KeptOfLine = 0x100000;

constexpr std::string_view TypeKey = "QObjectType=";
constexpr std::size_t LongestType = 31;

std::size_t TypeHash(std::string_view cType) {
    return std::hash<std::string_view>()(cType.substr(0, LongestType));
}

} // namespace

WholeScan::WholeScan(int iFile) : m_cScan(iFile, KeptOfLine) {}

bool WholeScan::Read() {
    Line cLine = {};
    cLine.ullOffset = m_cScan.Taken();
    m_cText.clear();
    m_bEnded = m_bEnded || !m_cScan.Append(m_cText);
    if (m_bEnded) {
        return false;
    }
    const char* const pchLine = m_cText.c_str();
    const Line cBefore = m_cLines.empty() ? Line{} : m_cLines.back();
    const std::string_view cBare(pchLine, m_cText.size() - 1);
    const bool bTells = cBare.substr(0, TypeKey.size()) == TypeKey;
    cLine.pchFault = ObjectLines::LineFault(pchLine, m_cText.size());
    cLine.pchCountFault = CountFaultOf(pchLine, m_cText.size(), &cLine.ulCount);
    cLine.bTypeFits = !ObjectLines::TypeFault(m_cText.size());
    cLine.uType = cLine.bTypeFits ? TypeHash(cBare) : 0;
    cLine.uTold = bTells ? TypeHash(cBare.substr(TypeKey.size())) : 0;
    cLine.ulRun = cLine.pchFault || ObjectLines::PropertyFault(pchLine) ? 0 : cBefore.ulRun + 1;
    cLine.ullLastTold = bTells ? m_ullNext + m_cLines.size() + 1 : cBefore.ullLastTold;
    m_cLines.push_back(cLine);
    return true;
}

const WholeScan::Line* WholeScan::At(unsigned long long ullLine) {
    const unsigned long long ullIndex = ullLine - m_ullNext;
    while (ullIndex >= m_cLines.size() && Read()) {
    }
    return ullIndex < m_cLines.size() ? &m_cLines[static_cast<std::size_t>(ullIndex)] : nullptr;
}

void WholeScan::Drop(unsigned long long ullLine) {
    const auto uLines = static_cast<std::ptrdiff_t>(ullLine - m_ullNext);
    m_cLines.erase(m_cLines.begin(), m_cLines.begin() + uLines);
    m_ullNext = ullLine;
}

unsigned long long WholeScan::EndOf(unsigned long long ullLine) {
    const Line* pLine = At(ullLine);
    if (!pLine || pLine->pchFault || !pLine->bTypeFits) {
        return 0;
    }
    pLine = At(ullLine + 1);
    if (!pLine || pLine->pchFault || pLine->pchCountFault) {
        return 0;
    }
    const unsigned long ulCount = pLine->ulCount;
    pLine = At(ullLine + 1 + ulCount);
    return pLine && pLine->ulRun >= ulCount ? ullLine + 2 + ulCount : 0;
}

bool WholeScan::IsTypeTold(unsigned long long ullLine, unsigned long long ullEnd) {
    const std::size_t uType = At(ullLine)->uType;
    const unsigned long long ullTold = At(ullEnd - 1)->ullLastTold;
    return ullTold <= ullLine + 2 || At(ullTold - 1)->uTold == uType;
}

bool WholeScan::Next() {
    const unsigned long long ullEnd = EndOf(m_ullNext);
    if (ullEnd == 0) {
        return false;
    }
    Drop(ullEnd);
    ++m_ullWhole;
    return true;
}

const char* WholeScan::Reason() {
    const Line* const pType = At(m_ullNext);
    if (!pType) {
        return nullptr;
    }
    if (pType->pchFault || !pType->bTypeFits) {
        return pType->pchFault ? pType->pchFault : ObjectLines::TypeFault(std::string::npos);
    }
    const Line* const pCount = At(m_ullNext + 1);
    if (!pCount || pCount->pchFault || pCount->pchCountFault) {
        return !pCount            ? ObjectLines::EndFault()
               : pCount->pchFault ? pCount->pchFault
                                  : pCount->pchCountFault;
    }
    const unsigned long ulCount = pCount->ulCount;
    for (unsigned long ul = 0; ul < ulCount; ++ul) {
        const Line* const pLine = At(m_ullNext + 2 + ul);
        if (!pLine || pLine->ulRun == 0) {
            return !pLine            ? ObjectLines::EndFault()
                   : pLine->pchFault ? pLine->pchFault
                                     : ObjectLines::PropertyFault("");
        }
    }
    return nullptr;
}

void WholeScan::SkipGap() {
    while (At(m_ullNext)) {
        Drop(m_ullNext + 1);
        const unsigned long long ullEnd = EndOf(m_ullNext);
        if (ullEnd > 0 && IsTypeTold(m_ullNext, ullEnd) && (!At(ullEnd) || EndOf(ullEnd) > 0)) {
            return;
        }
    }
}

unsigned long long WholeScan::Offset() {
    const Line* const pLine = At(m_ullNext);
    return pLine ? pLine->ullOffset : m_cScan.Taken();
}

} // namespace FwPipe
