#include "history/ChargingRecord.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <limits>

#include "System/DateTime.h"
#include "System/DiagLine.h"
#include "System/Numbers.h"
#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"
#include "reports/Messages.h"

namespace {

constexpr int kRecordsOfDay = 24;
constexpr int kRecordsPerPass = 8;
constexpr std::uint32_t kRestAfterLockMs = 10000;  // a file that is locked for long is not tried every tick
constexpr useconds_t kPauseBetweenRecords = 100000;

// The digits of a text that is at most as long as a live area.
struct Digits {
    char text[kEntryAreaSize + 1];
};
Digits DigitsOf(const char* text) {
    Digits digits{};
    CRuntimeData::GetDigits(digits.text, sizeof digits.text, text);
    return digits;
}

void PutNow(RecordBody& body, const BodyField& field) {
    const CDateTime now = CDateTime::Now();
    const int parts[kRecordTimeSize] = {now.Year() / 100, now.Year() % 100, now.Month(), now.Day(),
                                        now.Hour(),       now.Minute(),     now.Second()};
    std::uint8_t bcd[kRecordTimeSize];
    for (std::size_t i = 0; i < kRecordTimeSize; ++i) bcd[i] = ToBcd(static_cast<unsigned>(parts[i]));
    PutReversed(body.data(), field, bcd);
}

unsigned FromBcd(std::uint8_t byte) {
    return (byte >> 4) * 10U + (byte & 0xFU);
}

// Place of a port's point in a live table, -1 where no table could have it. A request, or a row from before
// the station had its ports, can name any port: the table alone says what there is.
int PlaceOf(int number, int perPort, std::uint32_t port) {
    constexpr int kLast = std::numeric_limits<int>::max();
    if (port > kLast) return -1;
    const std::int64_t place = std::int64_t{PortIndex(static_cast<int>(port))} * perPort + number;
    return place <= kLast ? static_cast<int>(place) : -1;
}

// Packs `text` and writes its first bytes reversed.
void PutPacked(RecordBody& body, const BodyField& field, const char* text) {
    std::uint8_t packed[kEntryAreaSize] = {};
    CRuntimeData::StrToBcd(packed, sizeof packed, text);
    PutReversed(body.data(), field, packed);
}

void PutStoredField(RecordBody& body, const RecordField& field, const YcHistoryRecord& record,
                    std::uint32_t port) {
    const auto put = [&body, &field](std::uint64_t value) { PutField(body.data(), field.at, value); };
    const auto number = [](std::int64_t value) { return static_cast<std::uint64_t>(value); };
    switch (field.stored) {
        case ERecordStored::Live:
            return;
        case ERecordStored::Port:
            return put(port);
        case ERecordStored::CollectTime:
            return PutPacked(body, field.at, DigitsOf(record.collecttime).text);
        case ERecordStored::Status:
            return put(static_cast<std::uint8_t>(record.status));
        case ERecordStored::MValue:
            return put(number(record.mvalue));
        case ERecordStored::One:
            return put(1);
        case ERecordStored::TradeNumber:
            return PutPacked(body, field.at, record.tradenumber);
        case ERecordStored::TradeElec:
            return put(number(record.tradeelec));
        case ERecordStored::FreTime:  // not filtered for digits, unlike the live text
            return PutPacked(body, field.at, record.fretime);
        case ERecordStored::FValueLow:
            return put(number(record.fvalue));
        case ERecordStored::FValueHigh:
            return put(number(record.fvalue) >> 32);
        case ERecordStored::ChargeCnt:
            return put(number(record.chargeCnt));
        case ERecordStored::ChargeTime:
            return put(number(record.chargeTime));
        case ERecordStored::K1Cnt:
            return put(number(record.k1Cnt));
        case ERecordStored::K2Cnt:
            return put(number(record.k2Cnt));
    }
}

}  // namespace

