// What a play shows on standard output, and its failures on standard error.
#pragma once

#include <ctime>
#include <string>

#include "tools/zorctl/messages/Decode.h"
#include "tools/zorctl/scenario/PlayWatch.h"
#include "tools/zorctl/scenario/Scenario.h"
#include "tools/zorctl/station/EventReader.h"
#include "tools/zorctl/text/Json.h"

enum class EPlayOutput : std::uint8_t { All, Results, ForPrograms };

class CPlayLog {
  public:
    explicit CPlayLog(EPlayOutput output) : m_output(output) {}

    void Played(const std::timespec& now, const ScenarioLine& line);
    void Came(const TakenMessage& taken);
    void Recorded(const std::timespec& now, const EventRow& event);
    // The outcome of an expectation of `file`, at `time` of the play.
    void Decided(const std::timespec& now, const std::string& file, const CPlayWatch& watch, PlayTime time);
    // What else went wrong with a line.
    void Failed(const std::string& file, const ScenarioLine& line, const std::string& what);

    // False when standard output takes no more.
    bool Works() const { return m_works; }

  private:
    void Print(const std::string& line);
    void Print(const Json& json);

    EPlayOutput m_output;
    bool m_works = true;
};
