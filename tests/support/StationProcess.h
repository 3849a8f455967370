// The real program in the test's sandbox, under a clock that the test drives.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

// Between two calls the process stands still (before its first instruction of its own, or at the end of a
// pass), so that a test can look at the queue, the files and the output without a race. A process that dies
// where it should run fails the test with its output.
class CStationProcess {
  public:
    static constexpr std::int64_t kStart = 1709603100;  // 2024-03-05 09:45:00 in the tests' local time

    CStationProcess() = default;
    ~CStationProcess();
    CStationProcess(const CStationProcess&) = delete;
    CStationProcess& operator=(const CStationProcess&) = delete;

    // Lets the process run `passes` further passes of its main loop; the first call starts it.
    void RunPasses(std::uint32_t passes);
    // As RunPasses, but the process dies in the middle of the `change`-th of the changes that it makes to
    // files (writes, syncs, truncations, removals). False when it did; true when it got through before.
    bool SurvivesPasses(std::uint32_t passes, std::uint32_t change);
    // Lets it run until it ends. Returns its exit status, -1 after a signal; fails the test when it goes on
    // for ever.
    int RunToEnd();

    // Sets the time for the next pass, seconds of UTC.
    void SetTime(std::int64_t seconds) { m_nowMicros = seconds * 1000000; }
    std::int64_t Time() const { return m_nowMicros / 1000000; }
    // Makes msgget fail with this errno from the next pass on.
    void FailMsgget(int error) { m_msggetError = error; }

    // Standard output since the last call, and all of standard error.
    std::string TakeOutput();
    std::string Errors() const;
    pid_t Pid() const { return m_pid; }
    // Memory in RAM, KiB.
    long ResidentKb() const;

  private:
    bool Start();
    bool Grant(std::uint32_t passes, std::uint32_t fatalWrite = 0);
    bool AwaitReport();
    int Reap();
    void Kill();

    pid_t m_pid = -1;
    int m_socket = -1;
    std::int64_t m_nowMicros = kStart * 1000000;
    std::int32_t m_msggetError = 0;
    std::size_t m_outputTaken = 0;
};
