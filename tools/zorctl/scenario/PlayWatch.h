// An expectation while its time runs: what came is held against it.
#pragma once

#include <string>
#include <vector>

#include "tools/zorctl/messages/Decode.h"
#include "tools/zorctl/scenario/Scenario.h"
#include "tools/zorctl/station/EventReader.h"

// The fields of an event as an expectation names them.
std::vector<DecodedField> EventFields(const EventRow& event);

// True when `decoded` has what is wanted: every field, those of a list's entries in one and the same entry.
bool Fits(const Expectation& wanted, const DecodedFrame& decoded);
bool Fits(const Expectation& wanted, const EventRow& event);

class CPlayWatch {
  public:
    // Opened at `start`, the time of `line`, which must outlive the watch and hold an expectation.
    CPlayWatch(const ScenarioLine& line, PlayTime start);

    void See(const DecodedFrame& decoded);
    void See(const EventRow& event);

    // Whether what is expected, or must not come, has come.
    bool HasCome() const { return m_hasCome; }
    // Decided at `now`: it has come, or the time is over.
    bool IsDecided(PlayTime now) const { return m_hasCome || now >= m_end; }
    // What to make of it, once decided.
    bool IsMet() const { return m_hasCome == Wanted().wanted; }
    // What came instead of what was expected, or the thing that must not come.
    std::string CameInstead() const;

    const ScenarioLine& Line() const { return *m_line; }
    PlayTime Start() const { return m_start; }

  private:
    const Expectation& Wanted() const { return std::get<Expectation>(m_line->action); }
    void NoteOther(const std::string& name);

    const ScenarioLine* m_line;
    PlayTime m_start;
    PlayTime m_end;
    bool m_hasCome = false;
    std::string m_nearest;     // the last one of the right kind
    bool m_ofPort = false;     // and that one is of the port that is wanted
    std::string m_otherNames;  // of the other kinds, once each
};
