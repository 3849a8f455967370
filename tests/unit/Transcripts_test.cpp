// The runtime at work: every file of tests/transcripts/runtime is a station that starts empty, what is done
// to it, and what it prints, posts and stores.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "System/AppFiles.h"
#include "System/CommonTools.h"
#include "System/DateTime.h"
#include "System/Numbers.h"
#include "System/StringToolkit.h"
#include "app/ConfigDatabase.h"
#include "app/StartUp.h"
#include "history/HistoryDatabase.h"
#include "points/PointSettings.h"
#include "reports/ChargingStatus.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"
#include "tests/support/Transcript.h"

namespace {

template <typename... Values>
void Show(const Values&... values) {
    std::ostringstream text;
    ((text << '|' << values), ...);
    std::puts(text.str().c_str() + 1);
}

class CTranscript : public CStationTest, public testing::WithParamInterface<std::string> {
  protected:
    // The transcript again, with what its commands do now: what is printed behind the command, then errors
    // behind "! " and messages behind "> ".
    std::string Replay(std::istream& transcript) {
        std::string replayed;
        for (std::string line; std::getline(transcript, line);) {
            if (line.empty() || line[0] == '#') replayed += line + '\n';
            if (line.rfind("$ ", 0) != 0) continue;
            replayed += line + '\n' + ShownLines(Printed([&] { Do(line.substr(2)); }));
            std::istringstream lines(errors);
            for (std::string error; std::getline(lines, error);) replayed += "! " + error + '\n';
            for (const std::string& message : Take())
                replayed += "> " + message.substr(0, message.find_last_not_of(' ') + 1) + '\n';
        }
        return replayed;
    }

