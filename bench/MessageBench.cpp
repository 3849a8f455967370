// Encoding of frames and bodies.
#include <cstdlib>
#include <cstring>

#include "bench/Bare.h"
#include "bench/Operation.h"
#include "bench/Station.h"
#include "ipc/Frame.h"
#include "ipc/Messages.h"
#include "reports/ChargingStatus.h"
#include "reports/IdleStatus.h"
#include "reports/PortState.h"

namespace {

constexpr int kPort = 2;

// What makes a message returns how many bytes it has.

template <std::size_t kLength>
std::size_t EncodeFrame(BenchStation& /*station*/) {
    std::uint8_t body[kLength];
    benchmark::DoNotOptimize(body);
    const Frame frame = BuildFrame(kCodeA1_5, body, kLength);
    benchmark::DoNotOptimize(frame.bytes.data());
    return frame.length;
}

std::size_t EncodeCharging(BenchStation& station) {
    const ChargingBody body = BuildChargingBody(station.live, station.runtime.m_places.front(), kPort);
    benchmark::DoNotOptimize(body.data());
    return body.size();
}

std::size_t EncodeIdle(BenchStation& station) {
    char* text = BuildIdleDocument(station.live, station.runtime.m_places.front(), kPort, 1);
    const std::size_t length = std::strlen(text);
    std::free(text);
    return length;
}

std::size_t EncodeState(BenchStation& station) {
    const std::uint8_t code =
        ChargingStateCode(PortHasFault(station.live, kPort), station.live.GunState(kPort), kUnknownIsFault);
    const PortStateBody body = BuildPortStateBody({station.live.EquipmentNumber(), kPort, code});
    benchmark::DoNotOptimize(body.data());
    return body.size();
}

std::size_t EncodeRecord(BenchStation& station) {
    RecordBody body{};
    std::uint32_t length = 0;
    station.runtime.BuildA1_16Record(body, length, kPort);
    benchmark::DoNotOptimize(body.data());
    return length;
}

// The signal reports have no builder of their own: these are built, dumped and posted.
template <void (CRuntimeData::*kReport)(int)>
std::size_t Report(BenchStation& station) {
    station.ForgetReported(kPort);
    (station.runtime.*kReport)(kPort);
    return station.runtime.DropOutbound().bytes;
}

enum class EList : std::uint8_t { None, Telemetry, Signals };  // what the builder of a message reads

template <auto kEncode, EList kCopied>
void Encoding(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) {
        if (kCopied == EList::Telemetry) CopyForBuilder(station.Telemetry());
        if (kCopied == EList::Signals) CopyForBuilder(station.runtime.m_yxPoints);
        benchmark::DoNotOptimize(kEncode(station));
    }
}

template <auto kEncode>
void Copying(benchmark::State& state) {
    BenchStation station;
    CSameBytes bytes(kEncode(station));
    for (auto run : state) bytes.Copy();
}

template <auto kEncode, EList kList = EList::None>
Operation Message(const char* name) {
    Operation message{name, Encoding<kEncode, EList::None>, {"memcpy", Copying<kEncode>}};
    if (kList != EList::None) message.plain = {"list copy", Encoding<kEncode, kList>};
    return message;
}

}  // namespace

Operations MessageOperations() {
    return {
        Message<EncodeFrame<kRecordSize>>("encode/frame_121"),
        Message<EncodeFrame<kChargingSize>>("encode/frame_233"),
        Message<EncodeFrame<kMaxBody>>("encode/frame_2042"),
        Message<EncodeCharging, EList::Telemetry>("encode/A1_5"),
        Message<EncodeIdle, EList::Telemetry>("encode/A1_6"),
        Message<EncodeState>("encode/A1_14"),
        Message<EncodeRecord>("encode/A1_16"),
        Message<Report<&CRuntimeData::Send_DC_A1_11>, EList::Signals>("report/A1_11"),
        Message<Report<&CRuntimeData::Send_DC_A1_13>, EList::Signals>("report/A1_13"),
        Message<Report<&CRuntimeData::Send_DC_A1_15>, EList::Signals>("report/A1_15"),
    };
}
