#pragma once

// The segment tree: the scene's segment hierarchy as the nodes of a tree graph, made one
// expansion at a time straight from the scene database and never cached. Under each segment
// it shows grouping nodes for the static model, geometry, definitions, includes, styles, named
// styles and references, then the subsegments, in pages when there are many.
//
// The tree receives the graph's notifications (expand, select, label edit) as its message
// target. Every question it puts to the scene opens the segment by key and closes it in the
// same step; a node whose object was deleted behind the tree's back is left as it stands, and
// no key is used before the database has said it is alive.

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <obsidra/hc.h>

#include "descriptors/descriptor_lists.h"
#include "mvo/base_view.h"
#include "scenetree/name_filter.h"
#include "scenetree/node_kind.h"
#include "scenetree/notifier.h"
#include "treegraph/tree_graph.h"

namespace obsidra::scenetree {

inline constexpr char kStaticTreeLabel[] = "STATIC_TREE";
inline constexpr char kGeometryLabel[] = "GEOMETRY";
inline constexpr char kDefinesLabel[] = "DEFINES";
inline constexpr char kIncludesLabel[] = "INCLUDES";
inline constexpr char kStylesLabel[] = "STYLES";
inline constexpr char kNamedStylesLabel[] = "NAMED STYLES";
inline constexpr char kReferencesLabel[] = "REFERENCES";
inline constexpr char kGeometryRefLabel[] = "GEOMETRY_REF";
inline constexpr char kSegmentRefLabel[] = "SEGMENT_REF";

// The node flags.
inline constexpr std::uint32_t kFlagStaticModel = 0x01;
inline constexpr std::uint32_t kFlagReferencedSegment = 0x02;
inline constexpr std::uint32_t kFlagReferencedGeometry = 0x04;
inline constexpr std::uint32_t kFlagInStaticModel = 0x10;

// The selection classes: how the selection step decides whether a node is highlighted.
inline constexpr std::int32_t kClassSegment = 0;
inline constexpr std::int32_t kClassGeometry = 1;
inline constexpr std::int32_t kClassLink = 3;
inline constexpr std::int32_t kClassGroup = 4;
inline constexpr std::int32_t kClassSegmentPage = 5;
inline constexpr std::int32_t kClassReferencePage = 6;

enum class SearchKind {
    Attribute = 1,
    Geometry,
    Segment,
    Include,
    Style,
    SegmentReference,
    GeometryReference,
    Definition,
    Key,
    NamedStyle,
};

// One hit: the keys walked from the start segment (includes before the segments they bring in),
// the hit's own key last.
struct SearchResult {
    std::vector<HC_KEY> keys;
};

} // namespace obsidra::scenetree

class HoopsSegmentTree : public TreeGraphMessageTarget {
public:
    // Resets the graph and fills its root: label "model", the start key (-1: the view's model
    // key) and one segment node for the start segment, the top node. The tree becomes the
    // graph's message target; messages for the user go to the notifier when there is one.
    HoopsSegmentTree(HBaseView* view, TreeGraph* graph, HC_KEY startKey = -1,
                     SegmentTreeNotifier* notifier = nullptr);
    virtual ~HoopsSegmentTree();
    HoopsSegmentTree(const HoopsSegmentTree&) = delete;
    HoopsSegmentTree& operator=(const HoopsSegmentTree&) = delete;

    void OnSelectItem(TreeGraphItem* item) override;
    void OnEndLabelEdit(TreeGraphItem* item, const char* text) override;
    void OnExpandItem(TreeGraphItem* item, bool expanding) override;

    TreeGraph* GetGraph() const { return m_graph; }
    HBaseView* GetView() const { return m_view; }
    TreeGraphItem* GetTopNode() const { return m_topNode; }
    HC_KEY GetStartKey() const { return m_startKey; }
    const obsidra::descriptors::DescriptorLists& GetDescriptorLists() const { return m_lists; }
    void SetNotifier(SegmentTreeNotifier* notifier) { m_notifier = notifier; }

    // Makes the node's children anew from the scene and sets its expanded mark; a node whose
    // object is gone is left as it stands.
    void ExpandNode(TreeGraphItem* node);

    // The lines the browser's panel shows for the node, as OnSelectItem writes them.
    std::vector<std::string> InformationLines(TreeGraphItem* node);

