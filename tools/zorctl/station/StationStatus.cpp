#include "tools/zorctl/station/StationStatus.h"

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

PointCounts CountPoints(const std::string& directory) {
    PointCounts counts;
    counts.trouble = Query(directory, kPointSettingFile, kSelectYxDc,
                           [&counts](const CSqliteTable& table) { counts.yx = table.Rows(); });
    if (counts.trouble.empty())
        counts.trouble = Query(directory, kPointSettingFile, kSelectYcDc,
                               [&counts](const CSqliteTable& table) { counts.yc = table.Rows(); });
    return counts;
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

}  // namespace

StationStatus LookAtStation(const std::string& directory) {
    StationStatus status;
    status.queue = LookAtQueue();
    status.memory = LookAtSharedSegment();
    LookAtProcesses(status);
    status.configurationTrouble = ReadPortCount(directory, status.portCount);
    status.points = CountPoints(directory);
    status.event = ReadLastEvent(directory);
    status.pending = CountPending(directory, status.portCount);
    return status;
}

std::vector<std::string> Troubles(const StationStatus& status) {
    std::vector<std::string> troubles;
    const auto add = [&troubles](const std::string& trouble) {
        if (!trouble.empty()) troubles.push_back(trouble);
    };
    if (status.runtimes.empty()) add(std::string(kRuntimeName) + " is not running");
    if (status.runtimes.size() > 1 && status.runtimesAreOurs)
        add(std::string(kRuntimeName) + " is running more than once");
    for (const IdleProcess& idle : status.idle)
        add(std::string(kRuntimeName) + ' ' + std::to_string(idle.process) + ' ' + idle.why);
    if (!status.queue.present) add("no queue");
    if (const std::time_t waiting = CommandsWaitFor(status.queue); waiting > 0)
        add("commands have waited for " + std::to_string(waiting) + " s: nobody takes them");
    if (!status.queue.trouble.empty()) add("queue " + HexKey(kQueueKey) + ": " + status.queue.trouble);
    if (IsFull(status.queue)) add("queue full: nobody takes messages");
    if (status.memory.known && !status.memory.present) add("no shared memory");
    if (!status.memory.trouble.empty()) add(SegmentName(status.memory) + ": " + status.memory.trouble);
    add(status.configurationTrouble);
    add(status.points.trouble);
    add(status.event.trouble);
    add(status.pending.trouble);
    return troubles;
}
