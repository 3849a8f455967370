// zorctl init: the databases that a station has before the process starts.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <list>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "System/AppFiles.h"
#include "System/Numbers.h"
#include "points/PointSettings.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/live/PointNames.h"
#include "tools/zorctl/settings/PointCsv.h"
#include "tools/zorctl/settings/StationFiles.h"
#include "tools/zorctl/settings/StationRows.h"
#include "tools/zorctl/station/Processes.h"
#include "tools/zorctl/text/PlainText.h"

namespace fs = std::filesystem;

namespace {

struct InitOptions {
    std::string directory;
    int ports = 1;
    std::string yxFile;
    std::string ycFile;
    bool force = false;
};

std::string JudgeYx(const PointRow& row, int ports) {
    YxPointRecord record{};
    record.pointNumber = ParseInt32(row[kYxPointNumber].c_str());
    record.source = ParseInt32(row[kYxSource].c_str());
    std::list<YxPointRecord> records;  // the row's own, then its copies
    AppendYxPoint(records, record, ports);
    for (const YxPointRecord& one : records)
        if (const std::string why = NoPlace(one.source, one.pointNumber); !why.empty())
            return (one.port > 1 ? "copy for port " + std::to_string(one.port) + ": " : "") + why +
                   "; no event of it, or of a point behind it, would be recorded";
    return "";
}

std::string JudgeYc(const PointRow& row) {
    const std::string why = NoPlace(kSourceYx, ParseInt32(row[kYcPointNumber].c_str()));
    return why.empty() ? "" : why + "; its value would stay 0";
}

// Replaces `rows` by the points of `path`. Names every fault of the file, up to a limit.
bool ReadPoints(const PointTable& table, const std::string& path, const PointJudge& judge,
                std::vector<PointRow>& rows) {
    constexpr std::size_t kMostTroubles = 20;
    std::string text;
    if (const std::string trouble = ReadWholeFile(path, text); !trouble.empty()) {
        Complain(trouble);
        return false;
    }
    rows.clear();
    const std::vector<TextTrouble> troubles = ReadPointCsv(table, text, rows, judge);
    for (std::size_t i = 0; i < std::min(troubles.size(), kMostTroubles); ++i)
        Complain(path + ':' + std::to_string(troubles[i].at.line) + ':' +
                 std::to_string(troubles[i].at.column) + ": " + troubles[i].what);
    if (troubles.size() > kMostTroubles)
        Complain(path + ": and " + std::to_string(troubles.size() - kMostTroubles) + " faults more");
    return troubles.empty();
}

// An empty file is what a process makes that was started without its databases.
bool IsTaken(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    return fs::exists(status) && !(fs::is_regular_file(status) && fs::file_size(path, error) == 0);
}

// The processes that have read the files in `directory`: each does so when it starts, and not again.
std::vector<ProcessInfo> ReadersOf(const std::string& directory) {
    std::vector<ProcessInfo> readers;
    std::error_code error;
    if (!fs::equivalent(directory, kAppDirectory, error)) return readers;
    for (const ProcessInfo& process : LivingProcesses())
        if (process.isOurs && process.name == kRuntimeName) readers.push_back(process);
    return readers;
}

EExit Init(const InitOptions& options) {
    std::vector<PointRow> yx = StationYxRows();
    std::vector<PointRow> yc = StationYcRows(options.ports);
    const auto judgeYx = [&options](const PointRow& row) { return JudgeYx(row, options.ports); };
    bool good = options.yxFile.empty() || ReadPoints(YxTable(), options.yxFile, judgeYx, yx);
    good = (options.ycFile.empty() || ReadPoints(YcTable(), options.ycFile, JudgeYc, yc)) && good;
    if (!good) return EExit::Failed;
    const fs::path directory(options.directory);
    const std::string config = (directory / kConfigFile).string();
    const std::string points = (directory / kPointSettingFile).string();
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) return Complain(options.directory + ": " + error.message());
    for (const std::string& path : {config, points})
        if (!options.force && IsTaken(path)) return Complain(path + " is there already; --force replaces it");

    const std::vector<ProcessInfo> readers = ReadersOf(options.directory);
    for (const std::string& trouble :
         {WriteConfiguration(config, options.ports), WritePointSettings(points, yx, yc)})
        if (!trouble.empty()) return Complain(trouble);
    PrintLine(config);
    PrintLine(points);
    for (const ProcessInfo& reader : readers)
        Complain(reader.name + ' ' + std::to_string(reader.id) +
                 " works with what was there when it started: restart it");
    return EExit::Done;
}

}  // namespace

void AddInit(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<InitOptions>();
    CLI::App* command = parent.add_subcommand(
        "init", "Write the configuration and point-settings databases of a station into DIR");
    command->add_option("DIR", options->directory, "Directory, made where it is missing")->required();
    command->add_option("--ports", options->ports, "Number of charging ports")
        ->required()
        ->check(CLI::Range(1, kMaxPorts));
    command->add_option("--yx", options->yxFile, "CSV file of the status points; a plausible set without it");
    command->add_option("--yc", options->ycFile, "CSV file of the telemetry points; likewise");
    command->add_flag("--force", options->force, "Replace files that are there");
    command->footer(
        "The files begin with a line of column names, in any order; zorctl export shows them all.");
    command->callback([options, &result] { result = Init(*options); });
}
