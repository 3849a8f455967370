// The runtime at work: every file of tests/transcripts/runtime is a station that starts empty, what is
// done to it, and what it prints, posts and stores.
#include <gtest/gtest.h>
#include <sys/msg.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "System/CommonTools.h"
#include "System/DateTime.h"
#include "System/Numbers.h"
#include "System/StringToolkit.h"
#include "app/MainLoop.h"
#include "app/StartUp.h"
#include "history/HistoryDatabase.h"
#include "reports/ChargingStatus.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/SqlWatch.h"
#include "tests/support/TestRuntime.h"
#include "tests/support/Transcript.h"
#include "tests/unit/Commands.h"

namespace {

namespace fs = std::filesystem;
using Text = const std::string&;

template <typename... Values>
void Show(const Values&... values) {
    std::ostringstream text;
    ((text << '|' << values), ...);
    std::puts(text.str().c_str() + 1);
}

// Each line of `text` behind `prefix`.
std::string Lines(const std::string& prefix, const std::string& text) {
    std::string lines;
    std::istringstream input(std::regex_replace(text, std::regex("\033"), "\\x1B"));
    for (std::string line; std::getline(input, line);) lines += prefix + line + '\n';
    return lines;
}

// "\xff" is a byte, "{40*x}" forty times 'x'.
std::string Expanded(const std::string& text) {
    static const std::regex special("\\\\x([0-9a-fA-F]{2})|\\{(\\d+)\\*(.)\\}");
    std::string expanded;
    auto rest = text.begin();
    for (std::sregex_iterator at(text.begin(), text.end(), special), end; at != end; ++at) {
        expanded.append(rest, (*at)[0].first);
        expanded += (*at)[1].matched ? std::string(1, static_cast<char>(std::stoi((*at)[1], nullptr, 16)))
                                     : std::string(std::stoul((*at)[2]), *(*at)[3].first);
        rest = (*at)[0].second;
    }
    return expanded.append(rest, text.end());
}

class CTranscript : public CStationTest, public testing::WithParamInterface<std::string> {
  protected:
    // The transcript again, with what its commands do now: an exit code other than 0 before the command, what
    // is printed behind it, then errors behind "! " and messages behind "> ".
    std::string Replay(std::istream& transcript) {
        std::string replayed;
        std::string line;
        std::getline(transcript, line);
        while (transcript) {
            const std::string head = line;
            std::string input;
            m_line.input.clear();
            while (std::getline(transcript, line) && line[0] == '|') {
                input += line + '\n';
                m_line.input += Expanded(line.substr(std::min<std::size_t>(2, line.size()))) + '\n';
            }
            if (head.empty() || head[0] == '#') replayed += head + '\n';
            if (head[0] != '$') continue;
            const std::string command = head.substr(head.find(' ') + 1);
            m_line.exit = 0;
            const std::string printed = Printed([&] {
                Do(command);
                if (m_posted == "sent") Drain(100);
            });
            // An emulator has a word on a signal too.
            errors = std::regex_replace(errors, std::regex("qemu: [^\n]*\n"), "");
            replayed += '$' + (m_line.exit == 0 ? "" : std::to_string(m_line.exit)) + ' ' + command + '\n' +
                        input + Lines("", ShownLines(printed)) + Lines("! ", errors);
            if (m_posted != "shown") continue;
            for (const std::string& message : Take())
                replayed += "> " + message.substr(0, message.find_last_not_of(' ') + 1) + '\n';
        }
        return replayed;
    }

