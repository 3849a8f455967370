// zorctl get: live values as they stand; a missing segment stays missing.
#include <cjson/cJSON.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/LivePlace.h"
#include "tools/zorctl/live/BenchShm.h"
#include "tools/zorctl/live/PointNames.h"
#include "tools/zorctl/live/SharedSegment.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

// Runs `read`, which prints one line and tells whether there was an entry to read.
EExit Read(const std::string& what, const std::function<bool(CBenchShm&)>& read) {
    if (!SharedSegmentExists()) return Complain("there is no shared memory yet: nothing to read");
    CBenchShm shm;
    if (read(shm)) return EExit::Done;
    return Complain(shm.WhyNot(what));
}

// What an entry holds, as the names and texts of its parts.
using Parts = std::vector<std::pair<const char*, std::string>>;

bool IsText(const std::string& part) {
    return part == "table" || part == "name" || part == "text" || part == "hex" || part == "equipment";
}

std::string JsonText(const Parts& parts) {
    const std::unique_ptr<cJSON, void (*)(cJSON*)> object(cJSON_CreateObject(), cJSON_Delete);
    for (const auto& [name, text] : parts) {
        // A coefficient can be infinite or no number at all, which JSON has no way to write.
        cJSON* item = IsText(name) ? cJSON_CreateString(AsUtf8(text).c_str())
                      : std::isfinite(std::strtod(text.c_str(), nullptr)) ? cJSON_CreateRaw(text.c_str())
                                                                          : cJSON_CreateNull();
        cJSON_AddItemToObject(object.get(), name, item);
    }
    const std::unique_ptr<char, void (*)(void*)> text(cJSON_PrintUnformatted(object.get()), cJSON_free);
    return text != nullptr ? text.get() : "";
}

CLI::Option* AddJson(CLI::App& command, bool& json) {
    return command.add_flag("--json", json, "As one JSON object");
}

// A place in a table, and how to print what is there.
struct Wanted {
    LivePlace place;
    bool json = false;
};

// Prints the only number of an entry, with what it is of in JSON.
void PrintNumber(bool json, const char* table, const char* key, int index, const char* part,
                 const std::string& number) {
    const Parts parts{{"table", table}, {key, std::to_string(index)}, {part, number}};
    json ? PrintJson(JsonText(parts)) : PrintLine(number);
}

void AddGetSignal(CLI::App& parent, const char* name, ELiveTable table, const char* help, EExit& result) {
    auto wanted = std::make_shared<Wanted>();
    CLI::App* command = parent.add_subcommand(name, help);
    AddPlace(*command, wanted->place, true);
    AddJson(*command, wanted->json);
    command->callback([wanted, name, table, &result] {
        const int index = wanted->place.Index();
        result = Read(name + std::string(" ") + std::to_string(index), [&](CBenchShm& shm) {
            const auto state = shm.State(table, index);
            if (state) PrintNumber(wanted->json, name, "index", index, "state", std::to_string(*state));
            return state.has_value();
        });
    });
}

struct YcWanted : Wanted {
    bool raw = false;
    bool coefficient = false;
    bool text = false;
    bool hex = false;
};

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

Parts YcParts(const YcValue& value) {
    return {{"raw", std::to_string(value.raw)},
            {"coefficient", CoefficientText(value)},
            {"value", value.Text()},
            {"text", AreaText(value.area)}};
}

Parts Joined(Parts parts, const Parts& more) {
    parts.insert(parts.end(), more.begin(), more.end());
    return parts;
}

void PrintYc(const YcWanted& wanted, int index, const YcValue& value) {
    const std::string text = AreaText(value.area);
    const std::string hex = HexText(value.area.data(), value.area.size());
    if (wanted.raw)
        PrintLine(std::to_string(value.raw));
    else if (wanted.coefficient)
        PrintLine(CoefficientText(value));
    else if (wanted.text)
        PrintLine(text);
    else if (wanted.hex)
        PrintLine(hex);
    else if (wanted.json)
        PrintJson(JsonText(Joined(
            Joined({{"table", TableName(ELiveTable::Yc)}, {"index", std::to_string(index)}}, YcParts(value)),
            {{"hex", hex}})));
    else
        PrintLine("raw=" + std::to_string(value.raw) + " coefficient=" + CoefficientText(value) + " text=\"" +
                  text + "\" hex=" + hex);
}

void AddGetYc(CLI::App& parent, EExit& result) {
    auto wanted = std::make_shared<YcWanted>();
    CLI::App* command = parent.add_subcommand("yc", "A telemetry point, all of it or one part");
    AddPlace(*command, wanted->place, true);
    CLI::Option_group* parts = command->add_option_group("parts");
    parts->require_option(0, 1);
    parts->add_flag("--raw", wanted->raw, "The raw value");
    parts->add_flag("--coefficient", wanted->coefficient, "What the raw value is times");
    parts->add_flag("--text", wanted->text, "The free-form area as text");
    parts->add_flag("--hex", wanted->hex, "The free-form area as bytes");
    AddJson(*parts, wanted->json)->description("All of it as one JSON object");
    command->callback([wanted, &result] {
        const int index = wanted->place.Index();
        result = Read("yc " + std::to_string(index), [&wanted, index](CBenchShm& shm) {
            const auto value = shm.Yc(index);
            if (value) PrintYc(*wanted, index, *value);
            return value.has_value();
        });
    });
}

