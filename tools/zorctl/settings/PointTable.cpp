#include "tools/zorctl/settings/PointTable.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>

#include "System/Numbers.h"
#include "events/EventText.h"
#include "points/PointSettings.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

constexpr std::int64_t kLeastInt32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kMostInt32 = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kMostUInt32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t kMostPoint = 0xFFFF;
constexpr std::int64_t kYxNameSize = sizeof YxPointRecord::name - 1;
constexpr std::int64_t kYcNameSize = sizeof YcPointRecord::name - 1;

std::string RowNumber(const PointRow&, int number) {
    return std::to_string(number);
}

// The process knows a telemetry point by its id in one place and by its point number in another.
std::string YcPointNumber(const PointRow& row, int) {
    return row[kYcPointNumber];
}

// 0 is no information address, so they count from 1; the second table's stand above all of the first.
std::string NextAddress(const PointRow& row, int) {
    constexpr std::int64_t kTableStep = 0x400;
    return std::to_string(ParseInt64(row[kYxPointNumber].c_str()) + 1 +
                          kTableStep * ParseInt64(row[kYxSource].c_str()));
}

constexpr PointColumn kYxColumns[] = {
    {"id", EPointValue::Whole, kLeastInt32, kMostInt32, nullptr, RowNumber},
    {"name", EPointValue::Event, 1, kYxNameSize, nullptr, nullptr},
    {"level", EPointValue::Level, kLeastInt32, kMostInt32, "normal", nullptr},
    {"point", EPointValue::Whole, 0, kMostPoint, nullptr, nullptr},
    {"flag", EPointValue::Flag, 0, 0, "true", nullptr},
    {"address", EPointValue::Whole, kLeastInt32, kMostInt32, nullptr, NextAddress},
    {"source", EPointValue::Whole, kSourceYx, kSourceYx2, "0", nullptr},
};
static_assert(std::size(kYxColumns) == kYxSource + 1);

// All points share a group by default, because a report takes its values from one group only.
constexpr PointColumn kYcColumns[] = {
    {"id", EPointValue::Whole, kLeastInt32, kMostInt32, nullptr, YcPointNumber},
    {"name", EPointValue::Name, 1, kYcNameSize, nullptr, nullptr},
    {"point", EPointValue::Whole, 0, kMostPoint, nullptr, nullptr},
    {"group", EPointValue::Whole, kLeastInt32, kMostInt32, "0", nullptr},
    {"base", EPointValue::Whole, kLeastInt32, kMostInt32, "100", nullptr},
    {"scale", EPointValue::Real, 0, 0, "1", nullptr},
    {"offset", EPointValue::Offset, 0, kMostUInt32, "0", nullptr},
    {"low", EPointValue::Real, 0, 0, "0", nullptr},
    {"high", EPointValue::Real, 0, 0, "0", nullptr},
};
static_assert(std::size(kYcColumns) == kYcRealD + 1);

constexpr const char* kFlagWords[] = {"unset", "true", "false"};
static_assert(kFlagUnset == 0 && kFlagTrue == 1 && kFlagFalse == 2);

bool IsWhole(const std::string& text, std::int64_t& value) {
    constexpr std::size_t kMostDigits = 18;
    const std::size_t sign = text.empty() || (text[0] != '-' && text[0] != '+') ? 0 : 1;
    if (text.size() == sign || text.size() > sign + kMostDigits ||
        text.find_first_not_of("0123456789", sign) != std::string::npos)
        return false;
    value = ParseInt64(text.c_str());
    return true;
}

bool IsReal(const std::string& text, double& value) {
    if (text.empty() || text.find_first_not_of("+-.0123456789eE") != std::string::npos) return false;
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return *end == '\0';
}

std::string RealText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

// "fault" for the level whose events begin with "[Fault]".
std::string LevelWord(int level) {
    std::string word = LowerCase(LevelText(level));
    word.erase(std::remove_if(word.begin(), word.end(), [](char c) { return c == '[' || c == ']'; }),
               word.end());
    return word;
}

std::string ToStoredName(const PointColumn& column, const std::string& given, std::string& stored) {
    stored = given;
    if (given.size() > static_cast<std::size_t>(column.most))
        return "longer than " + std::to_string(column.most) + " bytes";
    // The statement that stores an event is put together as text.
    if (column.value == EPointValue::Event && given.find('\'') != std::string::npos)
        return "an apostrophe, with which no event of the point would be stored";
    return "";
}

