// A station at work for days, tick by tick: guns and faults move, zor_main reads, stays away for a while and
// comes back. ZOR_SOAK_DAYS says how many days, one without it.
#include <fcntl.h>
#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "System/Numbers.h"
#include "app/MainLoop.h"
#include "app/StartUp.h"
#include "reports/Messages.h"
#include "tests/support/TestRuntime.h"

namespace {

constexpr int kPorts = 8;
constexpr int kStationWide = 52;
constexpr int kPerPort = 70;
constexpr std::time_t kHour = 3600;
constexpr std::time_t kDay = 24 * kHour;
constexpr std::time_t kStart = FakeClock::kStart + 14 * kHour;  // 23:45, so that the first hour has it all
constexpr int kBetweenMoves = 30;

// What must not grow: memory in RAM in KiB, open files, messages that wait for the drain and in the queue.
using Levels = std::array<long, 4>;

class CSoak : public CEmptyStationTest {
  protected:
    CSoak() {
        FakeClock::Set(kStart);
        MakeConfig(kPorts);
        PointRows rows{YxRows(kStationWide), {}};
        for (const std::string& row : YxRows(kPerPort, 100)) rows.yx.push_back(row);
        for (int i = 0; i <= kPerPort; ++i)
            rows.yc.push_back("1,'value'," + std::to_string(100 + i) + ",1,0,0.1,0,0,0");
        MakePoints(rows);
        runtime.SetShmAccessor(&live);
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        StartUp(runtime);
        SendFrame(SettingsFrame());
    }
    ~CSoak() override { Speak(); }
    void Speak() {
        std::fflush(stdout);
        dup2(m_stdout, STDOUT_FILENO);
    }

    // One second of the station, with a signal and the gun of some port moving now and then.
    void RunSecond(std::time_t now) {
        FakeClock::Set(now);  // forgets the sleeps
        if (now >= m_nextMove) {
            m_nextMove = now + kBetweenMoves;
            const int copy = moves % kPorts;  // the points of copy n lie 128 * (1 + ... + n) above
            live.SetSignal(100 + 64 * copy * (copy + 1) + moves / kPorts % kPerPort,
                           moves / kPorts / kPerPort % 2 == 0);
            live.SetGunState(copy + 1, static_cast<std::uint8_t>(moves % 4));
            live.SetYc(100 + moves % kPerPort, static_cast<std::uint32_t>(moves));
            ++moves;
        }
        for (int pass = 0; pass < 10; ++pass) {
            RunPass(runtime, m_receiveCounter);
            usleep(runtime.TickPeriodMs() * 1000);
        }
    }

    // zor_main reads everything, acknowledges the records of midnight and asks for a day now and then.
    void PlayMain(std::time_t now) {
        for (const Received& received : ReadAll()) {
            constexpr std::size_t kTime = 15;
            const Bytes& frame = received.frame;
            ++messages;
            if ((frame[2] << 8 | frame[3]) != kCodeA1_16 || frame.size() == 6 || frame[kTime + 2] != 0)
                continue;
            Bytes answer = Hex("0b 00 85 2f");
            answer.push_back(frame[14]);
            answer.insert(answer.end(), &frame[kTime], &frame[kTime] + 7);
            SendFrame(answer);
        }
        if (now % (4 * kHour) != 0) return;
        const CDateTime day(now - kDay);
        Bytes request = Hex("08 00 85 2c 03");
        for (const int part : {day.Day(), day.Month(), day.Year() % 100, day.Year() / 100})
            request.push_back(ToBcd(static_cast<unsigned>(part)));
        request.push_back(24);
        SendFrame(request);
    }

    Levels Measure() {
        long pages = 0;
        std::ifstream("/proc/self/statm") >> pages >> pages;
        const std::filesystem::directory_iterator files("/proc/self/fd");
        const auto open = std::distance(begin(files), end(files));
        std::vector<std::pair<std::uint32_t, void*>> waiting;
        std::pair<std::uint32_t, void*> next;
        while (runtime.m_outboundQueue->Pop(next.first, next.second) == 1) waiting.push_back(next);
        for (const auto& [code, buffer] : waiting) runtime.m_outboundQueue->Push(code, buffer);
        return {pages * (sysconf(_SC_PAGESIZE) / 1024), open, static_cast<long>(waiting.size()),
                static_cast<long>(Waiting())};
    }

    CLiveValues live;
    CTestRuntime runtime;
    int moves = 0;
    long messages = 0;

  private:
    int m_stdout = dup(STDOUT_FILENO);
    std::time_t m_nextMove = 0;
    std::uint8_t m_receiveCounter = 0;
};
using Soak = CSoak;

TEST_F(Soak, Days) {
    const char* wanted = std::getenv("ZOR_SOAK_DAYS");
    const std::time_t days = wanted != nullptr ? std::atoi(wanted) : 1;
    const std::time_t away = kStart + days * kDay / 2;
    const std::time_t back = away + std::min(kDay, days * kDay / 4);
    const auto begun = std::chrono::steady_clock::now();
    Levels base{};
    Levels most{};
    long seconds = 0;
    for (std::time_t now = kStart; now < kStart + days * kDay; now = std::time(nullptr)) {
        RunSecond(now);
        if (now < away || now >= back) PlayMain(now);
        if (++seconds % kHour != 0) continue;
        const Levels levels = Measure();
        if (seconds == kHour) base = levels;
        for (std::size_t i = 0; i < most.size(); ++i) most[i] = std::max(most[i], levels[i]);
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
    Speak();
    std::printf("%ld ticks in %.0f s, %d events, %ld messages\n", 10 * seconds, took.count(), moves,
                messages);
    for (const Levels& l : {base, most})
        std::printf("%ld KiB, %ld files, %ld and %ld messages waiting\n", l[0], l[1], l[2], l[3]);
#ifndef ZOR_ADDRESS_SANITIZER           // which keeps freed blocks for a while
    EXPECT_GE(base[0] + 512, most[0]);  // the heap takes a step when the files grow a level
#endif
    EXPECT_EQ(base[1], most[1]);
    EXPECT_GE(32, most[2]);
    EXPECT_GE(8, most[3]);
    const std::string hours = std::to_string(days * 24);
    EXPECT_THAT(
        QueryRows(AppFile(kHistoryFile),
                  "SELECT count(*), count(DISTINCT substr(timestamp, 1, 13)) FROM tagYC GROUP BY portNo"),
        testing::AllOf(testing::SizeIs(kPorts), testing::Each(hours + "|" + hours)));
    EXPECT_EQ(moves + 1, QueryNumber(AppFile(kEventFile), "SELECT count(*) FROM tagSOE"));
}

}  // namespace
