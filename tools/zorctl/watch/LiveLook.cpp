#include "tools/zorctl/watch/LiveLook.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "System/AppFiles.h"
#include "System/Sqlite.h"
#include "points/PointSettings.h"
#include "points/PortNumbering.h"
#include "reports/ChargingStatus.h"
#include "reports/PortState.h"
#include "tools/zorctl/live/SharedSegment.h"
#include "tools/zorctl/messages/Bodies.h"
#include "tools/zorctl/settings/StationReading.h"

namespace {

constexpr char kNoValue[] = "-";

// A field of the charging status in the unit that its point is scaled for.
struct Quantity {
    const char* field;
    Shown PortPicture::*cell;
    double perUnit;
    int digits;
    const char* unit;
};

constexpr Quantity kQuantities[] = {
    {"outputV", &PortPicture::voltage, 10, 1, "V"},
    {"outputI", &PortPicture::current, 10, 1, "A"},
    {"soc", &PortPicture::charge, 1, 0, "%"},
    {"energy", &PortPicture::energy, 1000, 3, "kWh"},
};
constexpr double kCounterUnits = 10000;  // of an energy counter, per kilowatt-hour

std::string Amount(double value, int digits, const char* unit) {
    char text[48];
    std::snprintf(text, sizeof text, "%.*f %s", digits, value, unit);
    return text;
}

// Of a charging-state code.
const char* StateWord(std::uint8_t code) {
    constexpr const char* kByGun[] = {"idle", "plugged", "charging", "finished", "fault"};
    static_assert(std::size(kByGun) == std::size(kStatesByGun));
    const auto* found = std::find(std::begin(kStatesByGun), std::end(kStatesByGun), code);
    return found != std::end(kStatesByGun) ? kByGun[found - std::begin(kStatesByGun)] : "";
}

// Changes when the file does.
std::string StampOf(const std::string& path) {
    struct stat file {};
    if (stat(path.c_str(), &file) != 0) return "none;";
    return std::to_string(file.st_ino) + ' ' + std::to_string(file.st_size) + ' ' +
           std::to_string(file.st_mtim.tv_sec) + ' ' + std::to_string(file.st_mtim.tv_nsec) + ';';
}

// In words so short that all that can be on at a time fit their column.
struct GunWord {
    int signal;
    const char* word;
};
constexpr GunWord kGunWords[] = {{kSignalGunConnected, "in"},
                                 {kSignalGunInHolder, "holder"},
                                 {kSignalGunLocked, "locked"},
                                 {kSignalControl, "ctl"}};

// The gun signals that are on.
std::string GunText(CShmCTRL& live, int port) {
    std::string text;
    for (const GunWord& gun : kGunWords)
        if (live.Signal(PortBase(port) + gun.signal) != 0)
            text += (text.empty() ? "" : " ") + std::string(gun.word);
    return text.empty() ? kNoValue : text;
}

const ChargingField& FieldNamed(const std::string& name) {
    return *std::find_if(
        std::begin(kChargingFields), std::end(kChargingFields),
        [&name](const ChargingField& field) { return field.at.name != nullptr && field.at.name == name; });
}

}  // namespace

Shown CChanges::Note(const std::string& key, const std::string& text, CMoment now) {
    const auto [place, isNew] = m_entries.try_emplace(key, Entry{text, std::nullopt});
    Entry& entry = place->second;
    if (entry.text != text) entry = {text, now};
    return {text, entry.changed ? AgeAt(now, *entry.changed) : kLongAgo};
}

void CLiveLook::Look(StationPicture& picture, CMoment now) {
    FollowSettings(now);
    const std::string trouble = FollowSegment();
    picture.portNote = picture.pointNote = m_settingsTrouble.empty() ? trouble : m_settingsTrouble;
    picture.ports.clear();
    picture.points.clear();
    if (!m_settingsTrouble.empty()) return;
    RefreshTelemetry();
    const PortRange ports = PortsOf(m_names.PortCount());
    for (int port = ports.first; port <= ports.last; ++port) picture.ports.push_back(LookAtPort(port, now));
    for (const NamedPoint& point : m_names.Points()) picture.points.push_back(LookAtPoint(point, now));
}

