#include "history/ChargingRecord.h"

#include <cstring>
#include <limits>

#include "System/DateTime.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"

namespace {

// The digits of a text that is at most as long as a live area.
struct Digits {
    char text[kEntryAreaSize + 1];
};
Digits DigitsOf(const char* text) {
    Digits digits{};
    CRuntimeData::GetDigits(digits.text, sizeof digits.text, text);
    return digits;
}

// Packs `text` and writes its first bytes reversed.
void PutPacked(std::uint8_t* body, const BodyField& field, const char* text) {
    std::uint8_t packed[kEntryAreaSize] = {};
    CRuntimeData::StrToBcd(packed, sizeof packed, text);
    PutReversed(body, field, packed);
}

// Place of a port's point in a live table, -1 where no table could have it. A request, or a row from before
// the station had its ports, can name any port: the table alone says what there is.
int PlaceOf(int number, int perPort, std::uint32_t port) {
    constexpr int kLast = std::numeric_limits<int>::max();
    if (port > kLast) return -1;
    const std::int64_t place = std::int64_t{PortIndex(static_cast<int>(port))} * perPort + number;
    return place <= kLast ? static_cast<int>(place) : -1;
}

LiveYc PointOf(const RecordField& field, const RecordSource& source) {
    return source.shm.Yc(PlaceOf(field.number, kPointsPerPort, source.port));
}

}  // namespace

void PutRecordEquipment(std::uint8_t* body, const RecordField& field, const RecordSource& source) {
    PutReversed(body, field.at, source.shm.EquipmentNumber().data());
}

void PutRecordPort(std::uint8_t* body, const RecordField& field, const RecordSource& source) {
    PutField(body, field.at, source.port);
}

void PutRecordTime(std::uint8_t* body, const RecordField& field, const RecordSource& /*source*/) {
    const CDateTime now = CDateTime::Now();
    const int parts[kRecordTimeSize] = {now.Year() / 100, now.Year() % 100, now.Month(), now.Day(),
                                        now.Hour(),       now.Minute(),     now.Second()};
    std::uint8_t bcd[kRecordTimeSize];
    for (std::size_t i = 0; i < kRecordTimeSize; ++i) bcd[i] = ToBcd(static_cast<unsigned>(parts[i]));
    PutReversed(body, field.at, bcd);
}

void PutZero(std::uint8_t* body, const RecordField& field, const RecordSource& /*source*/) {
    PutField(body, field.at, 0);
}

void PutRecordYcBytes(std::uint8_t* body, const RecordField& field, const RecordSource& source) {
    PutReversed(body, field.at, PointOf(field, source).area);
}

void PutRecordYcDigits(std::uint8_t* body, const RecordField& field, const RecordSource& source) {
    char text[kEntryAreaSize + 1] = {};  // the area need not hold a NUL
    std::memcpy(text, PointOf(field, source).area, kEntryAreaSize);
    PutPacked(body, field.at, DigitsOf(text).text);
}

void PutRecordYcRaw(std::uint8_t* body, const RecordField& field, const RecordSource& source) {
    PutField(body, field.at, PointOf(field, source).raw);
}

void PutRecordCounter(std::uint8_t* body, const RecordField& field, const RecordSource& source) {
    PutField(body, field.at, source.shm.Counter(PlaceOf(field.number, kCountersPerPort, source.port)));
}

void PutRecordK1(std::uint8_t* body, const RecordField& field, const RecordSource& source) {
    PutField(body, field.at, source.k1Cnt);
}

void PutRecordK2(std::uint8_t* body, const RecordField& field, const RecordSource& source) {
    PutField(body, field.at, source.k2Cnt);
}

void PutCollectTime(std::uint8_t* body, const BodyField& field, const YcHistoryRecord& record) {
    PutPacked(body, field, DigitsOf(record.collecttime).text);
}

void PutTradeNumber(std::uint8_t* body, const BodyField& field, const YcHistoryRecord& record) {
    PutPacked(body, field, record.tradenumber);
}

void PutFreTime(std::uint8_t* body, const BodyField& field, const YcHistoryRecord& record) {
    PutPacked(body, field, record.fretime);  // not filtered for digits, unlike the live text
}

RecordBody BuildLiveRecord(const RecordSource& source) {
    RecordBody body{};
    for (const RecordField& field : kRecordFields) field.live(body.data(), field, source);
    return body;
}

void PutStoredRecord(RecordBody& body, const YcHistoryRecord& record) {
    for (const RecordField& field : kRecordFields) {
        if (field.stored.put != nullptr) field.stored.put(body.data(), field.at, record);
        if (field.stored.number != nullptr) PutField(body.data(), field.at, field.stored.number(record));
    }
}

void CRuntimeData::GetDigits(char* out, std::size_t capacity, const char* text) {
    for (; *text != '\0' && capacity > 0; ++text) {
        if (*text < '0' || *text > '9') continue;
        *out++ = *text;
        --capacity;
    }
}

int CRuntimeData::StrToBcd(std::uint8_t* out, std::size_t capacity, const char* text) {
    PackNibbles(out, capacity, text);
    return 0;
}

void CRuntimeData::BuildA1_16Record(RecordBody& body, std::uint32_t& length, std::uint32_t port) {
    const auto counter = [port](const std::array<std::int32_t, kPortSlots>& counters) {
        return port < counters.size() ? static_cast<std::uint32_t>(counters[port]) : 0;
    };
    body = BuildLiveRecord({*m_shm, port, counter(k1Cnt), counter(k2Cnt)});
    length = kRecordSize;
}
