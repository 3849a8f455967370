// Encoding of frames and bodies; the floor copies the same bytes.
#include <benchmark/benchmark.h>

#include <cstring>

#include "bench/Station.h"
#include "ipc/Frame.h"
#include "reports/ChargingStatus.h"
#include "reports/Messages.h"

namespace {

void CopyBytes(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    std::uint8_t from[kMaxBody] = {1};
    std::uint8_t to[kMaxBody];
    for (auto run : state) {
        benchmark::DoNotOptimize(from);
        std::memcpy(to, from, length);
        benchmark::DoNotOptimize(to);
    }
}
BENCHMARK(CopyBytes)
    ->Name("encode/memcpy")
    ->Arg(kRecordSize)
    ->Arg(kChargingSize)
    ->Arg(kFrameCapacity - kFrameBody);

void EncodeFrame(benchmark::State& state) {
    std::uint8_t body[kMaxBody] = {1};
    for (auto run : state) {
        const Frame frame = BuildFrame(kCodeA1_5, body, static_cast<std::size_t>(state.range(0)));
        benchmark::DoNotOptimize(frame.bytes.data());
    }
}
BENCHMARK(EncodeFrame)->Name("encode/frame")->Arg(kRecordSize)->Arg(kChargingSize)->Arg(kMaxBody);

void EncodeCharging(benchmark::State& state) {
    BenchStation station;
    for (auto run : state) {
        const ChargingBody body =
            BuildChargingBody(station.shm, station.runtime.m_ycGroups.front().points, 3);
        benchmark::DoNotOptimize(body.data());
    }
}
BENCHMARK(EncodeCharging)->Name("encode/charging_status");

void EncodeRecord(benchmark::State& state) {
    BenchStation station;
    RecordBody body{};
    std::uint32_t length = 0;
    for (auto run : state) {
        station.runtime.BuildA1_16Record(body, length, 3);
        benchmark::DoNotOptimize(body.data());
    }
}
BENCHMARK(EncodeRecord)->Name("encode/charging_record");

}  // namespace
