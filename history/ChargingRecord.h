// A1_16, the charging record: where each of its bytes comes from, live and from a stored record. Also the two
// history commands, whose fields answer to it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "history/HistoryRecord.h"
#include "ipc/BodyField.h"
#include "points/LiveEntry.h"

// Telemetry points of a port that a charging record is made of.
inline constexpr std::uint16_t kYcTradeNumber = 184;
inline constexpr std::uint16_t kYcTradeEnergy = 136;
inline constexpr std::uint16_t kYcFreTime = 153;

inline constexpr std::size_t kTradeNumberSize = 16;
inline constexpr std::size_t kRecordTimeSize = 7;

// Between two records of an answer or of a resend pass, microseconds.
inline constexpr std::uint32_t kPauseBetweenRecords = 100000;

struct RecordField;
class CShmCTRL;

// What the live body of a port is made from.
struct RecordSource {
    CShmCTRL& shm;
    std::uint32_t port;  // of a request or a stored row: any number
    std::uint32_t k1Cnt;
    std::uint32_t k2Cnt;
};

// What fills a field of the live body: below, each beside what its `number` means.
using PutLive = void (*)(std::uint8_t* body, const RecordField& field, const RecordSource& source);

void PutRecordEquipment(std::uint8_t* body, const RecordField& field, const RecordSource& source);
void PutRecordPort(std::uint8_t* body, const RecordField& field, const RecordSource& source);
// Second to century, BCD.
void PutRecordTime(std::uint8_t* body, const RecordField& field, const RecordSource& source);
void PutZero(std::uint8_t* body, const RecordField& field, const RecordSource& source);
// A telemetry point above the port's base: the first bytes of its area; the digits of its text, packed and
// reversed; the low bytes of its raw value.
void PutRecordYcBytes(std::uint8_t* body, const RecordField& field, const RecordSource& source);
void PutRecordYcDigits(std::uint8_t* body, const RecordField& field, const RecordSource& source);
void PutRecordYcRaw(std::uint8_t* body, const RecordField& field, const RecordSource& source);
// Low bytes of an energy counter above the port's base.
void PutRecordCounter(std::uint8_t* body, const RecordField& field, const RecordSource& source);
void PutRecordK1(std::uint8_t* body, const RecordField& field, const RecordSource& source);
void PutRecordK2(std::uint8_t* body, const RecordField& field, const RecordSource& source);

// What a stored record writes over the live value: one of both, or nothing.
struct StoredValue {
    void (*put)(std::uint8_t* body, const BodyField& field, const YcHistoryRecord& record) = nullptr;
    std::uint64_t (*number)(const YcHistoryRecord& record) = nullptr;
};

void PutCollectTime(std::uint8_t* body, const BodyField& field, const YcHistoryRecord& record);
void PutTradeNumber(std::uint8_t* body, const BodyField& field, const YcHistoryRecord& record);
void PutFreTime(std::uint8_t* body, const BodyField& field, const YcHistoryRecord& record);

struct RecordField {
    BodyField at;
    PutLive live;
    std::uint16_t number = 0;
    StoredValue stored = {};
};

inline constexpr RecordField kRecordFields[] = {
    {{0, kEquipmentSize, EFieldForm::Reversed, "equipment"}, PutRecordEquipment, 0},
    {{8, 1, EFieldForm::Number, "port"}, PutRecordPort, 0},
    {{9, kRecordTimeSize, EFieldForm::Reversed, "time"}, PutRecordTime, 0, {PutCollectTime}},
    {{16, 1, EFieldForm::Number, "status"},
     PutZero,
     0,
     {nullptr, [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.status); }}},
    {{17, 6, EFieldForm::Reversed, "yc189"}, PutRecordYcBytes, 189},
    {{23, 6, EFieldForm::Reversed, "yc190"}, PutRecordYcBytes, 190},
    {{29, 32, EFieldForm::Reversed, "yc191"}, PutRecordYcBytes, 191},
    {{61, 8, EFieldForm::Number, "meter"},
     PutRecordCounter,
     0,
     {nullptr, [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.mvalue); }}},
    {{69, 1, EFieldForm::Number, "yc177"},
     PutRecordYcRaw,
     177,
     {nullptr, [](const YcHistoryRecord& /*record*/) { return std::uint64_t{1}; }}},
    {{70, kTradeNumberSize, EFieldForm::Reversed, "tradeNumber"},
     PutRecordYcBytes,
     kYcTradeNumber,
     {PutTradeNumber}},
    {{86, 4, EFieldForm::Number, "tradeEnergy"},
     PutRecordCounter,
     2,
     {nullptr, [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.tradeelec); }}},
    {{90, 7, EFieldForm::Reversed, "freTime"}, PutRecordYcDigits, kYcFreTime, {PutFreTime}},
    {{97, 4, EFieldForm::Number, "value"},
     PutRecordYcRaw,
     kYcFreTime,
     {nullptr, [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.fvalue); }}},
    {{101, 4, EFieldForm::Number, "valueHigh"},
     PutZero,
     0,
     {nullptr,
      [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.fvalue) >> 32; }}},
    {{105, 4, EFieldForm::Number, "chargeCount"},
     PutRecordYcRaw,
     211,
     {nullptr, [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.chargeCnt); }}},
    {{109, 4, EFieldForm::Number, "chargeTime"},
     PutRecordYcRaw,
     212,
     {nullptr, [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.chargeTime); }}},
    {{113, 4, EFieldForm::Number, "k1"},
     PutRecordK1,
     0,
     {nullptr, [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.k1Cnt); }}},
    {{117, 4, EFieldForm::Number, "k2"},
     PutRecordK2,
     0,
     {nullptr, [](const YcHistoryRecord& record) { return static_cast<std::uint64_t>(record.k2Cnt); }}},
};
inline constexpr std::size_t kRecordSize = 121;
static_assert(CoversBody(kRecordFields, kRecordSize));

using RecordBody = std::array<std::uint8_t, kRecordSize>;

// The live body of a port.
RecordBody BuildLiveRecord(const RecordSource& source);
// Writes over the live body what a stored record replaces.
void PutStoredRecord(RecordBody& body, const YcHistoryRecord& record);
