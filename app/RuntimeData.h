// The runtime object: every operation of the process is a member of it and works on its state.
//
//   1. app/      construction, configuration, start-up
//   2. ipc/      message channel to zor_main, outbound queue, inbound commands
//   3. points/   point settings, real-time YC database
//   4. events/   detection of status changes, event database
//   5. reports/  what is due per tick, and the reports it posts; the tick itself is app/Tick.cpp
//   6. history/  charging-record history: requests, resend, acknowledgements
//
// The state follows the operations, by the folder that writes it. Nothing is implemented here.
#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <list>
#include <string>
#include <vector>

#include "System/BusyWait.h"
#include "System/FailureLog.h"
#include "events/EventWalk.h"
#include "history/ChargingRecord.h"
#include "ipc/Frame.h"
#include "ipc/MsgQueue.h"
#include "points/PointRecords.h"
#include "points/PortNumbering.h"
#include "points/RTDB.h"
#include "reports/ChargingStatus.h"
#include "reports/SignalBodies.h"

class CShmCTRL;
struct SentRow;

// Values of the charger kind.
inline constexpr std::int32_t kDcCharger = 1;
inline constexpr std::int32_t kAcCharger = 2;

// Base object of the process's IPC; it has no state.
class CMyIPC {};

// What belongs to one port.
struct PortProgress {
    std::uint8_t lastStateCode = 0;     // charging-state code of the last A1_14; 0 is no code
    std::uint32_t snapshotTicks = 0;    // ticks since the last full signal snapshot
    std::uint32_t chargingTicks = 0;    // calls since the last charging status, one per group and tick
    std::uint32_t chargingReports = 0;  // charging statuses since the charging began
    std::uint32_t idleTicks = 0;        // calls since the last idle status, one per group and tick
    PortSignals signals;
};

// What tells one state of the system's time-zone file from another.
struct ZoneFile {
    dev_t device = 0;
    ino_t file = 0;
    std::time_t seconds = 0;
    long nanoseconds = 0;

    bool operator==(const ZoneFile& other) const {
        return device == other.device && file == other.file && seconds == other.seconds &&
               nanoseconds == other.nanoseconds;
    }
};

class CRuntimeData {
  public:
    // ---- 1. app/ ----
    // RuntimeData.cpp, Configuration.cpp

    // Creates the System V queue and the outbound queue and sets every default. Where the System V queue
    // cannot be had, says so on standard error and leaves the outbound queue out: posting then drops,
    // draining finds nothing.
    CRuntimeData();
    virtual ~CRuntimeData();
    CRuntimeData(const CRuntimeData&) = delete;
    CRuntimeData& operator=(const CRuntimeData&) = delete;

    // Hands over the live-value accessor, which stays the caller's. Every later operation needs it.
    void SetShmAccessor(CShmCTRL* shm) { m_shm = shm; }
    // The hour, 0 to 23, for which no charging record is due any more.
    void SetLastHour(std::int32_t hour) { m_lastHour = hour; }
    // kDcCharger or kAcCharger.
    void SetChargerKind(std::int32_t kind) { m_chargerKind = kind; }
    std::uint32_t TickPeriodMs() const { return m_tickPeriodMs; }

    // Reads the port count from the keyed configuration database at `path`, stores and returns it: 1 to 8,
    // and 1 where the database does not name a count in that range. Ends the process when the file cannot be
    // opened.
    int GetPort(const std::string& path);

    // ---- 2. ipc/ ----
    // MessageChannel.cpp, InboundCommands.cpp

    // Posts one body for zor_main; messages leave in posting order, one per tick. `length` in bytes, at most
    // 2042: a longer body is refused with a line on standard error. Copies `data`. Without an outbound queue
    // the message is dropped.
    void PostMsg(std::uint32_t code, const void* data, std::uint32_t length);
    // Sends at most one posted message.
    void DrainOutbound();
    // Writes one frame of at most 2048 bytes to the System V queue. Never waits: a message that cannot be
    // written is lost, with a diagnostic line.
    void MsgSndToMain(const std::uint8_t* frame, std::size_t length);
    // Reads at most one command of zor_main and acts on it.
    void MsgRcvFromMain();

    // ---- 3. points/ ----
    // PointSettings.cpp, RTDB.cpp

    // Fill the two point lists from the point-settings database, by charger kind and port count. A failed
    // query adds nothing; a database that cannot be opened ends the process. Return 0.
    int InitPointSettingYC();
    int InitPointSettingYX();
    // Loads the real-time YC database.
    int LoadRealTimeYc() { return m_rtdb.Load(m_databaseDirectory, m_chargerKind); }

    // ---- 4. events/ ----
    // StatusChanges.cpp, EventDatabase.cpp

