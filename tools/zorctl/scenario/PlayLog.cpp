#include "tools/zorctl/scenario/PlayLog.h"

#include <cjson/cJSON.h>

#include <cstdio>
#include <memory>

#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/messages/DecodedLine.h"
#include "tools/zorctl/messages/MessageLines.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

// A JSON object as one line, begun with the time.
class CJsonLine {
  public:
    explicit CJsonLine(const std::timespec& now) { Text("time", TimeText(now, kDateFormat)); }
    CJsonLine& Text(const char* name, const std::string& value) {
        cJSON_AddStringToObject(m_object.get(), name, AsUtf8(value).c_str());
        return *this;
    }
    CJsonLine& Number(const char* name, double value) {
        cJSON_AddNumberToObject(m_object.get(), name, value);
        return *this;
    }
    CJsonLine& Flag(const char* name, bool value) {
        cJSON_AddBoolToObject(m_object.get(), name, value ? 1 : 0);
        return *this;
    }
    std::string Print() const {
        const std::unique_ptr<char, void (*)(void*)> text(cJSON_PrintUnformatted(m_object.get()), cJSON_free);
        return text != nullptr ? text.get() : "";
    }

  private:
    std::unique_ptr<cJSON, void (*)(cJSON*)> m_object{cJSON_CreateObject(), cJSON_Delete};
};

std::string Shown(const ScenarioLine& line) {
    const auto* remark = std::get_if<Remark>(&line.action);
    return remark != nullptr ? remark->text : line.text;
}

double Seconds(PlayTime time) {
    return std::chrono::duration<double>(time).count();
}

}  // namespace

// Line by line, for whoever reads the other end of a pipe.
void CPlayLog::Print(const std::string& line) {
    m_works = m_works && (m_output == EPlayOutput::Json ? PrintJson(line) : PrintLine(line));
}

void CPlayLog::Played(const std::timespec& now, const ScenarioLine& line) {
    if (m_output == EPlayOutput::Json)
        Print(CJsonLine(now).Number("line", line.number).Text("action", line.text).Print());
    else if (m_output == EPlayOutput::All)
        Print(TimeText(now, kClockFormat) + " -- " + Shown(line));
}

void CPlayLog::Came(const TakenMessage& taken) {
    if (m_output == EPlayOutput::Json)
        Print(CMessageLines({true}).Next(taken));
    else if (m_output == EPlayOutput::All)
        Print(CMessageLines({}).Next(taken));
}

void CPlayLog::Recorded(const std::timespec& now, const EventRow& event) {
    const std::vector<DecodedField> fields = EventFields(event);
    if (m_output == EPlayOutput::Json) {
        CJsonLine line(now);
        line.Text("event", event.text);
        for (const DecodedField& field : fields) line.Number(field.name.c_str(), std::stod(field.value));
        Print(line.Print());
    } else if (m_output == EPlayOutput::All) {
        std::string text = TimeText(now, kClockFormat) + " SOE";
        for (const DecodedField& field : fields) text += ' ' + field.name + '=' + field.value;
        Print(text + " \"" + event.text + '"');
    }
}

void CPlayLog::Decided(const std::timespec& now, const std::string& file, const CPlayWatch& watch,
                       PlayTime time) {
    const ScenarioLine& line = watch.Line();
    if (m_output == EPlayOutput::Json) {
        CJsonLine json(now);
        json.Number("line", line.number).Text("expectation", line.text).Flag("met", watch.IsMet());
        if (watch.HasCome()) json.Number("after", Seconds(time - watch.Start()));
        if (!watch.IsMet()) json.Text("came", watch.CameInstead());
        Print(json.Print());
    }
    if (!watch.IsMet()) return Failed(file, line, "failed; came: " + watch.CameInstead());
    if (m_output == EPlayOutput::Json) return;
    char after[32] = "";
    if (watch.HasCome()) std::snprintf(after, sizeof after, " (after %.1f s)", Seconds(time - watch.Start()));
    Print(TimeText(now, kClockFormat) + " ok " + line.text + after);
}

void CPlayLog::Failed(const std::string& file, const ScenarioLine& line, const std::string& what) {
    Complain("%s:%d: %s: %s", file.c_str(), line.number, line.text.c_str(), what.c_str());
}
