// The grammar of scenarios.
#include "tools/zorctl/Scenario.h"

#include <gmock/gmock.h>

#include "tests/support/Bytes.h"

namespace {

using testing::ElementsAre;

const char* const kPlaces[] = {"yx", "yx2", "yc", "area", "dd", "gun", "equipment"};

std::string Place(const LiveTarget& target) {
    return std::string(kPlaces[static_cast<int>(target.place)]) + ' ' + std::to_string(target.index);
}

std::string Day(const RecordDay& day) {
    const BcdDate& date = day.date;
    const std::uint8_t digits[] = {date.century, date.year, date.month, date.day};
    if (day.kind != EDay::Given) return day.kind == EDay::Today ? "today" : "yesterday";
    return ToHex(digits, sizeof digits);
}

// An action as it was understood, in few words.
struct Describe {
    std::string operator()(const LiveWrites& writes) const {
        std::string text;
        for (const LiveWrite& write : writes) {
            text += (text.empty() ? "" : ", ") + Place(write.target) + '=';
            text += write.bytes.empty() ? std::to_string(write.value)
                                        : ToHex(write.bytes.data(), write.bytes.size());
        }
        return text;
    }
    std::string operator()(const Ramp& ramp) const {
        return Place(ramp.target) + ' ' + std::to_string(ramp.from) + ".." + std::to_string(ramp.to) + ' ' +
               std::to_string(ramp.over.count());
    }
    std::string operator()(const ReportSettings& settings) const {
        std::string text = settings.on ? "on" : "off";
        for (const int value : {settings.work, settings.idle, settings.snapshot, settings.longInterval})
            text += ' ' + std::to_string(value);
        return text;
    }
    std::string operator()(const HistoryRequest& request) const {
        return std::to_string(request.port) + ' ' + Day(request.day) + ' ' + std::to_string(request.hour);
    }
    std::string operator()(const Acknowledgement& ack) const {
        return std::to_string(ack.port) + ' ' + Day(ack.day) + (ack.accepted ? " ok" : " reject");
    }
    std::string operator()(const Remark& remark) const { return remark.text; }
    std::string operator()(const Expectation& wanted) const {
        std::string text =
            (wanted.wanted ? "" : "no ") + (wanted.code ? std::to_string(*wanted.code) : wanted.eventText);
        for (const WantedField& field : wanted.fields) text += ' ' + field.name + '=' + field.value;
        return text + ' ' + std::to_string(wanted.within.count());
    }
};

TEST(Scenario, ActionsAreUnderstood) {
    const struct {
        const char* line;
        const char* meaning;
    } kCases[] = {
        {"port 1 plug", "yx 135=0, yx 134=1, gun 1=1"},
        {"port 2 unplug", "gun 2=0, yx 262=0, yx 263=1"},
        {"port 0 lock", "yx 136=1"},
        {"port 3 unlock", "yx 392=0"},
        {"port 2 charge", "gun 2=2, yx 305=1"},
        {"port 1 stop", "yx 177=0, gun 1=3"},
        {"port 8 fault", "yx 995=1"},
        {"port 1 clear", "yx 99=0"},
        {"port 2 gun 255", "gun 2=255"},
        {"emergency on", "yx 20=1"},
        {"emergency off", "yx 20=0"},
        {"yx 99 on", "yx 99=1"},
        {"yx2 1 7 port 2", "yx2 129=7"},
        {"yc 103 4294967295 port 2", "yc 231=4294967295"},
        {"yc 114 -1", "yc 114=4294967295"},
        {"yc 130 text \"A # B\" port 1 # rest", "area 130=41 20 23 20 42"},
        {"dd 15 9223372036854775807 port 2", "dd 47=9223372036854775807"},
        {"equipment 5a4f522d30303031", "equipment 0=5a 4f 52 2d 30 30 30 31"},
        {"ramp yc 103 from 80 to 20 over 1.5min port 2", "yc 231 80..20 90000000"},
        {"ramp dd 0 from 0 to 9000000000 over 1h", "dd 0 0..9000000000 3600000000"},
        {"settings on", "on 180 180 60 60"},
        {"settings on snapshot 10s work 5s long 2h idle 65535s", "on 5 65535 10 120"},
        {"settings off", "off 180 180 60 60"},
        {"history 2 2024-03-05", "2 20 24 03 05 24"},
        {"history 0 yesterday 23", "0 yesterday 23"},
        {"ack 1 today ok", "1 today ok"},
        {"ack 8 1999-12-31 reject", "8 19 99 12 31 reject"},
        {"say it's 5 o'clock  now # or so", "it's 5 o'clock  now"},
        {"expect A1_14 port 2 state 3 within 1s", "34518 port=2 state=3 1000000"},
        {"expect no A1_9 within 200ms", "no 34513 200000"},
        {"expect A1_6 anything \"a b\" within 0s", "34510 anything=a b 0"},
        {"expect A1_11 address 20..30 within 1s", "34515 address=20..30 1000000"},
        {"expect soe \"Gun connected 0 -> 1\" point 134 within 1s", "Gun connected 0 -> 1 point=134 1000000"},
    };
    for (const auto& item : kCases) {
        std::vector<std::string> faults;
        const Scenario scenario = ParseScenario("x", item.line, faults);
        EXPECT_THAT(faults, ElementsAre()) << item.line;
        ASSERT_EQ(1U, scenario.lines.size());
        EXPECT_EQ(item.meaning, std::visit(Describe(), scenario.lines[0].action)) << item.line;
    }
}

TEST(Scenario, TimesCountFromTheLineTheyName) {
    std::vector<std::string> faults;
    const Scenario scenario =
        ParseScenario("x",
                      "say a\n\n  # nothing\n+1.5s say b # c\r\n\tsay c\n2s say d\n+200ms say e\n"
                      "at 23:59:58 say f\n+1s say g\n1s say h",
                      faults);
    EXPECT_THAT(faults, ElementsAre());
    std::vector<std::string> times;
    for (const ScenarioLine& line : scenario.lines)
        times.push_back(line.text + ' ' + std::to_string(line.number) + ' ' +
                        std::to_string(line.secondOfDay.value_or(-1)) + ' ' +
                        std::to_string(line.offset.count()));
    EXPECT_THAT(times, ElementsAre("say a 1 -1 0", "say b 4 -1 1500000", "say c 5 -1 1500000",
                                   "say d 6 -1 2000000", "say e 7 -1 2200000", "say f 8 86398 0",
                                   "say g 9 -1 1000000", "say h 10 -1 1000000"));
}

TEST(Scenario, FaultsAreNamedWithTheirPlace) {
    const struct {
        const char* line;
        const char* fault;
    } kCases[] = {
        {"jump", "1: expected an action, found \"jump\""},
        {"2s", "3: expected an action, found the end of the line"},
        {"-1s say x", "1: expected an action, found \"-1s\""},
        {"+1 say x", "1: expected an offset such as 2.5s, 200ms, 5min or 1h, found \"+1\""},
        {"+-1s say x", "1: expected an offset such as 2.5s, 200ms, 5min or 1h, found \"+-1s\""},
        {"1e3s say x", "1: expected an offset such as 2.5s, 200ms, 5min or 1h, found \"1e3s\""},
        {"at 24:00:00 say x", "4: expected a time of day such as 23:59:58, found \"24:00:00\""},
        {"at +1:00:00 say x", "4: expected a time of day such as 23:59:58, found \"+1:00:00\""},
        {"port 9 plug", "6: expected a port from 0 to 8, found \"9\""},
        {"port 1 explode",
         "8: expected what happens (plug, unplug, lock, unlock, charge, stop, fault, clear, gun), found "
         "\"explode\""},
        {"port 1 plug 2", "13: expected the end of the line, found \"2\""},
        {"port 1 gun 256", "12: expected a gun state from 0 to 255, found \"256\""},
        {"yx 5 maybe", "6: expected on, off or a state from 0 to 255, found \"maybe\""},
        {"yc 5 4294967296", "6: expected a value from -2147483648 to 4294967295, found \"4294967296\""},
        {"yc 5 text \"open", "11: the quote is not closed"},
        {"yc 5 text 12345678901234567890123456789012345678901",
         "11: the area holds 40 bytes at the most, found \"12345678901234567890123456789012345678901\""},
        {"ramp yx 5 from 0 to 1 over 1s", "6: expected a table (yc, dd), found \"yx\""},
        {"ramp yc 5 from 0 to 1", "22: expected \"over\", found the end of the line"},
        {"equipment 5a4f", "11: expected 16 hexadecimal digits, found \"5a4f\""},
        {"settings on work 1.5s", "18: expected at most 65535 whole seconds, found \"1.5s\""},
        {"settings off work 5s", "14: expected the end of the line, found \"work\""},
        {"history 1 2024-13-01",
         "11: expected a day such as 2024-03-05, today or yesterday, found \"2024-13-01\""},
        {"history 1 today 24", "17: expected an hour from 0 to 23, found \"24\""},
        {"expect A1_7 within 1s", "8: there is no such message, found \"A1_7\""},
        {"expect A1_14 soc 5 within 1s", "14: there is no such field, found \"soc\""},
        {"expect soe \"x\" port 5 within 1s", "16: there is no such field, found \"port\""},
        {"expect A1_14 state", "19: expected a value, found the end of the line"},
        {"expect A1_14 port 1",
         "20: expected a field and its value, or \"within\", found the end of the line"},
    };
    for (const auto& item : kCases) {
        std::vector<std::string> faults;
        ParseScenario("f.zor", std::string("say first\n") + item.line + "\nsay last", faults);
        EXPECT_THAT(faults, ElementsAre(std::string("f.zor:2:") + item.fault)) << item.line;
    }
    std::vector<std::string> faults;
    ParseScenario("f", "5s say x\n4s say y\nnothing", faults);
    EXPECT_THAT(faults, ElementsAre("f:2:1: this is before the line before, found \"4s\"",
                                    "f:3:1: expected an action, found \"nothing\""));
}

}  // namespace
