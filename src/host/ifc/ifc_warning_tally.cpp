#include "host/ifc/ifc_warning_tally.h"

namespace obsidra::host::ifc {

void WarningTally::Add(const std::string& key, std::string text) {
    if (const auto it = m_index.find(key); it != m_index.end()) {
        ++m_lines[it->second].second;
    } else if (m_lines.size() >= m_limit) {
        ++m_leftOut;
    } else {
        m_index.emplace(key, m_lines.size());
        m_lines.emplace_back(std::move(text), 1);
    }
}

std::vector<std::string> WarningTally::Lines() const {
    std::vector<std::string> lines;
    lines.reserve(m_lines.size());
    for (const auto& [text, times] : m_lines)
        lines.push_back(times > 1 ? text + " (x " + std::to_string(times) + ")" : text);
    if (m_leftOut > 0)
        lines.push_back("(" + std::to_string(m_leftOut) + " further messages left out)");
    return lines;
}

} // namespace obsidra::host::ifc
