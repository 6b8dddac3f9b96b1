#pragma once
// Formatting into the fixed text fields of the program's records: what does
// not fit is cut, as the fields have always been filled.

#include <cstddef>
#include <cstdio>

namespace velorin {

template <typename... Args>
void FormatField(char* out, std::size_t size, const char* format, Args... args) {
    if (std::snprintf(out, size, format, args...) < 0) out[0] = '\0';
}

} // namespace velorin
