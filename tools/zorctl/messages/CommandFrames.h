// Commands, built as zor_main builds them.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "ipc/Commands.h"
#include "ipc/Frame.h"

// A command: `length` bytes of `data` begin at kFrameData, where a frame to zor_main has two zero bytes in
// front of its body. Data that the frame cannot hold is cut.
Frame BuildInboundFrame(std::uint16_t code, const std::uint8_t* data, std::size_t length);

// Defaults are the intervals that the process starts with.
struct ReportSettings {
    bool on = true;
    std::uint16_t work = 180;         // seconds between charging status reports
    std::uint16_t idle = 180;         // seconds between idle status reports
    std::uint16_t snapshot = 60;      // seconds between full signal snapshots
    std::uint16_t longInterval = 60;  // minutes
};

// `work` and `idle` go into the fields of both kinds of charger: the one that it is picks its own.
Frame BuildSettingsFrame(const ReportSettings& settings);

// A date as the commands carry it: BCD.
struct BcdDate {
    std::uint8_t century = 0;
    std::uint8_t year = 0;
    std::uint8_t month = 0;
    std::uint8_t day = 0;
};

// Reads "2023-08-30". False for any other form, and for a day that its month does not have.
bool ParseDate(const std::string& text, BcdDate& date);

// The day that `name` is, a date or else the local day of `now`, or for "yesterday" the one before, as
// ParseDate reads it.
std::string DayNamed(const std::string& name, std::time_t now);
BcdDate DateNamed(const std::string& name, std::time_t now);

// Asks for the record of an hour (0 to 23) of a port, or with kWholeDay for those of the day.
Frame BuildHistoryRequest(std::uint8_t port, const BcdDate& date, std::uint8_t hour);
// Accepts or rejects the midnight record of a port.
Frame BuildHistoryAck(std::uint8_t port, const BcdDate& date, bool accepted);
