// Setting the clocks, and two small conversions.
#pragma once

#include <cstdint>

class CCommonTools {
  public:
    // Sets the system clock from "year-month-day hour:minute:second" in local time. 0, or -1 with a line on
    // standard output, also for a text that does not hold all six. The hardware clock is left alone.
    static int SetSystemTime(const char* text);
    // The same from numbers, `milliseconds` counted within the minute; also writes the hardware clock.
    static int SetSystemTime(int year, int month, int day, int hour, int minute, int milliseconds);

    // Packs hexadecimal text, two characters per byte; see PackNibbles. `bytes` holds at least half as many
    // bytes as the text has characters, rounded up. Returns 0.
    static int HexToBytes(std::uint8_t* bytes, const char* text);

    // Fills a 16-byte record: 8 given bytes, the code, the current local time as packed BCD (year - 2000,
    // month, day, hour, minute, second), the value (0 to 99) as packed BCD. Returns 0.
    static int StampRecord(std::uint8_t* record, const std::uint8_t* given, std::uint8_t code,
                           std::uint8_t value);
};
