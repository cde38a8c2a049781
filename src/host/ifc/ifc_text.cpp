#include "host/ifc/ifc_text.h"

namespace obsidra::host::ifc {

std::string ToUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (wchar_t wide : text) {
        char32_t c = static_cast<char32_t>(wide);
        if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::string FoldAsciiCase(std::string_view text) {
    std::string folded(text);
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return folded;
}

std::string SegmentNameFor(std::string_view text) {
    std::string name(text);
    for (char& c : name)
        if (c == '/') c = '_';
    const std::size_t first = name.find_first_not_of(" \t");
    const std::size_t last = name.find_last_not_of(" \t");
    name = first == std::string::npos ? std::string() : name.substr(first, last - first + 1);
    if (name.empty() || name == "." || name == ".." || name.front() == '@') name.insert(0, "_");
    return name;
}

std::string OptionValue(std::string_view value) {
    const bool plain = !value.empty() &&
                       value.find_first_of(",=()\"'`") == std::string_view::npos &&
                       value.front() != ' ' && value.back() != ' ';
    if (plain) return std::string(value);
    for (char quote : {'"', '\'', '`'})
        if (value.find(quote) == std::string_view::npos) return quote + std::string(value) + quote;
    // All three quote characters occur: the rarest way out is to give up the backquotes.
    std::string text(value);
    for (char& c : text)
        if (c == '`') c = '\'';
    return '`' + text + '`';
}

} // namespace obsidra::host::ifc
