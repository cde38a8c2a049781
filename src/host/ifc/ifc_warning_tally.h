// Warnings told once each: a file that repeats one fault thousands of times should give one line
// that says how often, not bury the others.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace obsidra::host::ifc {

class WarningTally {
public:
    // Past limit distinct problems, new ones are only counted.
    explicit WarningTally(std::size_t limit) : m_limit(limit) {}

    // Counts the problem named by key; its text is the one given the first time.
    void Add(const std::string& key, std::string text);
    void Add(std::string text) { Add(text, text); }

    // Each problem in the order first met, "text (x 37)" when it was met more than once, then
    // how many were left out.
    std::vector<std::string> Lines() const;

private:
    std::size_t m_limit;
    std::vector<std::pair<std::string, int>> m_lines; // text, times met
    std::unordered_map<std::string, std::size_t> m_index;
    int m_leftOut = 0;
};

} // namespace obsidra::host::ifc
