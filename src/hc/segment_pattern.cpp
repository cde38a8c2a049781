#include "hc/segment_pattern.h"

#include <algorithm>

#include "hc/text.h"

namespace hc {

namespace {

bool IsWildcardLevel(std::string_view level) {
    return level == "..." || level.find_first_of("*%") != std::string_view::npos;
}

// "*text*" with no other wildcard in text.
bool IsContains(std::string_view level) {
    return level.size() > 2 && level.front() == '*' && level.back() == '*' &&
           level.substr(1, level.size() - 2).find_first_of("*%") == std::string_view::npos;
}

} // namespace

SegmentPattern SplitPattern(std::string_view pattern) {
    SegmentPattern split;
    const bool absolute = !pattern.empty() && pattern.front() == '/';
    size_t first = absolute ? 1 : 0; // where the first wildcard level starts
    while (first < pattern.size()) {
        size_t slash = std::min(pattern.find('/', first), pattern.size());
        if (IsWildcardLevel(Trim(pattern.substr(first, slash - first)))) break;
        first = slash + 1;
    }
    if (first >= pattern.size()) {
        split.base = pattern; // an empty one names nothing, as a path
        return split;
    }
    if (first > (absolute ? 1u : 0u))
        split.base = pattern.substr(0, first - 1);
    else
        split.base = absolute ? pattern.substr(0, 1) : std::string_view(".");
    for (size_t start = first; start <= pattern.size();) {
        size_t slash = std::min(pattern.find('/', start), pattern.size());
        std::string_view level = Trim(pattern.substr(start, slash - start));
        start = slash + 1;
        if (level.empty() || level == ".") continue;
        if (level == ".." || level == "....") {
            split.error = "a pattern cannot go up or through includes after a wildcard";
            return split;
        }
        if (level == "...")
            split.levels.push_back({PatternLevel::Kind::AnyLevels, {}});
        else if (IsContains(level))
            split.levels.push_back(
                {PatternLevel::Kind::Contains, ToLower(level.substr(1, level.size() - 2))});
        else if (IsWildcardLevel(level))
            split.levels.push_back({PatternLevel::Kind::Wildcard, std::string(level)});
        else
            split.levels.push_back({PatternLevel::Kind::Name, std::string(level)});
    }
    if (split.levels.size() > 63) split.error = "a pattern may have at most 63 levels";
    return split;
}

// Greedy with one point to come back to: each '*' takes as little as it can, and when the rest
// fails to match it takes one character more.
bool MatchesWildcard(std::string_view name, std::string_view wildcard) {
    size_t n = 0, w = 0;
    size_t star = std::string_view::npos, resume = 0;
    while (n < name.size()) {
        if (w < wildcard.size() && wildcard[w] == '*') {
            star = w++;
            resume = n;
        } else if (w < wildcard.size() &&
                   (wildcard[w] == '%' || Lower(wildcard[w]) == Lower(name[n]))) {
            ++w;
            ++n;
        } else if (star != std::string_view::npos) {
            w = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    while (w < wildcard.size() && wildcard[w] == '*')
        ++w;
    return w == wildcard.size();
}

std::pair<std::string_view, std::string_view> SplitLastLevel(std::string_view path) {
    size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return {std::string_view{}, path};
    std::string_view base = slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
    return {base, path.substr(slash + 1)};
}

} // namespace hc
