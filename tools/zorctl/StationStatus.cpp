#include "tools/zorctl/StationStatus.h"

#include <algorithm>

#include "System/AppFiles.h"
#include "System/Numbers.h"
#include "System/Sqlite.h"
#include "events/EventDatabase.h"
#include "history/HistoryDatabase.h"
#include "points/PointSettings.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/StationReading.h"

namespace {

constexpr char kRuntimeName[] = "zor_runtime";

std::string TextOf(const CSqliteTable& table, int row, int column) {
    const char* cell = table.Cell(row, column);
    return cell != nullptr ? cell : "";
}

void LookAtProcesses(StationStatus& status) {
    for (const ProcessInfo& process : LivingProcesses()) {
        if (process.name == kRuntimeName) status.runtimes.push_back(process.id);
        if (status.memory.present && HasAttached(process.id, status.memory.key, status.memory.id))
            status.attached.push_back(process);
    }
}

// Runs `select` on `file` and hands the result to `take`. Returns what went wrong.
template <typename Take>
std::string Query(const std::string& directory, const char* file, const char* select, Take take) {
    CSqliteDb database;
    if (std::string trouble = OpenToRead(database, directory, file); !trouble.empty()) return trouble;
    const CSqliteTable table(database, select);
    if (!table.Ok()) return file + (": " + WhyNot(table));
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
    constexpr int kIdColumn = 0;
    constexpr int kTextColumn = 1;
    constexpr int kTimeColumn = kSoeColumns - 1;
    LastEvent event;
    event.trouble = Query(directory, kEventFile, kSelectLastSoe, [&event](const CSqliteTable& table) {
        event.id = TextOf(table, 0, kIdColumn);
        event.text = TextOf(table, 0, kTextColumn);
        event.time = TextOf(table, 0, kTimeColumn);
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
        ReadNewestFirst(database, "tagYC", [&pending](const CSqliteTable& page, int row) {
            if (pending.newest.empty()) pending.newest = TextOf(page, row, kHistoryTimestamp);
            if (!IsPending(ParseInt32(page.Cell(row, kHistorySendCount)))) return true;
            const int port = ParseInt32(page.Cell(row, kHistoryPortNo));
            for (PendingRows::Port& of : pending.ports) of.rows += of.port == port ? 1 : 0;
            return true;
        });
    if (!trouble.empty()) pending.trouble = kHistoryFile + (": " + trouble);
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
    if (status.runtimes.size() > 1) add(std::string(kRuntimeName) + " is running more than once");
    add(status.queue.present ? status.queue.trouble : "no queue");
    if (status.memory.known) add(status.memory.present ? status.memory.trouble : "no shared memory");
    add(status.configurationTrouble);
    add(status.points.trouble);
    add(status.event.trouble);
    add(status.pending.trouble);
    return troubles;
}