void PutStoredRecord(RecordBody& body, const YcHistoryRecord& record, std::uint32_t port) {
    for (const RecordField& field : kRecordFields) PutStoredField(body, field, record, port);
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

void CRuntimeData::PutLiveField(RecordBody& body, const RecordField& field, std::uint32_t port) {
    const auto yc = [&] { return m_shm->Yc(PlaceOf(field.number, kPointsPerPort, port)); };
    const auto put = [&body, &field](std::uint64_t value) { PutField(body.data(), field.at, value); };
    switch (field.live) {
        case ERecordLive::Equipment:
            return PutReversed(body.data(), field.at, m_shm->EquipmentNumber().data());
        case ERecordLive::Port:
            return put(port);
        case ERecordLive::Now:
            return PutNow(body, field.at);
        case ERecordLive::Zero:
            return put(0);
        case ERecordLive::YcBytes:
            return PutReversed(body.data(), field.at, yc().area);
        case ERecordLive::YcDigits: {
            char text[kEntryAreaSize + 1] = {};  // the area need not hold a NUL
            std::memcpy(text, yc().area, kEntryAreaSize);
            return PutPacked(body, field.at, DigitsOf(text).text);
        }
        case ERecordLive::YcRaw:
            return put(yc().raw);
        case ERecordLive::Counter:
            return put(m_shm->Counter(PlaceOf(field.number, kCountersPerPort, port)));
        case ERecordLive::K1Cnt:
            return put(port < k1Cnt.size() ? static_cast<std::uint32_t>(k1Cnt[port]) : 0);
        case ERecordLive::K2Cnt:
            return put(port < k2Cnt.size() ? static_cast<std::uint32_t>(k2Cnt[port]) : 0);
    }
}

void CRuntimeData::BuildA1_16Record(RecordBody& body, std::uint32_t& length, std::uint32_t port) {
    for (const RecordField& field : kRecordFields) PutLiveField(body, field, port);
    length = kRecordSize;
}

void CRuntimeData::Send_A1_16(std::uint32_t port) {
    RecordBody body{};
    std::uint32_t length = 0;
    BuildA1_16Record(body, length, port);
    CDiagLine(__func__).Dump("msgcode: 34520 data:", body.data(), length);
    PostMsg(kCodeA1_16, body.data(), length);
}

int CRuntimeData::MsgCall_A1_16(const std::uint8_t* body, std::uint32_t port) {
    const std::uint8_t day = body[kRequestDay];
    const std::uint8_t month = body[kRequestMonth];
    const std::uint8_t year = body[kRequestYear];
    const std::uint8_t century = body[kRequestCentury];
    const CDiagLine line(__func__);
    line.Print("Rcv:%02x-%02x-%02x-%02x\n", unsigned{century}, unsigned{year}, unsigned{month},
               unsigned{day});
    char date[32];
    std::snprintf(date, sizeof date, "%02u%02u-%02u-%02u", FromBcd(century), FromBcd(year), FromBcd(month),
                  FromBcd(day));

    RecordBody answer{};
    std::uint32_t length = 0;
    BuildA1_16Record(answer, length, port);
    YcHistoryRecord records[kRecordsOfDay] = {};
    int count = kRecordsOfDay;
    ReadDBSingleYCdata(date, static_cast<int>(port), body[kRequestHour], records, count);
    line.Print("Read History YCdata lenth:%d\n", count);
    if (count == 0) {
        PostMsg(kCodeA1_16, answer.data(), 0);  // no row: the message comes without a body
        return 0;
    }
    for (int i = 0; i < count; ++i) {
        line.Print("collecttime :%s\n", records[i].collecttime);
        PutStoredRecord(answer, records[i], port);
        line.Print("tradenumber:%s\n", records[i].tradenumber);
        line.Print("fretime:%s\n", records[i].fretime);
        PostMsg(kCodeA1_16, answer.data(), length);
        usleep(kPauseBetweenRecords);
    }
    return 0;
}

int CRuntimeData::History_A1_16() {
    if (m_resendRest > 0) --m_resendRest;
    if (m_sendflag != 1 || m_datacache < 1 || m_resendRest > 0 || HasWaited()) return 0;
    YcHistoryRecord records[kRecordsPerPass] = {};
    int count = kRecordsPerPass;
    ReadCacheYCdata(records, count);
    if (m_historyWait.IsSpent()) m_resendRest = static_cast<std::int32_t>(kRestAfterLockMs / m_tickPeriodMs);
    if (count == 0) return 0;
    const CDiagLine line(__func__);
    line.Print("_YCDB Count:%d\n", count);
    for (int i = 0; i < count; ++i) {
        const YcHistoryRecord& record = records[i];
        const auto port = static_cast<std::uint32_t>(record.portNo);
        line.Print("collecttime :%s\n", record.collecttime);
        RecordBody body{};
        std::uint32_t length = 0;
        BuildA1_16Record(body, length, port);
        PutStoredRecord(body, record, port);
        line.Print("tradenumber:%s\n", record.tradenumber);
        std::uint8_t trade[kTradeNumberSize] = {};
        StrToBcd(trade, sizeof trade, record.tradenumber);
        for (const std::uint8_t byte : trade) std::printf("%02x ", unsigned{byte});
        line.Print("fretime:%s\n", record.fretime);
        PostMsg(kCodeA1_16, body.data(), length);
        usleep(kPauseBetweenRecords);
    }
    m_datacache = 0;
    return 0;
}
