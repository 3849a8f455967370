// zorctl set: live values, as the acquisition side writes them.
#include <CLI/CLI.hpp>
#include <cfloat>
#include <charconv>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/LivePlace.h"
#include "tools/zorctl/live/BenchShm.h"
#include "tools/zorctl/live/PointNames.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/NumberIn.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

// Runs `write`, which tells whether there is the entry `what`.
template <typename Write>
EExit WriteTo(const std::string& what, Write write) {
    CBenchShm shm;
    return write(shm) ? EExit::Done : Complain(shm.WhyNot(what));
}

std::string EntryName(const char* table, int index) {
    return std::string(table) + ' ' + std::to_string(index);
}

CLI::Option* AddByte(CLI::App& command, const char* name, int& value, const char* help) {
    return command.add_option(name, value, help)->required()->check(CLI::Range(0, 255));
}

// "on" and "off" in any case as the state that they mean, every other text as it is.
std::string StateDigits(const std::string& text) {
    const std::string word = LowerCase(text);
    return word == "on" ? "1" : word == "off" ? "0" : text;
}

// A hexadecimal text of `least` to `most` bytes.
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

void AddSetSignal(CLI::App& parent, const char* name, ELiveTable table, const char* help, EExit& result) {
    struct Options {
        LivePlace place;
        int state = 0;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = parent.add_subcommand(name, help);
    AddPlace(*command, options->place, true);
    AddByte(*command, "STATE", options->state, "on, off or a number")->transform(StateDigits, "");
    command->callback([options, name, table, &result] {
        const int index = options->place.Index();
        const auto state = static_cast<std::uint8_t>(options->state);
        result = WriteTo(EntryName(name, index),
                         [=](CBenchShm& shm) { return shm.SetState(table, index, state); });
    });
}

struct YcOptions {
    LivePlace place;
    std::int64_t raw = 0;
    float coefficient = 1.0F;
    std::string text;
    std::string hex;
};

LiveArea AreaFrom(const YcOptions& options) {
    std::vector<std::uint8_t> bytes(options.text.begin(), options.text.end());
    ParseHex(options.hex, bytes);
    LiveArea area{};
    std::copy_n(bytes.begin(), std::min(bytes.size(), area.size()), area.begin());
    return area;
}

void AddSetYc(CLI::App& parent, EExit& result) {
    auto options = std::make_shared<YcOptions>();
    CLI::App* command =
        parent.add_subcommand("yc", "A telemetry point: raw value, coefficient, free-form area");
    AddPlace(*command, options->place, true);
    CLI::Option_group* values = command->add_option_group("values");
    values->require_option(1, 0);
    const auto* raw = values->add_option("--raw", options->raw, "Raw value; a negative one wraps to 32 bits")
                          ->check(CLI::Range(std::int64_t{INT32_MIN}, std::int64_t{UINT32_MAX}));
    const auto* coefficient =
        values->add_option("--coefficient", options->coefficient, "What the raw value is times")
            ->check(NumberIn(-FLT_MAX, FLT_MAX));
    auto* text = values->add_option("--text", options->text, "Text of the area, the rest of it zeros")
                     ->check([](const std::string& given) {
                         return given.size() <= kEntryAreaSize
                                    ? ""
                                    : "longer than the area of " + std::to_string(kEntryAreaSize) + " bytes";
                     });
    const auto* hex = values->add_option("--hex", options->hex, "Bytes of the area, the rest of it zeros")
                          ->check(HexBytes(0, kEntryAreaSize))
                          ->excludes(text);
    command->callback([options, raw, coefficient, text, hex, &result] {
        YcChange change;
        if (raw->count() > 0) change.raw = static_cast<std::uint32_t>(options->raw);
        if (coefficient->count() > 0) change.coefficient = options->coefficient;
        if (text->count() + hex->count() > 0) change.area = AreaFrom(*options);
        const int index = options->place.Index();
        result = WriteTo(EntryName("yc", index),
                         [&change, index](CBenchShm& shm) { return shm.SetYc(index, change); });
    });
}

void AddSetDd(CLI::App& parent, EExit& result) {
    struct Options {
        LivePlace place;
        std::uint64_t value = 0;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = parent.add_subcommand("dd", "An energy counter");
    AddPlace(*command, options->place, false);
    command->add_option("VALUE", options->value, "In units of 1/10000")
        ->required()
        ->check(
            // The library takes -1 for the largest of them.
            [](const std::string& text) { return text[0] == '-' ? "not from 0 on: " + text : ""; }, "");
    command->callback([options, &result] {
        const int index = options->place.Index();
        result = WriteTo(EntryName("dd", index),
                         [&options, index](CBenchShm& shm) { return shm.SetDd(index, options->value); });
    });
}

void AddSetGun(CLI::App& parent, EExit& result) {
    struct Options {
        int port = 0;
        int state = 0;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = parent.add_subcommand("gun", "The gun state of a port");
    command->add_option("PORT", options->port, "Port; 0 and 1 share an entry")
        ->required()
        ->check(CLI::Range(0, kMaxPorts));
    AddByte(*command, "STATE", options->state, "Gun state");
    command->callback([options, &result] {
        const auto state = static_cast<std::uint8_t>(options->state);
        result = WriteTo(EntryName("gun", options->port),
                         [&options, state](CBenchShm& shm) { return shm.SetGun(options->port, state); });
    });
}

void AddSetEquipment(CLI::App& parent, EExit& result) {
    auto digits = std::make_shared<std::string>();
    CLI::App* command = parent.add_subcommand("equipment", "The station's equipment number");
    command->add_option("NUMBER", *digits, "16 hexadecimal digits, in the order in which they are stored")
        ->required()
        ->check(HexBytes(kEquipmentSize, kEquipmentSize));
    command->callback([digits, &result] {
        std::vector<std::uint8_t> bytes;
        ParseHex(*digits, bytes);
        std::array<std::uint8_t, kEquipmentSize> number{};
        std::copy_n(bytes.begin(), number.size(), number.begin());
        result = WriteTo("equipment", [&number](CBenchShm& shm) { return shm.SetEquipment(number); });
    });
}

// True for the whole of `text` as a number in the range.
bool ReadWhole(const std::string& text, std::int64_t least, std::int64_t most, std::int64_t& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && value >= least && value <= most;
}

EExit WrongValue(const std::string& value, const char* expected) {
    Complain("'%s': %s expected", value.c_str(), expected);
    return EExit::WrongUse;
}

EExit SetSignal(const NamedPoint& point, const std::string& value) {
    std::int64_t state = 0;
    if (!ReadWhole(StateDigits(value), 0, UINT8_MAX, state))
        return WrongValue(value, "on, off or a state from 0 to 255");
    return WriteTo(EntryName(TableName(point.table), point.index), [&point, state](CBenchShm& shm) {
        return shm.SetState(point.table, point.index, static_cast<std::uint8_t>(state));
    });
}

EExit SetTelemetry(const NamedPoint& point, const std::string& value) {
    std::int64_t raw = 0;
    if (!ReadWhole(value, INT32_MIN, UINT32_MAX, raw)) return WrongValue(value, "a raw value");
    YcChange change;
    change.raw = static_cast<std::uint32_t>(raw);
    return WriteTo(EntryName(TableName(point.table), point.index),
                   [&](CBenchShm& shm) { return shm.SetYc(point.index, change); });
}

EExit SetNamed(const NamedPlace& place, const std::string& value) {
    if (place.name.empty() || value.empty()) {
        Complain("set takes a table, or the name of a point and its value; see --help");
        return EExit::WrongUse;
    }
    NamedPoint point{};
    const std::string trouble = FindPoint(place.directory, place.name, place.port, point);
    if (!trouble.empty()) return Complain(trouble);
    return point.table == ELiveTable::Yc ? SetTelemetry(point, value) : SetSignal(point, value);
}

}  // namespace

void AddSet(CLI::App& parent, EExit& result) {
    CLI::App* set =
        parent.add_subcommand("set", "Write a live value; creates the shared memory if it is missing");
    set->require_subcommand(0, 1);
    auto place = std::make_shared<NamedPlace>();
    auto value = std::make_shared<std::string>();
    AddNamedPlace(*set, *place);
    set->add_option("VALUE", *value,
                    "State of a status point (0 to 255, on, off), raw value of a telemetry point");
    set->callback([set, place, value, &result] {
        if (set->get_subcommands().empty()) result = SetNamed(*place, *value);
    });
    AddSetSignal(*set, "yx", ELiveTable::Yx, "A status point", result);
    AddSetSignal(*set, "yx2", ELiveTable::Yx2, "A status point of the second table", result);
    AddSetYc(*set, result);
    AddSetDd(*set, result);
    AddSetGun(*set, result);
    AddSetEquipment(*set, result);
}
