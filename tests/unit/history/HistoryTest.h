// A station with a new history database that sends charging records.
#pragma once

#include <string>
#include <vector>

#include "tests/support/TestRuntime.h"

class CHistoryTest : public CStationTest {
  protected:
    CHistoryTest() {
        Printed([this] { runtime.InitYcHistoryDatabase(); });
        runtime.m_sendflag = 1;
    }
    static void Sql(const std::string& sql) { RunSql(AppFile(kHistoryFile), sql); }
    static auto Rows(const std::string& sql) { return QueryRows(AppFile(kHistoryFile), sql); }
};
