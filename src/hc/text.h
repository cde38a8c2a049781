#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/text.h"

namespace hc {

using obsidra::text::EqualsIgnoreCase;
using obsidra::text::KeyText;
using obsidra::text::Lower;
using obsidra::text::ToLower;
using obsidra::text::Trim;
// Trims and folds every run of blanks into one blank.
std::string CollapseBlanks(std::string_view text);
// Walks text as option strings and filters are read: a quoted text ("...", '...' or `...`) is
// passed over whole, and visit(index, depth) is called for every other character with the depth of
// parentheses around it (a ')' that closes nothing leaves the depth at 0). Returns whether every
// quote and parenthesis was closed and no ')' was left over.
template <typename Visit>
bool ScanOutsideQuotes(std::string_view text, Visit&& visit) {
    int depth = 0;
    char quote = 0;
    bool balanced = true;
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (quote) {
            if (c == quote) quote = 0;
            continue;
        }
        if (c == '"' || c == '\'' || c == '`') {
            quote = c;
            continue;
        }
        if (c == ')') {
            if (depth == 0) balanced = false;
            depth = depth > 0 ? depth - 1 : 0;
        }
        visit(i, depth);
        if (c == '(') ++depth;
    }
    return balanced && depth == 0 && quote == 0;
}

// Splits at the separator where it stands outside parentheses and quotes; items are trimmed.
std::vector<std::string_view> SplitList(std::string_view text, char separator);
// The field at offset (negative offsets count from the end, -1 being the last) of text split at
// the delimiter's first character, trimmed of blanks; empty when there is no such field.
std::string ParseField(std::string_view text, std::string_view delimiter, int offset);
// Copies text into a caller's buffer of HC_TEXT_MAX bytes (cut there, always NUL-terminated); a
// null buffer is allowed and receives nothing.
void CopyOut(std::string_view text, char* buffer);

} // namespace hc
