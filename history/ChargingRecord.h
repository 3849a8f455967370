// A1_16, the charging record: where each of its bytes comes from, live and from a stored record. Also the two
// history commands, whose fields answer to it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "history/HistoryRecord.h"
#include "points/LiveEntry.h"
#include "reports/BodyField.h"

// Telemetry points of a port that a charging record is made of.
inline constexpr std::uint16_t kYcTradeNumber = 184;
inline constexpr std::uint16_t kYcTradeEnergy = 136;
inline constexpr std::uint16_t kYcFreTime = 153;

inline constexpr std::size_t kTradeNumberSize = 16;
inline constexpr std::size_t kRecordTimeSize = 7;

// Source of a field in the live body. `number` is a point or energy counter above the port's base.
enum class ERecordLive : std::uint8_t {
    Equipment,
    Port,
    Now,  // second to century, BCD
    Zero,
    YcBytes,   // first bytes of the point's area, reversed
    YcDigits,  // digits of the point's text, packed and reversed
    YcRaw,     // low bytes of the raw value
    Counter,   // low bytes of the energy counter
    K1Cnt,
    K2Cnt
};

// What a stored record writes over it.
enum class ERecordStored : std::uint8_t {
    Live,  // nothing: the live value stays
    Port,
    CollectTime,
    Status,
    MValue,
    One,
    TradeNumber,
    TradeElec,
    FreTime,
    FValueLow,
    FValueHigh,
    ChargeCnt,
    ChargeTime,
    K1Cnt,
    K2Cnt
};

struct RecordField {
    BodyField at;
    ERecordLive live;
    std::uint16_t number;
    ERecordStored stored;
};

inline constexpr RecordField kRecordFields[] = {
    {{0, kEquipmentSize, EShow::Reversed, "equipment"}, ERecordLive::Equipment, 0, ERecordStored::Live},
    {{8, 1, EShow::Number, "port"}, ERecordLive::Port, 0, ERecordStored::Port},
    {{9, kRecordTimeSize, EShow::Reversed, "time"}, ERecordLive::Now, 0, ERecordStored::CollectTime},
    {{16, 1, EShow::Number, "status"}, ERecordLive::Zero, 0, ERecordStored::Status},
    {{17, 6, EShow::Reversed, "yc189"}, ERecordLive::YcBytes, 189, ERecordStored::Live},
    {{23, 6, EShow::Reversed, "yc190"}, ERecordLive::YcBytes, 190, ERecordStored::Live},
    {{29, 32, EShow::Reversed, "yc191"}, ERecordLive::YcBytes, 191, ERecordStored::Live},
    {{61, 8, EShow::Number, "meter"}, ERecordLive::Counter, 0, ERecordStored::MValue},
    {{69, 1, EShow::Number, "yc177"}, ERecordLive::YcRaw, 177, ERecordStored::One},
    {{70, kTradeNumberSize, EShow::Reversed, "tradeNumber"},
     ERecordLive::YcBytes,
     kYcTradeNumber,
     ERecordStored::TradeNumber},
    {{86, 4, EShow::Number, "tradeEnergy"}, ERecordLive::Counter, 2, ERecordStored::TradeElec},
    {{90, 7, EShow::Reversed, "freTime"}, ERecordLive::YcDigits, kYcFreTime, ERecordStored::FreTime},
    {{97, 4, EShow::Number, "value"}, ERecordLive::YcRaw, kYcFreTime, ERecordStored::FValueLow},
    {{101, 4, EShow::Number, "valueHigh"}, ERecordLive::Zero, 0, ERecordStored::FValueHigh},
    {{105, 4, EShow::Number, "chargeCount"}, ERecordLive::YcRaw, 211, ERecordStored::ChargeCnt},
    {{109, 4, EShow::Number, "chargeTime"}, ERecordLive::YcRaw, 212, ERecordStored::ChargeTime},
    {{113, 4, EShow::Number, "k1"}, ERecordLive::K1Cnt, 0, ERecordStored::K1Cnt},
    {{117, 4, EShow::Number, "k2"}, ERecordLive::K2Cnt, 0, ERecordStored::K2Cnt},
};
inline constexpr std::size_t kRecordSize = 121;
static_assert(CoversBody(kRecordFields, kRecordSize));

using RecordBody = std::array<std::uint8_t, kRecordSize>;

// Writes over the live body what a stored record replaces. `port` is the port that the message is about.
void PutStoredRecord(RecordBody& body, const YcHistoryRecord& record, std::uint32_t port);

// Body of a history request: day, month, year within the century and century are BCD, the hour is binary.
inline constexpr std::size_t kRequestDay = 0;
inline constexpr std::size_t kRequestMonth = 1;
inline constexpr std::size_t kRequestYear = 2;
inline constexpr std::size_t kRequestCentury = 3;
inline constexpr std::size_t kRequestHour = 4;
inline constexpr std::size_t kRequestSize = 5;
inline constexpr int kWholeDay = 24;  // as hour: all hours of the day

// Body of an acknowledgement: the time as A1_16 carries it, then the result. The hour is binary, the
// rest of the date BCD.
inline constexpr std::size_t kAckHour = 2;
inline constexpr std::size_t kAckDay = 3;
inline constexpr std::size_t kAckMonth = 4;
inline constexpr std::size_t kAckYear = 5;
inline constexpr std::size_t kAckCentury = 6;
inline constexpr std::size_t kAckResult = 7;
inline constexpr std::size_t kAckSize = 8;
inline constexpr std::uint8_t kAckAccepted = 0;
inline constexpr std::uint8_t kAckRejected = 1;
