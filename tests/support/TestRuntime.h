// The runtime object with its state laid open, live values that a test can set, and the fixture that holds
// both.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "System/AppFiles.h"
#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"
#include "tests/support/Bytes.h"
#include "tests/support/Channel.h"
#include "tests/support/Databases.h"
#include "tests/support/FakeClock.h"
#include "tests/support/Sandbox.h"

class CTestRuntime : public CRuntimeData {
  public:
    using CRuntimeData::k1Cnt, CRuntimeData::k2Cnt, CRuntimeData::m_chargerKind, CRuntimeData::m_datacache,
        CRuntimeData::m_eventWait, CRuntimeData::m_failures, CRuntimeData::m_forceYxReport,
        CRuntimeData::m_historyWait, CRuntimeData::m_idleReportTicks, CRuntimeData::m_idleSequence,
        CRuntimeData::m_lastReceiveResult, CRuntimeData::m_minuteIntervalTicks, CRuntimeData::m_outboundQueue,
        CRuntimeData::m_places, CRuntimeData::m_portCount, CRuntimeData::m_ports, CRuntimeData::m_resendRest,
        CRuntimeData::m_sendflag, CRuntimeData::m_workReportTicks, CRuntimeData::m_ycGroups,
        CRuntimeData::m_yxPoints, CRuntimeData::m_yxReportTicks, CRuntimeData::Port, CRuntimeData::RecordHour;
};

// Shared memory as the acquisition processes write it. An index outside its table fails the test.
class CLiveValues : public CShmCTRL {
  public:
    void SetSignal(int index, std::uint8_t state) { Put(getYx(index), kYxState, state); }
    void SetSignal2(int index, std::uint8_t state) { Put(getYx2(index), kYxState, state); }
    void SetYc(int index, std::uint32_t raw) { Put(getYc(index), kYcRaw, raw); }
    void SetCoefficient(int index, float value) { Put(getYc(index), kYcCoefficient, value); }
    void SetDd(int index, std::uint64_t value) { Put(getDd(index), kDdLow, value); }
    void SetGunState(int port, std::uint8_t state) { Put(GunEntry(port), kGunState, state); }
    void SetEquipment(const std::array<std::uint8_t, kEquipmentSize>& number) {
        Put(DeviceArea(), kDeviceEquipment, number);
    }
    void SetChargingArea(int port, const std::array<std::uint8_t, kChargingAreaSize>& area) {
        Put(ChargingAreaOf(port), 0, area);
    }

    template <typename Value>
    static void Put(void* entry, std::size_t offset, const Value& value) {
        ASSERT_NE(nullptr, entry);
        std::memcpy(static_cast<std::uint8_t*>(entry) + offset, &value, sizeof value);
    }
};

// Every test of it starts with an empty station: no queue, no segment, no file, the clock at
// FakeClock::kStart.
class CEmptyStationTest : public testing::Test, CleanBothEnds {
  protected:
    CEmptyStationTest() { FakeClock::Set(FakeClock::kStart); }

    // What `run` prints, as Plain shows it; `errors` becomes what it prints on standard error.
    std::string Printed(const std::function<void()>& run) {
        const Captured captured = Capture(run);
        errors = captured.err;
        return Plain(captured.out);
    }
    // Sets the clock to a local time such as "2023-08-30 10:44:12".
    static void SetClock(const char* time) {
        std::tm parts{};
        EXPECT_NE(nullptr, strptime(time, "%Y-%m-%d %H:%M:%S", &parts));
        FakeClock::Set(std::mktime(&parts));
    }

    std::string errors;
};

// As above, with a runtime object of a DC charger with two ports, past its start-up, nothing reported yet.
class CStationTest : public CEmptyStationTest {
  protected:
    CStationTest() {
        live.SetEquipment({0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x50, 0x51});
        runtime.SetShmAccessor(&live);
        runtime.SetChargerKind(kDcCharger);
        runtime.m_portCount = 2;
    }

    // Drains one message per call, as the loop does, until `count` calls are made.
    void Drain(int count) {
        for (int i = 0; i < count; ++i) runtime.DrainOutbound();
    }
    // Takes everything that waits to be drained, in order, each as Named shows it.
    std::vector<std::string> Take() {
        std::vector<std::string> all;
        std::uint32_t code = 0;
        void* buffer = nullptr;
        while (runtime.m_outboundQueue->Pop(code, buffer) != 0) {
            const auto* posted = static_cast<const std::uint8_t*>(buffer);
            all.push_back(Named(code, posted + 2, posted[0] + posted[1] * 256U));
            std::free(buffer);
        }
        return all;
    }
    // What `run` posts.
    std::vector<std::string> Posted(const std::function<void()>& run) {
        Printed(run);
        return Take();
    }

    // Puts these settings in the place of all that were there.
    void Load(const PointRows& rows, const std::string& kind = "DC") {
        std::remove(AppFile(kPointSettingFile).c_str());
        MakePoints(rows, kind);
        runtime.m_yxPoints.clear();
        runtime.m_ycGroups.clear();
        Printed([this] { EXPECT_EQ(0, runtime.InitPointSettingYX() + runtime.InitPointSettingYC()); });
    }
    // Looks for changes of the status points, once, in a tick that may still wait. Returns what is printed.
    std::string Walk() {
        runtime.m_eventWait.Renew();
        return Printed([this] { runtime.DetectStatusChanges(); });
    }
    // Another program's lock on a file of the station, for as long as it lives.
    static std::unique_ptr<CForeignLock> Lock(const char* file,
                                              const char* statements = CForeignLock::kWriter) {
        return std::make_unique<CForeignLock>(AppFile(file), statements);
    }
    // What a command of zor_main, given in hexadecimal, makes the process print or post.
    std::string SaidTo(const std::string& frame) {
        EXPECT_TRUE(SendFrame(Hex(frame)));
        return Printed([this] { runtime.MsgRcvFromMain(); });
    }
    std::vector<std::string> PostedTo(const std::string& frame) {
        SaidTo(frame);
        return Take();
    }

    CLiveValues live;
    CTestRuntime runtime;
};

// How the body of every report but A1_6 begins.
inline const std::string kEquipmentHex = "51 50 49 48 47 46 45 44 ";