// Keyed settings take a good part of a second to open: they are read when they have changed, and now and then
// while they cannot be read.
void CLiveLook::FollowSettings(CMoment now) {
    constexpr double kPauseSeconds = 1;
    std::string stamp;
    for (const char* file : {kConfigFile, kPointSettingFile}) stamp += StampOf(m_directory + '/' + file);
    const bool again = !m_settingsTrouble.empty() && AgeAt(now, m_settingsLook) >= kPauseSeconds;
    if (stamp == m_settingsStamp && !again) return;
    m_settingsStamp = stamp;
    m_settingsLook = now;
    m_settingsTrouble = m_names.Load(m_directory);
    if (m_settingsTrouble.empty()) m_settingsTrouble = LoadTelemetry();
    m_perPort.clear();
    for (const NamedPoint& point : m_names.Points())
        if (point.port > 1) m_perPort.emplace(point.table, point.first);
}

std::string CLiveLook::LoadTelemetry() {
    m_telemetry.clear();
    CSqliteDb database;
    if (std::string trouble = OpenToRead(database, m_directory, kPointSettingFile); !trouble.empty())
        return trouble;
    const CSqliteTable table(database, kSelectYcDc);
    if (!table.Ok()) return WhyNot(table);
    std::list<YcGroup> groups;
    for (int row = 0; row < table.Rows(); ++row)
        AppendYcPoint(groups, ParseYcRow(table, row), m_names.PortCount());
    for (YcGroup& group : groups) m_telemetry.splice(m_telemetry.end(), group.points);
    return "";
}

// Attaches the segment that is there now; one that was removed lives on for those who have it, without news.
std::string CLiveLook::FollowSegment() {
    const SharedSegmentState segment = LookAtSharedSegment();
    const bool usable = !segment.known || (segment.present && segment.trouble.empty());
    if (!usable || segment.id != m_segment) m_live.reset();
    m_segment = segment.id;
    if (usable && !m_live) m_live.emplace();
    if (usable) return "";
    return "shared memory: " + (segment.present ? segment.trouble : "not there");
}

void CLiveLook::RefreshTelemetry() {
    if (!m_live) return;
    for (YcPointRecord& point : m_telemetry) point.currentRaw = m_live->Yc(point.pointNumber).raw;
}

bool CLiveLook::HasPoint(int number) const {
    return std::any_of(m_telemetry.begin(), m_telemetry.end(),
                       [number](const YcPointRecord& point) { return point.pointNumber == number; });
}

// The port as the process reports it, whether or not a report is due.
PortPicture CLiveLook::LookAtPort(int port, CMoment now) {
    PortPicture picture;
    picture.port = port;
    const auto note = [&](Shown& cell, const char* name, const std::string& text) {
        cell = m_changes.Note("port " + std::to_string(port) + ' ' + name, m_live ? text : kNoValue, now);
    };
    ChargingBody body{};
    std::uint8_t code = 0;
    std::uint64_t counter = 0;
    std::string gun;
    if (m_live) {
        body = BuildChargingBody(*m_live, GroupPlaces(m_telemetry), port);
        code = ChargingStateCode(PortHasFault(*m_live, port), m_live->GunState(port), kUnknownIsFault);
        gun = GunText(*m_live, port);
        counter = m_live->Counter(CounterBase(port));
    }
    note(picture.state, "state", std::to_string(code) + ' ' + StateWord(code));
    note(picture.gun, "gun", gun);
    for (const Quantity& quantity : kQuantities) {
        const ChargingField& field = FieldNamed(quantity.field);
        const double value = static_cast<double>(GetField(body.data(), field.at)) / quantity.perUnit;
        note(picture.*quantity.cell, quantity.field,
             HasPoint(PortBase(port) + field.number) ? Amount(value, quantity.digits, quantity.unit)
                                                     : kNoValue);
    }
    note(picture.meter, "meter", Amount(static_cast<double>(counter) / kCounterUnits, 2, "kWh"));
    return picture;
}

PointPicture CLiveLook::LookAtPoint(const NamedPoint& point, CMoment now) {
    std::string text = kNoValue;
    if (m_live && point.table == ELiveTable::Yc) {
        if (const auto yc = m_live->GetYc(point.index)) text = yc->Text();
    } else if (m_live) {
        if (const auto state = m_live->Get(point.table, point.index)) text = std::to_string(*state);
    }
    const std::string key = EntryName(point.table, point.index);
    const bool perPort = m_perPort.count({point.table, point.first}) > 0;
    return {perPort ? point.port : 0, point.name, m_changes.Note(key, text, now)};
}
