#include "tools/zorctl/text/Csv.h"

#include <algorithm>
#include <cstring>

#include "tools/zorctl/text/PlainText.h"

namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

bool HasContent(const std::vector<CsvField>& record) {
    return std::any_of(record.begin(), record.end(),
                       [](const CsvField& field) { return !field.text.empty(); });
}

}  // namespace

CCsvReader::CCsvReader(const std::string& text) : m_text(text) {
    if (text.rfind(kByteOrderMark, 0) == 0) m_next = std::strlen(kByteOrderMark);
}

bool CCsvReader::Next(std::vector<CsvField>& record, std::vector<TextTrouble>& troubles) {
    record.clear();
    // Spreadsheets leave lines of nothing but commas behind a table.
    while (!AtEnd() && !HasContent(record)) record = TakeRecord(troubles);
    return HasContent(record);
}

bool CCsvReader::At(const char* anyOf) const {
    return !AtEnd() && m_text[m_next] != '\0' && std::strchr(anyOf, m_text[m_next]) != nullptr;
}

char CCsvReader::Take() {
    const char c = m_text[m_next++];
    if (c == '\n') {
        m_place = {m_place.line + 1, 1};
    } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
        ++m_place.column;  // the bytes that continue a character count for none
    }
    return c;
}

void CCsvReader::TakeLineEnd() {
    const bool carriageReturn = At("\r");
    if (carriageReturn) Take();
    if (At("\n"))
        Take();
    else if (carriageReturn)
        m_place = {m_place.line + 1, 1};
}

std::vector<CsvField> CCsvReader::TakeRecord(std::vector<TextTrouble>& troubles) {
    std::vector<CsvField> record{TakeField(troubles)};
    while (At(",")) {
        Take();
        record.push_back(TakeField(troubles));
    }
    TakeLineEnd();
    return record;
}

CsvField CCsvReader::TakeField(std::vector<TextTrouble>& troubles) {
    CsvField field{"", m_place};
    if (At("\"")) TakeQuoted(field, troubles);
    TextPlace stray{0, 0};
    while (!AtEnd() && !At(",\r\n")) {
        if (At("\"") && stray.line == 0) stray = m_place;
        field.text += Take();
    }
    if (stray.line != 0) troubles.push_back({stray, "a quote in the middle of a field"});
    if (field.text.find('\0') != std::string::npos || !IsUtf8(field.text))
        troubles.push_back({field.at, "not UTF-8 text"});
    return field;
}

void CCsvReader::TakeQuoted(CsvField& field, std::vector<TextTrouble>& troubles) {
    for (Take(); !AtEnd();) {
        const char c = Take();
        if (c != '"') {
            field.text += c;
        } else if (At("\"")) {
            field.text += Take();
        } else {
            if (!AtEnd() && !At(",\r\n")) troubles.push_back({m_place, "text behind a closing quote"});
            return;
        }
    }
    troubles.push_back({field.at, "a quote that is never closed"});
}

void AppendCsvField(std::string& record, const std::string& value, bool first) {
    if (!first) record += ',';
    if (value.find_first_of(",\"\r\n") == std::string::npos) {
        record += value;
        return;
    }
    record += '"';
    for (const char c : value) record += c == '"' ? std::string(2, c) : std::string(1, c);
    record += '"';
}
