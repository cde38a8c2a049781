#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hc/text.h"

namespace hc {

// A segment pattern is a pathname whose levels may hold wildcards: in a level, "*" stands for
// any run of characters and "%" for any one character; a level "..." stands for any number of
// levels, none included. Names compare without regard to case, as everywhere in the database.
// "a/*" names a's children, "a/..." a and everything below it, "/scene/.../*77*" every segment
// below "/scene" whose name holds "77".
struct PatternLevel {
    // Contains is the common wildcard "*text*", matched as a plain search for the text.
    enum class Kind : uint8_t { Name, Wildcard, Contains, AnyLevels };
    Kind kind;
    // A name ("@KEY" for a nameless segment), a wildcard level, or the text a name must contain
    // (in lower case).
    std::string text;
};

struct SegmentPattern {
    // The leading levels that hold no wildcard, as a path to resolve: "." when a relative
    // pattern starts with a wildcard, "/" when an absolute one does.
    std::string_view base;
    // The levels from the first wildcard on.
    std::vector<PatternLevel> levels;
    // Why the pattern names nothing, when it cannot be used ("" when it can).
    std::string_view error;
};

// Splits a trimmed pattern into a base path and the levels that follow it.
SegmentPattern SplitPattern(std::string_view pattern);

// Splits "a/b/*" into ("a/b", "*"): the path before the last level, and that level.
std::pair<std::string_view, std::string_view> SplitLastLevel(std::string_view path);

// Whether a name matches one wildcard level.
bool MatchesWildcard(std::string_view name, std::string_view wildcard);

// Whether a name holds a lower-case text, whatever the case of its own letters. Inline: a
// search asks it of every segment it passes.
inline bool ContainsFolded(std::string_view name, std::string_view text) {
    if (text.size() > name.size()) return false;
    for (size_t start = 0; start + text.size() <= name.size(); ++start) {
        size_t i = 0;
        while (i < text.size() && Lower(name[start + i]) == text[i])
            ++i;
        if (i == text.size()) return true;
    }
    return false;
}

} // namespace hc