  private:
    // "\xff" is a byte, "{40*x}" forty times 'x'.
    static std::string Expanded(const std::string& text) {
        static const std::regex special("\\\\x([0-9a-f]{2})|\\{(\\d+)\\*(.)\\}");
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

    void Do(const std::string& command) {
        m_words = std::istringstream(Expanded(command));
        const auto verb = m_verbs.find(Word());
        if (verb == m_verbs.end())
            std::printf("what?\n");
        else
            verb->second();
    }
    std::string Word() {
        std::string word;
        m_words >> word;
        return word;
    }
    // The next word as a number, or all that is left as a text.
    template <typename Value>
    Value Get() {
        if constexpr (std::is_same_v<Value, std::string>) {
            std::getline(m_words >> std::ws, m_rest, '\0');
            return std::exchange(m_rest, "");
        } else if constexpr (std::is_floating_point_v<Value>) {
            return std::strtof(Word().c_str(), nullptr);
        } else {
            return static_cast<Value>(std::strtoull(Word().c_str(), nullptr, 10));
        }
    }
    template <typename... Values>
    std::tuple<Values...> GetAll() {
        return std::tuple<Values...>{Get<Values>()...};  // in this order
    }

    // Verbs: an operation of `object`, which takes its arguments from the command; a field; a file of the
    // application directory, and what follows its name.
    template <typename Object, typename Class, typename Result, typename... Arguments>
    std::function<void()> Call(Object& object, Result (Class::*operation)(Arguments...)) {
        return [this, &object, operation] {
            const auto arguments = GetAll<std::decay_t<Arguments>...>();
            std::apply([&](const auto&... argument) { (object.*operation)(argument...); }, arguments);
        };
    }
    template <typename Value>
    std::function<void()> Set(Value& field) {
        return [this, &field] { field = Get<Value>(); };
    }
    std::function<void()> OnFile(void (*act)(const std::string& file, const std::string& rest)) {
        return [this, act] {
            const std::string file = AppFile(Word().c_str());
            act(file, Get<std::string>());
        };
    }

    static void Query(const std::string& file, const std::string& sql) {
        for (const std::string& row : QueryRows(file, sql)) std::puts(row.c_str());
    }
    // Sets the clock to a local time.
    void SetTime(const std::string& time) {
        std::tm parts{};
        EXPECT_NE(nullptr, strptime(time.c_str(), "%Y-%m-%d %H:%M:%S", &parts));
        FakeClock::Set(std::mktime(&parts));
    }
    void SetArea(int index, const std::string& text) {
        std::array<char, kEntryAreaSize> area{};
        text.copy(area.data(), area.size());
        CLiveValues::Put(live.getYc(index), kEntryArea, area);
    }
    void Lock(const std::string& statements) {
        const std::size_t blank = statements.find(' ');
        m_lock = std::make_unique<CForeignLock>(AppFile(statements.substr(0, blank).c_str()),
                                                statements.substr(blank).c_str());
    }
    void LoadPoints(const std::string& kind) {
        std::filesystem::remove(AppFile(kPointSettingFile));
        MakePoints(std::exchange(m_rows, {}), kind);
        runtime.m_yxPoints.clear();
        runtime.m_ycGroups.clear();
        EXPECT_EQ(0, runtime.InitPointSettingYX() + runtime.InitPointSettingYC());
    }
    void ShowNumber(const std::string& text) { Show(ParseUInt32(text.c_str()), ParseInt32(text.c_str())); }
    // The delimiters, a blank, the text.
    void ShowPieces(const std::string& text) {
        const std::size_t blank = text.find(' ');
        CStringList list;
        CStringList::Split(CString(text.substr(blank + 1).c_str()), text.substr(0, blank).c_str(), list);
        for (int i = 0; i <= list.Count(); ++i) std::printf("<%s>", list.At(i).c_str());
        std::printf(" %d\n", list.Count());
    }
    // A date, the same so many seconds on, and so many months.
    void ShowDate(std::int32_t seconds, int months, const std::string& text) {
        CDateTime later(text.c_str());
        later.AddSeconds(seconds);
        CDateTime moved(text.c_str());
        moved.AddMonths(months);
        Show(CDateTime(text.c_str()).FullText(), later.FullText(), moved.FullText());
    }
    void ShowPacked(const std::string& text) {
        std::uint8_t bytes[8] = {};
        CCommonTools::HexToBytes(bytes, text.c_str());
        std::puts(ToHex(bytes, sizeof bytes).c_str());
    }
    // A telemetry value in every form of a report.
    void ShowConversions(std::uint32_t raw, float scale, std::uint32_t offset) {
        YcPointRecord point{};
        point.currentRaw = raw;
        point.scale = scale;
        point.offset = offset;
        Show(ConvertU(point), ConvertS(point), ConvertA(point), ConvertAS(point), ConvertN(point));
    }
    // The charging area of a port: the kind of vehicle identity, and then a value of its own in every byte.
    void SetVehicle(int port, int kind) {
        std::array<std::uint8_t, kChargingAreaSize> area{};
        for (std::size_t i = 0; i < area.size(); ++i) area[i] = static_cast<std::uint8_t>(3 * i + 5);
        area[0] = static_cast<std::uint8_t>(kind);
        live.SetChargingArea(port, area);
    }
    // So many bytes of what A1_5 would be now.
    void ShowCharging(int port, int offset, int count) {
        const std::list<YcPointRecord> none;
        const auto& points = runtime.m_ycGroups.empty() ? none : runtime.m_ycGroups.front().points;
        std::puts(
            ToHex(BuildChargingBody(live, points, port).data() + offset, static_cast<std::size_t>(count))
                .c_str());
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
        for (const auto& [message, when] : seen) std::puts((message + ':' + when).c_str());
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
    void RealTime() {
        CRTDB database;
        EXPECT_EQ(0, database.Load("", runtime.m_chargerKind));
        for (const auto& set : database.LabelSets())
            Show(set->Description().c_str(), set->PointNumber(), set->ValueCount());
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
    void ShowSettings() {
        Show(runtime.m_sendflag, runtime.m_workReportTicks, runtime.m_idleReportTicks,
             runtime.m_yxReportTicks, runtime.m_minuteIntervalTicks,
             std::exchange(runtime.m_forceYxReport, 0));
    }
    void ShowCounters() {
        for (const std::int32_t counter : runtime.k1Cnt) std::printf("%d ", counter);
        for (const std::int32_t counter : runtime.k2Cnt) std::printf(" %d", counter);
        std::puts("");
    }
    void ShowSleep() {
        Show(FakeClock::Slept() / 1000, "ms");
        FakeClock::Set(std::time(nullptr));
    }

    std::istringstream m_words;
    std::string m_rest;
    PointRows m_rows;
    int m_tick = 0;
    std::unique_ptr<CForeignLock> m_lock;

    const std::map<std::string, std::function<void()>> m_verbs = {
        // Tools.
        {"number", Call(*this, &CTranscript::ShowNumber)},
        {"split", Call(*this, &CTranscript::ShowPieces)},
        {"date", Call(*this, &CTranscript::ShowDate)},
        {"packed", Call(*this, &CTranscript::ShowPacked)},
        {"convert", Call(*this, &CTranscript::ShowConversions)},
        // The world around the process.
        {"time", Call(*this, &CTranscript::SetTime)},
        {"slept", Call(*this, &CTranscript::ShowSleep)},
        {"sql", OnFile([](auto& file, auto& sql) { RunSql(file, sql); })},
        {"query", OnFile(Query)},
        {"write", OnFile(WriteText)},
        {"remove", OnFile([](auto& file, auto&) { std::filesystem::remove_all(file); })},
        {"lock", Call(*this, &CTranscript::Lock)},
        {"unreadable",  // so many times, for the command that follows
         [this] {
             FailReads(Get<int>());
             Do(Get<std::string>());
             FailReads(0);
         }},
        {"unlock", [this] { m_lock.reset(); }},
        {"signal", Call(live, &CLiveValues::SetSignal)},
        {"signal2", Call(live, &CLiveValues::SetSignal2)},
        {"gun", Call(live, &CLiveValues::SetGunState)},
        {"yc", Call(live, &CLiveValues::SetYc)},
        {"coefficient", Call(live, &CLiveValues::SetCoefficient)},
        {"area", Call(*this, &CTranscript::SetArea)},
        {"dd", Call(live, &CLiveValues::SetDd)},
        {"vehicle", Call(*this, &CTranscript::SetVehicle)},
        {"yx", [this] { m_rows.yx.push_back(Get<std::string>()); }},
        {"telemetry", [this] { m_rows.yc.push_back(Get<std::string>()); }},
        {"columns", Set(m_rows.ycColumns)},
        {"send", [this] { Receive(SendFrame(Hex(Get<std::string>()))); }},
        {"sendtext", [this] { Receive(SendText(Hex(Get<std::string>()))); }},
        // The state of the process.
        {"ports", Set(runtime.m_portCount)},
        {"kind", Set(runtime.m_chargerKind)},
        {"report", Set(runtime.m_sendflag)},
        {"cache", Set(runtime.m_datacache)},
        {"sequence", Set(runtime.m_idleSequence)},
        {"idleticks", Set(runtime.m_idleReportTicks)},
        {"workticks", Set(runtime.m_workReportTicks)},
        {"yxticks", Set(runtime.m_yxReportTicks)},
        {"force", Set(runtime.m_forceYxReport)},
        {"anew",
         [this] {
             runtime.m_ports = {};
             m_tick = 0;
         }},
        {"lasthour", [this] { runtime.SetLastHour(Get<int>()); }},
        {"k1",
         [this] {
             for (auto& counter : runtime.k1Cnt) counter = Get<int>();
         }},
        {"k2",
         [this] {
             for (auto& counter : runtime.k2Cnt) counter = Get<int>();
         }},
        {"settings", Call(*this, &CTranscript::ShowSettings)},
        {"counters", Call(*this, &CTranscript::ShowCounters)},
        {"points", Call(*this, &CTranscript::ShowPoints)},
        // What it does.
        {"getport", [this] { Show(runtime.GetPort(AppFile(kConfigFile))); }},
        {"load", Call(*this, &CTranscript::LoadPoints)},
        {"realtime", Call(*this, &CTranscript::RealTime)},
        {"start", Call(*this, &CTranscript::Start)},
        {"create", Call(runtime, &CRuntimeData::InitYcHistoryDatabase)},
        {"checkdb", Call(runtime, &CRuntimeData::CheckYCDB)},
        {"insert", Call(runtime, &CRuntimeData::InsertYC)},
        {"live", Call(runtime, &CRuntimeData::Send_A1_16)},
        {"check", Call(runtime, &CRuntimeData::Checkcache)},
        {"resend", Call(runtime, &CRuntimeData::History_A1_16)},
        {"soe", Call(runtime, &CRuntimeData::InitSOE)},
        {"event", Call(runtime, &CRuntimeData::InsertSOE)},
        {"walk", Call(runtime, &CRuntimeData::DetectStatusChanges)},
        {"tick", Call(runtime, &CRuntimeData::SchedulerTick)},
        {"run", Call(*this, &CTranscript::Run)},
        {"charging", Call(*this, &CTranscript::ShowCharging)},
        {"receive", Call(runtime, &CRuntimeData::MsgRcvFromMain)},
        {"A1_6", [this] { runtime.Send_DC_A1_6(runtime.m_ycGroups.front().points, Get<int>()); }},
        {"A1_11", Call(runtime, &CRuntimeData::Send_DC_A1_11)},
        {"A1_13", Call(runtime, &CRuntimeData::Send_DC_A1_13)},
        {"A1_14", Call(runtime, &CRuntimeData::Send_DC_A1_14)},
        {"A1_15", Call(runtime, &CRuntimeData::Send_DC_A1_15)},
    };
};

TEST_P(CTranscript, IsWhatHappens) {
    ExpectReplay(ZOR_TRANSCRIPTS "runtime/" + GetParam() + ".txt",
                 [this](std::istream& transcript) { return Replay(transcript); });
}

INSTANTIATE_TEST_SUITE_P(Runtime, CTranscript,
                         testing::Values("commands", "configuration", "events", "history", "points", "ports",
                                         "records", "schedule", "signals", "tools", "walks"),
                         [](const auto& transcript) { return transcript.param; });

}  // namespace
