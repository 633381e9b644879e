// SPDX-License-Identifier: MIT
#include "fwlib/elements/qobject.h"

#include "fwlib/elements/watch.h"
#include "fwlib/properties/list.h"
#include "fwlib/text.h"

#include <new>

namespace VESK {

namespace {

// Returns null when there is not enough memory for every property: an incomplete copy would be another object.
template <class Object>
QObject* DuplicateAs(const QObject& cSource) {
    auto* const pCopy = new (std::nothrow) Object;
    if (pCopy && !MergeEntries(pCopy->m_cProperties, cSource.m_cProperties)) {
        delete pCopy;
        return nullptr;
    }
    return pCopy;
}

} // namespace

QObject::QObject() : m_b2Reserved(0) {
    Watch(this, __builtin_return_address(0));
    m_cProperties.SetProperty(Key::QObjectType, Type::QObject, Section::Standard);
}

QObject::~QObject() {
    Unwatch(this);
}

QObject* QObject::Duplicate() {
    return DuplicateAs<QObject>(*this);
}

int QObject::Write(SWrite*) {
    return 1;
}

int QObject::GetEOF() {
    return 0;
}

int QObject::Copy(QObject* pObject) {
    return pObject ? m_cProperties.Copy(&pObject->m_cProperties) : 1;
}

QEOF::QEOF() = default;

QEOF::~QEOF() = default;

QObject* QEOF::Duplicate() {
    return DuplicateAs<QEOF>(*this);
}

int QEOF::GetEOF() {
    return 1;
}

} // namespace VESK
