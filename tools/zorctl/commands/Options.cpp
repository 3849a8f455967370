#include "tools/zorctl/commands/Options.h"

#include <cstdlib>
#include <map>
#include <vector>

#include "tools/zorctl/text/HexText.h"

CLI::Validator DecimalIn(double least, double most) {
    const std::string range = CLI::Range(least, most).get_description();
    const auto check = [least, most, range](const std::string& text) -> std::string {
        char* end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        if (!text.empty() && *end == '\0' && value >= least && value <= most) return "";
        return "expected " + range + ": " + text;
    };
    return CLI::Validator(check, range);
}

CLI::Validator HexBytes(std::size_t least, std::size_t most) {
    const auto check = [least, most](std::string& text) -> std::string {
        std::vector<std::uint8_t> bytes;
        if (ParseHex(text, bytes) && bytes.size() >= least && bytes.size() <= most) return "";
        const std::string range =
            least == most ? std::to_string(most) : std::to_string(least) + " to " + std::to_string(most);
        return "expected hexadecimal digits for " + range + " bytes: " + text;
    };
    return CLI::Validator(check, "HEX");
}

void AddSeconds(CLI::App& command, const char* name, double& seconds, const char* help) {
    command.add_option(name, seconds, help)->capture_default_str()->check(DecimalIn(0.0, 1e9));
}

void AddLineForm(CLI::App& command, LineForm& form) {
    const std::map<std::string, ETimes> kTimes{
        {"clock", ETimes::Clock}, {"date", ETimes::Date}, {"delta", ETimes::Delta}, {"none", ETimes::None}};
    auto* json = command.add_flag("--json", form.json, "One JSON object per line");
    command.add_flag("--hex", form.hex, "The frame's bytes instead of what they say; in JSON beside it");
    command.add_option("--time", form.times, "Time stamps: clock, date, delta (since the line before), none")
        ->transform(CLI::CheckedTransformer(kTimes, CLI::ignore_case).description("KIND"))
        ->excludes(json);
}

void AddPlace(CLI::App& command, ELiveTable table, LivePlace& place) {
    if (table == ELiveTable::Gun) {
        command.add_option("PORT", place.index, "Port; 0 and 1 share an entry")
            ->required()
            ->check(CLI::Range(0, kMaxPorts));
        return;
    }
    command.add_option("INDEX", place.index, "Index in the live table")
        ->required()
        ->check(CLI::Range(0, 0xFFFF));
    if (table == ELiveTable::Dd) return;
    command
        .add_option("--port", place.port,
                    "Take INDEX as a point of port 1 and use the same point of this port")
        ->check(CLI::Range(0, kMaxPorts));
}

void AddNamedPlace(CLI::App& command, NamedPlace& place) {
    command.add_option("NAME", place.name, "A point by the name that the point settings give it");
    command.add_option("--port", place.port, "The copy of that point that belongs to this port")
        ->check(CLI::Range(1, kMaxPorts));
    command.add_option("--dir", place.directory, "Directory of the databases")->capture_default_str();
}
