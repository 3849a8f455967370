#include "tools/zorctl/station/StationStatus.h"

#include <sys/stat.h>

#include <filesystem>

#include "System/AppFiles.h"
#include "System/Numbers.h"
#include "System/Sqlite.h"
#include "events/EventDatabase.h"
#include "history/HistoryDatabase.h"
#include "ipc/Frame.h"
#include "points/PointSettings.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/settings/StationReading.h"
#include "tools/zorctl/text/HexText.h"

namespace {

void LookAtProcesses(StationStatus& status) {
    std::vector<std::int32_t> perhapsOurs;
    for (const ProcessInfo& process : LivingProcesses()) {
        const std::optional<bool> attached =
            status.memory.present ? HasAttached(process.id, status.memory.key, status.memory.id)
                                  : std::nullopt;
        if (attached.value_or(false)) status.attached.push_back(process);
        if (process.name != kRuntimeName) continue;
        (process.isOurs ? status.runtimes : perhapsOurs).push_back(process.id);
        if (!process.isOurs) continue;
        if (process.isStopped) status.idle.push_back({process.id, "is stopped"});
        if (!attached.value_or(true))
            status.idle.push_back({process.id, "is not attached to the shared memory that is there now"});
    }
    status.runtimesAreOurs = !status.runtimes.empty();
    if (!status.runtimesAreOurs) status.runtimes = perhapsOurs;
}

// Runs `select` on `file` and hands the result to `take`. Returns what went wrong.
template <typename Take>
std::string Query(const std::string& directory, const char* file, const char* select, Take take) {
    CSqliteDb database;
    if (std::string trouble = OpenToRead(database, directory, file); !trouble.empty()) return trouble;
    const CSqliteTable table(database, select);
    if (!table.Ok()) return PathOf(directory, file) + ": " + WhyNot(table);
    take(table);
    return "";
}

PointCounts LookAtPoints(const std::string& directory, int portCount) {
    PointCounts counts;
    CSqliteDb database;
    counts.trouble = OpenToRead(database, directory, kPointSettingFile);
    if (!counts.trouble.empty()) return counts;
    const CSqliteTable yx(database, kSelectYxDc);
    const CSqliteTable yc(database, kSelectYcDc);
    if (!yx.Ok() || !yc.Ok()) {
        counts.trouble = PathOf(directory, kPointSettingFile) + ": " + WhyNot(yx.Ok() ? yc : yx);
        return counts;
    }
    counts.yx = yx.Rows();
    counts.yc = yc.Rows();
    counts.findings = CheckPoints(yx, yc, portCount);
    return counts;
}

bool HasContents(const std::string& directory, const char* file) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(PathOf(directory, file), error);
    return !error && size > 0;
}

// The process writes neither file, so nobody but somebody else changes them. A time that is still to come was
// taken by another clock and says nothing.
std::vector<std::string> ChangedSince(std::int64_t start, const std::string& directory) {
    constexpr int kStartIsEarlyBy = 1;
    std::vector<std::string> changed;
    std::error_code error;
    if (start == 0 || !std::filesystem::equivalent(directory, kAppDirectory, error)) return changed;
    for (const char* file : {kConfigFile, kPointSettingFile}) {
        struct stat state {};
        if (stat(PathOf(directory, file).c_str(), &state) == 0 && state.st_ctime > start + kStartIsEarlyBy &&
            state.st_ctime <= std::time(nullptr))
            changed.emplace_back(file);
    }
    return changed;
}

LastEvent ReadLastEvent(const std::string& directory) {
    LastEvent event;
    event.trouble = Query(directory, kEventFile, kSelectLastSoe, [&event](const CSqliteTable& table) {
        event.id = TextOf(table, 0, kSoeId);
        event.text = TextOf(table, 0, kSoeEvent);
        event.time = TextOf(table, 0, kSoeTimestamp);
    });
    return event;
}

PendingRows CountPending(const std::string& directory, int portCount) {
    PendingRows pending;
    const PortRange ports = PortsOf(portCount);
    for (int port = ports.first; port <= ports.last; ++port) pending.ports.push_back({port, 0});
    CSqliteDb database;
    pending.trouble = OpenToRead(database, directory, kHistoryFile);
    if (!pending.trouble.empty()) return pending;
    const std::string trouble =
        ReadNewestFirst(database, kYcTable, [&pending](const CSqliteTable& page, int row) {
            if (pending.newest.empty()) pending.newest = TextOf(page, row, kHistoryTimestamp);
            if (!IsPending(ParseInt32(page.Cell(row, kHistorySendCount)))) return true;
            const int port = ParseInt32(page.Cell(row, kHistoryPortNo));
            for (PendingRows::Port& of : pending.ports) of.rows += of.port == port ? 1 : 0;
            return true;
        });
    if (!trouble.empty()) pending.trouble = PathOf(directory, kHistoryFile) + ": " + trouble;
    return pending;
}

