// Texts in fixed-size character arrays.
#pragma once

#include <cstddef>
#include <cstring>

// Copies `text` into the array, cut to its size with the terminator kept, the rest of the array zero. A null
// text leaves it empty.
template <std::size_t kSize>
void CopyText(char (&to)[kSize], const char* text) {
    std::memset(to, 0, kSize);
    if (text != nullptr) std::memcpy(to, text, strnlen(text, kSize - 1));
}
