// CSV as spreadsheets write it (RFC 4180): commas, quotes where needed, either line end.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Both count from 1, the column in characters.
struct TextPlace {
    int line = 1;
    int column = 1;
};

struct CsvField {
    std::string text;
    TextPlace at;
};

// What is wrong with a text, and where.
struct TextTrouble {
    TextPlace at;
    std::string what;
};

// Takes a text apart record by record. Faults do not stop it: it goes on with the next field.
class CCsvReader {
  public:
    // `text` must outlive the reader; a byte-order mark in front of it is passed over.
    explicit CCsvReader(const std::string& text);

    // The next record that has anything in it; false at the end. Appends the faults in it to `troubles`.
    bool Next(std::vector<CsvField>& record, std::vector<TextTrouble>& troubles);

  private:
    bool AtEnd() const { return m_next >= m_text.size(); }
    bool At(const char* anyOf) const;
    char Take();
    void TakeLineEnd();
    std::vector<CsvField> TakeRecord(std::vector<TextTrouble>& troubles);
    CsvField TakeField(std::vector<TextTrouble>& troubles);
    void TakeQuoted(CsvField& field, std::vector<TextTrouble>& troubles);

    const std::string& m_text;
    std::size_t m_next = 0;
    TextPlace m_place;
};

// Appends `value` as a field of a record, in quotes only where it needs them. `first` is true for the first
// of a record.
void AppendCsvField(std::string& record, const std::string& value, bool first);