constexpr char kRestart[] = "restart zor_runtime";

void Add(std::vector<std::string>& list, Verdict& verdict, const std::string& what,
         const std::string& remedy) {
    if (what.empty()) return;
    list.push_back(what);
    if (verdict.advice.empty()) verdict.advice = remedy;
}

void JudgeSettings(const StationStatus& status, Verdict& verdict) {
    const std::string remedy = status.isFurnished
                                   ? "see that the file can be read, and is whole"
                                   : "put the unit's databases there, or make some: zorctl init " +
                                         status.directory + " --ports N; then start " + kRuntimeName;
    for (const std::string& trouble : {status.configurationTrouble, status.points.trouble})
        Add(verdict.troubles, verdict, trouble, remedy);
    for (const std::string& harm : status.points.findings.harm)
        Add(verdict.troubles, verdict, harm,
            std::string("correct the points (zorctl export, then init --force); then ") + kRestart);
}

void JudgeProcesses(const StationStatus& status, Verdict& verdict) {
    const std::string runtime = kRuntimeName;
    if (status.runtimes.empty())
        Add(verdict.troubles, verdict, runtime + " is not running", "start " + runtime);
    if (status.runtimes.size() > 1 && status.runtimesAreOurs)
        Add(verdict.troubles, verdict, runtime + " is running more than once", "end all but one");
    for (const IdleProcess& idle : status.idle)
        Add(verdict.troubles, verdict, runtime + ' ' + std::to_string(idle.process) + ' ' + idle.why,
            kRestart);
}

void JudgeForeign(const QueueState& queue, std::vector<std::string>& list, Verdict& verdict) {
    if (!queue.directions) return;
    for (const auto& [type, count] : queue.directions->others)
        Add(list, verdict,
            "messages of type " + std::to_string(type) +
                " in the queue, which nobody here takes: " + std::to_string(count),
            "take them away: zorctl main listen --seconds 0 --type " + std::to_string(type));
}

void JudgeQueue(const QueueState& queue, Verdict& verdict) {
    if (!queue.present) Add(verdict.troubles, verdict, "no queue", kRestart);
    if (const std::time_t waiting = CommandsWaitFor(queue); waiting > 0)
        Add(verdict.troubles, verdict,
            "commands have waited for " + std::to_string(waiting) + " s: nobody takes them", kRestart);
    if (!queue.trouble.empty())
        Add(verdict.troubles, verdict, "queue " + HexKey(kQueueKey) + ": " + queue.trouble,
            "look who owns the queue: ipcs -q");
    if (!IsFull(queue)) return;
    JudgeForeign(queue, verdict.troubles, verdict);
    const bool ofCommands = queue.directions && queue.directions->fromMain > queue.directions->toMain;
    Add(verdict.troubles, verdict, "queue full: nobody takes messages",
        ofCommands ? kRestart : "start zor_main, or take them: zorctl main listen");
}

}  // namespace

StationStatus LookAtStation(const std::string& directory) {
    StationStatus status;
    status.directory = directory;
    status.isFurnished = HasContents(directory, kConfigFile) && HasContents(directory, kPointSettingFile);
    status.queue = LookAtQueue();
    status.memory = LookAtSharedSegment();
    LookAtProcesses(status);
    status.configurationTrouble = ReadPortCount(directory, status.portCount);
    status.points = LookAtPoints(directory, status.portCount);
    if (status.runtimesAreOurs) status.changed = ChangedSince(StartOf(status.runtimes.front()), directory);
    status.event = ReadLastEvent(directory);
    status.pending = CountPending(directory, status.portCount);
    return status;
}

Verdict Judge(const StationStatus& status) {
    Verdict verdict;
    const auto trouble = [&verdict](const std::string& what, const std::string& remedy) {
        Add(verdict.troubles, verdict, what, remedy);
    };
    JudgeSettings(status, verdict);
    JudgeProcesses(status, verdict);
    JudgeQueue(status.queue, verdict);
    if (status.memory.known && !status.memory.present) trouble("no shared memory", kRestart);
    if (!status.memory.trouble.empty())
        trouble(SegmentName(status.memory) + ": " + status.memory.trouble, "look who made it: ipcs -m");
    trouble(status.event.trouble, kRestart);
    trouble(status.pending.trouble, kRestart);
    if (!IsFull(status.queue)) JudgeForeign(status.queue, verdict.notes, verdict);
    for (const std::string& file : status.changed)
        Add(verdict.notes, verdict, file + " was changed after " + kRuntimeName + " had read it",
            "restart zor_runtime, unless ports and points are what they were");
    for (const std::string& oddity : status.points.findings.oddities)
        Add(verdict.notes, verdict, oddity, "look whether the points are meant so: zorctl export");
    if (verdict.advice.empty()) verdict.advice = "nothing to do: all is well";
    return verdict;
}
