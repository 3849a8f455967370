// From start to the end of the first pass.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "System/AppFiles.h"
#include "app/MainLoop.h"
#include "app/StartUp.h"
#include "bench/Station.h"

namespace {

void FirstPass(benchmark::State& state) {
    BenchStation files;  // leaves the databases that a start finds
    for (auto run : state) {
        CShmCTRL shm;
        CRuntimeData runtime;
        std::uint8_t counter = 0;
        runtime.SetShmAccessor(&shm);
        StartUp(runtime);
        RunPass(runtime, counter);
    }
}
BENCHMARK(FirstPass)->Name("station/start_to_first_pass")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
