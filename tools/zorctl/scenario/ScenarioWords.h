// The words of one scenario line, taken one after another.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/zorctl/scenario/Scenario.h"

// Remembers the first fault and its column; after one, everything that is taken is empty or 0.
class CWords {
  public:
    // Words stand between blanks or in double quotes; '#' in front of a word begins a comment.
    explicit CWords(const std::string& line);

    bool AtEnd() const { return m_next == m_words.size(); }
    const std::string& Peek() const;
    // The line from the next word on, without its comment. TakeRest takes it, too.
    std::string Rest() const;
    std::string TakeRest(const char* what);

    // Takes the next word if it is `word`.
    bool TakeIf(const char* word);
    // Each takes the next word, which has to be what is named: `what` says it in a fault.
    void Take(const char* word);
    std::string Text(const char* what);
    std::int64_t Number(const char* what, std::int64_t least, std::int64_t most);
    // 1.5s, 200ms, 2min, 1h; with `lead` in front of it, which may be empty.
    PlayTime Duration(const char* what, const char* lead = "");
    // The index of the word in `choices`.
    std::size_t Choice(const char* what, const std::vector<const char*>& choices);

    // The next word, or the one that was taken last, is wrong.
    void Fault(const std::string& what);
    void FaultInLast(const std::string& what);
    // What follows is too much.
    void End();

    const std::string& Trouble() const { return m_trouble; }
    std::size_t Column() const { return m_column; }  // of the fault, from 1

  private:
    struct Word {
        std::string text;
        std::size_t start;  // in the line, quotes included
        std::size_t end;
    };
    void Split();
    void FaultAt(std::size_t column, const std::string& what);
    std::string Found() const;
    const std::string* Advance(const std::string& what);

    std::string m_line;
    std::vector<Word> m_words;
    std::size_t m_next = 0;
    std::string m_trouble;
    std::size_t m_column = 0;
};

// The number in `text` when it is nothing but decimal digits, perhaps with a point or a sign. None for one of
// which a double would round whole digits away: two such numbers could pass for the same.
std::optional<double> NumberOf(const std::string& text);

struct ValueRange {
    double low;
    double high;
};

// The range in `text`, "LOW..HIGH" or a single number.
std::optional<ValueRange> RangeIn(const std::string& text);
