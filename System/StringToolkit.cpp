#include "System/StringToolkit.h"

#include <cstring>

#include "System/Numbers.h"

CString::CString(const char* text) {
    *this = text;
}

CString& CString::operator=(const char* text) {
    // The text may be a part of this object's own: build the new one before the old one goes.
    m_text = (text == nullptr || *text == '\0') ? nullptr : std::make_shared<std::string>(text);
    return *this;
}

CString& CString::operator+=(const char* text) {
    if (text == nullptr || *text == '\0') return *this;
    auto joined = std::make_shared<std::string>(c_str());
    joined->append(text);
    m_text = std::move(joined);
    return *this;
}

CString& CString::operator+=(const CString& other) {
    return *this += other.c_str();
}

bool CString::operator==(const char* text) const {
    return std::strcmp(c_str(), text) == 0;
}

std::uint32_t CString::ToUnsigned() const {
    return ParseUInt32(c_str());
}

int CStringList::Add(const CString& item) {
    m_items.push_back(std::make_unique<CString>(item));
    return Count() - 1;
}

const CString& CStringList::At(int index) const {
    if (index < 0 || index >= Count()) return m_empty;
    return *m_items[static_cast<std::size_t>(index)];
}

void CStringList::Clear() {
    while (!m_items.empty()) m_items.pop_back();
}

void CStringList::Split(const CString& source, const char* delimiters, CStringList& list) {
    if (*delimiters == '\0') {
        list.Add(source);
        return;
    }
    const char* from = source.c_str();
    if (*from == '\0') return;
    for (; *delimiters != '\0'; ++delimiters) {
        const char* end = std::strchr(from, *delimiters);
        if (end == nullptr) break;
        list.Add(CString(std::string(from, end).c_str()));
        from = end + 1;
    }
    list.Add(CString(from));
}
