// Runs the benchmarks in a station of their own and puts each figure beside its floor and the plain way.
//
//   zor_bench FOLDER [Google Benchmark's options]
//
// FOLDER is where the databases lie meanwhile: on a disk, not in memory, or syncing costs nothing. With
// --benchmark_out the ratios go into that file too.
#include <sys/mount.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "System/AppFiles.h"
#include "bench/Bare.h"
#include "bench/Operation.h"
#include "bench/Ratios.h"
#include "bench/Station.h"

namespace {

Operations AllOperations() {
    Operations all;
    for (Operations (*operations)() :
         {TickOperations, BurstOperations, HistoryOperations, MessageOperations, StartOperations})
        for (const Operation& operation : operations()) all.push_back(operation);
    return all;
}

// The value of option `name`, null where it is not given.
const char* OptionIn(int argc, char** argv, const char* name) {
    const std::size_t length = std::strlen(name);
    for (int i = 1; i < argc; ++i)
        if (std::strncmp(argv[i], name, length) == 0 && argv[i][length] == '=') return argv[i] + length + 1;
    return nullptr;
}

int Run(const char* folder, const char* json, bool all) {
    CleanStation();
    if (mount(folder, kAppDirectory, nullptr, MS_BIND, nullptr) != 0) {
        std::perror("zor_bench: mounting the folder");
        return 1;
    }
    BenchStation::CleanUp();
    timespec now{};  // the file tells when it was made
    clock_gettime(CLOCK_REALTIME, &now);
    FakeClock::Set(now.tv_sec);

    const Operations operations = AllOperations();
    Register(operations);
    CFigures figures;
    benchmark::RunSpecifiedBenchmarks(&figures);
    BenchStation::CleanUp();
    Require(!figures.Empty(), "nothing was measured");

    const std::vector<Result> results = Judge(operations, figures, all);
    Print(results);
    Require(json == nullptr || AddToJson(json, results), "the ratios cannot be added to the JSON file");
    bool fine = true;
    for (const Result& result : results)
        for (const Ratio& ratio : result.ratios) fine = fine && ratio.fault == nullptr;
    constexpr int kBeyond = 3;  // everything was measured
    return fine ? 0 : kBeyond;
}

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOFBF, 16384);  // as in the process, which writes record by record
    setenv("TZ", "UTC", 1);
    const char* json = OptionIn(argc, argv, "--benchmark_out");
    const bool all = OptionIn(argc, argv, "--benchmark_filter") == nullptr;
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: zor_bench FOLDER [--benchmark_filter=REGEX ...]\n");
        return 2;
    }
    return RunInSandbox([=] { return Run(argv[1], json, all); });
}
