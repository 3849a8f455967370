// How messages are printed: one line each.
#pragma once

#include <optional>
#include <string>

#include "tools/zorctl/messages/Decode.h"

enum class ETimes {
    Clock,  // local time of day
    Date,   // with the date
    Delta,  // seconds since the line before, "+0.100"
    None
};

struct LineForm {
    bool json = false;
    bool hex = false;  // the frame's bytes: instead of what they say, in JSON beside it
    ETimes times = ETimes::Clock;
};

class CMessageLines {
  public:
    explicit CMessageLines(const LineForm& form) : m_form(form) {}

    // Prints the line of `taken`, which follows the one of the last call. False when standard output takes no
    // more.
    bool Print(const TakenMessage& taken);

  private:
    std::string Time(const std::timespec& time);

    LineForm m_form;
    std::optional<std::timespec> m_before;
};