void AddGetDd(CLI::App& parent, EExit& result) {
    auto wanted = std::make_shared<Wanted>();
    CLI::App* command = parent.add_subcommand("dd", "An energy counter, in units of 1/10000");
    AddPlace(*command, wanted->place, false);
    AddJson(*command, wanted->json);
    command->callback([wanted, &result] {
        const int index = wanted->place.Index();
        result = Read("dd " + std::to_string(index), [&wanted, index](CBenchShm& shm) {
            const auto value = shm.Dd(index);
            if (value) PrintNumber(wanted->json, "dd", "index", index, "value", std::to_string(*value));
            return value.has_value();
        });
    });
}

void AddGetGun(CLI::App& parent, EExit& result) {
    auto wanted = std::make_shared<Wanted>();
    int& port = wanted->place.port;
    CLI::App* command = parent.add_subcommand("gun", "The gun state of a port");
    AddJson(*command, wanted->json);
    command->add_option("PORT", port, "Port; 0 and 1 share an entry")
        ->required()
        ->check(CLI::Range(0, kMaxPorts));
    command->callback([wanted, &port, &result] {
        result = Read("gun " + std::to_string(port), [&](CBenchShm& shm) {
            const auto state = shm.Gun(port);
            if (state) PrintNumber(wanted->json, "gun", "port", port, "state", std::to_string(*state));
            return state.has_value();
        });
    });
}

void AddGetEquipment(CLI::App& parent, EExit& result) {
    CLI::App* command =
        parent.add_subcommand("equipment", "The equipment number: 16 hexadecimal digits in stored order");
    auto json = std::make_shared<bool>(false);
    AddJson(*command, *json);
    command->callback([json, &result] {
        result = Read("equipment", [&json](CBenchShm& shm) {
            const auto number = shm.EquipmentNumber();
            const std::string text = HexText(number.data(), number.size());
            if (shm.HasEquipment()) *json ? PrintJson(JsonText({{"equipment", text}})) : PrintLine(text);
            return shm.HasEquipment();
        });
    });
}

// Empty where there is no such entry.
Parts PartsOf(CBenchShm& shm, const NamedPoint& point) {
    if (point.table != ELiveTable::Yc) {
        const auto state = shm.State(point.table, point.index);
        return state ? Parts{{"state", std::to_string(*state)}} : Parts{};
    }
    const auto yc = shm.Yc(point.index);
    return yc ? YcParts(*yc) : Parts{};
}

std::string NamedText(const NamedPoint& point, const Parts& parts) {
    std::string line =
        std::string(TableName(point.table)) + ' ' + std::to_string(point.index) + " \"" + point.name + '"';
    for (const auto& [name, text] : parts)
        line += std::string(" ") + name + '=' + (name == std::string("text") ? '"' + text + '"' : text);
    return line;
}

std::string NamedJson(const NamedPoint& point, const Parts& parts) {
    return JsonText(Joined({{"table", TableName(point.table)},
                            {"index", std::to_string(point.index)},
                            {"name", point.name},
                            {"port", std::to_string(point.port)}},
                           parts));
}

EExit GetNamed(const NamedPlace& place, bool json) {
    if (place.name.empty()) {
        Complain("get takes a table, or the name of a point; see --help");
        return EExit::WrongUse;
    }
    NamedPoint point{};
    const std::string trouble = FindPoint(place.directory, place.name, place.port, point);
    if (!trouble.empty()) return Complain(trouble);
    return Read(std::string(TableName(point.table)) + ' ' + std::to_string(point.index),
                [&point, json](CBenchShm& shm) {
                    const Parts parts = PartsOf(shm, point);
                    if (!parts.empty())
                        json ? PrintJson(NamedJson(point, parts)) : PrintLine(NamedText(point, parts));
                    return !parts.empty();
                });
}

}  // namespace

void AddGet(CLI::App& parent, EExit& result) {
    CLI::App* get = parent.add_subcommand("get", "Print a live value; creates nothing");
    get->require_subcommand(0, 1);
    auto place = std::make_shared<NamedPlace>();
    auto json = std::make_shared<bool>(false);
    AddNamedPlace(*get, *place);
    get->add_flag("--json", *json, "A named point as one JSON object");
    get->callback([get, place, json, &result] {
        if (get->get_subcommands().empty()) result = GetNamed(*place, *json);
    });
    AddGetSignal(*get, "yx", ELiveTable::Yx, "A status point", result);
    AddGetSignal(*get, "yx2", ELiveTable::Yx2, "A status point of the second table", result);
    AddGetYc(*get, result);
    AddGetDd(*get, result);
    AddGetGun(*get, result);
    AddGetEquipment(*get, result);
}
