// zorctl status: whether a station works, and what it was last seen doing. Creates and removes nothing.
#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "ipc/Frame.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/station/StationStatus.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/Json.h"

namespace {

// "4711 (zor_runtime)"
std::string ProcessText(std::int32_t id) {
    const std::string name = ProcessName(id);
    return std::to_string(id) + " (" + (name.empty() ? "gone" : name) + ')';
}

std::string ActText(const char* what, const QueueAct& act) {
    if (act.process == 0) return std::string("nothing ") + what + " yet";
    return std::string("last ") + what + ' ' + CDateTime(act.time).FullText() + " by " +
           ProcessText(act.process);
}

// ---- for people: a line per part, without what is not known ---------------------------------------------

std::vector<std::string> QueueLines(const QueueState& queue) {
    if (!queue.present || !queue.trouble.empty()) return {};
    std::string depth = HexKey(kQueueKey) + ", " + std::to_string(queue.messages) + " messages";
    if (queue.directions)
        depth += " (" + std::to_string(queue.directions->toMain) + " to zor_main, " +
                 std::to_string(queue.directions->fromMain) + " from it)";
    depth += ", " + std::to_string(queue.bytes) + " of " + std::to_string(queue.mostBytes) + " bytes";
    return {depth, ActText("sent", queue.sent), ActText("taken", queue.taken)};
}

std::vector<std::string> MemoryLines(const StationStatus& status) {
    const SharedSegmentState& memory = status.memory;
    if (!memory.known) return {"the unit's own; not looked into"};
    if (!memory.present || memory.size == 0) return {};
    std::string attached = std::to_string(memory.attached) + " attached";
    for (const ProcessInfo& process : status.attached)
        attached += (&process == &status.attached.front() ? ": " : ", ") + std::to_string(process.id) + " (" +
                    process.name + ')';
    return {HexKey(memory.key) + ", " + std::to_string(memory.size) + " bytes, version " +
                std::to_string(memory.version) + ", made by " + ProcessText(memory.creator),
            attached};
}

std::vector<std::string> SettingsLines(const StationStatus& status) {
    std::string text;
    if (status.configurationTrouble.empty()) text = std::to_string(status.portCount) + " ports";
    if (status.points.trouble.empty())
        text += (text.empty() ? "" : ", ") + std::to_string(status.points.yx) + " status points, " +
                std::to_string(status.points.yc) + " telemetry points";
    if (text.empty()) return {};
    return {text};
}

std::vector<std::string> HistoryLines(const PendingRows& pending) {
    if (!pending.trouble.empty()) return {};
    std::string text = pending.newest.empty() ? "no record" : "last record " + pending.newest;
    for (const PendingRows::Port& port : pending.ports)
        text += (&port == &pending.ports.front() ? "; pending: port " : ", port ") +
                std::to_string(port.port) + ": " + std::to_string(port.rows);
    return {text};
}

void PrintPart(const char* name, const std::vector<std::string>& lines) {
    constexpr std::size_t kHeadWidth = 10;
    for (const std::string& line : lines) {
        std::string head = &line == &lines.front() ? name : "";
        head.resize(kHeadWidth, ' ');
        PrintLine(head + line);
    }
}

void PrintText(const StationStatus& status, const Verdict& verdict) {
    std::vector<std::string> processes;
    for (const std::int32_t process : status.runtimes)
        processes.push_back("running, " + ProcessText(process));
    PrintPart("process", processes);
    PrintPart("queue", QueueLines(status.queue));
    PrintPart("memory", MemoryLines(status));
    PrintPart("settings", SettingsLines(status));
    if (!status.event.id.empty())
        PrintPart("event",
                  {"last " + status.event.time + ' ' + status.event.text + ", id " + status.event.id});
    PrintPart("history", HistoryLines(status.pending));
    PrintPart("trouble", verdict.troubles);
    PrintPart("note", verdict.notes);
    PrintPart("advice", {verdict.advice});
}

// ---- for programs: null where nothing is known ----------------------------------------------------------

Json ActJson(const QueueAct& act) {
    if (act.process == 0) return nullptr;
    return {{"pid", act.process}, {"time", CDateTime(act.time).FullText()}};
}

Json QueueJson(const QueueState& queue) {
    if (!queue.present || !queue.trouble.empty()) return nullptr;
    Json json{{"messages", queue.messages}};
    if (queue.directions) {
        json["toMain"] = queue.directions->toMain;
        json["fromMain"] = queue.directions->fromMain;
    }
    json["bytes"] = queue.bytes;
    json["maxBytes"] = queue.mostBytes;
    json["lastSent"] = ActJson(queue.sent);
    json["lastTaken"] = ActJson(queue.taken);
    return json;
}

Json MemoryJson(const StationStatus& status) {
    const SharedSegmentState& memory = status.memory;
    if (!memory.known || !memory.present || memory.size == 0) return nullptr;
    Json processes = Json::array();
    for (const ProcessInfo& process : status.attached)
        processes.push_back({{"pid", process.id}, {"name", process.name}});
    return {{"size", memory.size},
            {"version", memory.version},
            {"creator", memory.creator},
            {"attached", memory.attached},
            {"processes", processes}};
}

Json StatusJson(const StationStatus& status, const Verdict& verdict) {
    Json json{
        {"processes", status.runtimes}, {"queue", QueueJson(status.queue)}, {"memory", MemoryJson(status)}};
    if (status.configurationTrouble.empty()) json["ports"] = status.portCount;
    Json& event = json["lastEvent"];
    if (!status.event.id.empty())
        event = {{"id", JsonNumber(status.event.id)},
                 {"timestamp", status.event.time},
                 {"event", status.event.text}};
    Json& pending = json["pending"];
    if (status.pending.trouble.empty())
        for (const PendingRows::Port& port : status.pending.ports)
            pending[std::to_string(port.port)] = port.rows;
    json["troubles"] = verdict.troubles;
    json["notes"] = verdict.notes;
    json["advice"] = verdict.advice;
    return json;
}

struct StatusOptions {
    std::string directory = kAppDirectory;
    bool json = false;
};

EExit Status(const StatusOptions& options) {
    const StationStatus status = LookAtStation(options.directory);
    const Verdict verdict = Judge(status);
    if (options.json)
        PrintJson(StatusJson(status, verdict));
    else
        PrintText(status, verdict);
    return verdict.troubles.empty() ? EExit::Done : EExit::Failed;
}

}  // namespace

void AddStatus(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<StatusOptions>();
    CLI::App* command = parent.add_subcommand(
        "status", "Tell whether a station works; exit code 1 when anything is missing. Touches nothing");
    command->add_option("DIR", options->directory, "Directory of the databases")->capture_default_str();
    command->add_flag("--json", options->json, "As one JSON object");
    command->callback([options, &result] { result = Status(*options); });
}
