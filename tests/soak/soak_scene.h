// What the soak and the edit-text fuzzer share: a segment tree over a host model without a
// window, random scenes with something of every kind the tree shows, and the texts a user might
// type into it.
#pragma once

#include <memory>
#include <random>
#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "mvo/base_model.h"
#include "mvo/base_view.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/notifier.h"
#include "treegraph/tree_graph.h"

namespace obsidra::soak {

// A model, its view and a segment tree from the model's segment, as the browser holds them.
class TreeSession {
public:
    TreeSession();
    ~TreeSession();

    HoopsSegmentTree& Tree() { return *m_tree; }
    HBaseView& View() { return *m_view; }
    HC_KEY ModelKey() const { return m_view->GetModelKey(); }
    // Throws the tree away and makes it anew, as the browser's "Refresh" does.
    void Rebuild();
    // Every node of the tree as it stands (at most limit), parents before children.
    std::vector<TreeGraphItem*> Nodes(size_t limit = 20000) const;
    // Expands every node down to depth levels below the top (at most limit of them), as a user
    // opening everything would.
    void ExpandAll(int depth, int limit = 200);

private:
    TreeGraph m_graph;
    RecordingNotifier m_notifier;
    std::unique_ptr<HBaseModel> m_model;
    std::unique_ptr<HBaseView> m_view;
    std::unique_ptr<HoopsSegmentTree> m_tree;
};

// The segments "/soak library/..." (made when missing) that scenes include: outside every scene,
// including nothing, so that includes never form a cycle. A cycle with two ways round makes every
// tree search run to its step limit (about a second), where the soak would spend its time.
std::vector<HC_KEY> Library();

// Fills the segment with a random scene of about size segments: named and nameless segments,
// shells, texts, polylines, markers and circles, colours, matrices, visibilities and user
// options, includes, styles, named styles, references, definitions and renumbered keys.
void BuildRandomScene(HC_KEY segment, std::mt19937& random, int size);

// A text a user might type: a well-formed value of some attribute or definition, a name, a
// search text with its "$$" second part, or garbage.
std::string RandomText(std::mt19937& random);

// The names of the attributes the tree can add lines for.
std::vector<std::string> AttributeNames(const HoopsSegmentTree& tree);

} // namespace obsidra::soak
