#include "static_mutex.h"

#include <windows.h>

// The header spells the lock as the pointer that it is, to spare its users <windows.h>.
static_assert(sizeof(SRWLOCK) == sizeof(void*));
static_assert(alignof(SRWLOCK) == alignof(void*));

void STATIC_MUTEX::lock() {
    AcquireSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&m_state));
}

void STATIC_MUTEX::unlock() {
    ReleaseSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&m_state));
}
