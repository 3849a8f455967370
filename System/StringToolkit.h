// A small string toolkit: a text value that shares its storage, and an ordered list of such values.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// Text value with copy-on-write sharing: copies share one text until one of them is changed.
class CString {
  public:
    CString() = default;
    // Copies the characters up to the NUL. A null pointer gives the empty text.
    explicit CString(const char* text);

    CString& operator=(const char* text);
    CString& operator+=(const char* text);
    CString& operator+=(const CString& other);

    // NUL-terminated, valid while the object is unchanged.
    const char* c_str() const { return m_text ? m_text->c_str() : ""; }
    bool operator==(const char* text) const;
    // Decimal, as ParseUInt32 reads it.
    std::uint32_t ToUnsigned() const;

  private:
    std::shared_ptr<std::string> m_text;       // null while empty
    [[maybe_unused]] std::int32_t m_flag = 1;  // set by every constructor, for whoever tags texts
};

// Ordered list that owns its items.
class CStringList {
  public:
    // Appends a copy; returns its index.
    int Add(const CString& item);
    int Count() const { return static_cast<int>(m_items.size()); }
    // The item at `index`, or an empty text outside the list.
    const CString& At(int index) const;
    // Removes all items, last one first.
    void Clear();

    // Splits `source` and appends the pieces to `list`. `delimiters` is a sequence of single characters used
    // one after another: the first ends the first piece, the second the second, and what follows the last one
    // is the final piece.
    static void Split(const CString& source, const char* delimiters, CStringList& list);

  private:
    std::vector<std::unique_ptr<CString>> m_items;
    CString m_empty;
};