    // Whether the node stands for something selected in the view; SetHighlighted follows it
    // whenever a node is made or refreshed.
    bool IsNodeSelected(TreeGraphItem* node);
    void UpdateSelectionState(TreeGraphItem* node);
    // Updates the selection state of every node below item (the graph's root when null).
    void RefreshSelectionStates(TreeGraphItem* item = nullptr);
    // The include path of a node's object from the top segment, bottom-up as the selection set
    // and the view take it: the object, the includes passed through (innermost first), the top.
    std::vector<HC_KEY> GetIncludePath(const TreeGraphItem* node) const;

    bool GetShowBounding() const { return m_showBounding; }
    void SetShowBounding(bool show) { m_showBounding = show; }
    // Shows the node's bounding box in the view, or hides it (off, or a node without object).
    void ShowBounding(TreeGraphItem* node, bool on);

    // --- Searches (segment_search.cpp) --------------------------------------------------------
    // Each finds below the start node (the top node when null) and reveals every hit in the tree.
    // "find$$second" replaces the find text by the second text in attribute values ("unset"
    // unsets them instead), and deletes every hit when the second text is "delete" (not for
    // attributes, definitions and keys). Returns how many hits were found.
    int SearchAttributes(const char* text, TreeGraphItem* start = nullptr);
    int SearchGeometry(const char* text, TreeGraphItem* start = nullptr);
    int SearchSegments(const char* text, TreeGraphItem* start = nullptr);
    int SearchIncludes(const char* text, TreeGraphItem* start = nullptr);
    int SearchStyles(const char* text, TreeGraphItem* start = nullptr);
    int SearchSegmentReferences(const char* text, TreeGraphItem* start = nullptr);
    int SearchGeometryReferences(const char* text, TreeGraphItem* start = nullptr);
    int SearchDefinitions(const char* text, TreeGraphItem* start = nullptr);
    int SearchKey(HC_KEY key, TreeGraphItem* start = nullptr);
    // The key search for a key text ("%llX"); false when the text is no key or nothing is found.
    bool FindAndSelectByKeyText(const char* keyText, TreeGraphItem* start = nullptr);
    // The driver every search goes through; also the only way to the named-style search.
    int Search(obsidra::scenetree::SearchKind kind, std::string_view text,
               TreeGraphItem* start = nullptr);
    // The hits of the last search in the order found, and the nodes it revealed.
    const std::vector<obsidra::scenetree::SearchResult>& GetSearchResults() const {
        return m_results;
    }
    const std::vector<TreeGraphItem*>& GetRevealedNodes() const { return m_revealed; }

    // --- Filtering by segment name (name_filter_tree.cpp) --------------------------------------
    // Shows below the top node only the segments whose own name holds text (ASCII case aside,
    // found in the database, not among the nodes made so far) and the segments that lead to
    // them, every one of those open; a segment list longer than a page stays in pages, of which
    // the first is opened. The first filter remembers which nodes were open; an empty text
    // shows the whole tree again with those open. cancel, read while the database is walked,
    // stops a filter that a newer one replaces: the tree is then left as it was. Returns the
    // number of hits, or -1 when cancelled.
    long SetNameFilter(std::string_view text, const std::atomic<bool>* cancel = nullptr);
    bool IsNameFiltered() const { return m_nameFilter != nullptr; }
    // The same filter in slices, for a window that keeps answering while it runs.
    // StartNameFilter begins a walk, dropping one that runs (an empty text shows the whole tree
    // at once); ContinueNameFilter walks up to budget more segments. The tree shows the first
    // hits when a slice finds some and the whole result when the walk ends; until then it keeps
    // what it showed.
    enum class NameFilterProgress { Walking, FirstHitsShown, Done };
    void StartNameFilter(std::string_view text);
    NameFilterProgress ContinueNameFilter(size_t budget);
    bool IsNameFilterRunning() const { return m_nameWalk != nullptr; }
    // Makes the tree again from the scene (after an undo, say) with the nodes that were open
    // open again where they still are; a name-filtered tree runs its filter again.
    void Remake();
    // The segment keys from the top node down to a node (pages and groups left out), and the
    // node such a chain leads to, opening what it passes; null when the chain breaks.
    std::vector<HC_KEY> SegmentChain(const TreeGraphItem* node) const;
    TreeGraphItem* RevealSegmentChain(const std::vector<HC_KEY>& chain);

