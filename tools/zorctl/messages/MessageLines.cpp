#include "tools/zorctl/messages/MessageLines.h"

#include <cstdio>

#include "tools/zorctl/messages/DecodedLine.h"
#include "tools/zorctl/text/HexText.h"

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

bool CMessageLines::Print(const TakenMessage& taken) {
    LineHead head{Time(taken.time), taken.sender, ""};
    m_before = taken.time;
    const std::string hex =
        m_form.hex ? HexText(taken.frame.data(), taken.frame.size(), m_form.json ? "" : " ") : "";
    if (m_form.json) {
        head.frame = hex;
        return PrintJson(AsJson(head, taken.decoded));
    }
    if (!m_form.hex) return PrintLine(TextLine(head, taken.decoded));
    return PrintLine(head.time + (head.time.empty() ? "" : " ") + hex);
}
