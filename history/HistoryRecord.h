// One charging record in memory: a row of the history database, or the mark that there is none.
#pragma once

#include <cstdint>

enum class ERecordStatus : std::uint8_t { None = 0, Found = 1, Missing = 2 };

// 64-bit values stand on 4-byte boundaries, on every machine.
#pragma pack(push, 4)
struct YcHistoryRecord {
    std::int32_t portNo;
    std::int32_t chargeCnt;
    std::int32_t chargeTime;
    std::int32_t k1Cnt;
    std::int32_t k2Cnt;
    std::int64_t mvalue;
    std::int64_t mvalue_1;
    std::int64_t mvalue_2;
    std::int64_t mvalue_3;
    std::int64_t mvalue_4;
    std::int64_t fvalue;
    std::int64_t fvalue_1;
    std::int64_t fvalue_2;
    std::int64_t fvalue_3;
    std::int64_t fvalue_4;
    char tradenumber[40];
    std::int32_t tradeelec;
    char fretime[21];
    ERecordStatus status;
    char collecttime[31];  // timestamp of the row, or the time that was asked for
};
#pragma pack(pop)
static_assert(sizeof(YcHistoryRecord) == 200);
