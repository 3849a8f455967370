// The history operations, as far as inbound commands reach them.
#include "app/RuntimeData.h"

int CRuntimeData::Checkcache() {
    return 0;
}

int CRuntimeData::DealCacheData(const std::uint8_t* /*body*/, std::uint32_t /*port*/) {
    return 0;
}

int CRuntimeData::MsgCall_A1_16(const std::uint8_t* /*body*/, std::uint32_t /*port*/) {
    return 0;
}
