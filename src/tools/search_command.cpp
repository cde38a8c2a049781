#include <cstdlib>
#include <cstring>
#include <vector>

#include "commands.h"
#include "scene_session.h"

namespace obsidra::tools {

namespace {

using obsidra::scenetree::SearchKind;

struct KindWord {
    const char* word;
    SearchKind kind;
};

// The browser's search kinds by the words of its list, and the named-style search it has no
// item for.
constexpr KindWord kKinds[] = {
    {"attribute", SearchKind::Attribute},
    {"geometry", SearchKind::Geometry},
    {"segment", SearchKind::Segment},
    {"include", SearchKind::Include},
    {"style", SearchKind::Style},
    {"segment-reference", SearchKind::SegmentReference},
    {"geometry-reference", SearchKind::GeometryReference},
    {"definition", SearchKind::Definition},
    {"key", SearchKind::Key},
    {"named-style", SearchKind::NamedStyle},
};

bool ParseKind(const std::string& text, SearchKind& kind) {
    for (const KindWord& entry : kKinds)
        if (text == entry.word) {
            kind = entry.kind;
            return true;
        }
    int number = std::atoi(text.c_str());
    if (number < 1 || number > 10) return false;
    kind = static_cast<SearchKind>(number);
    return true;
}

// The labels from the top node down to the node, joined by " > ".
std::string LabelPath(const TreeGraphItem* node, const TreeGraphItem* top) {
    std::vector<const TreeGraphItem*> chain;
    for (const TreeGraphItem* up = node; up; up = up == top ? nullptr : up->GetParent())
        chain.push_back(up);
    std::string path;
    for (auto it = chain.rbegin(); it != chain.rend(); ++it)
        path += (path.empty() ? "" : " > ") + OneLine((*it)->GetLabel());
    return path;
}

} // namespace

int SearchCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    SearchKind kind{};
    if (args.size() != 3 || !ParseKind(args[1], kind)) {
        err << "usage: obsidra-scene search FILE KIND TEXT\n"
               "  KIND: attribute, geometry, segment, include, style, segment-reference,\n"
               "        geometry-reference, definition, key, named-style (or 1 to 10)\n";
        return 2;
    }
    SceneSession session;
    if (!session.Load(args[0], err)) return 1;
    HoopsSegmentTree& tree = session.Tree();
    int hits = tree.Search(kind, args[2]);
    for (const std::string& message : session.Notifier().GetMessages())
        out << message << "\n";
    out << hits << (hits == 1 ? " hit\n" : " hits\n");
    for (const TreeGraphItem* node : tree.GetRevealedNodes())
        out << LabelPath(node, tree.GetTopNode()) << "\n";
    return 0;
}

} // namespace obsidra::tools
