#include "tools/zorctl/messages/MessageLines.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <map>

#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/messages/DecodedLine.h"
#include "tools/zorctl/text/HexText.h"

void AddLineForm(CLI::App& command, LineForm& form) {
    const std::map<std::string, ETimes> kTimes{
        {"clock", ETimes::Clock}, {"date", ETimes::Date}, {"delta", ETimes::Delta}, {"none", ETimes::None}};
    auto* json = command.add_flag("--json", form.json, "One JSON object per line");
    command.add_flag("--hex", form.hex, "The frame's bytes instead of what they say; in JSON beside it");
    command.add_option("--time", form.times, "Time stamps: clock, date, delta (since the line before), none")
        ->transform(CLI::CheckedTransformer(kTimes, CLI::ignore_case).description("KIND"))
        ->excludes(json);
}

std::string CMessageLines::Time(const std::timespec& time) {
    if (m_form.times == ETimes::None) return "";
    if (m_form.times != ETimes::Delta)
        return TimeText(time, m_form.json || m_form.times == ETimes::Date ? kDateFormat : kClockFormat);
    const std::timespec before = m_before.value_or(time);
    const double seconds = static_cast<double>(time.tv_sec - before.tv_sec) +
                           static_cast<double>(time.tv_nsec - before.tv_nsec) / 1e9;
    char text[32];
    std::snprintf(text, sizeof text, "%+.3f", seconds);
    return text;
}

std::string CMessageLines::Next(const TakenMessage& taken) {
    LineHead head{Time(taken.time), taken.sender, ""};
    m_before = taken.time;
    const std::string hex =
        m_form.hex ? HexText(taken.frame.data(), taken.frame.size(), m_form.json ? "" : " ") : "";
    if (m_form.json) {
        head.frame = hex;
        return JsonLine(head, taken.decoded);
    }
    if (!m_form.hex) return TextLine(head, taken.decoded);
    return head.time + (head.time.empty() ? "" : " ") + hex;
}

bool CMessageLines::Print(const TakenMessage& taken) {
    return m_form.json ? PrintJson(Next(taken)) : PrintLine(Next(taken));
}
