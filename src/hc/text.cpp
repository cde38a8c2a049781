#include "hc/text.h"

#include <cstdio>
#include <cstring>

#include <obsidra/hc.h>

namespace hc {

namespace {
bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
} // namespace

std::string CollapseBlanks(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char c : Trim(text)) {
        if (IsBlank(c)) {
            if (result.back() != ' ') result += ' ';
        } else {
            result += c;
        }
    }
    return result;
}

std::vector<std::string_view> SplitList(std::string_view text, char separator) {
    std::vector<std::string_view> items;
    size_t start = 0;
    ScanOutsideQuotes(text, [&](size_t i, int depth) {
        if (text[i] == separator && depth == 0) {
            items.push_back(Trim(text.substr(start, i - start)));
            start = i + 1;
        }
    });
    std::string_view last = Trim(text.substr(start));
    if (!last.empty() || !items.empty()) items.push_back(last);
    return items;
}

std::string ParseField(std::string_view text, std::string_view delimiter, int offset) {
    char separator = delimiter.empty() ? ' ' : delimiter.front();
    std::vector<std::string_view> fields;
    size_t start = 0;
    for (size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == separator) {
            fields.push_back(Trim(text.substr(start, i - start)));
            start = i + 1;
        }
    }
    long long index = offset < 0 ? static_cast<long long>(fields.size()) + offset : offset;
    if (index < 0 || index >= static_cast<long long>(fields.size())) return {};
    return std::string(fields[static_cast<size_t>(index)]);
}

void CopyOut(std::string_view text, char* buffer) {
    if (!buffer) return;
    size_t n = text.size() < HC_TEXT_MAX - 1 ? text.size() : HC_TEXT_MAX - 1;
    if (n) std::memcpy(buffer, text.data(), n);
    buffer[n] = '\0';
}

} // namespace hc
