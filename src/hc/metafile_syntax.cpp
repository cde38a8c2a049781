#include "hc/metafile_syntax.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>

#include "hc/text.h"

namespace hc::metafile {

std::string ElementName(ContentKind kind) {
    std::string name(TypeWord(kind));
    bool start = true;
    for (char& c : name) {
        if (c == ' ') {
            c = '_';
            start = true;
        } else if (start) {
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
            start = false;
        }
    }
    return name;
}

bool KindOfElement(std::string_view element, ContentKind& kind) {
    // Looked up for every element of a file: a table made once.
    static const std::unordered_map<std::string, ContentKind> kKinds = [] {
        std::unordered_map<std::string, ContentKind> kinds;
        for (size_t i = 0; i < kContentKindCount; ++i)
            kinds.emplace(ToLower(ElementName(static_cast<ContentKind>(i))),
                          static_cast<ContentKind>(i));
        return kinds;
    }();
    auto found = kKinds.find(ToLower(element));
    if (found == kKinds.end()) return false;
    kind = found->second;
    return true;
}

std::string Quoted(std::string_view text) {
    std::string out = "\"";
    for (char c : text) {
        auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\r') {
            out += "\\r";
        } else if (byte < 0x20 || byte == 0x7f) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", byte);
            out += escape;
        } else {
            out += c;
        }
    }
    return out + '"';
}

std::string Number(float value) {
    // The shortest text that reads back as the same float.
    char buffer[32];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return error == std::errc{} ? std::string(buffer, end) : std::string("nan");
}

} // namespace hc::metafile
