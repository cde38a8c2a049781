#include <obsidra/hc.h>

#include "commands.h"
#include "scene_session.h"
#include "scenetree/scene_access.h"

namespace obsidra::tools {

// PATH names a segment below the model ("house/roof"), or is absolute; a key text ("%llX")
// names any object. The object is found as the browser's key search finds it.
int InfoCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() != 2) {
        err << "usage: obsidra-scene info FILE PATH|KEY\n";
        return 2;
    }
    SceneSession session;
    if (!session.Load(args[0], err)) return 1;
    HoopsSegmentTree& tree = session.Tree();
    std::string keyText = args[1];
    HC_Open_Segment_By_Key(session.View().GetModelKey());
    if (HC_QShow_Existence(args[1].c_str(), "self")) {
        HC_KEY key = HC_Open_Segment(args[1].c_str());
        HC_Close_Segment();
        keyText = obsidra::scenetree::KeyText(key);
    }
    HC_Close_Segment();
    TreeGraphItem* node = nullptr;
    if (keyText == obsidra::scenetree::KeyText(tree.GetStartKey()))
        node = tree.GetTopNode();
    else if (tree.FindAndSelectByKeyText(keyText.c_str()))
        node = tree.GetRevealedNodes().front();
    if (!node) {
        err << "obsidra-scene: nothing below the model is " << args[1] << "\n";
        return 1;
    }
    for (const std::string& line : tree.InformationLines(node))
        out << line << "\n";
    return 0;
}

} // namespace obsidra::tools
