// zorctl get: live values as they stand; a missing segment stays missing.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "System/Numbers.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/Options.h"
#include "tools/zorctl/live/PointNames.h"
#include "tools/zorctl/live/SharedSegment.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/Json.h"

namespace {

// Runs `read`, which prints one line and tells whether there was an entry to read.
template <typename Read>
EExit ReadFrom(const std::string& what, Read read) {
    if (!SharedSegmentExists()) return Complain("there is no shared memory yet: nothing to read");
    CBenchShm shm;
    return read(shm) ? EExit::Done : Complain(shm.WhyNot(what));
}

void Print(bool asJson, const Json& json, const std::string& text) {
    asJson ? PrintJson(json) : PrintLine(text);
}

void AddGetNumber(CLI::App& parent, const LiveKind& kind, EExit& result) {
    struct Options {
        LivePlace place;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = parent.add_subcommand(TableName(kind.table), kind.help);
    AddPlace(*command, kind.table, options->place);
    command->add_flag("--json", options->json, "As one JSON object");
    command->callback([options, &kind, &result] {
        const int index = options->place.Index();
        result = ReadFrom(EntryName(kind.table, index), [&](CBenchShm& shm) {
            const auto value = shm.Get(kind.table, index);
            if (!value) return false;
            const char* key = kind.table == ELiveTable::Gun ? "port" : "index";
            Print(options->json, {{"table", TableName(kind.table)}, {key, index}, {kind.value, *value}},
                  std::to_string(*value));
            return true;
        });
    });
}

// The area up to its first NUL, anything that is no plain character as a point.
std::string AreaText(const LiveArea& area) {
    std::string text(area.begin(), std::find(area.begin(), area.end(), 0));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '.');
    return text;
}

std::string CoefficientText(const YcValue& value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value.coefficient));
    return text;
}

std::string AreaHex(const YcValue& value) {
    return HexText(value.area.data(), value.area.size());
}

// What an entry holds, added to what it is; a coefficient that is no number is null.
Json YcJson(Json json, const YcValue& value) {
    json["raw"] = value.raw;
    json["coefficient"] = JsonNumber(CoefficientText(value));
    json["value"] = JsonNumber(value.Text());
    json["text"] = AreaText(value.area);
    return json;
}

void PrintYc(const std::string& part, int index, const YcValue& value) {
    Json json = YcJson({{"table", TableName(ELiveTable::Yc)}, {"index", index}}, value);
    json["hex"] = AreaHex(value);
    const std::string raw = std::to_string(value.raw);
    Print(part == "--json", json,
          part == "--raw"           ? raw
          : part == "--coefficient" ? CoefficientText(value)
          : part == "--text"        ? AreaText(value.area)
          : part == "--hex"         ? AreaHex(value)
                                    : "raw=" + raw + " coefficient=" + CoefficientText(value) + " text=\"" +
                                  AreaText(value.area) + "\" hex=" + AreaHex(value));
}

void AddGetYc(CLI::App& parent, EExit& result) {
    auto place = std::make_shared<LivePlace>();
    CLI::App* command = parent.add_subcommand("yc", "A telemetry point, all of it or one part");
    AddPlace(*command, ELiveTable::Yc, *place);
    CLI::Option_group* parts = command->add_option_group("parts");
    parts->require_option(0, 1);
    parts->add_flag("--raw", "The raw value");
    parts->add_flag("--coefficient", "What the raw value is times");
    parts->add_flag("--text", "The free-form area as text");
    parts->add_flag("--hex", "The free-form area as bytes");
    parts->add_flag("--json", "All of it as one JSON object");
    command->callback([place, parts, &result] {
        const int index = place->Index();
        result = ReadFrom(EntryName(ELiveTable::Yc, index), [&](CBenchShm& shm) {
            std::string part;
            for (const CLI::Option* option : parts->get_options())
                if (option->count() > 0) part = option->get_name();
            const auto value = shm.GetYc(index);
            if (value) PrintYc(part, index, *value);
            return value.has_value();
        });
    });
}

void AddGetEquipment(CLI::App& parent, EExit& result) {
    CLI::App* command =
        parent.add_subcommand("equipment", "The equipment number: 16 hexadecimal digits in stored order");
    const auto* json = command->add_flag("--json", "As one JSON object");
    command->callback([json, &result] {
        result = ReadFrom("equipment", [json](CBenchShm& shm) {
            const auto number = shm.Get(ELiveTable::Equipment, 0);
            if (!number) return false;
            std::uint8_t bytes[kEquipmentSize];
            PutLe(bytes, sizeof bytes, *number);
            const std::string text = HexText(bytes, sizeof bytes);
            Print(json->count() > 0, {{"equipment", text}}, text);
            return true;
        });
    });
}

// Prints what a named point holds; false where there is no such entry.
bool PrintNamed(CBenchShm& shm, const NamedPoint& point, bool asJson) {
    Json json{{"table", TableName(point.table)},
              {"index", point.index},
              {"name", point.name},
              {"port", point.port}};
    std::string text = EntryName(point.table, point.index) + " \"" + point.name + '"';
    const auto number = shm.Get(point.table, point.index);
    if (!number) return false;
    if (point.table == ELiveTable::Yc) {
        const YcValue value = *shm.GetYc(point.index);
        json = YcJson(json, value);
        text += " raw=" + std::to_string(value.raw) + " coefficient=" + CoefficientText(value) +
                " value=" + value.Text() + " text=\"" + AreaText(value.area) + '"';
    } else {
        json["state"] = *number;
        text += " state=" + std::to_string(*number);
    }
    Print(asJson, json, text);
    return true;
}

EExit GetNamed(const NamedPlace& place, bool json) {
    if (place.name.empty()) {
        Complain("get takes a table, or the name of a point; see --help");
        return EExit::WrongUse;
    }
    NamedPoint point{};
    const std::string trouble = FindPoint(place.directory, place.name, place.port, point);
    if (!trouble.empty()) return Complain(trouble);
    return ReadFrom(EntryName(point.table, point.index),
                    [&](CBenchShm& shm) { return PrintNamed(shm, point, json); });
}

}  // namespace

void AddGet(CLI::App& parent, EExit& result) {
    CLI::App* get = parent.add_subcommand("get", "Print a live value; creates nothing");
    get->require_subcommand(0, 1);
    auto place = std::make_shared<NamedPlace>();
    AddNamedPlace(*get, *place);
    const auto* json = get->add_flag("--json", "A named point as one JSON object");
    get->callback([get, place, json, &result] {
        if (get->get_subcommands().empty()) result = GetNamed(*place, json->count() > 0);
    });
    for (const LiveKind& kind : kLiveKinds) AddGetNumber(*get, kind, result);
    AddGetYc(*get, result);
    AddGetEquipment(*get, result);
}