  private:
    void Do(Text command) {
        const std::string text = Expanded(command);
        const std::size_t end = std::min(text.find(' '), text.size());
        m_line.Set(text.substr(end));
        const auto found = m_commands.find(text.substr(0, end));
        if (found == m_commands.end()) return static_cast<void>(std::puts("what?"));
        found->second();
    }
    // The same for every number from `first` to `last` in the place of '#'.
    void Repeat(int first, int last, Text command) {
        static const std::regex place("#");
        for (int i = first; i <= last; ++i) Do(std::regex_replace(command, place, std::to_string(i)));
    }
    // In a process of its own, which this is expected to end.
    void DoLast(Text command) {
        const pid_t process = fork();
        if (process == 0) {
            Do(command);
            std::exit(77);
        }
        int status = 0;
        waitpid(process, &status, 0);
        Show(WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status));
    }
    std::vector<std::string> StatementsOf(Text command) {
        m_watch.Take();
        Do(command);
        return m_watch.Take();
    }
    // What the statements of a command do to the history table, as SQLite plans it.
    void ShowPlans(Text command) {
        for (const std::string& sql : StatementsOf(command)) {
            if (std::string("sSU").find(sql[0]) == std::string::npos) continue;
            std::string plan;
            for (const std::string& row : QueryRows(AppFile(kHistoryFile), "EXPLAIN QUERY PLAN " + sql))
                plan += row;
            // The pending rows by id: this index holds no others.
            const bool pending = plan.find("USING INDEX tagYC_pending") != std::string::npos;
            const bool reads = plan.find("SCAN") != std::string::npos && !pending;
            const bool sorts = plan.find("TEMP B-TREE") != std::string::npos;
            Show(reads ? "reads" : sorts ? "sorts" : "finds", sql);
        }
    }
    // Takes what waits in the System V queue: type, size, sender, and the frame; of a long one the middle is
    // left out, zeros behind it are.
    static void ShowQueue() {
        SysVMessage message{};
        const int queue = msgget(kQueueKey, 0);
        for (ssize_t size = 0; (size = msgrcv(queue, &message, sizeof message.text, 0, IPC_NOWAIT)) >= 0;
             message = {}) {
            std::size_t end = std::max(static_cast<std::size_t>(size), kProcessIdSize) - kProcessIdSize;
            while (end > GetLe(message.Frame(), 2) + 2 && message.Frame()[end - 1] == 0) --end;
            std::string frame = ToHex(message.Frame(), end);
            if (frame.size() > 200) frame.replace(99, frame.size() - 128, "... ");
            const std::uint64_t sender = GetLe(message.text, kProcessIdSize);
            const bool own = sender == static_cast<std::uint64_t>(getpid());
            Show(message.type, size, own ? "OWN" : std::to_string(sender), frame);
        }
    }
    void LoadPoints(Text kind) {
        fs::remove(AppFile(kPointSettingFile));
        MakePoints(std::exchange(m_rows, {}), kind);
        runtime.m_yxPoints.clear();
        runtime.m_ycGroups.clear();
        EXPECT_EQ(0, runtime.InitPointSettingYX() + runtime.InitPointSettingYC());
    }
    // So many bytes of what A1_5 would be now.
    void ShowCharging(int port, int offset, int count) {
        const std::list<YcPointRecord> none;
        const auto& points = runtime.m_ycGroups.empty() ? none : runtime.m_ycGroups.front().points;
        const ChargingBody body = BuildChargingBody(live, points, port);
        Show(ToHex(body.data() + offset, static_cast<std::size_t>(count)));
    }
    // Lets ticks go by and shows in which of them, counted from 1 at the last "anew", which port posts what.
    void Run(int ticks) {
        std::map<std::string, std::string> seen;
        for (const int end = m_tick + ticks; m_tick < end;) {
            ++m_tick;
            for (const std::string& message : Posted([this] { runtime.SchedulerTick(); })) {
                const std::size_t name = message.find(' ');
                const std::size_t json = message.find("portNo\":");
                const char port = message.at(json != std::string::npos ? json + 8 : name + 26);
                seen[message.substr(0, name) + '/' + port] += ' ' + std::to_string(m_tick);
            }
        }
        for (const auto& [message, when] : seen) Show(message + ':' + when);
    }
    void ShowPoints() {
        for (const YxPointRecord& r : runtime.m_yxPoints)
            Show(r.name, r.id, r.level, r.pointNumber, r.flag, r.address, r.source, r.port);
        for (const YcGroup& group : runtime.m_ycGroups) {
            Show("group", group.key, group.code);
            for (const YcPointRecord& r : group.points)
                Show(r.name, r.id, r.pointNumber, r.groupCode, r.groupBase, r.scale, r.offset, r.realC,
                     r.realD);
        }
    }
    // A start-up, from where it turns to the history database.
    void Start() {
        const Captured captured = Capture([this] { StartUp(runtime); });
        std::fputs(captured.out.substr(captured.out.find(AppFile(kHistoryFile) + "\n")).c_str(), stdout);
        std::fputs(captured.err.c_str(), stderr);
    }
    void Receive(bool sent) {
        EXPECT_TRUE(sent);
        runtime.MsgRcvFromMain();
    }

