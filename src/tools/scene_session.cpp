#include "scene_session.h"

#include "commands.h"

namespace obsidra::tools {

bool SceneSession::Load(const std::string& file, std::ostream& err) {
    m_model = std::make_unique<HBaseModel>();
    m_view = std::make_unique<HBaseView>(m_model.get());
    if (!LoadScene(file, m_model->GetModelKey(), err)) return false;
    m_tree = std::make_unique<HoopsSegmentTree>(m_view.get(), &m_graph, -1, &m_notifier);
    return true;
}

std::string OneLine(const char* label) {
    std::string line;
    for (const char* c = label ? label : ""; *c; ++c)
        line += *c == '\n' ? std::string("\\n") : std::string(1, *c);
    return line;
}

} // namespace obsidra::tools
