#include "tools/zorctl/scenario/PlayWatch.h"

#include <algorithm>

#include "tools/zorctl/messages/DecodedLine.h"
#include "tools/zorctl/scenario/ScenarioWords.h"
#include "tools/zorctl/text/Json.h"

namespace {

bool FitsValue(const std::string& wanted, const std::string& value) {
    if (wanted == value) return true;
    const auto range = RangeIn(wanted);
    const auto number = NumberOf(value);
    return range && number && *number >= range->low && *number <= range->high;
}

const DecodedField* Find(const std::vector<DecodedField>& fields, const std::string& name) {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&name](const DecodedField& field) { return field.name == name; });
    return found != fields.end() ? &*found : nullptr;
}

// The members of a JSON body, as fields. The port comes with the fields of the frame.
std::vector<DecodedField> Members(const std::string& document) {
    std::vector<DecodedField> members;
    const Json object = ParseJson(document);
    for (const auto& [name, value] : object.items())
        members.push_back(
            {name, value.is_string() ? value.get<std::string>() : JsonText(value), !value.is_string()});
    return members;
}

// What stands for the whole message: its own fields, and its document's.
std::vector<DecodedField> HeadOf(const DecodedFrame& decoded) {
    std::vector<DecodedField> head = decoded.fields;
    if (decoded.document.empty()) return head;
    const std::vector<DecodedField> members = Members(decoded.document);
    head.insert(head.end(), members.begin(), members.end());
    return head;
}

// True when all of `wanted` that `fields` does not answer is left in `rest`, and the rest of it fits.
bool FitsFields(const std::vector<WantedField>& wanted, const std::vector<DecodedField>& fields,
                std::vector<WantedField>& rest) {
    for (const WantedField& want : wanted) {
        const DecodedField* field = Find(fields, want.name);
        if (field == nullptr)
            rest.push_back(want);
        else if (!FitsValue(want.value, field->value))
            return false;
    }
    return true;
}

bool FitsWhole(const std::vector<WantedField>& wanted, const std::vector<DecodedField>& fields) {
    std::vector<WantedField> rest;
    return FitsFields(wanted, fields, rest) && rest.empty();
}

// Of a long message only what was asked for; a list as it is.
std::string Shown(const Expectation& wanted, const DecodedFrame& decoded) {
    if (decoded.isList || decoded.message == nullptr) return UntimedLine(decoded);
    std::string text = decoded.message->name;
    const std::vector<DecodedField> head = HeadOf(decoded);
    for (const WantedField& want : wanted.fields) {
        const DecodedField* field = Find(head, want.name);
        text += ' ' + want.name + ' ' + (field != nullptr ? field->value : "-");
    }
    return text;
}

bool IsOfWantedPort(const Expectation& wanted, const DecodedFrame& decoded) {
    const DecodedField* port = Find(decoded.fields, "port");
    return std::any_of(wanted.fields.begin(), wanted.fields.end(), [port](const WantedField& want) {
        return want.name == "port" && port != nullptr && FitsValue(want.value, port->value);
    });
}

}  // namespace

std::vector<DecodedField> EventFields(const EventRow& event) {
    return {{"point", std::to_string(event.point), true},
            {"value", std::to_string(event.value), true},
            {"table", std::to_string(event.table), true}};
}

bool Fits(const Expectation& wanted, const DecodedFrame& decoded) {
    if (wanted.code != decoded.code) return false;
    std::vector<WantedField> rest;
    if (!FitsFields(wanted.fields, HeadOf(decoded), rest)) return false;
    return rest.empty() || std::any_of(decoded.entries.begin(), decoded.entries.end(),
                                       [&rest](const auto& entry) { return FitsWhole(rest, entry); });
}

bool Fits(const Expectation& wanted, const EventRow& event) {
    return !wanted.code && event.text.find(wanted.eventText) != std::string::npos &&
           FitsWhole(wanted.fields, EventFields(event));
}

CPlayWatch::CPlayWatch(const ScenarioLine& line, PlayTime start)
    : m_line(&line), m_start(start), m_end(start + std::get<Expectation>(line.action).within) {}

void CPlayWatch::See(const DecodedFrame& decoded) {
    if (m_hasCome || !Wanted().code) return;
    m_hasCome = Fits(Wanted(), decoded);
    if (decoded.code == *Wanted().code) {
        const bool ofPort = IsOfWantedPort(Wanted(), decoded);
        if (!m_ofPort || ofPort || m_hasCome) m_nearest = Shown(Wanted(), decoded);
        m_ofPort = m_ofPort || ofPort;
    } else if (decoded.message != nullptr) {
        NoteOther(decoded.message->name);
    }
}

void CPlayWatch::See(const EventRow& event) {
    if (m_hasCome || Wanted().code) return;
    m_hasCome = Fits(Wanted(), event);
    m_nearest = '"' + event.text + '"';
    for (const DecodedField& field : EventFields(event)) m_nearest += ' ' + field.name + ' ' + field.value;
}

void CPlayWatch::NoteOther(const std::string& name) {
    if ((m_otherNames + ',').find(name + ',') != std::string::npos) return;
    m_otherNames += (m_otherNames.empty() ? "" : ", ") + name;
}

std::string CPlayWatch::CameInstead() const {
    if (!m_nearest.empty()) return m_nearest;
    if (!m_otherNames.empty()) return "only " + m_otherNames;
    return Wanted().code ? "no message" : "no event";
}
