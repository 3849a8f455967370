// Diagnostic lines on standard output: a green header with the operation's name and source line, the text, a
// reset.
#pragma once

#include <cstddef>

class CDiagLine {
  public:
    // `operation` is the caller's __func__; the line number is the caller's own.
    explicit CDiagLine(const char* operation, int line = __builtin_LINE())
        : m_operation(operation), m_line(line) {}

    // Prints header, text and reset line. A line break inside the text is the format's own.
    void Print(const char* format, ...) const __attribute__((format(printf, 2, 3)));

    // Prints `title` as above, then `length` bytes as DumpBytes does.
    void Dump(const char* title, const void* data, std::size_t length) const;

    // As Print, but what follows belongs to the same record, up to EndRecord.
    void PrintUnended(const char* format, ...) const __attribute__((format(printf, 2, 3)));

  private:
    const char* m_operation;
    int m_line;
};

// Prints a line that has no header; the line break at its end is added.
void PrintPlain(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Lets the log have all that was printed so far, as one record: it keeps it or leaves it out as a whole.
void EndRecord();

// Ends the record, once it has printed each byte as "%02x " on one line, with a line break at the end.
void DumpBytes(const void* data, std::size_t length);
