#include "host/ifc/ifc_warning_tally.h"

namespace obsidra::host::ifc {

bool WarningTally::Add(const std::string& key, std::string text, std::size_t limit) {
    if (const auto it = m_index.find(key); it != m_index.end()) {
        ++m_lines[it->second].second;
        return true;
    }
    if (m_lines.size() >= limit) return false;
    m_index.emplace(key, m_lines.size());
    m_lines.emplace_back(std::move(text), 1);
    return true;
}

std::vector<std::string> WarningTally::Lines() const {
    std::vector<std::string> lines;
    lines.reserve(m_lines.size());
    for (const auto& [text, times] : m_lines)
        lines.push_back(times > 1 ? text + " (x " + std::to_string(times) + ")" : text);
    return lines;
}

} // namespace obsidra::host::ifc
