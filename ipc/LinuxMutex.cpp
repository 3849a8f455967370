#include <cerrno>
#include <cstdio>
#include <cstring>

#include "System/DiagLine.h"
#include "ipc/MsgQueue.h"

CMutex::CMutex(const char* name) : m_name(strdup(name)) {}

CLinuxMutex::CLinuxMutex(const char* name) : CMutex(name) {
    pthread_mutexattr_init(&m_attributes);
    if (pthread_mutexattr_settype(&m_attributes, PTHREAD_MUTEX_ERRORCHECK) != 0)
        PrintPlain("CLinuxMutex::CnlLinuxMutex() : Failed to set mutex attibutes");
    pthread_mutex_init(&m_mutex, &m_attributes);
}

bool CLinuxMutex::Lock() {
    const int result = pthread_mutex_lock(&m_mutex);
    if (result == 0) m_owner = pthread_self();
    return result == 0 || result == EDEADLK;
}

bool CLinuxMutex::Unlock() {
    if (pthread_equal(m_owner, pthread_self()) == 0) {
        PrintPlain("CnlLinuxMutex::Unlock() :  Error - Mutex not locked or not owned by the thread! ");
        return false;
    }
    pthread_mutex_unlock(&m_mutex);
    return true;
}
