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
    // Counts the problem named by key; its text is the one given the first time. False when the
    // problem is new but the tally already holds limit problems (it is then left out).
    bool Add(const std::string& key, std::string text,
             std::size_t limit = static_cast<std::size_t>(-1));
    bool Add(std::string text, std::size_t limit = static_cast<std::size_t>(-1)) {
        return Add(text, text, limit);
    }

    bool Empty() const { return m_lines.empty(); }
    // Each problem in the order first met, "text (x 37)" when it was met more than once.
    std::vector<std::string> Lines() const;

private:
    std::vector<std::pair<std::string, int>> m_lines; // text, times met
    std::unordered_map<std::string, std::size_t> m_index;
};

} // namespace obsidra::host::ifc
