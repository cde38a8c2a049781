#pragma once

// Small text helpers that every layer shares, so that each is written once: the key text, printf
// into a std::string, ASCII case folding, trimming and splitting into fields.

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace obsidra::text {

// The size of the text buffers the scene interface and the browser fill (HC_TEXT_MAX): a line
// made for one holds at most kBufferSize - 1 bytes.
inline constexpr std::size_t kBufferSize = 4096;

// "%llX" of a key: upper-case hexadecimal, a negative key as 16 digits beginning with F.
std::string KeyText(std::int64_t key);

// printf into a buffer of kBufferSize bytes, cut there as the callers' buffers cut it.
std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string VFormat(const char* format, va_list args);
// printf appended to out, however long it comes out.
void AppendFormat(std::string& out, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Names and keywords fold ASCII letters only; every other byte (UTF-8 included) stays.
constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
std::string ToLower(std::string_view text);
std::string ToUpper(std::string_view text);
bool EqualsIgnoreCase(std::string_view a, std::string_view b);

inline constexpr std::string_view kBlanks = " \t\r\n";

// text without any of the blanks at either end.
std::string_view Trim(std::string_view text, std::string_view blanks = kBlanks);
// The fields between the separators, each trimmed; empty text is one empty field.
std::vector<std::string_view> Fields(std::string_view text, char separator,
                                     std::string_view blanks = kBlanks);

} // namespace obsidra::text
