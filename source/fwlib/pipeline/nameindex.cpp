// SPDX-License-Identifier: MIT
#include "fwlib/pipeline/nameindex.h"

#include "fwlib/internal/growth.h"
#include "fwlib/internal/textcopy.h"
#include "fwlib/internal/textmatch.h"
#include "fwlib/internal/textsizes.h"
#include "fwlib/properties/list.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/text.h"

#include <atomic>

namespace VESK {

namespace {

constexpr int LeastElements = 64; // for fewer elements a linear search is as fast
constexpr Byte4Type FirstSlots = 256;

struct Slot {
    Byte4Type b4Hash;
    Byte4Type b4Place; // the element's index plus 1; 0 for an empty slot
};

Byte4Type HashOf(const char* pchName, std::size_t uLength) {
    TextWord Hash = uLength;
    for (; uLength >= WordSize; uLength -= WordSize, pchName += WordSize) {
        Hash = (Hash ^ LoadWord(pchName)) * 0x9E3779B97F4A7C15U;
        Hash ^= Hash >> 32;
    }
    Hash = (Hash ^ LoadTail(pchName, uLength)) * 0x9E3779B97F4A7C15U;
    return static_cast<Byte4Type>(Hash >> 32);
}

bool IsNamed(const EObject& cElement, const SoughtText& cKey, const SoughtText& cName) {
    const char* const pchName = FindStandard(cElement.m_cProperties, cKey);
    return pchName && cName.EqualsCut(pchName, ElementNameSize - 1);
}

// Contains each name once, with the first element that has it.
class NameIndex {
public:
    int Find(const EPipeline& cPipeline, const SoughtText& cName) {
        const Byte4Type b4Changes = NameChanges.load(std::memory_order_relaxed);
        const bool bShrunk = m_iSeen > cPipeline.m_iElementCount;
        if (m_pOwner != &cPipeline || m_b4Changes != b4Changes || bShrunk) {
            Clear();
            m_pOwner = &cPipeline;
            m_iSeen = cPipeline.m_iElementCount;
            m_b4Changes = b4Changes;
            return -1; // for a single name a linear search is faster
        }
        m_iSeen = cPipeline.m_iElementCount;
        IndexNew(cPipeline);
        const Slot* const pSlot = FindSlot(cPipeline, HashOf(cName.Begin(), cName.Length()), cName);
        return pSlot ? static_cast<int>(pSlot->b4Place) - 1 : -1;
    }
    void Adding(const EPipeline& cPipeline) {
        if (m_pOwner != &cPipeline) {
            return;
        }
        if (m_iSeen > cPipeline.m_iElementCount) { // elements were removed since
            Clear();
        } else {
            m_iSeen = cPipeline.m_iElementCount + 1;
        }
    }
    void Clear() {
        fwfree(m_pSlots);
        fwfree(m_piUnnamed);
        *this = NameIndex();
    }
    bool IsOf(const EPipeline& cPipeline) const { return m_pOwner == &cPipeline; }

private:
    Slot& At(Byte4Type b4) const { return m_pSlots[b4 & (m_b4Slots - 1)]; }

    Slot* FindSlot(const EPipeline& cPipeline, Byte4Type b4Hash, const SoughtText& cName) const {
        for (Byte4Type b4 = b4Hash; m_b4Slots > 0 && At(b4).b4Place > 0; ++b4) {
            const auto iPlace = static_cast<int>(At(b4).b4Place) - 1;
            if (At(b4).b4Hash == b4Hash &&
                IsNamed(*cPipeline.m_ppElements[iPlace], SoughtText(Key::Name), cName)) {
                return &At(b4);
            }
        }
        return nullptr;
    }