    // --- What the browser's commands ask (tree_commands.cpp) -----------------------------------
    // A line for the named attribute under a segment or geometry item node (at the end when
    // position is -1, else before the child of that index), showing its present value.
    TreeGraphItem* AddAttribute(TreeGraphItem* node, int position, const char* name);
    std::string GetNetAttributeText(TreeGraphItem* node, const char* name);
    // Unsets the attribute an attribute line shows and removes the line.
    bool UndefineAttribute(TreeGraphItem* line);
    // Deletes the node's object and the node; grouping nodes are not deleted. Deleting from a
    // page makes its segment's children be made again, since every later page shifts.
    bool DeleteNode(TreeGraphItem* node);
    // Takes the node out of the tree and leaves its object alone (a cut moves the object away);
    // from a page, its segment's children are made again, as for a delete.
    void RemoveNode(TreeGraphItem* node);
    // Flushes the contents of the given types from the node's segment and everything below it.
    void Flush(TreeGraphItem* node, const char* contentTypes);
    TreeGraphItem* AddChildNode(TreeGraphItem* parent, HC_KEY key);
    // Gives the node its label and expander from the scene again; an expanded node is expanded
    // anew.
    void RefreshNode(TreeGraphItem* node);
    // A node for a new include or style under the node's group; when the group is not shown
    // yet, expanding the node makes it.
    TreeGraphItem* InsertStyleOrIncludeNode(HC_KEY key, TreeGraphItem* node);
    void ReReadChildren(TreeGraphItem* node, HC_KEY key);
    bool IsAttributeLine(const TreeGraphItem* node) const;
    bool IsDefinitionLine(const TreeGraphItem* node) const;
    // Whether the node is a geometry item of the kind ("SHELL", "TEXT").
    bool IsGeometryOfKind(const TreeGraphItem* node, const char* kindName);
    // The text "Edit" shows: an attribute line's value, a segment's name, a definition or
    // geometry line as it stands.
    std::string GetEditText(TreeGraphItem* node);
    // An attribute line's caption: its parent's label.
    std::string GetEditCaption(const TreeGraphItem* node) const;
    // Applies an edited text through the node's descriptor (or renames a segment) and
    // refreshes the node; false when nothing took it.
    bool ApplyEditedText(TreeGraphItem* node, std::string_view text);

private:
    // The segment whose contents a keyed node shows: the node's own segment, or the segment a
    // reference node refers to, with the reference's filter.
    struct ContentOwner {
        HC_KEY segment = 0;
        HC_KEY reference = 0;
        std::string filter;
    };
    struct SearchRun;

    // A descriptor index that names no descriptor.
    static constexpr std::uint32_t kNoKind = 0xFFFFFFFFu;

    TreeGraphItem* MakeNode(TreeGraphItem* parent, const obsidra::scenetree::NodeData& data,
                            const std::string& label, HC_KEY key, std::int32_t selectionClass,
                            std::uint32_t flags, bool hasChildren);
    TreeGraphItem* MakeSegmentNode(TreeGraphItem* parent, HC_KEY key, std::uint32_t flags);
    // A grouping node (STATIC_TREE to SEGMENT_REF); key: its segment, or 0.
    TreeGraphItem* MakeGroup(TreeGraphItem* parent, obsidra::scenetree::NodeKind kind, HC_KEY key,
                             std::uint32_t flags);
    // kind: SegmentPage or ReferencePage.
    void MakePages(TreeGraphItem* parent, obsidra::scenetree::NodeKind kind, int count);
    // kind: Include, Style or NamedStyle.
    TreeGraphItem* MakeLinkNode(TreeGraphItem* parent, HC_KEY key,
                                obsidra::scenetree::NodeKind kind);
    TreeGraphItem* MakeReferenceNode(TreeGraphItem* parent, HC_KEY reference, HC_KEY target,
                                     const std::string& targetType);
    std::string AttributeLineLabel(const HoopsAttribute& attribute, const std::string& value) const;
    void DeleteChildren(TreeGraphItem* node);

    void ExpandGroup(TreeGraphItem* node);
    void ExpandKeyed(TreeGraphItem* node);
    void ExpandSegment(TreeGraphItem* node, HC_KEY segment);
    void ExpandSegmentPage(TreeGraphItem* page);
    void ExpandLinkGroup(TreeGraphItem* group, const char* filter,
                         obsidra::scenetree::NodeKind linkKind);
    void ExpandNamedStyles(TreeGraphItem* group);
    void ExpandGeometryGroup(TreeGraphItem* group);
    void ExpandGeometryKind(TreeGraphItem* kindNode, std::uint32_t index);
    // The geometry kinds (their places in the list) the owner's segment holds that its
    // reference's filter lets through.
    std::vector<std::uint32_t> PresentKinds(const ContentOwner& owner);
    void ExpandDefinesGroup(TreeGraphItem* group);
    void ExpandDefinitionKind(TreeGraphItem* kindNode, HoopsDefineGeometry& kind);
    void ExpandReferencesGroup(TreeGraphItem* node, HC_KEY segment);
    void ExpandReferenceKind(TreeGraphItem* group);
    void ExpandReferencePage(TreeGraphItem* page);
    void ExpandItem(TreeGraphItem* node);

