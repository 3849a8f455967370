// zorctl get: live values as they stand; a missing segment stays missing.
#include <cjson/cJSON.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/zorctl/BenchShm.h"
#include "tools/zorctl/Commands.h"
#include "tools/zorctl/HexText.h"
#include "tools/zorctl/LivePlace.h"
#include "tools/zorctl/PlainText.h"
#include "tools/zorctl/PointNames.h"
#include "tools/zorctl/SharedSegment.h"

namespace {

// Runs `read`, which prints one line and tells whether there was an entry to read.
EExit Read(const std::string& what, const std::function<bool(CBenchShm&)>& read) {
    if (!SharedSegmentExists()) return Complain("there is no shared memory yet: nothing to read");
    CBenchShm shm;
    if (read(shm)) return EExit::Done;
    return Complain("%s: the shared memory has no such entry", what.c_str());
}

void AddGetSignal(CLI::App& parent, const char* name, ELiveTable table, const char* help, EExit& result) {
    auto place = std::make_shared<LivePlace>();
    CLI::App* command = parent.add_subcommand(name, help);
    AddPlace(*command, *place, true);
    command->callback([place, name, table, &result] {
        const int index = place->Index();
        result = Read(name + std::string(" ") + std::to_string(index), [table, index](CBenchShm& shm) {
            const auto state = shm.State(table, index);
            if (state) std::printf("%d\n", *state);
            return state.has_value();
        });
    });
}

struct YcWanted {
    LivePlace place;
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

void PrintYc(const YcWanted& wanted, const YcValue& value) {
    const std::string text = AreaText(value.area);
    const std::string hex = HexText(value.area.data(), value.area.size());
    if (wanted.raw)
        std::printf("%" PRIu32 "\n", value.raw);
    else if (wanted.coefficient)
        std::printf("%.9g\n", static_cast<double>(value.coefficient));
    else if (wanted.text)
        std::printf("%s\n", text.c_str());
    else if (wanted.hex)
        std::printf("%s\n", hex.c_str());
    else
        std::printf("raw=%" PRIu32 " coefficient=%.9g text=\"%s\" hex=%s\n", value.raw,
                    static_cast<double>(value.coefficient), text.c_str(), hex.c_str());
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
    command->callback([wanted, &result] {
        const int index = wanted->place.Index();
        result = Read("yc " + std::to_string(index), [&wanted, index](CBenchShm& shm) {
            const auto value = shm.Yc(index);
            if (value) PrintYc(*wanted, *value);
            return value.has_value();
        });
    });
}

void AddGetDd(CLI::App& parent, EExit& result) {
    auto place = std::make_shared<LivePlace>();
    CLI::App* command = parent.add_subcommand("dd", "An energy counter, in units of 1/10000");
    AddPlace(*command, *place, false);
    command->callback([place, &result] {
        const int index = place->Index();
        result = Read("dd " + std::to_string(index), [index](CBenchShm& shm) {
            const auto value = shm.Dd(index);
            if (value) std::printf("%" PRIu64 "\n", *value);
            return value.has_value();
        });
    });
}

void AddGetGun(CLI::App& parent, EExit& result) {
    auto port = std::make_shared<int>(0);
    CLI::App* command = parent.add_subcommand("gun", "The gun state of a port");
    command->add_option("PORT", *port, "Port; 0 and 1 share an entry")
        ->required()
        ->check(CLI::Range(0, kMaxPorts));
    command->callback([port, &result] {
        result = Read("gun " + std::to_string(*port), [&port](CBenchShm& shm) {
            const auto state = shm.Gun(*port);
            if (state) std::printf("%d\n", *state);
            return state.has_value();
        });
    });
}

void AddGetEquipment(CLI::App& parent, EExit& result) {
    CLI::App* command =
        parent.add_subcommand("equipment", "The equipment number: 16 hexadecimal digits in stored order");
    command->callback([&result] {
        result = Read("equipment", [](CBenchShm& shm) {
            const auto number = shm.EquipmentNumber();
            if (shm.HasEquipment()) std::printf("%s\n", HexText(number.data(), number.size()).c_str());
            return shm.HasEquipment();
        });
    });
}

// What a point holds, as the names and texts of its parts.
using Parts = std::vector<std::pair<const char*, std::string>>;

std::string RealText(float value, const char* format) {
    char text[32];
    std::snprintf(text, sizeof text, format, static_cast<double>(value));
    return text;
}

// Empty where there is no such entry.
Parts PartsOf(CBenchShm& shm, const NamedPoint& point) {
    if (point.table != ELiveTable::Yc) {
        const auto state = shm.State(point.table, point.index);
        return state ? Parts{{"state", std::to_string(*state)}} : Parts{};
    }
    const auto yc = shm.Yc(point.index);
    if (!yc) return {};
    return {{"raw", std::to_string(yc->raw)},
            {"coefficient", RealText(yc->coefficient, "%.9g")},
            {"value", RealText(static_cast<float>(yc->raw) * yc->coefficient, "%.7g")},
            {"text", AreaText(yc->area)}};
}

std::string NamedText(const NamedPoint& point, const Parts& parts) {
    std::string line = std::string(TableName(point.table)) + ' ' + std::to_string(point.index) + " \"" +
                       Printable(point.name) + '"';
    for (const auto& [name, text] : parts)
        line += std::string(" ") + name + '=' + (name == std::string("text") ? '"' + text + '"' : text);
    return line;
}

std::string NamedJson(const NamedPoint& point, const Parts& parts) {
    const std::unique_ptr<cJSON, void (*)(cJSON*)> owner(cJSON_CreateObject(), cJSON_Delete);
    cJSON* object = owner.get();
    cJSON_AddStringToObject(object, "table", TableName(point.table));
    cJSON_AddNumberToObject(object, "index", point.index);
    cJSON_AddStringToObject(object, "name", AsUtf8(point.name).c_str());
    cJSON_AddNumberToObject(object, "port", point.port);
    for (const auto& [name, text] : parts) {
        const bool isText = name == std::string("text");
        // A coefficient can be infinite or no number at all, which JSON has no way to write.
        cJSON* item = isText                                              ? cJSON_CreateString(text.c_str())
                      : std::isfinite(std::strtod(text.c_str(), nullptr)) ? cJSON_CreateRaw(text.c_str())
                                                                          : cJSON_CreateNull();
        cJSON_AddItemToObject(object, name, item);
    }
    const std::unique_ptr<char, void (*)(void*)> text(cJSON_PrintUnformatted(object), cJSON_free);
    return text != nullptr ? text.get() : "";
}

EExit GetNamed(const NamedPlace& place, bool json) {
    if (place.name.empty()) {
        Complain("get takes a table, or the name of a point; see --help");
        return EExit::WrongUse;
    }
    NamedPoint point{};
    const std::string trouble = FindPoint(place.directory, place.name, place.port, point);
    if (!trouble.empty()) return Complain("%s", trouble.c_str());
    return Read(std::string(TableName(point.table)) + ' ' + std::to_string(point.index),
                [&point, json](CBenchShm& shm) {
                    const Parts parts = PartsOf(shm, point);
                    if (!parts.empty())
                        std::puts((json ? NamedJson(point, parts) : NamedText(point, parts)).c_str());
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
