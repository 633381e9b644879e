// SPDX-License-Identifier: MIT
#include "handwritten.h"

Forwarder::Forwarder() : pSource(new SourceEnd) {}

int Forwarder::Arrived(void* pObject, unsigned short) {
    return pSource->Push(pObject);
}

unsigned short Forwarder::EndCount() {
    return 1;
}

SourceEnd* Forwarder::End(unsigned short b2Position) {
    return b2Position < 1 ? pSource.get() : nullptr;
}

int FlatForwarder::Arrived(void* pObject, unsigned short) {
    return cSource.Push(pObject);
}

unsigned short FlatForwarder::EndCount() {
    return 1;
}

SourceEnd* FlatForwarder::End(unsigned short b2Position) {
    return b2Position < 1 ? &cSource : nullptr;
}

int Swallower::Arrived(void*, unsigned short) {
    return 1;
}

unsigned short Swallower::EndCount() {
    return 0;
}

SourceEnd* Swallower::End(unsigned short) {
    return nullptr;
}

unsigned short Fork::EndCount() {
    return static_cast<unsigned short>(cSources.size());
}

SourceEnd* Fork::End(unsigned short b2Position) {
    return b2Position < cSources.size() ? &cSources[b2Position] : nullptr;
}
