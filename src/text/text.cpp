#include "text/text.h"

#include <charconv>
#include <cstdarg>
#include <cstdio>

namespace obsidra::text {

std::string KeyText(std::int64_t key) {
    // Paths of nameless segments are made of key texts: no printf for them.
    char buffer[16];
    const auto [end, error] =
        std::to_chars(buffer, buffer + sizeof buffer, static_cast<std::uint64_t>(key), 16);
    std::string text(buffer, end);
    for (char& c : text)
        c = Upper(c);
    return text;
}

std::string VFormat(const char* format, va_list args) {
    char buffer[kBufferSize];
    int written = std::vsnprintf(buffer, sizeof buffer, format, args);
    return written < 0 ? std::string() : std::string(buffer);
}

std::string Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = VFormat(format, args);
    va_end(args);
    return text;
}

void AppendFormat(std::string& out, const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list measure;
    va_copy(measure, args);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length > 0) {
        const std::size_t start = out.size();
        out.resize(start + static_cast<std::size_t>(length) + 1);
        std::vsnprintf(out.data() + start, static_cast<std::size_t>(length) + 1, format, args);
        out.resize(start + static_cast<std::size_t>(length));
    }
    va_end(args);
}

std::string ToLower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        c = Lower(c);
    return lower;
}

std::string ToUpper(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        c = Upper(c);
    return upper;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (Lower(a[i]) != Lower(b[i])) return false;
    return true;
}

std::string_view Trim(std::string_view text, std::string_view blanks) {
    std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return text.substr(text.size());
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> Fields(std::string_view text, char separator,
                                     std::string_view blanks) {
    std::vector<std::string_view> fields;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == separator) {
            fields.push_back(Trim(text.substr(start, i - start), blanks));
            start = i + 1;
        }
    }
    return fields;
}

} // namespace obsidra::text
