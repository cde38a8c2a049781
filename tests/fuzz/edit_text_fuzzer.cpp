// Any text typed into "Edit" on the nodes of a small fixed scene: attribute lines, geometry
// items, definitions and segments. The first byte picks the node, the rest is the text; the
// edit is taken or refused, and the database stays sound.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

#include <obsidra/hc_check.h>

#include "soak/soak_scene.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static obsidra::soak::TreeSession* session = [] {
        HC_Define_Error_Handler([](const char*, const char*) {});
        return new obsidra::soak::TreeSession;
    }();
    if (size == 0) return 0;
    HC_KEY model = session->ModelKey();
    HC_Open_Segment_By_Key(model);
    HC_Flush_Contents(".", "everything");
    HC_Close_Segment();
    std::mt19937 random(1);
    obsidra::soak::BuildRandomScene(model, random, 6);
    session->Rebuild();
    session->ExpandAll(4);
    HoopsSegmentTree& tree = session->Tree();
    // An attribute line of every kind under the top node, to be edited like the rest.
    for (const std::string& name : obsidra::soak::AttributeNames(tree))
        tree.AddAttribute(tree.GetTopNode(), -1, name.c_str());
    std::vector<TreeGraphItem*> nodes = session->Nodes();
    TreeGraphItem* node = nodes[data[0] % nodes.size()];
    tree.ApplyEditedText(node, std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
    if (HC_Check_Database(nullptr, 0) != 0) std::abort();
    return 0;
}
