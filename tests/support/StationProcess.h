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
    // The same, but the process may end in them: false then, and `status` becomes what RunToEnd returns.
    bool RunOrEnd(std::uint32_t passes, int& status);
    // Lets it run until it ends. Returns its exit status, minus the number of the signal that ended it; fails
    // the test when it goes on for ever.
    int RunToEnd();
    // Lets it run `passes`, in which it is to kill itself in the middle of its `fileCall`th call (counted
    // from 1) that writes, syncs, cuts or removes a file. False when they had fewer of them.
    bool RunIntoKill(std::uint32_t fileCall, std::uint32_t passes = 1);

    // Before its start: nobody reads what it prints.
    void HangLog();
    // From now on somebody does: what has got through until now.
    std::string ReadHungLog();

    // Such calls during the last run, and those of them that waited for the disk.
    std::uint32_t FileCalls() const { return m_fileCalls; }
    std::uint32_t Syncs() const { return m_syncs; }

    // Sets the time for the next pass, seconds of UTC.
    void SetTime(std::int64_t seconds) { m_nowMicros = seconds * 1000000; }
    std::int64_t Time() const { return m_nowMicros / 1000000; }
    std::int64_t Micros() const { return m_nowMicros; }

    // Standard output since the last call, and all of standard error.
    std::string TakeOutput();
    std::string Errors() const;
    pid_t Pid() const { return m_pid; }
    // Memory in RAM that is the process's own, KiB. Pages of files come and go with what else the machine
    // does.
    long PrivateKb() const;

  private:
    bool Start();
    bool Grant(std::uint32_t passes, std::uint32_t killAtFileCall = 0);
    void Expect(bool reported);
    bool AwaitReport();
    int Reap();
    int Kill();

    pid_t m_pid = -1;
    int m_socket = -1;
    int m_log[2] = {-1, -1};  // ends of the pipe that hangs
    std::int64_t m_nowMicros = kStart * 1000000;
    std::uint32_t m_fileCalls = 0;
    std::uint32_t m_syncs = 0;
    std::size_t m_outputTaken = 0;
};
