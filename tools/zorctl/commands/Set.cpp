// zorctl set: live values, as the acquisition side writes them.
#include <CLI/CLI.hpp>
#include <cfloat>
#include <charconv>
#include <memory>
#include <string>
#include <vector>

#include "System/Numbers.h"
#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/commands/Options.h"
#include "tools/zorctl/live/PointNames.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

// Runs `write`, which tells whether there is the entry `what`.
template <typename Write>
EExit WriteTo(const std::string& what, Write write) {
    CBenchShm shm;
    return write(shm) ? EExit::Done : Complain(shm.WhyNot(what));
}

EExit WriteNumber(ELiveTable table, int index, std::uint64_t value) {
    return WriteTo(EntryName(table, index), [=](CBenchShm& shm) { return shm.Set(table, index, value); });
}

// The whole of `text` as a number in the range.
template <typename Number>
bool ReadWhole(const std::string& text, Number least, Number most, Number& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && value >= least && value <= most;
}

// The same of a state, which can also be on or off, in any case.
bool ReadState(const std::string& text, std::uint64_t most, std::uint64_t& state) {
    const std::string word = LowerCase(text);
    if (most <= UINT8_MAX && (word == "on" || word == "off")) {
        state = word == "on" ? 1 : 0;
        return true;
    }
    return ReadWhole<std::uint64_t>(text, 0, most, state);
}

EExit WrongValue(const std::string& value, const std::string& expected) {
    Complain('\'' + value + "': " + expected + " expected");
    return EExit::WrongUse;
}

EExit SetNumber(ELiveTable table, int index, std::uint64_t most, const std::string& text) {
    std::uint64_t value = 0;
    if (ReadState(text, most, value)) return WriteNumber(table, index, value);
    return WrongValue(text, most <= UINT8_MAX ? "on, off or a state from 0 to 255"
                                              : "a number from 0 to " + std::to_string(most));
}

void AddSetNumber(CLI::App& parent, const LiveKind& kind, EExit& result) {
    struct Options {
        LivePlace place;
        std::string value;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = parent.add_subcommand(TableName(kind.table), kind.help);
    AddPlace(*command, kind.table, options->place);
    command->add_option("VALUE", options->value, kind.valueHelp)->required();
    command->callback([options, &kind, &result] {
        result = SetNumber(kind.table, options->place.Index(), kind.most, options->value);
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
    AddPlace(*command, ELiveTable::Yc, options->place);
    CLI::Option_group* values = command->add_option_group("values");
    values->require_option(1, 0);
    const auto* raw = values->add_option("--raw", options->raw, "Raw value; a negative one wraps to 32 bits")
                          ->check(CLI::Range(std::int64_t{INT32_MIN}, std::int64_t{UINT32_MAX}));
    const auto* coefficient =
        values->add_option("--coefficient", options->coefficient, "What the raw value is times")
            ->check(DecimalIn(-FLT_MAX, FLT_MAX));
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
        const int index = options->place.Index();
        result = WriteTo(EntryName(ELiveTable::Yc, index), [&](CBenchShm& shm) {
            return (text->count() + hex->count() == 0 || shm.SetArea(index, AreaFrom(*options))) &&
                   (coefficient->count() == 0 || shm.SetCoefficient(index, options->coefficient)) &&
                   (raw->count() == 0 ||
                    shm.Set(ELiveTable::Yc, index, static_cast<std::uint32_t>(options->raw)));
        });
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
        result = WriteNumber(ELiveTable::Equipment, 0, GetLe(bytes.data(), bytes.size()));
    });
}

EExit SetNamed(const NamedPlace& place, const std::string& value) {
    if (place.name.empty() || value.empty()) {
        Complain("set takes a table, or the name of a point and its value; see --help");
        return EExit::WrongUse;
    }
    NamedPoint point{};
    const std::string trouble = FindPoint(place.directory, place.name, place.port, point);
    if (!trouble.empty()) return Complain(trouble);
    if (point.table != ELiveTable::Yc) return SetNumber(point.table, point.index, UINT8_MAX, value);
    std::int64_t raw = 0;
    if (!ReadWhole<std::int64_t>(value, INT32_MIN, UINT32_MAX, raw)) return WrongValue(value, "a raw value");
    return WriteNumber(point.table, point.index, static_cast<std::uint32_t>(raw));
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
    for (const LiveKind& kind : kLiveKinds) AddSetNumber(*set, kind, result);
    AddSetYc(*set, result);
    AddSetEquipment(*set, result);
}
