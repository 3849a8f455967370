// Any bytes as a command of zor_main: what it changes and what is answered.
#include "tests/fuzz/Fuzz.h"

// Two days of records of two ports; those of midnight wait for an acknowledgement.
static constexpr char kRecords[] =
    "WITH RECURSIVE n(i) AS (VALUES(0) UNION ALL SELECT i + 1 FROM n WHERE i < 95)"
    "INSERT INTO tagYC(portNo,sendcount,mvalue,fvalue,tradenumber,tradeelec,fretime,timestamp) "
    "SELECT 1 + i / 48, i % 24 = 0, i * 1e15, -i, hex(randomblob(20)), 'x' || i, i || 'a-4:9',"
    "datetime('2024-03-04 00:00:05', (i % 48) || ' hours') FROM n";

// The first byte gives the number of ports and the kind of charger, the others are the frame.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const unsigned mode = size > 0 ? data[0] : 1;
    FuzzStation& station = FuzzStation::WithPorts(mode);
    static const int kFilled = station.history.Exec(kRecords);
    Require(kFilled == SQLITE_OK, station.history.Error());
    station.history.Exec("UPDATE tagYC SET sendcount = 1 WHERE timestamp LIKE '% 00:%' AND sendcount <> 1");
    station.runtime.SetChargerKind(mode >= 0x80 ? kAcCharger : kDcCharger);

    Bytes text(kProcessIdSize);
    for (std::size_t i = 1; i < size && text.size() < kMessageTextSize; ++i) text.push_back(data[i]);
    Require(SendText(text), "full queue");
    station.runtime.MsgRcvFromMain();
    Require(station.runtime.m_lastReceiveResult == static_cast<int>(text.size()), "command not taken");
    station.runtime.History_A1_16();
    station.CheckPosted();
    return 0;
}
