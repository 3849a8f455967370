#include "tools/zorctl/watch/ViewLayout.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <numeric>
#include <tuple>

#include "tools/zorctl/text/PlainText.h"

namespace {

// ---- texts by columns of a terminal ---------------------------------------------------------------------

// The character that begins at `at`, and how many columns it takes. What the terminal cannot show, or would
// take for a command, is a question mark.
struct Character {
    std::string text;
    int columns;
    std::size_t length;  // bytes of the original
};

Character CharacterAt(const std::string& text, std::size_t at) {
    std::mbstate_t state{};
    wchar_t wide = 0;
    const std::size_t length = std::mbrtowc(&wide, text.data() + at, text.size() - at, &state);
    const bool whole = length > 0 && length <= text.size() - at;
    const bool fit = whole && IsFitForTerminal(static_cast<char32_t>(wide));
    const int columns = fit ? wcwidth(wide) : -1;
    if (columns < 0) return {"?", 1, whole ? length : 1};
    return {text.substr(at, length), columns, length};
}

// The beginning of `text` that fits `columns`, which are lessened by what it takes.
std::string Cut(const std::string& text, int& columns) {
    std::string cut;
    for (std::size_t at = 0; at < text.size();) {
        const Character character = CharacterAt(text, at);
        if (character.columns > columns) break;
        cut += character.text;
        columns -= character.columns;
        at += character.length;
    }
    return cut;
}

std::string Blanks(int count) {
    return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

std::string Fit(const std::string& text, int columns) {
    const std::string cut = Cut(text, columns);
    return cut + Blanks(columns);
}

// Cuts and fills `line` to exactly `columns`.
ScreenLine Fit(const ScreenLine& line, int columns) {
    ScreenLine fit;
    for (const Span& span : line) fit.push_back({Cut(span.text, columns), span.look});
    fit.push_back({Blanks(columns)});
    return fit;
}

// Adds `shown`, `columns` wide and followed by `gap`. Words are cut; a number that is wider moves the rest of
// the line, as a cut one would lie.
void AddCell(ScreenLine& line, const Shown& shown, int columns, bool toTheRight, int gap) {
    int rest = columns;
    const std::string cut = Cut(shown.text, rest);
    line.push_back({Blanks(toTheRight ? rest : 0)});
    line.push_back({toTheRight ? shown.text : cut, shown.IsFresh() ? ELook::Fresh : ELook::Plain});
    line.push_back({Blanks((toTheRight ? 0 : rest) + gap)});
}

// "-- events: not there ------"
ScreenLine Heading(const std::string& name, const std::string& note, int columns) {
    const std::string text = "-- " + name + (note.empty() ? "" : ": " + note) + ' ';
    return {{text + std::string(static_cast<std::size_t>(std::max(columns, 0)), '-'), ELook::Heading}};
}

// ---- parts ----------------------------------------------------------------------------------------------

struct PortColumn {
    const char* title;
    Shown PortPicture::*cell;
    int columns;
    bool toTheRight;
};

constexpr int kPortNumberColumns = 4;
constexpr PortColumn kPortColumns[] = {
    {"state", &PortPicture::state, 10, false},   {"gun", &PortPicture::gun, 16, false},
    {"voltage", &PortPicture::voltage, 8, true}, {"current", &PortPicture::current, 8, true},
    {"SoC", &PortPicture::charge, 5, true},      {"energy", &PortPicture::energy, 11, true},
    {"meter", &PortPicture::meter, 11, true},
};

int GapFor(int columns) {
    constexpr int kMostGap = 4;
    int cells = kPortNumberColumns;
    for (const PortColumn& column : kPortColumns) cells += column.columns;
    return std::clamp((columns - cells) / static_cast<int>(std::size(kPortColumns)), 1, kMostGap);
}

void AddPorts(const StationPicture& picture, int columns, std::vector<ScreenLine>& screen) {
    const int gap = GapFor(columns);
    ScreenLine heading;
    AddCell(heading, {"port"}, kPortNumberColumns, true, gap);
    for (const PortColumn& column : kPortColumns)
        AddCell(heading, {column.title}, column.columns, column.toTheRight, gap);
    for (Span& span : heading) span.look = ELook::Heading;
    screen.push_back(heading);
    if (!picture.portNote.empty()) screen.push_back({{Blanks(kPortNumberColumns + gap) + picture.portNote}});
    for (const PortPicture& port : picture.ports) {
        ScreenLine& line = screen.emplace_back();
        AddCell(line, {std::to_string(port.port)}, kPortNumberColumns, true, gap);
        for (const PortColumn& column : kPortColumns)
            AddCell(line, port.*column.cell, column.columns, column.toTheRight, gap);
    }
}

// The `count` points that are most worth a place, in the order of the tables.
std::vector<const PointPicture*> Choose(const std::vector<PointPicture>& points, std::size_t count) {
    std::vector<std::size_t> places(points.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    const auto rank = [&points](std::size_t place) {
        const Shown& value = points[place].value;
        return std::make_tuple(value.age, value.text == "0", place);
    };
    std::sort(places.begin(), places.end(),
              [&rank](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
    places.resize(std::min(places.size(), count));
    std::sort(places.begin(), places.end());
    std::vector<const PointPicture*> chosen(places.size());
    std::transform(places.begin(), places.end(), chosen.begin(),
                   [&points](std::size_t place) { return &points[place]; });
    return chosen;
}

// "P2 Gun connected             1  "
void AddPoint(ScreenLine& line, const PointPicture& point, int columns) {
    constexpr int kPort = 3;
    constexpr int kGap = 2;
    line.push_back({Fit(point.port > 0 ? 'P' + std::to_string(point.port) : "", kPort)});
    int rest = columns - kPort - kGap;
    Cut(point.value.text, rest);
    line.push_back({Fit(point.name, rest - 1) + ' '});
    AddCell(line, point.value, 0, true, kGap);
}

constexpr int kPointColumns = 38;  // the least that one takes

int PointsAcross(int columns) {
    return std::max(columns / kPointColumns, 1);
}

// Down, then across.
void AddPoints(const StationPicture& picture, int lines, int columns, std::vector<ScreenLine>& screen) {
    const int across = PointsAcross(columns);
    const auto down = static_cast<std::size_t>(std::max(lines, 0));
    const auto chosen = Choose(picture.points, down * static_cast<std::size_t>(across));
    for (std::size_t row = 0; row < down; ++row) {
        ScreenLine& line = screen.emplace_back();
        for (std::size_t i = row; i < chosen.size(); i += down) AddPoint(line, *chosen[i], columns / across);
    }
}

void AddNewest(const ListPicture& list, int lines, std::vector<ScreenLine>& screen) {
    const auto room = static_cast<std::size_t>(std::max(lines, 0));
    const std::size_t first = list.lines.size() > room ? list.lines.size() - room : 0;
    for (std::size_t i = 0; i < room; ++i) {
        ScreenLine& line = screen.emplace_back();
        if (first + i >= list.lines.size()) continue;
        const Shown& shown = list.lines[first + i];
        line.push_back({shown.text, shown.IsFresh() ? ELook::Fresh : ELook::Plain});
    }
}

}  // namespace

std::vector<ScreenLine> LayOut(const StationPicture& picture, int lines, int columns) {
    constexpr int kHeadings = 3;
    std::vector<ScreenLine> screen;
    const std::string right = ' ' + picture.time + "  q quits ";
    const std::string left = " zorctl watch " + picture.directory + "  " + picture.process;
    screen.push_back({{Fit(left, columns - static_cast<int>(right.size())) + right, ELook::Heading}});
    AddPorts(picture, columns, screen);
    const int room = std::max(lines - static_cast<int>(screen.size()) - kHeadings, 0);
    const int across = PointsAcross(columns);
    const int points =
        std::min(room / kHeadings, (static_cast<int>(picture.points.size()) + across - 1) / across);
    const int events = (room - points) / 2;
    screen.push_back(Heading("points", picture.pointNote, columns));
    AddPoints(picture, points, columns, screen);
    screen.push_back(Heading("events", picture.events.note, columns));
    AddNewest(picture.events, events, screen);
    screen.push_back(Heading("messages", picture.messages.note, columns));
    AddNewest(picture.messages, room - points - events, screen);
    screen.resize(static_cast<std::size_t>(std::clamp(lines, 0, static_cast<int>(screen.size()))));
    for (ScreenLine& line : screen) line = Fit(line, columns);
    return screen;
}