    // The keyed node a grouping node belongs to, and the segment whose contents it shows.
    const TreeGraphItem* KeyedAncestor(const TreeGraphItem* node) const;
    bool ResolveOwner(const TreeGraphItem* keyed, ContentOwner& owner) const;
    // The geometry descriptor for a database type word ("shell"), or kNoKind.
    std::uint32_t GeometryKindIndex(std::string_view typeWord) const;
    // The descriptor a kind node or an item or line below it was made for; null for others.
    HoopsGeometry* GeometryKindOf(const TreeGraphItem* node) const;
    HoopsDefineGeometry* DefinitionKindOf(const TreeGraphItem* node) const;
    HoopsAttribute* AttributeNamed(std::string_view name) const;
    HoopsAttribute* AttributeOfLine(const TreeGraphItem* line) const;
    bool PageHoldsSelection(TreeGraphItem* page);
    std::vector<HC_KEY> IncludesAbove(const TreeGraphItem* node) const;
    // The child of that kind (and descriptor index), expanded; null when there is none.
    TreeGraphItem* OpenGroup(TreeGraphItem* node, obsidra::scenetree::NodeKind kind,
                             std::uint32_t index = 0);

    void SegmentLines(HC_KEY segment, std::vector<std::string>& lines);

    bool SearchStep(SearchRun& run, HC_KEY segment, int depth);
    void SearchSegmentAttributes(SearchRun& run, HC_KEY segment, int depth);
    void RecordHit(SearchRun& run, int depth, HC_KEY item);
    TreeGraphItem* Reveal(const obsidra::scenetree::SearchResult& result, TreeGraphItem* start);
    TreeGraphItem* FindChildFor(TreeGraphItem* node, HC_KEY key);

    struct NameFilterState {
        std::string text;
        obsidra::scenetree::SegmentNameMatches matches;
    };
    // A node's place for reopening it in a tree made again: (key, data word) of each node from
    // the top node's child down to it.
    using NodeTrail = std::vector<std::pair<HC_KEY, std::uint64_t>>;
    void MakeTopNode();
    // Makes the tree again showing these matches of text.
    void ShowNameMatches(std::string_view text, obsidra::scenetree::SegmentNameMatches matches);
    // Expands a node as a click on its expander would, unless it is open already.
    void OpenNode(TreeGraphItem* node);
    void ExpandFilteredSegment(TreeGraphItem* node, HC_KEY segment);
    // The subsegments of a segment that the name filter keeps, as the database lists them:
    // those the walk found, unless a cut, delete or new child changed the segment since.
    const std::vector<HC_KEY>& FilteredSubsegments(HC_KEY segment);
    void OpenFiltered(TreeGraphItem* node);
    // Whether the name filter keeps a subsegment of the segment.
    bool FilteredParent(HC_KEY segment) const;
    void CollectOpenTrails(TreeGraphItem* node, NodeTrail& trail, std::vector<NodeTrail>& out);
    std::vector<NodeTrail> OpenTrails();
    // Opens the nodes along each trail, from the top node down, as far as the tree has them.
    void ReopenTrails(const std::vector<NodeTrail>& trails);

    HBaseView* m_view;
    TreeGraph* m_graph;
    SegmentTreeNotifier* m_notifier;
    HC_KEY m_startKey;
    TreeGraphItem* m_topNode = nullptr;
    bool m_showBounding = false;
    obsidra::descriptors::DescriptorLists m_lists;
    std::vector<obsidra::scenetree::SearchResult> m_results;
    std::vector<TreeGraphItem*> m_revealed;
    std::unique_ptr<NameFilterState> m_nameFilter;
    std::vector<NodeTrail> m_openBeforeFilter;
    std::unique_ptr<obsidra::scenetree::SegmentNameWalk> m_nameWalk;
    bool m_nameWalkShown = false; // the running walk's first hits are in the tree
};