    PointRows m_rows;
    int m_tick = 0;
    std::uint8_t m_passes = 0;
    std::string m_posted = "shown";
    std::unique_ptr<CForeignLock> m_lock;
    CSqlWatch m_watch;
    CCommandLine m_line;

    // Tools.
    const Commands m_commands = {
        {"number", m_line.Call([](Text text) { Show(ParseUInt32(text.c_str()), ParseInt32(text.c_str())); })},
        // The delimiters, a blank, the text.
        {"split", m_line.Call([](Text text) {
             const std::size_t blank = text.find(' ');
             CStringList list;
             CStringList::Split(CString(text.substr(blank + 1).c_str()), text.substr(0, blank).c_str(), list);
             for (int i = 0; i <= list.Count(); ++i) std::printf("<%s>", list.At(i).c_str());
             std::printf(" %d\n", list.Count());
         })},
        // A date, the same so many seconds on, and so many months.
        {"date", m_line.Call([](std::int32_t seconds, int months, Text text) {
             CDateTime later(text.c_str());
             later.AddSeconds(seconds);
             CDateTime moved(text.c_str());
             moved.AddMonths(months);
             Show(CDateTime(text.c_str()).FullText(), later.FullText(), moved.FullText());
         })},
        {"newdate", m_line.Call([](int year, int month, int day, int hour, int minute, int second) {
             Show(CDateTime(year, month, day, hour, minute, second).FullText());
         })},
        {"packed", m_line.Call([](Text text) {
             std::uint8_t bytes[8] = {};
             CCommonTools::HexToBytes(bytes, text.c_str());
             Show(ToHex(bytes, sizeof bytes));
         })},
        // A telemetry value in every form of a report.
        {"convert", m_line.Call([](std::uint32_t raw, float scale, std::uint32_t offset) {
             YcPointRecord point{};
             point.currentRaw = raw;
             point.scale = scale;
             point.offset = offset;
             Show(ConvertU(point), ConvertS(point), ConvertA(point), ConvertAS(point), ConvertN(point));
         })},
        {"failure", m_line.Call([this](int cause) {
             runtime.m_failures.Report(static_cast<EFailure>(cause), "%d", cause);
         })},
        // The transcript itself.
        {"repeat", m_line.Call([this](int first, int last, Text command) { Repeat(first, last, command); })},
        // Until it fails no more: another process uses the file too, and the clock does not wait for it.
        {"insist", m_line.Call([this](Text command) {
             while (!Capture([&] { Do(command); }).err.empty()) continue;
         })},
        {"last", m_line.Call([this](Text command) { DoLast(command); })},
        {"statements", m_line.Call([this](Text command) {
             for (const std::string& sql : StatementsOf(command)) Show(sql);
         })},
        {"plans", m_line.Call([this](Text command) { ShowPlans(command); })},
        // The world around the process.
        {"time", m_line.Call([](Text time) {
             std::tm parts{};
             EXPECT_NE(nullptr, strptime(time.c_str(), "%Y-%m-%d %H:%M:%S", &parts));
             FakeClock::Set(std::mktime(&parts));
         })},
        {"sleep", m_line.Call([](useconds_t seconds) { usleep(seconds * 1000000); })},
        {"zone", m_line.Call([](Text zone) { setenv("TZ", zone.c_str(), 1); })},
        {"slept", [] {
             Show(FakeClock::Slept() / 1000, "ms");
             FakeClock::Set(std::time(nullptr));
         }},
        {"clean", CleanStation},
        {"sql", m_line.Call([](const fs::path& file, Text sql) { RunSql(file, sql); })},
        {"query", m_line.Call([](const fs::path& file, Text sql) {
             for (const std::string& row : QueryRows(file, sql)) Show(row);
         })},
        {"write", m_line.Call([this](const fs::path& file, Text text) {
             fs::create_directories(file.parent_path());
             WriteText(file, text + m_line.input);
         })},
        {"copy", m_line.Call([](const fs::path& from, const fs::path& to) {
             fs::create_directories(to.parent_path());
             fs::copy(from, to);
         })},
        {"list", m_line.Call([this](const fs::path& directory) {
             std::error_code error;
             const fs::directory_iterator files(directory, error);
             m_line.exit = error ? 1 : 0;
             for (const fs::path& file : std::set<fs::path>(begin(files), end(files)))
                 Show(file.filename().string());
         })},
        {"remove", m_line.Call([](const fs::path& file) { fs::remove_all(file); })},
        // What another program's statements lock; until when.
        {"lock", m_line.Call([this](const fs::path& file, Text statements) {
             m_lock = std::make_unique<CForeignLock>(file, statements.c_str());
         })},
        // Reads that fail, for the command that follows.
        {"unreadable", m_line.Call([this](int reads, Text command) {
             FailReads(reads);
             Do(command);
             FailReads(0);
         })},
        {"unlock", [this] { m_lock.reset(); }},
        {"unlockafter", m_line.Call([this](int micros) { FakeClock::After(micros, [this] { m_lock.reset(); }); })},
        {"unlockbefore", m_line.Call([this](Text sql) { m_watch.Before(sql, [this] { m_lock.reset(); }); })},
        {"lockbefore", m_line.Call([this](const fs::path& file, Text sql) {
             m_watch.Before(sql, [this, file] { m_lock = std::make_unique<CForeignLock>(file, CForeignLock::kWriter); });
         })},
        {"signal", m_line.Call(live, &CLiveValues::SetSignal)},
        {"signal2", m_line.Call(live, &CLiveValues::SetSignal2)},
        {"gun", m_line.Call(live, &CLiveValues::SetGunState)},
        {"yc", m_line.Call(live, &CLiveValues::SetYc)},
        {"coefficient", m_line.Call(live, &CLiveValues::SetCoefficient)},
        {"area", m_line.Call([this](int index, Text text) {
             std::array<char, kEntryAreaSize> area{};
             text.copy(area.data(), area.size());
             CLiveValues::Put(live.getYc(index), kEntryArea, area);
         })},
        {"dd", m_line.Call(live, &CLiveValues::SetDd)},
        // The charging area of a port: the kind of vehicle identity, and then a value of its own in every byte.
        {"vehicle", m_line.Call([this](int port, int kind) {
             std::array<std::uint8_t, kChargingAreaSize> area{};
             for (std::size_t i = 0; i < area.size(); ++i) area[i] = static_cast<std::uint8_t>(3 * i + 5);
             area[0] = static_cast<std::uint8_t>(kind);
             live.SetChargingArea(port, area);
         })},
        {"yx", m_line.Call([this](Text row) { m_rows.yx.push_back(row); })},
        {"telemetry", m_line.Call([this](Text row) { m_rows.yc.push_back(row); })},
        // Records of one point with states of their own, from `state` on, which no table could give them.
        {"states", m_line.Call([this](int number, std::uint8_t state) {
             for (YxPointRecord& point : runtime.m_yxPoints)
                 if (point.pointNumber == number) point.current = state++;
         })},
        {"columns", m_line.Set(m_rows.ycColumns)},
        {"send", m_line.Call([this](Text frame) { Receive(SendFrame(Hex(frame))); })},
        {"sendtext", m_line.Call([this](Text text) { Receive(SendText(Hex(text))); })},
        {"queue", ShowQueue},
        {"zorctl", m_line.Call([this](Text arguments) { m_line.exit = RunLine(arguments); })},
        {"limit", m_line.Call(LimitQueue)},
        {"failqueue", m_line.Call(FailNextQueueCall)},
        // The state of the process.
        {"ports", m_line.Set(runtime.m_portCount)},
        {"kind", m_line.Set(runtime.m_chargerKind)},
        {"report", m_line.Set(runtime.m_sendflag)},
        {"cache", m_line.Set(runtime.m_datacache)},
        {"sequence", m_line.Set(runtime.m_idleSequence)},
        {"idleticks", m_line.Set(runtime.m_idleReportTicks)},
        {"workticks", m_line.Set(runtime.m_workReportTicks)},
        {"yxticks", m_line.Set(runtime.m_yxReportTicks)},
        {"force", m_line.Set(runtime.m_forceYxReport)},
        {"anew", [this] {
             runtime.m_ports = {};
             m_tick = 0;
         }},
        {"lasthour", m_line.Call([this](int hour) { runtime.SetLastHour(hour); })},
        {"k1", [this] {
             for (auto& counter : runtime.k1Cnt) counter = m_line.Get<int>();
         }},
        {"k2", [this] {
             for (auto& counter : runtime.k2Cnt) counter = m_line.Get<int>();
         }},
        {"settings", [this] {
             Show(runtime.m_sendflag, runtime.m_workReportTicks, runtime.m_idleReportTicks,
                  runtime.m_yxReportTicks, runtime.m_minuteIntervalTicks,
                  std::exchange(runtime.m_forceYxReport, 0));
         }},
        {"counters", [this] {
             for (const std::int32_t counter : runtime.k1Cnt) std::printf("%d ", counter);
             for (const std::int32_t counter : runtime.k2Cnt) std::printf(" %d", counter);
             std::puts("");
         }},
        {"points", m_line.Call([this] { ShowPoints(); })},
        // Where messages go: "shown" behind the command, "sent" to the queue, "kept" until they are drained.
        {"posted", m_line.Set(m_posted)},
        {"post", m_line.Call([this](std::uint32_t code, Text body) {
             runtime.PostMsg(code, body.data(), static_cast<std::uint32_t>(body.size()));
         })},
        {"drain", m_line.Call([this](int count) { Drain(count); })},
        // What it does.
        {"getport", [this] { Show(runtime.GetPort(AppFile(kConfigFile))); }},
        {"load", m_line.Call([this](Text kind) { LoadPoints(kind); })},
        {"realtime", [this] {
             CRTDB database;
             EXPECT_EQ(0, database.Load("", runtime.m_chargerKind));
             for (const auto& set : database.LabelSets())
                 Show(set->Description().c_str(), set->PointNumber(), set->ValueCount());
         }},
        {"start", [this] { Start(); }},
        {"create", m_line.Call(runtime, &CRuntimeData::InitYcHistoryDatabase)},
        {"checkdb", m_line.Call(runtime, &CRuntimeData::CheckYCDB)},
        {"insert", m_line.Call(runtime, &CRuntimeData::InsertYC)},
        {"live", m_line.Call(runtime, &CRuntimeData::Send_A1_16)},
        {"check", m_line.Call(runtime, &CRuntimeData::Checkcache)},
        {"resend", m_line.Call(runtime, &CRuntimeData::History_A1_16)},
        {"soe", m_line.Call(runtime, &CRuntimeData::InitSOE)},
        {"initpoints", m_line.Call(runtime, &CRuntimeData::InitPointSettingYX)},
        {"initvalues", m_line.Call(runtime, &CRuntimeData::InitPointSettingYC)},
        {"initrealtime", m_line.Call(runtime, &CRuntimeData::LoadRealTimeYc)},
        {"event", m_line.Call(runtime, &CRuntimeData::InsertSOE)},
        {"walk", m_line.Call(runtime, &CRuntimeData::DetectStatusChanges)},
        {"tick", m_line.Call(runtime, &CRuntimeData::SchedulerTick)},
        {"passes", m_line.Call([this](int count) {
             const std::uint64_t before = Allocations();
             for (int i = 0; i < count; ++i) RunPass(runtime, m_passes);
             Show(Allocations() == before ? "nothing allocated" : "allocated");
         })},
        {"run", m_line.Call([this](int ticks) { Run(ticks); })},
        {"charging", m_line.Call([this](int port, int offset, int count) { ShowCharging(port, offset, count); })},
        {"receive", m_line.Call(runtime, &CRuntimeData::MsgRcvFromMain)},
        {"received", [this] { Show(runtime.m_lastReceiveResult); }},
        {"A1_6", m_line.Call([this](int port) { runtime.Send_DC_A1_6(runtime.m_ycGroups.front().points, port); })},
        {"A1_11", m_line.Call(runtime, &CRuntimeData::Send_DC_A1_11)},
        {"A1_13", m_line.Call(runtime, &CRuntimeData::Send_DC_A1_13)},
        {"A1_14", m_line.Call(runtime, &CRuntimeData::Send_DC_A1_14)},
        {"A1_15", m_line.Call(runtime, &CRuntimeData::Send_DC_A1_15)},
    };
};

TEST_P(CTranscript, IsWhatHappens) {
    ExpectReplay(ZOR_TRANSCRIPTS + GetParam() + ".txt",
                 [this](std::istream& transcript) { return Replay(transcript); });
}

INSTANTIATE_TEST_SUITE_P(Transcripts, CTranscript,
                         testing::Values("runtime/bodies", "runtime/channel", "runtime/commands",
                                         "runtime/configuration", "runtime/events", "runtime/history",
                                         "runtime/locks", "runtime/plans", "runtime/points", "runtime/ports",
                                         "runtime/quiet", "runtime/records", "runtime/schedule",
                                         "runtime/signals", "runtime/tools", "runtime/walks"),
                         [](const auto& transcript) {
                             return std::regex_replace(transcript.param, std::regex("/"), "_");
                         });

}  // namespace
