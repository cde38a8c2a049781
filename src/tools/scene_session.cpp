#include "scene_session.h"

#include <fstream>
#include <sstream>

#include "hc/database.h"
#include "hc/metafile.h"

namespace obsidra::tools {

bool SceneSession::Load(const std::string& file, std::ostream& err) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        err << "obsidra-scene: cannot read " << file << "\n";
        return false;
    }
    std::stringstream text;
    text << in.rdbuf();
    m_model = std::make_unique<HBaseModel>();
    m_view = std::make_unique<HBaseView>(m_model.get());
    hc::Database& db = hc::Current();
    std::string error;
    if (!hc::LoadMetafileText(db, text.str(), db.Resolve(m_model->GetModelKey()), error)) {
        err << "obsidra-scene: " << file << ": " << error << "\n";
        return false;
    }
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
