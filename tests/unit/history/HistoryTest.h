// A station with an empty history database, for every test of the history.
#pragma once

#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "System/AppFiles.h"
#include "System/Numbers.h"
#include "reports/Messages.h"
#include "tests/support/TestRuntime.h"

class CHistoryTest : public CStationTest {
  protected:
    CHistoryTest() {
        Capture([this] { runtime.InitYcHistoryDatabase(); });
    }

    // Sets the clock to a local time such as "2023-08-30 10:00:05".
    static void SetTime(const std::string& local) {
        std::tm parts{};
        ASSERT_NE(nullptr, strptime(local.c_str(), "%Y-%m-%d %H:%M:%S", &parts)) << local;
        FakeClock::Set(std::mktime(&parts));
    }

    // Adds a row. What is not given is as a station without values writes it.
    static void AddRow(int port, const std::string& timestamp, int sendcount = 0) {
        RunSql(Path(),
               "INSERT INTO tagYC(portNo,sendcount,mvalue,tradenumber,tradeelec,fretime,timestamp,chargeCnt,"
               "chargeTime,dcK1Cnt,dcK2Cnt) VALUES(" +
                   std::to_string(port) + "," + std::to_string(sendcount) + ",0,'',0,'','" + timestamp +
                   "',0,0,0,0)");
    }
    static std::vector<std::string> Rows(const std::string& columns) {
        return QueryRows(Path(), "SELECT " + columns + " FROM tagYC ORDER BY id");
    }
    static std::string Path() { return AppFile(kHistoryFile); }

    // Takes everything that is posted; returns the bodies of the charging records.
    std::vector<Bytes> Posted() {
        std::vector<Bytes> bodies;
        std::uint32_t code = 0;
        void* buffer = nullptr;
        while (runtime.m_outboundQueue->Pop(code, buffer) != 0) {
            const auto* posted = static_cast<const std::uint8_t*>(buffer);
            if (code == kCodeA1_16) bodies.emplace_back(posted + 2, posted + 2 + GetLe(posted, 2));
            std::free(buffer);
        }
        return bodies;
    }
    // The same, each as port, time (second to century) and status, or "empty".
    std::vector<std::string> PostedHeads() {
        std::vector<std::string> heads;
        for (const Bytes& body : Posted())
            heads.push_back(body.empty() ? "empty" : ToHex(body.data() + 8, 9));
        return heads;
    }

    // What `run` prints, source lines masked; `errors` becomes what it prints on standard error.
    std::string Printed(const std::function<void()>& run) {
        const Captured captured = Capture(run);
        errors = captured.err;
        return Masked(captured.out);
    }
    std::string Tick() {
        return Printed([this] { runtime.SchedulerTick(); });
    }

    std::string errors;
};
