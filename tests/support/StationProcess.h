// The real program in the test's sandbox, under a clock that the test drives.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>

#include "tests/support/FakeClock.h"
#include "tests/support/HookPlan.h"

// Between two calls the process stands still (before its first instruction of its own, or at the end of a
// pass), so that a test can look at the queue, the files and the output without a race.
class CStationProcess {
  public:
    static constexpr std::int64_t kStart = FakeClock::kStart;
    static constexpr char kOutput[] = "/mnt/nandflash/stdout";
    static constexpr char kErrors[] = "/mnt/nandflash/stderr";

    CStationProcess();
    ~CStationProcess();
    CStationProcess(const CStationProcess&) = delete;
    CStationProcess& operator=(const CStationProcess&) = delete;

    // Lets the process run `passes` further passes of its main loop; the first call starts it. One that dies
    // or hangs fails the test with its output.
    void RunPasses(std::uint32_t passes);
    // The same, but the process may end: its exit status then, or minus the number of the signal that ended
    // it.
    std::optional<int> Run(std::uint32_t passes);

    // What is to fail, and the time for the next pass.
    HookPlan& Plan() { return *m_plan; }
    void SetTime(std::int64_t seconds) { m_plan->nowMicros = seconds * 1000000; }
    std::int64_t Time() const { return m_plan->nowMicros / 1000000; }

    // Standard output since the last call, and all of standard error.
    static std::string TakeOutput();
    static std::string Errors();
    pid_t Pid() const { return m_pid; }
    // Memory in RAM that is the process's own, without pages of files, KiB; 0 where an emulator or a
    // sanitizer has some there too.
    long PrivateKb() const;

  private:
    void Start();

    HookPlan* m_plan = nullptr;
    int m_planFile;
    pid_t m_pid = -1;
    int m_socket = -1;
};
