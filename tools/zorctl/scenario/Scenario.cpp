#include "tools/zorctl/scenario/Scenario.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "tools/zorctl/scenario/ScenarioActions.h"
#include "tools/zorctl/scenario/ScenarioWords.h"

const char kScenarioGrammar[] =
    R"(A scenario is text, one action per line, '#' begins a comment:

  [WHEN] ACTION
WHEN   +2.5s        that long after the line before
       2.5s         that long after the start, or after the last 'at' line
       at 00:00:00  when the clock shows this next
       nothing      together with the line before
Durations: 200ms, 2.5s, 5min, 1h. Nothing waits: ramps and expectations go on beside the lines that follow.

The acquisition side:
  port N plug|unplug|lock|unlock|charge|stop|fault|clear
  port N gun STATE
  emergency on|off
  yx|yx2 INDEX on|off|VALUE [port N]
  yc INDEX VALUE|text "TEXT" [port N]
  dd INDEX VALUE [port N]
  ramp yc|dd INDEX from VALUE to VALUE over DURATION [port N]
  equipment HEX
INDEX is a place in the live table; with a port it is a point of port 1, taken for this port.

zor_main's side:
  settings on [work DURATION] [idle DURATION] [snapshot DURATION] [long DURATION]
  settings off
  history PORT DAY [HOUR]
  ack PORT DAY ok|reject
DAY is 2024-03-05, today or yesterday.

Beside both:
  say TEXT
  expect [no] MESSAGE {FIELD VALUE} within DURATION
  expect [no] soe "TEXT" {point|value|table VALUE} within DURATION
MESSAGE and FIELD are named as 'zorctl main listen' shows them. All fields of one message have to match, those of an
entry in one entry of its list. VALUE is a text, or a range such as 20..80 or 74.5..75.5. TEXT is part of an event's
text. What came before the line does not count.
)";

namespace {

class CScenarioParser {
  public:
    CScenarioParser(Scenario& scenario, std::vector<std::string>& faults)
        : m_scenario(scenario), m_faults(faults) {}

    void Take(const std::string& text) {
        ++m_number;
        CWords words(text);
        if (words.AtEnd() && words.Trouble().empty()) return;
        ScenarioLine line;
        line.number = m_number;
        TakeWhen(words, line);
        line.text = words.Rest();
        line.action = ParseAction(words);
        words.End();
        if (words.Trouble().empty())
            m_scenario.lines.push_back(std::move(line));
        else
            m_faults.push_back(m_scenario.file + ':' + std::to_string(m_number) + ':' +
                               std::to_string(words.Column()) + ": " + words.Trouble());
    }

  private:
    void TakeWhen(CWords& words, ScenarioLine& line) {
        if (words.TakeIf("at")) {
            line.secondOfDay = TimeOfDay(words);
            m_offset = PlayTime{0};
        } else if (words.Peek().substr(0, 1) == "+") {
            m_offset += words.Duration("an offset", "+");
        } else if (const char first = words.Peek().c_str()[0]; first >= '0' && first <= '9') {
            const PlayTime offset = words.Duration("an offset");
            if (offset < m_offset) words.FaultInLast("this is before the line before");
            m_offset = offset;
        }
        line.offset = m_offset;
    }

    static int TimeOfDay(CWords& words) {
        const std::string text = words.Text("a time of day such as 23:59:58");
        int hour = 0;
        int minute = 0;
        int second = 0;
        int length = 0;
        if (std::sscanf(text.c_str(), "%2d:%2d:%2d%n", &hour, &minute, &second, &length) == 3 &&
            static_cast<std::size_t>(length) == text.size() &&
            text.find_first_of("+- ") == std::string::npos && hour < 24 && minute < 60 && second < 60)
            return (hour * 60 + minute) * 60 + second;
        words.FaultInLast("expected a time of day such as 23:59:58");
        return 0;
    }

    Scenario& m_scenario;
    std::vector<std::string>& m_faults;
    int m_number = 0;
    PlayTime m_offset{0};  // of the line before
};

}  // namespace

Scenario ParseScenario(const std::string& file, const std::string& text, std::vector<std::string>& faults) {
    Scenario scenario;
    scenario.file = file;
    CScenarioParser parser(scenario, faults);
    constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";  // which some editors begin a file with
    const std::size_t begin = text.rfind(kByteOrderMark, 0) == 0 ? std::strlen(kByteOrderMark) : 0;
    for (std::size_t start = begin; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        parser.Take(text.substr(start, end - start));
        start = end + 1;
    }
    return scenario;
}