std::string ToStoredWhole(const PointColumn& column, const std::string& given, std::string& stored) {
    std::int64_t value = 0;
    if (!IsWhole(given, value) || value < column.least || value > column.most)
        return "'" + given + "' is no whole number from " + std::to_string(column.least) + " to " +
               std::to_string(column.most);
    stored = std::to_string(value);
    const std::uint32_t kept = TruncateToUInt32(ParseFloat(stored.c_str()));
    if (column.value != EPointValue::Offset || kept == value) return "";
    return "'" + given + "' has too many digits: the process would take " + std::to_string(kept);
}

std::string ToStoredReal(const std::string& given, std::string& stored) {
    double value = 0;
    if (!IsReal(given, value) || !std::isfinite(static_cast<float>(value)))
        return "'" + given + "' is no number";
    stored = RealText(value);
    return "";
}

std::string ToStoredLevel(const PointColumn& column, const std::string& given, std::string& stored) {
    const std::string word = LowerCase(given);
    std::string words;
    for (int level = kNormal; level <= kEmergency; ++level) {
        stored = std::to_string(level);
        if (word == LevelWord(level)) return "";
        words += LevelWord(level) + ", ";
    }
    if (ToStoredWhole(column, given, stored).empty()) return "";
    return "'" + given + "' is no level: " + words + "or a number";
}

std::string ToStoredFlag(const std::string& given, std::string& stored) {
    const std::string word = LowerCase(given);
    for (std::size_t flag = 0; flag < std::size(kFlagWords); ++flag) {
        stored = kFlagWords[flag];
        if (word == stored || word == std::to_string(flag)) return "";
    }
    return "'" + given + "' is no flag: true, false or unset";
}

}  // namespace

PointTable YxTable() {
    return {"yx", kSelectYxDc, kYxColumns, std::size(kYxColumns)};
}

PointTable YcTable() {
    return {"yc", kSelectYcDc, kYcColumns, std::size(kYcColumns)};
}

std::string ToStored(const PointColumn& column, const std::string& given, std::string& stored) {
    switch (column.value) {
        case EPointValue::Name:
        case EPointValue::Event:
            return ToStoredName(column, given, stored);
        case EPointValue::Whole:
        case EPointValue::Offset:
            return ToStoredWhole(column, Trimmed(given), stored);
        case EPointValue::Real:
            return ToStoredReal(Trimmed(given), stored);
        case EPointValue::Level:
            return ToStoredLevel(column, Trimmed(given), stored);
        case EPointValue::Flag:
            return ToStoredFlag(Trimmed(given), stored);
    }
    return "";
}

std::string ToGiven(const PointColumn& column, const char* stored) {
    const bool isName = column.value == EPointValue::Name || column.value == EPointValue::Event;
    std::string text = stored != nullptr ? stored : "";
    if (text.empty() && !isName) text = "0";
    double number = 0;
    switch (column.value) {
        case EPointValue::Name:
        case EPointValue::Event:
            return text;
        case EPointValue::Level:
            for (int level = kNormal; level <= kEmergency; ++level)
                if (text == std::to_string(level)) return LevelWord(level);
            return text;
        case EPointValue::Flag:
            // The process takes anything but these two words, in this spelling, for no flag at all.
            return text == kFlagWords[kFlagTrue] || text == kFlagWords[kFlagFalse] ? text
                                                                                   : kFlagWords[kFlagUnset];
        case EPointValue::Whole:
            // "1e3" is 1 for the process, and nothing that a table may turn into 1000.
            return IsReal(text, number) && number == ParseInt32(text.c_str()) ? RealText(number) : text;
        case EPointValue::Offset:
        case EPointValue::Real:
            return IsReal(text, number) ? RealText(number) : text;
    }
    return text;
}

void FillDefaults(const PointTable& table, PointRow& row, int number) {
    row.resize(table.width);
    for (std::size_t i = 0; i < table.width; ++i)
        if (row[i].empty() && table.columns[i].standard != nullptr)
            ToStored(table.columns[i], table.columns[i].standard, row[i]);
    for (std::size_t i = 0; i < table.width; ++i)
        if (row[i].empty() && table.columns[i].computed != nullptr)
            row[i] = table.columns[i].computed(row, number);
}
