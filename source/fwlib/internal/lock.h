// SPDX-License-Identifier: MIT
// A lock that needs no construction, destruction or memory and cannot fail; std::mutex may throw.
#ifndef FWLIB_INTERNAL_LOCK_H
#define FWLIB_INTERNAL_LOCK_H

#include "fwlib/internal/hidden.h"

#include <pthread.h>

namespace FWLIB_HIDDEN VESK {

// Locks the mutex while it exists.
class Locked {
public:
    explicit Locked(pthread_mutex_t& Lock) : m_Lock(Lock) { pthread_mutex_lock(&m_Lock); }
    ~Locked() { pthread_mutex_unlock(&m_Lock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

private:
    pthread_mutex_t& m_Lock;
};

} // namespace VESK

#endif
