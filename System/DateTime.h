// Local date and time, and the system clock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>

// A local date and time. The epoch value and the broken-down copy always belong together.
class CDateTime {
  public:
    explicit CDateTime(std::time_t epoch) { Set(epoch); }
    CDateTime(int year, int month, int day) { Init(year, month, day, 0, 0, 0); }
    CDateTime(int year, int month, int day, int hour, int minute, int second) {
        Init(year, month, day, hour, minute, second);
    }
    // Parses year, month, day, hour, minute and second, in that order, with a `sscanf` format that reads six
    // ints. What the text does not hold counts as 0, which a date does not survive (see Init).
    explicit CDateTime(const char* text, const char* format = "%d/%d/%d %d:%d:%d");
    // Epoch value of a local time; parts beyond their range carry over, as in mktime.
    static std::time_t ToEpoch(int year, int month, int day, int hour, int minute, int second);
    // The current time.
    static CDateTime Now() { return CDateTime(std::time(nullptr)); }

    // Year 1900 or later, month 1 to 12, day 1 to 31 (not checked against the month: 30 February is 2 March
    // or the 1st), hour 0 to 23, minute and second 0 to 59. Anything else is a programming error and stops
    // the process.
    void Init(int year, int month, int day, int hour, int minute, int second);

    int Year() const { return m_local.tm_year + 1900; }
    int Month() const { return m_local.tm_mon + 1; }  // 1 to 12
    int Day() const { return m_local.tm_mday; }
    int Hour() const { return m_local.tm_hour; }
    int Minute() const { return m_local.tm_min; }
    int Second() const { return m_local.tm_sec; }

    void AddSeconds(std::int32_t seconds) { Set(m_time + seconds); }
    // Moves the date as the station's other processes do: with m the month counted from 0, the year grows by
    // (m + months) / 12 and the month becomes (m + months) mod 12 + m - 1. Not calendar arithmetic, and not
    // to be mended here alone.
    void AddMonths(int months);

    // Formats with a `strftime` format; at most 255 characters, empty beyond that.
    std::string Format(const char* format) const;
    std::string FullText() const { return Format(kFullFormat); }
    std::string DateText() const { return Format(kDateFormat); }
    // The same into a buffer of `size` bytes, for the loop, which does without strings; empty where it does
    // not fit.
    void Write(char* text, std::size_t size, const char* format) const;

    static constexpr char kFullFormat[] = "%Y-%m-%d %H:%M:%S";
    static constexpr char kDateFormat[] = "%Y-%m-%d";

  private:
    void Set(std::time_t epoch);

    std::time_t m_time = 0;
    std::tm m_local{};
};
