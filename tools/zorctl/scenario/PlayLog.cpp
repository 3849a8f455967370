#include "tools/zorctl/scenario/PlayLog.h"

#include <cstdio>

#include "tools/zorctl/messages/DecodedLine.h"
#include "tools/zorctl/messages/MessageLines.h"

namespace {

// Begun with the time.
Json JsonAt(const std::timespec& now) {
    return {{"time", TimeText(now, kDateFormat)}};
}

std::string Shown(const ScenarioLine& line) {
    const auto* remark = std::get_if<Remark>(&line.action);
    return remark != nullptr ? remark->text : line.text;
}

}  // namespace

// Line by line, for whoever reads the other end of a pipe.
void CPlayLog::Print(const std::string& line) {
    m_works = m_works && PrintLine(line);
}

void CPlayLog::Print(const Json& json) {
    m_works = m_works && PrintJson(json);
}

void CPlayLog::Played(const std::timespec& now, const ScenarioLine& line) {
    if (m_output == EPlayOutput::ForPrograms) {
        Json json = JsonAt(now);
        json["line"] = line.number;
        json["action"] = line.text;
        Print(json);
    } else if (m_output == EPlayOutput::All) {
        Print(TimeText(now, kClockFormat) + " -- " + Shown(line));
    }
}

void CPlayLog::Came(const TakenMessage& taken) {
    if (m_output != EPlayOutput::Results)
        m_works = m_works && CMessageLines({m_output == EPlayOutput::ForPrograms}).Print(taken);
}

void CPlayLog::Recorded(const std::timespec& now, const EventRow& event) {
    Json json = JsonAt(now);
    json["event"] = event.text;
    std::string text = TimeText(now, kClockFormat) + " SOE";
    for (const DecodedField& field : EventFields(event)) {
        json[field.name] = JsonNumber(field.value);
        text += ' ' + field.name + '=' + field.value;
    }
    if (m_output == EPlayOutput::ForPrograms) Print(json);
    if (m_output == EPlayOutput::All) Print(text + " \"" + event.text + '"');
}

void CPlayLog::Decided(const std::timespec& now, const std::string& file, const CPlayWatch& watch,
                       PlayTime time) {
    const ScenarioLine& line = watch.Line();
    const double seconds = std::chrono::duration<double>(time - watch.Start()).count();
    if (m_output == EPlayOutput::ForPrograms) {
        Json json = JsonAt(now);
        json["line"] = line.number;
        json["expectation"] = line.text;
        json["met"] = watch.IsMet();
        if (watch.HasCome()) json["after"] = seconds;
        if (!watch.IsMet()) json["came"] = watch.CameInstead();
        Print(json);
    }
    if (!watch.IsMet()) return Failed(file, line, "failed; came: " + watch.CameInstead());
    if (m_output == EPlayOutput::ForPrograms) return;
    char after[32] = "";
    if (watch.HasCome()) std::snprintf(after, sizeof after, " (after %.1f s)", seconds);
    Print(TimeText(now, kClockFormat) + " ok " + line.text + after);
}

void CPlayLog::Failed(const std::string& file, const ScenarioLine& line, const std::string& what) {
    Complain(file + ':' + std::to_string(line.number) + ": " + line.text + ": " + what);
}
