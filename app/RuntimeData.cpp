#include "app/RuntimeData.h"

#include <sys/msg.h>

#include <cstdio>

#include "System/DiagLine.h"

CRuntimeData::CRuntimeData() : m_queueId(msgget(kQueueKey, IPC_CREAT | kQueuePermissions)) {
    if (m_queueId < 0) {
        std::fprintf(stderr, "open msg %X failed.\n", static_cast<unsigned>(kQueueKey));
        return;
    }
    // The number is part of the text; it is not the queue's id.
    CDiagLine("CRuntimeData").Print("runtime:IPC Creater Succuess %d!\n", 104);
    m_outboundQueue = new CLinuxMsgQueue("send to zor_main Message Queue");
}

CRuntimeData::~CRuntimeData() = default;