    // Adds the elements that got a name or were added since the last search.
    void IndexNew(const EPipeline& cPipeline) {
        Byte2Type b2Left = 0;
        for (Byte4Type b4 = 0; b4 < m_b2Unnamed; ++b4) {
            if (!Enter(cPipeline, m_piUnnamed[b4])) {
                m_piUnnamed[b2Left++] = m_piUnnamed[b4];
            }
        }
        m_b2Unnamed = b2Left;
        for (; m_iTaken < cPipeline.m_iElementCount; ++m_iTaken) {
            if (!Enter(cPipeline, m_iTaken) &&
                !Append(m_piUnnamed, m_b2UnnamedCapacity, m_b2Unnamed, m_iTaken)) {
                return;
            }
        }
    }
    // False if the element has no name, and when there is not enough memory.
    bool Enter(const EPipeline& cPipeline, int iPlace) {
        const char* const pchName =
            FindStandard(cPipeline.m_ppElements[iPlace]->m_cProperties, SoughtText(Key::Name));
        if (!pchName || !MakeSlot()) {
            return false;
        }
        const SoughtText cName(pchName, strnlen(pchName, ElementNameSize - 1));
        const Slot cSlot = {HashOf(cName.Begin(), cName.Length()), static_cast<Byte4Type>(iPlace) + 1};
        Slot* const pFound = FindSlot(cPipeline, cSlot.b4Hash, cName);
        if (!pFound) {
            Put(cSlot);
        } else if (pFound->b4Place > cSlot.b4Place) {
            *pFound = cSlot;
        }
        return true;
    }
    void Put(const Slot& cSlot) {
        Byte4Type b4 = cSlot.b4Hash;
        while (At(b4).b4Place > 0) {
            ++b4;
        }
        At(b4) = cSlot;
    }
    bool MakeSlot() { // at least half of the slots are empty afterwards
        if (2 * static_cast<Byte4Type>(m_iTaken) < m_b4Slots) {
            return true;
        }
        const NameIndex cBefore = *this;
        m_b4Slots = m_b4Slots > 0 ? 2 * m_b4Slots : FirstSlots;
        m_pSlots = static_cast<Slot*>(fwmalloc(m_b4Slots * static_cast<Byte4Type>(sizeof(Slot))));
        if (!m_pSlots) {
            *this = cBefore;
            return false;
        }
        std::memset(m_pSlots, 0, m_b4Slots * sizeof(Slot));
        for (Byte4Type b4 = 0; b4 < cBefore.m_b4Slots; ++b4) {
            if (cBefore.m_pSlots[b4].b4Place > 0) {
                Put(cBefore.m_pSlots[b4]);
            }
        }
        fwfree(cBefore.m_pSlots);
        return true;
    }

    const EPipeline* m_pOwner = nullptr; // lent
    Byte4Type m_b4Changes = 0;           // NameChanges when the index was started
    int m_iTaken = 0;                    // number of elements in the index, from the first on
    int m_iSeen = 0;                     // number of the pipeline's elements at the last use
    int* m_piUnnamed = nullptr;          // owned: the elements in the index without a name
    Byte2Type m_b2UnnamedCapacity = 0;
    Byte2Type m_b2Unnamed = 0;
    Slot* m_pSlots = nullptr; // owned
    Byte4Type m_b4Slots = 0;  // a power of two, or 0
};

NameIndex cIndex;

// Threads with pipelines of their own share the index. A thread that does not get the lock searches linearly.
class IndexLock {
public:
    IndexLock() : m_bHeld(!Taken.test_and_set(std::memory_order_acquire)) {}
    ~IndexLock() {
        if (m_bHeld) {
            Taken.clear(std::memory_order_release);
        }
    }
    IndexLock(const IndexLock&) = delete;
    IndexLock& operator=(const IndexLock&) = delete;
    bool Held() const { return m_bHeld; }

private:
    static inline std::atomic_flag Taken = ATOMIC_FLAG_INIT;
    const bool m_bHeld;
};

// Returns -1 when a linear search is needed.
int FindIndexed(const EPipeline& cPipeline, const SoughtText& cName) {
    if (cPipeline.m_iElementCount < LeastElements) {
        return -1;
    }
    const IndexLock cLock;
    return cLock.Held() ? cIndex.Find(cPipeline, cName) : -1;
}

} // namespace

int FindNamed(const EPipeline& cPipeline, const SoughtText& cName) {
    const int iIndexed = FindIndexed(cPipeline, cName);
    if (iIndexed >= 0) {
        return iIndexed;
    }
    const SoughtText cKey(Key::Name);
    for (int i = 0; i < cPipeline.m_iElementCount; ++i) {
        if (IsNamed(*cPipeline.m_ppElements[i], cKey, cName)) {
            return i;
        }
    }
    return -1;
}

void TellIndexOfAdding(const EPipeline& cPipeline) {
    const IndexLock cLock;
    if (cLock.Held()) {
        cIndex.Adding(cPipeline);
    } else {
        NameChanges.fetch_add(1, std::memory_order_relaxed);
    }
}

void ForgetIndex(const EPipeline& cPipeline) {
    const IndexLock cLock;
    if (!cLock.Held()) {
        // Waiting for the lock might never end, for example in a forked process.
        NameChanges.fetch_add(1, std::memory_order_relaxed);
    } else if (cIndex.IsOf(cPipeline)) {
        cIndex.Clear();
    }
}

} // namespace VESK
