#include "tools/zorctl/messages/CommandFrames.h"

#include <algorithm>

#include "System/DateTime.h"
#include "System/Numbers.h"
#include "history/ChargingRecord.h"
#include "ipc/Commands.h"

Frame BuildInboundFrame(std::uint16_t code, const std::uint8_t* data, std::size_t length) {
    Frame frame;
    length = std::min(length, kFrameCapacity - kFrameData);
    PutFrameHead(frame, code, kFrameData + length);
    std::copy_n(data, length, &frame.bytes[kFrameData]);
    return frame;
}

namespace {

// A command of argument byte and body, as it lies in the frame.
template <std::size_t Size>
struct CommandData {
    static constexpr std::size_t kBody = kHistoryData - kFrameData;
    std::uint8_t bytes[kBody + Size] = {};

    explicit CommandData(std::uint8_t argument) { bytes[kHistoryArgument - kFrameData] = argument; }
    std::uint8_t& operator[](std::size_t at) { return bytes[kBody + at]; }
    Frame Build(std::uint16_t code) const { return BuildInboundFrame(code, bytes, sizeof bytes); }
};

// The digits at `at` as packed BCD.
std::uint8_t Pair(const std::string& text, std::size_t at) {
    return ToBcd(static_cast<unsigned>((text[at] - '0') * 10 + text[at + 1] - '0'));
}

// `month` from 0 on.
int DaysOfMonth(int year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return kDays[month] + (month == 1 && leap ? 1 : 0);
}

}  // namespace

Frame BuildSettingsFrame(const ReportSettings& settings) {
    std::uint8_t data[kSettingsFrameLength - kFrameData] = {};
    const auto put = [&data](std::size_t frameOffset, std::uint16_t value) {
        PutLe(data + (frameOffset - kFrameData), sizeof value, value);
    };
    put(kSettingsEnable, settings.on ? kEnableReporting : 0);
    put(kSettingsA1_3, settings.work);
    put(kSettingsA1_4, settings.idle);
    put(kSettingsA1_5, settings.work);
    put(kSettingsA1_6, settings.idle);
    put(kSettingsSnapshot, settings.snapshot);
    put(kSettingsLongInterval, settings.longInterval);
    return BuildInboundFrame(kCommandSettings, data, sizeof data);
}

bool ParseDate(const std::string& text, BcdDate& date) {
    std::tm day{};
    char again[16] = "";
    if (strptime(text.c_str(), CDateTime::kDateFormat, &day) == nullptr) return false;
    // Not through seconds, of which 32 bits end in 2038.
    if (day.tm_mday > DaysOfMonth(day.tm_year + 1900, day.tm_mon)) return false;
    std::strftime(again, sizeof again, CDateTime::kDateFormat, &day);
    if (text != again) return false;
    date = {Pair(text, 0), Pair(text, 2), Pair(text, 5), Pair(text, 8)};
    return true;
}

std::string DayNamed(const std::string& name, std::time_t now) {
    if (name != "today" && name != "yesterday") return name;
    std::tm local{};
    localtime_r(&now, &local);
    if (name == "yesterday") {
        --local.tm_mday;
        local.tm_hour = 12;  // clear of the hours that summer time skips or repeats
        local.tm_isdst = -1;
        std::mktime(&local);
    }
    char text[16];
    return std::string(text, std::strftime(text, sizeof text, CDateTime::kDateFormat, &local));
}

BcdDate DateNamed(const std::string& name, std::time_t now) {
    BcdDate date;
    ParseDate(DayNamed(name, now), date);
    return date;
}

Frame BuildHistoryRequest(std::uint8_t port, const BcdDate& date, std::uint8_t hour) {
    CommandData<kRequestSize> data(port);
    data[kRequestDay] = date.day;
    data[kRequestMonth] = date.month;
    data[kRequestYear] = date.year;
    data[kRequestCentury] = date.century;
    data[kRequestHour] = hour;
    return data.Build(kCommandHistoryRequest);
}

Frame BuildHistoryAck(std::uint8_t port, const BcdDate& date, bool accepted) {
    CommandData<kAckSize> data(port);  // second, minute and hour stay 0
    data[kAckDay] = date.day;
    data[kAckMonth] = date.month;
    data[kAckYear] = date.year;
    data[kAckCentury] = date.century;
    data[kAckResult] = accepted ? kAckAccepted : kAckRejected;
    return data.Build(kCommandHistoryAck);
}
