#include <cstdlib>
#include <vector>

#include "commands.h"
#include "scene_session.h"

namespace obsidra::tools {

namespace {

constexpr int kDefaultDepth = 3;

// Expands every node down to maxDepth levels below the top node, as a user clicking every
// expander would, and prints each label indented by its level.
void PrintExpanded(TreeGraph& graph, TreeGraphItem* top, int maxDepth, std::ostream& out) {
    struct Entry {
        TreeGraphItem* node;
        int depth;
    };
    std::vector<Entry> pending{{top, 0}};
    while (!pending.empty()) {
        Entry entry = pending.back();
        pending.pop_back();
        out << std::string(static_cast<size_t>(entry.depth) * 2, ' ')
            << OneLine(entry.node->GetLabel()) << "\n";
        if (entry.depth >= maxDepth) continue;
        graph.OnExpandItem(entry.node, true);
        std::vector<Entry> children;
        for (TreeGraphItem* child = entry.node->GetFirstChild(); child;
             child = child->GetNextSibling())
            children.push_back({child, entry.depth + 1});
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
}

} // namespace

int BrowseCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::string file;
    int maxDepth = kDefaultDepth;
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--depth" && i + 1 < args.size()) {
            maxDepth = std::atoi(args[++i].c_str());
        } else if (file.empty()) {
            file = args[i];
        } else {
            file.clear();
            break;
        }
    }
    if (file.empty()) {
        err << "usage: obsidra-scene browse FILE [--depth N]\n";
        return 2;
    }
    SceneSession session;
    if (!session.Load(file, err)) return 1;
    PrintExpanded(session.Graph(), session.Tree().GetTopNode(), maxDepth, out);
    return 0;
}

} // namespace obsidra::tools
