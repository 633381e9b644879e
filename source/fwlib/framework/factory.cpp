// SPDX-License-Identifier: MIT
#include "fwlib/framework/factory.h"

namespace VESK {

namespace {

// Calls the factories of a list, which ends with null, until one creates the object.
template <class Object>
Object* FirstAnswer(Factory** ppFactories, Object* (Factory::*pCreate)(char*), char* pchType) {
    for (Factory** pp = ppFactories; pp && *pp; ++pp) {
        if (Object* const pObject = ((*pp)->*pCreate)(pchType)) {
            return pObject;
        }
    }
    return nullptr;
}

} // namespace

EObject* LibraryFactory::CreateElement(char*) {
    return nullptr;
}

QObject* LibraryFactory::CreateQObject(char*) {
    return nullptr;
}

void* LibraryFactory::CreateObject(char*) {
    return nullptr;
}

int LibraryFactory::Initialize(FRAMEWORK*) {
    return 1;
}

PluginFactory::PluginFactory(Factory** ppFactories) : m_ppFactories(ppFactories) {}

EObject* PluginFactory::CreateElement(char* pchType) {
    return FirstAnswer(m_ppFactories, &Factory::CreateElement, pchType);
}

QObject* PluginFactory::CreateQObject(char* pchType) {
    return FirstAnswer(m_ppFactories, &Factory::CreateQObject, pchType);
}

void* PluginFactory::CreateObject(char* pchType) {
    return FirstAnswer(m_ppFactories, &Factory::CreateObject, pchType);
}

int PluginFactory::Initialize(FRAMEWORK* pFramework) {
    for (Factory** pp = m_ppFactories; pp && *pp; ++pp) {
        (*pp)->Initialize(pFramework);
    }
    return 1;
}

} // namespace VESK
