#pragma once

// A view over a scene file, for the commands that look at the scene as the segment browser does:
// the file is read into a host model's segment, and a segment tree starts at that model.

#include <memory>
#include <ostream>
#include <string>

#include "mvo/base_model.h"
#include "mvo/base_view.h"
#include "scenetree/hoops_segment_tree.h"

namespace obsidra::tools {

class SceneSession {
public:
    // Reads the file into the model; false (with the reason on err) when it cannot.
    bool Load(const std::string& file, std::ostream& err);
    HoopsSegmentTree& Tree() { return *m_tree; }
    TreeGraph& Graph() { return m_graph; }
    RecordingNotifier& Notifier() { return m_notifier; }
    HBaseView& View() { return *m_view; }

private:
    TreeGraph m_graph;
    RecordingNotifier m_notifier;
    std::unique_ptr<HBaseModel> m_model;
    std::unique_ptr<HBaseView> m_view;
    std::unique_ptr<HoopsSegmentTree> m_tree;
};

// A node's label on one line: line breaks inside a label print as "\n".
std::string OneLine(const char* label);

} // namespace obsidra::tools
