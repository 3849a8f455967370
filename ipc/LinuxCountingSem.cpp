#include <cstdio>

#include "System/DiagLine.h"
#include "ipc/MsgQueue.h"

CLinuxCountingSem::CLinuxCountingSem(unsigned count) {
    if (sem_init(&m_sem, 0, count) != 0) PrintPlain("CLinuxCountingSem:  error");
}

bool CLinuxCountingSem::Wait(int blocking, std::uint32_t timeout) {
    if (blocking == 1) return sem_wait(&m_sem) == 0;
    if (timeout != 0) return true;
    return sem_trywait(&m_sem) == 0;
}

bool CLinuxCountingSem::Post() {
    sem_post(&m_sem);
    return true;
}
