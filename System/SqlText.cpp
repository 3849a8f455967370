#include "System/SqlText.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

const char* CSqlTextBase::Quotable(const char* value) {
    if (std::strchr(value, '\'') != nullptr) m_defect = "a value holds an apostrophe";
    return value;
}

void CSqlTextBase::Format(const char* format, ...) {
    std::memset(m_buffer, 0, m_size);
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(m_buffer, m_size, format, arguments);
    va_end(arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= m_size) m_defect = "the statement is too long";
}