    // Compares every status point with its state at the last tick and records the changes.
    void DetectStatusChanges();
    // Opens the event database and creates what is missing in it. Returns 0; ends the process when it cannot
    // be opened.
    int InitSOE();
    // Stores one event by itself: state `value` of point `pointNumber` of the YX table (`table` 0) or the
    // second one (1). Counts switching and records the charging measurements where the point calls for it.
    // Failures are printed and lose this event only. Returns 0.
    int InsertSOE(int value, int pointNumber, int table, const std::string& event);

    // ---- 5. reports/ ----
    // Refresh.cpp, ChargingStatus.cpp, IdleStatus.cpp, SignalReports.cpp, PortState.cpp; SchedulerTick:
    // app/Tick.cpp

    // One pass over everything that happens per tick, in fixed order.
    void SchedulerTick();
    // True when this tick has waited for a locked file already: what can be put off is.
    bool HasWaited() const;
    // Fixes which points the signal reports of each port carry. To be called when the YX point list is
    // complete.
    void SelectReportedPoints();
    // Finds the points of every group that the charging and the idle status show. To be called when the YC
    // point list is complete.
    void FindReportedPoints();
    // Posts A1_5 when the charging status of `port` is due. `places` are those of one group, here and below.
    void Send_DC_A1_5(const GroupPlaces& places, int port);
    // Posts A1_6 when the idle status of `port` is due.
    void Send_DC_A1_6(const GroupPlaces& places, int port);
    // Posts A1_13, all signals of `port`.
    void Send_DC_A1_13(int port);
    // Posts A1_11 with the signals of `port` that differ from what was last reported, if there are any.
    void Send_DC_A1_11(int port);
    // Posts A1_15 with the gun signals of `port` that differ from what was last reported, if there are any.
    void Send_DC_A1_15(int port);
    // Posts A1_14 when the charging-state code of `port` differs from the last one posted for it.
    void Send_DC_A1_14(int port);

    // ---- 6. history/ ----
    // HistoryDatabase.cpp, Hourly.cpp, Requests.cpp, Resend.cpp, ChargingRecord.cpp

    // Judges the history database at start-up. 0 keeps the file (the counters are then restored from it), 1
    // says that it was an old one, or that it cannot be read twice in a row, and has been removed. A file
    // that is only busy, or met one failed call, is kept.
    int CheckYCDB();
    // Creates the history table in a new file; ends the process when the file cannot be opened. Returns 0.
    int InitYcHistoryDatabase();
    // Writes the charging record of `port`, which the station must have, for `hour` (0 to 23; that of hour 0
    // is to be acknowledged). Returns SQLite's result code; a failure is printed and the record is lost.
    std::int32_t InsertYC(std::uint32_t hour, std::uint32_t port);
    // Reads the record of one hour, or with `hour` 24 those of the whole day, of a date such as 2023-08-30.
    // `count` is the capacity of the zeroed `records` and becomes how many were filled. Without a row the
    // count is 0 and the first record says for which time. Returns 0.
    int ReadDBSingleYCdata(const char* date, int port, int hour, YcHistoryRecord* records, int& count);
    // Counts the records that zor_main has not acknowledged yet. Returns 0; a failure leaves the count as it
    // was.
    int Checkcache();
    // Reads records that are to be resent, as many as `records` has room for (`count`), and raises their send
    // counts. `count` becomes how many were read. Returns 0.
    int ReadCacheYCdata(YcHistoryRecord* records, int& count);
    // Handles the acknowledgement of a record: `body` is what follows the command's port byte (128 bytes).
    // Returns 0 for that of a midnight record, which is the only one that it acts on.
    int DealCacheData(const std::uint8_t* body, std::uint32_t port);
    // Ends the resending of the port's records whose timestamp begins with `prefix`, and counts what remains
    // of that port. Returns SQLite's result code, also 0 when the file cannot be opened.
    int DeletCacheData(const char* prefix, int port);
    // Fills `body` with the live charging record of `port`, which the station need not have: what no table
    // holds for it is 0. `length` becomes its length.
    void BuildA1_16Record(RecordBody& body, std::uint32_t& length, std::uint32_t port);
    // Posts A1_16 with the live charging record of `port`.
    void Send_A1_16(std::uint32_t port);
    // Answers a history request (`body` as above): one A1_16 for each record, or one without a body.
    int MsgCall_A1_16(const std::uint8_t* body, std::uint32_t port);
    // One resend pass, when there is something to resend and reporting is on. Returns 0.
    int History_A1_16();
    // Copies the digits of `text` to `out`, at most `capacity`; writes no terminator.
    static void GetDigits(char* out, std::size_t capacity, const char* text);
    // Packs `text` two characters per byte (see PackNibbles), at most `capacity` bytes. Returns 0.
    static int StrToBcd(std::uint8_t* out, std::size_t capacity, const char* text);

  protected:
    // -- app/ (Tick.cpp)
    // At minute 0 of a new hour writes and reports the charging records; at minute 40 counts those of
    // midnight that zor_main has not acknowledged, which starts a resend pass.
    void HourlyStep();
    void FollowTimeZone();

