// zorctl export: the point settings as the CSV that init takes; reads only.
#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "System/AppFiles.h"
#include "System/Sqlite.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/settings/PointCsv.h"
#include "tools/zorctl/settings/StationReading.h"

namespace {

// An option without a file, or "-" for one.
bool IsStandardOutput(const std::string& path) {
    return path.empty() || path == "-";
}

struct ExportOptions {
    std::string directory;
    std::string yxFile;
    std::string ycFile;
};

EExit WriteOut(const std::string& path, const std::string& text) {
    if (IsStandardOutput(path)) {
        PrintData(text, EEscape::Lines);
        return EExit::Done;
    }
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return Complain(path + ": " + std::strerror(errno));
    bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    written = std::fclose(file) == 0 && written;
    return written ? EExit::Done : Complain(path + ": " + std::strerror(errno));
}

EExit ExportTable(CSqliteDb& database, const ExportOptions& options, const PointTable& table,
                  const std::string& path) {
    const std::string file = PathOf(options.directory, kPointSettingFile);
    const CSqliteTable settings(database, table.select);
    if (!settings.Ok()) return Complain(file + ": " + WhyNot(settings));
    if (settings.Rows() > 0 && settings.Columns() < static_cast<int>(table.width))
        return Complain(file + ": table of " + table.name + " has " + std::to_string(settings.Columns()) +
                        " columns, " + std::to_string(table.width) + " expected");
    return WriteOut(path, WritePointCsv(table, settings));
}

EExit Export(const ExportOptions& options, bool yx, bool yc) {
    if (!yx && !yc) {
        Complain("name a table: --yx, --yc or both");
        return EExit::WrongUse;
    }
    if (yx && yc && IsStandardOutput(options.yxFile) && IsStandardOutput(options.ycFile)) {
        Complain("standard output takes one table: name a file for the other");
        return EExit::WrongUse;
    }
    CSqliteDb database;
    if (const std::string trouble = OpenToRead(database, options.directory, kPointSettingFile);
        !trouble.empty())
        return Complain(trouble);
    EExit result = yx ? ExportTable(database, options, YxTable(), options.yxFile) : EExit::Done;
    if (yc && result == EExit::Done) result = ExportTable(database, options, YcTable(), options.ycFile);
    return result;
}

}  // namespace

void AddExport(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* command = parent.add_subcommand("export", "Write the point settings in DIR as CSV");
    command->add_option("DIR", options->directory, "Directory of the databases")->required();
    const auto* yx =
        command->add_option("--yx", options->yxFile, "The status points, to FILE or standard output")
            ->expected(0, 1)
            ->type_name("[FILE]");
    const auto* yc =
        command->add_option("--yc", options->ycFile, "The telemetry points, to FILE or standard output")
            ->expected(0, 1)
            ->type_name("[FILE]");
    command->callback(
        [options, yx, yc, &result] { result = Export(*options, yx->count() > 0, yc->count() > 0); });
}
