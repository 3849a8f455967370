#include "tests/fuzz/Fuzz.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "System/Numbers.h"
#include "tools/zorctl/messages/Decode.h"

// Standard error as it is before the fuzzer takes it from the code under test.
static int ReportFile() {
    static const int kFile = dup(STDERR_FILENO);
    return kFile;
}

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    setenv("TZ", "TST-8", 1);
    if (ReportFile() >= 0 && EnterSandbox() && std::freopen("/dev/null", "w", stdout) != nullptr) return 0;
    std::perror("no sandbox for the fuzz target");
    std::exit(1);
}

// Twice as fast as with the defaults.
extern "C" const char* __asan_default_options() {  // NOLINT
    return "quarantine_size_mb=16:malloc_context_size=6:allocator_release_to_os_interval_ms=-1";
}

void Require(bool holds, const char* what) {
    if (holds) return;
    dprintf(ReportFile(), "finding: %s\n", what);
    std::abort();
}

FuzzStation::FuzzStation() {
    runtime.SetShmAccessor(&live);
    runtime.InitSOE();
    runtime.InitYcHistoryDatabase();
    events.Open(CAppPath(kEventFile).c_str(), 0);
    history.Open(CAppPath(kHistoryFile).c_str(), 0);
}

FuzzStation& FuzzStation::WithPorts(unsigned ports) {
    static FuzzStation station;
    FakeClock::Set(FakeClock::kStart);
    constexpr std::size_t kHead = CShmLayout::kYc.offset;
    std::memset(station.Segment() + kHead, 0, CShmLayout::kSize - kHead);
    station.events.Exec("DELETE FROM tagSOE");
    station.events.Exec("DELETE FROM tagErrMsg");
    CTestRuntime& runtime = station.runtime;
    runtime.m_portCount = static_cast<std::int32_t>((ports - 1) % kMaxPorts + 1);
    runtime.m_ports = {};
    runtime.m_yxPoints.clear();
    runtime.m_ycGroups.clear();
    runtime.m_chargerKind = kDcCharger;
    runtime.m_sendflag = 1;
    runtime.m_datacache = 0;
    runtime.m_workReportTicks = runtime.m_idleReportTicks = 0;
    runtime.m_yxReportTicks = 2;  // the longest message, not with every tick
    runtime.SetLastHour(CDateTime::Now().Hour());
    return station;
}

void FuzzStation::Tick() {
    for (PortProgress& port : runtime.m_ports) port.chargingReports = 1000;  // past those in quick succession
    runtime.SchedulerTick();
    CheckPosted();
}

void FuzzStation::CheckPosted() {
    std::uint32_t code = 0;
    for (void* buffer = nullptr; runtime.m_outboundQueue->Pop(code, buffer) == 1;) {
        const std::unique_ptr<void, void (*)(void*)> owner(buffer, std::free);
        const auto* posted = static_cast<const std::uint8_t*>(buffer);
        const Frame frame = BuildFrame(code, posted + 2, GetLe(posted, 2));
        const DecodedFrame decoded = DecodeFrame(frame.bytes.data(), frame.length);
        Require(decoded.message != nullptr && decoded.trouble.empty(), "message that zor_main cannot read");
    }
}