    // -- ipc/
    // What to do about a `msgrcv` that failed with `error`.
    void HandleReceiveFailure(int error);
    void DropOversized();
    void GetQueueAgain();
    void HandleCommand(const std::uint8_t* frame, const FrameParts& parts);
    // Stores what a report-settings frame asks for.
    void ApplyReportSettings(const std::uint8_t* frame);
    // Stores one report interval when the charger is of `kind`, which is the one that sends `report`.
    void ApplyReportInterval(std::uint32_t seconds, const char* report, std::int32_t kind,
                             std::uint32_t& ticks);

    // -- events/
    // Stores the changes of the walk, and those that an earlier one had to keep.
    void StoreChanges();
    void CountSwitching(int pointNumber, int table);
    void PrepareErrMsgTable(CSqliteDb& database);
    void PrepareSoeTable(CSqliteDb& database);
    void ExecEventSetUp(CSqliteDb& database, const char* sql);

    // -- reports/
    // Reads every telemetry point anew and runs the charging and the idle status on it.
    void RefreshYc();
    // Signal reports of one port: the snapshot when it is due, then the change reports.
    void PortStep(int port);

    // -- history/
    // Formats the statement that stores the charging record of `port` as it is now.
    void FormatRecord(CSqlTextBase& sql, std::uint32_t hour, std::uint32_t port);
    // Writes the charging records of all ports for `hour`, as InsertYC does, and posts each live while
    // reporting is on.
    void RecordHour(std::uint32_t hour);
    void CreateHistoryIndexes(CSqliteDb& database);
    void RestoreCounters(CSqliteDb& database);
    void RestoreCountersOf(int port, CSqliteDb& database);
    int FormatDayQuery(CSqlTextBase& sql, const char* date, int port);
    void FillHour(YcHistoryRecord& record, const CSqliteTable& table, int row, const char* date, int h);
    void RaiseSendCounts(CSqliteDb& database, const SentRow* rows, int count);

    PortProgress& Port(int port) { return m_ports[static_cast<std::size_t>(port)]; }

    // -- state, by the folder that writes it
    // app/
    CShmCTRL* m_shm = nullptr;        // not owned
    std::string m_databaseDirectory;  // kept with every label set
    std::uint8_t m_startFlagA = 1;    // read by nobody
    std::uint8_t m_startFlagB = 1;    // read by nobody
    std::int32_t m_chargerKind = 0;
    std::int32_t m_portCount = 0;        // 1 to 8 once GetPort has run
    std::uint32_t m_tickPeriodMs = 100;  // never changes
    std::int32_t m_lastHour = 0;         // hour of the last charging records
    std::int32_t m_lastCacheHour = 0;    // hour of the last count of pending ones
    std::time_t m_lastZoneSecond = 0;    // second in which the zone was last looked at
    ZoneFile m_zoneFile;
    CFailureLog m_failures;  // everybody
    // What waiting for locked files a tick has left, one budget for each file.
    CBusyWait m_eventWait{kBusyInLoopMs};
    CBusyWait m_historyWait{kBusyInLoopMs};

    // ipc/
    CMyIPC m_ipc;
    std::int32_t m_queueId = -1;                  // the System V queue; app at first
    std::int32_t m_lastReceiveResult = 0;         // what the last msgrcv returned
    CLinuxMsgQueue* m_outboundQueue = nullptr;    // never deleted, null when the System V queue is missing
    std::int32_t m_sendflag = 0;                  // 1 while reporting is on
    std::uint32_t m_workReportTicks = 1800;       // interval of the charging status, set by zor_main
    std::uint32_t m_idleReportTicks = 1800;       // interval of the idle status, set by zor_main
    std::uint32_t m_yxReportTicks = 600;          // interval of the full signal snapshot, set by zor_main
    std::uint32_t m_minuteIntervalTicks = 36000;  // stored for zor_main, read by nobody
    std::int32_t m_forceYxReport = 0;             // the first port step that sees it clears it

    // points/
    std::list<YxPointRecord> m_yxPoints;  // their states: events
    std::list<YcGroup> m_ycGroups;        // their values: reports
    CRTDB m_rtdb;

    // events/
    CEventWalk m_walk{m_failures, m_eventWait};
    std::int32_t m_recordValue = 0;  // last id seen in tagSOE or tagErrMsg
    // Switching counters by port number; the names are those of the charging record.
    std::array<std::int32_t, kPortSlots> k1Cnt{};  // history at start-up
    std::array<std::int32_t, kPortSlots> k2Cnt{};

    // reports/
    std::array<PortProgress, kPortSlots> m_ports{};
    std::vector<GroupPlaces> m_places;  // of the groups, in their order
    std::uint32_t m_idleSequence = 0;   // sequence number of the next idle status

    // history/
    std::int32_t m_datacache = 0;   // pending records last counted
    std::int32_t m_resendRest = 0;  // ticks in which nothing is resent
};
