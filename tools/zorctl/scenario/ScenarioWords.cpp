#include "tools/zorctl/scenario/ScenarioWords.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr char kBlanks[] = " \t\r";

struct Unit {
    const char* name;
    double micros;
};
constexpr Unit kUnits[] = {{"ms", 1e3}, {"s", 1e6}, {"min", 60e6}, {"h", 3600e6}};
constexpr double kLongest = 366.0 * 24 * 3600e6;  // nobody plays for more than a year

constexpr double kExact = 9007199254740992;  // 2^53: up to here a double holds every whole number

// The number that `text` is and nothing else, read by the rules of std::from_chars.
template <typename Value, typename... Format>
std::optional<Value> AllOf(const std::string& text, Format... format) {
    Value value{};
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, format...);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return value;
}

}  // namespace

std::optional<double> NumberOf(const std::string& text) {
    const auto number = AllOf<double>(text, std::chars_format::fixed);
    return number && std::abs(*number) < kExact ? number : std::nullopt;  // "nan" is none either
}

std::optional<ValueRange> RangeIn(const std::string& text) {
    const std::size_t dots = text.find("..");
    const auto low = NumberOf(text.substr(0, dots));
    const auto high = dots != std::string::npos ? NumberOf(text.substr(dots + 2)) : low;
    if (!low || !high) return std::nullopt;
    return ValueRange{*low, *high};
}

CWords::CWords(const std::string& line) : m_line(line) {
    Split();
}

void CWords::Split() {
    for (std::size_t at = 0; (at = m_line.find_first_not_of(kBlanks, at)) != std::string::npos;) {
        if (m_line[at] == '#') return;
        const bool quoted = m_line[at] == '"';
        std::size_t end = quoted ? m_line.find('"', at + 1) : m_line.find_first_of(kBlanks, at);
        if (end == std::string::npos) {
            if (quoted) return FaultAt(at, "the quote is not closed");
            end = m_line.size();
        }
        const std::size_t skip = quoted ? 1 : 0;
        m_words.push_back({m_line.substr(at + skip, end - at - skip), at, end + skip});
        at = end + skip;
    }
}

const std::string& CWords::Peek() const {
    static const std::string kNone;
    return AtEnd() ? kNone : m_words[m_next].text;
}

std::string CWords::Rest() const {
    if (AtEnd()) return "";
    const std::size_t start = m_words[m_next].start;
    return m_line.substr(start, m_words.back().end - start);
}

std::string CWords::TakeRest(const char* what) {
    std::string rest = Rest();
    if (Advance(what) != nullptr) m_next = m_words.size();
    return rest;
}

void CWords::FaultAt(std::size_t column, const std::string& what) {
    if (!m_trouble.empty()) return;
    m_trouble = what;
    m_column = column + 1;
}

std::string CWords::Found() const {
    return AtEnd() ? ", found the end of the line" : ", found \"" + Peek() + '"';
}

void CWords::Fault(const std::string& what) {
    const std::size_t end = m_words.empty() ? m_line.size() : m_words.back().end;
    FaultAt(AtEnd() ? end : m_words[m_next].start, what + Found());
}

void CWords::FaultInLast(const std::string& what) {
    if (m_next > 0) --m_next;
    Fault(what);
}

const std::string* CWords::Advance(const std::string& what) {
    if (AtEnd()) Fault("expected " + what);
    return m_trouble.empty() ? &m_words[m_next++].text : nullptr;
}

bool CWords::TakeIf(const char* word) {
    if (!m_trouble.empty() || Peek() != word) return false;
    ++m_next;
    return true;
}

void CWords::Take(const char* word) {
    if (!TakeIf(word)) Fault(std::string("expected \"") + word + '"');
}

std::string CWords::Text(const char* what) {
    const std::string* word = Advance(what);
    return word != nullptr ? *word : "";
}

std::int64_t CWords::Number(const char* what, std::int64_t least, std::int64_t most) {
    const std::string range =
        std::string(what) + " from " + std::to_string(least) + " to " + std::to_string(most);
    const std::string* word = Advance(range);
    if (word == nullptr) return 0;
    const std::optional<std::int64_t> value = AllOf<std::int64_t>(*word);
    if (value && *value >= least && *value <= most) return *value;
    FaultInLast("expected " + range);
    return 0;
}

PlayTime CWords::Duration(const char* what, const char* lead) {
    const std::string* word = Advance(what);
    if (word == nullptr) return PlayTime{0};
    double number = 0;
    const char* end = word->data() + word->size();
    const auto result =
        std::from_chars(word->data() + std::strlen(lead), end, number, std::chars_format::fixed);
    if (result.ec == std::errc() && !std::signbit(number))
        for (const Unit& unit : kUnits)
            if (std::string(result.ptr, end) == unit.name && number * unit.micros <= kLongest)
                return PlayTime{std::llround(number * unit.micros)};
    FaultInLast(std::string("expected ") + what + " such as 2.5s, 200ms, 5min or 1h");
    return PlayTime{0};
}

std::size_t CWords::Choice(const char* what, const std::vector<const char*>& choices) {
    for (std::size_t i = 0; i < choices.size(); ++i)
        if (TakeIf(choices[i])) return i;
    std::string all;
    for (const char* choice : choices) all += std::string(all.empty() ? "" : ", ") + choice;
    Fault(std::string("expected ") + what + " (" + all + ')');
    return 0;
}

void CWords::End() {
    if (!AtEnd()) Fault("expected the end of the line");
}
