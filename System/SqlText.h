// SQL statements as text, in a fixed buffer. No value ever runs as SQL: a statement whose text does not fit,
// or with a value that would end the quotes it stands in, fails when it is executed, like any other bad
// statement.
#pragma once

#include <cstddef>

class CSqlTextBase {
  public:
    CSqlTextBase(const CSqlTextBase&) = delete;
    CSqlTextBase& operator=(const CSqlTextBase&) = delete;

    // For a value that stands between single quotes. Returns `value`; where it would end the quotes, the
    // statement will fail.
    const char* Quotable(const char* value);
    // Clears the buffer and prints the statement into it.
    void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));

    const char* Text() const { return m_buffer; }
    // Null for a statement that may run, else why it may not.
    const char* Defect() const { return m_defect; }

  protected:
    CSqlTextBase(char* buffer, std::size_t size) : m_buffer(buffer), m_size(size) {}
    ~CSqlTextBase() = default;

  private:
    char* m_buffer;
    std::size_t m_size;
    const char* m_defect = nullptr;
};

template <std::size_t kSize>
class CSqlText : public CSqlTextBase {
  public:
    CSqlText() : CSqlTextBase(m_text, kSize) {}

  private:
    char m_text[kSize] = {};
};
