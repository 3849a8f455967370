#include "tools/zorctl/scenario/ScenarioActions.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "System/Numbers.h"
#include "history/ChargingRecord.h"
#include "ipc/Commands.h"
#include "points/LiveEntry.h"
#include "points/PortNumbering.h"
#include "points/Signals.h"
#include "reports/PortState.h"
#include "tools/zorctl/messages/Bodies.h"
#include "tools/zorctl/text/HexText.h"

namespace {

constexpr int kLastIndex = 0xFFFF;
constexpr std::int64_t kLastCounter = INT64_MAX;
constexpr int kGun = -1;

int TakePort(CWords& words) {
    return static_cast<int>(words.Number("a port", 0, kMaxPorts));
}

int TakeIndex(CWords& words) {
    return static_cast<int>(words.Number("an index", 0, kLastIndex));
}

// [port N]: moves a point of port 1 to the port's own place.
void TakeOptionalPort(CWords& words, LiveTarget& target) {
    if (!words.TakeIf("port")) return;
    const int port = TakePort(words);
    target.index += target.table == ELiveTable::Dd ? CounterBase(port) : PortBase(port);
}

LiveTarget Signal(int port, int point) {
    return {ELiveTable::Yx, PortBase(port) + point};
}

// What the acquisition side writes when this happens at a port, in its order: signals, or the state of the
// gun.
struct PortEvent {
    struct Write {
        int signal;  // kGun for the gun
        std::uint8_t state;
    };
    const char* word;
    std::vector<Write> writes;
};

const std::vector<PortEvent>& PortEvents() {
    static const std::vector<PortEvent> kEvents = {
        {"plug", {{kSignalGunInHolder, 0}, {kSignalGunConnected, 1}, {kGun, kGunPlugged}}},
        {"unplug", {{kGun, kGunIdle}, {kSignalGunConnected, 0}, {kSignalGunInHolder, 1}}},
        {"lock", {{kSignalGunLocked, 1}}},
        {"unlock", {{kSignalGunLocked, 0}}},
        {"charge", {{kGun, kGunCharging}, {kSignalCharging, 1}}},
        {"stop", {{kSignalCharging, 0}, {kGun, kGunFinished}}},
        {"fault", {{kSignalPortFault, 1}}},
        {"clear", {{kSignalPortFault, 0}}},
    };
    return kEvents;
}

Action ParsePort(CWords& words) {
    const int port = TakePort(words);
    std::vector<const char*> choices;
    for (const PortEvent& event : PortEvents()) choices.push_back(event.word);
    choices.push_back("gun");
    const std::size_t choice = words.Choice("what happens", choices);
    const LiveTarget gun{ELiveTable::Gun, port};
    if (choice == PortEvents().size())
        return LiveWrites{{gun, static_cast<std::uint64_t>(words.Number("a gun state", 0, 255))}};
    LiveWrites writes;
    for (const PortEvent::Write& write : PortEvents()[choice].writes)
        writes.push_back({write.signal == kGun ? gun : Signal(port, write.signal), write.state});
    return writes;
}

Action ParseEmergency(CWords& words) {
    return LiveWrites{{Signal(0, kSignalEmergencyStop), words.Choice("a state", {"off", "on"})}};
}

std::uint64_t TakeState(CWords& words) {
    if (words.TakeIf("on")) return 1;
    if (words.TakeIf("off")) return 0;
    return static_cast<std::uint64_t>(words.Number("on, off or a state", 0, 255));
}

Action ParseSignal(CWords& words, ELiveTable table) {
    LiveWrite write{{table, TakeIndex(words)}, TakeState(words)};
    TakeOptionalPort(words, write.target);
    return LiveWrites{write};
}
Action ParseYx(CWords& words) {
    return ParseSignal(words, ELiveTable::Yx);
}
Action ParseYx2(CWords& words) {
    return ParseSignal(words, ELiveTable::Yx2);
}

// A raw value; a negative one wraps to the width of the entry.
std::uint64_t TakeValue(CWords& words, ELiveTable table) {
    if (table == ELiveTable::Dd) return static_cast<std::uint64_t>(words.Number("a value", 0, kLastCounter));
    return static_cast<std::uint32_t>(words.Number("a value", INT32_MIN, UINT32_MAX));
}

Action ParseYc(CWords& words) {
    LiveWrite write{{ELiveTable::Yc, TakeIndex(words)}};
    if (words.TakeIf("text")) {
        const std::string text = words.Text("a text");
        if (text.size() > kEntryAreaSize)
            words.FaultInLast("the area holds " + std::to_string(kEntryAreaSize) + " bytes at the most");
        text.copy(reinterpret_cast<char*>(write.area.emplace().data()), kEntryAreaSize);
    } else {
        write.value = TakeValue(words, ELiveTable::Yc);
    }
    TakeOptionalPort(words, write.target);
    return LiveWrites{write};
}

Action ParseDd(CWords& words) {
    LiveWrite write{{ELiveTable::Dd, TakeIndex(words)}, TakeValue(words, ELiveTable::Dd)};
    TakeOptionalPort(words, write.target);
    return LiveWrites{write};
}

Action ParseRamp(CWords& words) {
    Ramp ramp{};
    ramp.target.table = words.Choice("a table", {"yc", "dd"}) == 0 ? ELiveTable::Yc : ELiveTable::Dd;
    ramp.target.index = TakeIndex(words);
    const std::int64_t most = ramp.target.table == ELiveTable::Yc ? UINT32_MAX : kLastCounter;
    words.Take("from");
    ramp.from = static_cast<std::uint64_t>(words.Number("a value", 0, most));
    words.Take("to");
    ramp.to = static_cast<std::uint64_t>(words.Number("a value", 0, most));
    words.Take("over");
    ramp.over = words.Duration("a duration");
    TakeOptionalPort(words, ramp.target);
    return ramp;
}

Action ParseEquipment(CWords& words) {
    std::vector<std::uint8_t> bytes;
    if (!ParseHex(words.Text("an equipment number"), bytes) || bytes.size() != kEquipmentSize)
        words.FaultInLast("expected 16 hexadecimal digits");
    bytes.resize(kEquipmentSize);
    return LiveWrites{{{ELiveTable::Equipment, 0}, GetLe(bytes.data(), bytes.size())}};
}

// A duration as the settings command carries it, in whole units.
std::uint16_t TakeInterval(CWords& words, PlayTime unit, const char* inWords) {
    const PlayTime value = words.Duration("a duration");
    if (value % unit == PlayTime{0} && value / unit <= UINT16_MAX)
        return static_cast<std::uint16_t>(value / unit);
    words.FaultInLast(std::string("expected at most 65535 whole ") + inWords);
    return 0;
}

Action ParseSettings(CWords& words) {
    ReportSettings settings;
    std::uint16_t* const seconds[] = {&settings.work, &settings.idle, &settings.snapshot};
    settings.on = words.Choice("a state", {"off", "on"}) == 1;
    while (settings.on && !words.AtEnd() && words.Trouble().empty()) {
        const std::size_t interval = words.Choice("an interval", {"work", "idle", "snapshot", "long"});
        if (interval < std::size(seconds))
            *seconds[interval] = TakeInterval(words, std::chrono::seconds{1}, "seconds");
        else
            settings.longInterval = TakeInterval(words, std::chrono::minutes{1}, "minutes");
    }
    return settings;
}

std::string TakeDay(CWords& words) {
    std::string day = words.Text("a day");
    BcdDate date;
    if (day != "today" && day != "yesterday" && !ParseDate(day, date))
        words.FaultInLast("expected a day such as 2024-03-05, today or yesterday");
    return day;
}

std::uint8_t TakeRecordPort(CWords& words) {
    return static_cast<std::uint8_t>(TakePort(words));
}

Action ParseHistory(CWords& words) {
    HistoryRequest request{TakeRecordPort(words), TakeDay(words), kWholeDay};
    if (!words.AtEnd()) request.hour = static_cast<std::uint8_t>(words.Number("an hour", 0, kWholeDay - 1));
    return request;
}

Action ParseAck(CWords& words) {
    const std::uint8_t port = TakeRecordPort(words);
    const std::string day = TakeDay(words);
    return Acknowledgement{port, day, words.Choice("a result", {"reject", "ok"}) == 1};
}

Action ParseSay(CWords& words) {
    return Remark{words.TakeRest("a text")};
}

bool KnowsEventField(const std::string& name) {
    return name == "point" || name == "value" || name == "table";
}

// What no message can show would make an expectation fail, or hold, whatever comes.
std::string TakeWanted(CWords& words, const std::string& field) {
    std::string value = words.Text("a value");
    const auto range = RangeIn(value);
    if (range && range->low > range->high) words.FaultInLast("the range is empty");
    const double first = range ? std::ceil(std::max(range->low, 0.0)) : 0;
    if (field == "port" && (!range || first > std::min(range->high, double{kMaxPorts})))
        words.FaultInLast("expected a port from 0 to " + std::to_string(kMaxPorts));
    return value;
}

Action ParseExpect(CWords& words) {
    Expectation expectation{!words.TakeIf("no"), std::nullopt, "", {}, {}};
    if (words.TakeIf("soe")) {
        expectation.eventText = words.Text("a text in quotes");
        if (expectation.eventText.empty()) words.FaultInLast("every event has an empty text in it");
    } else {
        const MessageName* message = MessageNamed(words.Peek());
        words.Text("a message or soe");
        if (message == nullptr) words.FaultInLast("there is no such message");
        expectation.code = message != nullptr ? message->code : 0;
    }
    while (words.Trouble().empty() && !words.TakeIf("within")) {
        const std::string name = words.Text("a field and its value, or \"within\"");
        if (expectation.code ? !KnowsField(*expectation.code, name) : !KnowsEventField(name))
            words.FaultInLast("there is no such field");
        expectation.fields.push_back({name, TakeWanted(words, name)});
    }
    expectation.within = words.Duration("a duration");
    return expectation;
}

struct Verb {
    const char* word;
    Action (*parse)(CWords& words);
};
constexpr Verb kVerbs[] = {
    {"port", ParsePort},
    {"yx", ParseYx},
    {"yx2", ParseYx2},
    {"yc", ParseYc},
    {"dd", ParseDd},
    {"ramp", ParseRamp},
    {"equipment", ParseEquipment},
    {"emergency", ParseEmergency},
    {"settings", ParseSettings},
    {"history", ParseHistory},
    {"ack", ParseAck},
    {"say", ParseSay},
    {"expect", ParseExpect},
};

}  // namespace

Action ParseAction(CWords& words) {
    for (const Verb& verb : kVerbs)
        if (words.TakeIf(verb.word)) return verb.parse(words);
    words.Fault("expected an action");
    return Remark{};
}
