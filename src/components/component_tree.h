// The component viewer's control tree without a widget: the node table a tree view shows, the
// records behind the nodes, the tri-state check boxes and what ticking them does to the host's
// geometry, the highlight set and the selected node's information text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include <obsidra/host.h>

#include "components/node_kind.h"
#include "components/records.h"

namespace obsidra::components {

using NodeIndex = std::int32_t;
inline constexpr NodeIndex kNoNode = -1;

enum class Grouping : std::int32_t {
    ByFloor = 0,      // "按楼层": floors directly under each project
    ByDiscipline = 1, // "按专业": floors under the minor categories
};

// The grouping at a combo-box index, or nothing for an index that names none.
std::optional<Grouping> GroupingFromIndex(int index);

// What a view listens to. Notifications arrive after the model has changed.
class ComponentTreeObserver {
public:
    // Before every node index is invalidated (clear, build).
    virtual void TreeAboutToReset() {}
    // The node table was replaced; all check states and highlights are new.
    virtual void TreeReset() {}
    // The boxes of these nodes changed by one operation (each node at most once).
    virtual void CheckStatesChanged(std::span<const NodeIndex> /*nodes*/) {}
    // The highlight set changed; repaintNow asks the view to repaint at once rather than at its
    // next paint.
    virtual void HighlightChanged(bool /*repaintNow*/) {}
    // The selected node's information text changed.
    virtual void InformationChanged(std::string_view /*text*/) {}

protected:
    ~ComponentTreeObserver() = default;
};

class ComponentTree {
public:
    static constexpr std::string_view kRootLabel = "全部工程";

    explicit ComponentTree(ComponentHost* host = nullptr);
    ComponentTree(const ComponentTree&) = delete;
    ComponentTree& operator=(const ComponentTree&) = delete;
    ComponentTree(ComponentTree&&) = default;
    ComponentTree& operator=(ComponentTree&&) = default;

    // The host is not owned; the tree asks it for geometry, redraws and highlighted components.
    void SetHost(ComponentHost* host) { m_host = host; }
    ComponentHost* Host() const { return m_host; }

    // Takes effect at the next build.
    void SetGrouping(Grouping grouping) { m_grouping = grouping; }
    Grouping GetGrouping() const { return m_grouping; }

    void AddObserver(ComponentTreeObserver* observer);
    void RemoveObserver(ComponentTreeObserver* observer);

    // Building. Both replace the whole tree; the boxes start ticked.
    void Clear();
    void Build(std::span<ComponentHost::Project* const> projects);
    // Collects the host's projects, builds, then refreshes the highlight from the host.
    void RebuildFromHost();

    // The node table. The root, if any, is node 0; children follow their parent's insertion
    // order. Invalid indices read as empty nodes.
    std::size_t NodeCount() const { return m_nodes.size(); }
    NodeIndex Root() const { return m_nodes.empty() ? kNoNode : 0; }
    bool IsValid(NodeIndex node) const {
        return node >= 0 && static_cast<std::size_t>(node) < m_nodes.size();
    }
    NodeIndex Parent(NodeIndex node) const;
    // The node's place among its parent's children.
    int Row(NodeIndex node) const;
    std::span<const NodeIndex> Children(NodeIndex node) const;
    const std::string& Label(NodeIndex node) const;
    // Floor nodes directly under a project have kind None (item data unset), although they keep
    // a floor record.
    NodeKind Kind(NodeIndex node) const;
    CheckState GetCheckState(NodeIndex node) const;
    // Component nodes in the subtree, not looking below component nodes.
    int ComponentCount(NodeIndex node) const;

    // The node's record when it keeps one of this type; one of the Record types of records.h.
    template <class Record>
    const Record* FindRecord(NodeIndex node) const;

    // Check boxes.
    // This node's box only: no subtree, no ancestors.
    void SetBox(NodeIndex node, CheckState state);
    // The node's box, the subtree's when asked (and the state is a box), then the ancestors
    // brought into line.
    void SetCheckState(NodeIndex node, CheckState state, bool withSubtree);
    // A click on the box: ticks or unticks the subtree, shows or hides its geometry in the host
    // and redraws the host's view once. A node without a box is left alone.
    void ToggleByMouse(NodeIndex node);
    // The Space key on the selected node: the boxes change, the host's geometry does not.
    void ToggleSelectedByKey();

    // Beyond the boxes, each followed by one redraw of the host's view:
    // only the node's subtree stays shown, its boxes ticked and every other box clear;
    void Isolate(NodeIndex node);
    // everything outside the node's subtree is drawn see-through, the boxes untouched;
    void XRay(NodeIndex node);
    // every box ticked, all geometry shown, nothing see-through.
    void ShowAll();

    // Highlight: components the host has selected, and their ancestors.
    // Replaces the highlight with these components and asks the view to repaint.
    void SetHighlight(std::span<const std::uint64_t> componentHandles);
    void RefreshHighlightFromHost();
    // Adds the first component node with this handle and its ancestors; the marks show at the
    // view's next paint.
    void MarkComponent(std::uint64_t componentHandle);
    bool IsHighlighted(NodeIndex node) const;

    // Selection and information. The host's geometry of the selected node's subtree is marked
    // (Geometry::SetHighlighted), the previous node's unmarked.
    void Select(NodeIndex node);
    NodeIndex Selected() const { return m_selected; }
    const std::string& Information() const { return m_information; }
    // The text a node shows when selected, count line included; empty for the root, floor nodes
    // directly under a project and nodes without a record.
    std::string InformationText(NodeIndex node) const;

private:
    struct Node {
        NodeIndex parent = kNoNode;
        std::int32_t row = 0;
        std::int32_t firstChild = 0; // into m_childIndices
        std::int32_t childCount = 0;
        std::int32_t record = -1; // into the record vector of recordKind
        std::int32_t componentCount = 0;
        NodeKind kind = NodeKind::None;
        NodeKind recordKind = NodeKind::None;
        CheckState state = CheckState::NoBox;
        std::string label;
    };

    using RecordTables =
        std::tuple<std::vector<ProjectRecord>, std::vector<DisciplineRecord>,
                   std::vector<MajorCategoryRecord>, std::vector<MinorCategoryRecord>,
                   std::vector<FloorRecord>, std::vector<AttributeRecord>,
                   std::vector<ComponentRecord>, std::vector<GeometryRecord>>;

    template <class Record>
    static constexpr NodeKind RecordKindOf();

    template <class Record>
    NodeIndex AddNode(NodeIndex parent, NodeKind kind, std::string label, Record&& record);
    NodeIndex AddNode(NodeIndex parent, NodeKind kind, std::string label);
    void AddProject(NodeIndex root, const ProjectData& project);
    void AddDisciplines(NodeIndex parent, const ProjectData& project, std::string_view floorFilter);
    void AddMinorCategory(NodeIndex parent, const ProjectData& project,
                          const DisciplineData& discipline, const MajorCategoryData& major,
                          const MinorCategoryData& minor, std::string_view floorFilter);
    void AddGroup(NodeIndex parent, const ProjectData& project, const MinorCategoryData& minor,
                  const ComponentGroupData& group);
    void LinkChildren();

    void ResetData();
    void Assign(NodeIndex node, CheckState state);
    void SetSubtreeStates(NodeIndex node, CheckState state);
    void AlignAncestors(NodeIndex node, CheckState state);
    void ApplyVisibility(NodeIndex node, bool visible);
    // Calls visit for the record of every geometry node in the subtree, in tree order.
    template <class Visit>
    void ForEachGeometryRecord(NodeIndex node, Visit&& visit) const;
    // Calls apply for the host's geometry of every geometry node in the subtree, in tree order.
    template <class Apply>
    void ForEachGeometry(NodeIndex node, Apply&& apply);
    void RedrawHost();
    // Unmarks what the last selection marked and marks the node's geometry.
    void MarkSelectedGeometry(NodeIndex node);

    void NotifyAboutToReset();
    void NotifyReset();
    void NotifyCheckStates();
    void NotifyHighlight(bool repaintNow);
    void NotifyInformation();

    ComponentHost* m_host = nullptr;
    Grouping m_grouping = Grouping::ByDiscipline;
    std::vector<Node> m_nodes;
    std::vector<NodeIndex> m_childIndices;
    RecordTables m_records;
    // The first component node of each component handle, in node order.
    std::unordered_map<std::uint64_t, NodeIndex> m_componentNodes;
    std::vector<bool> m_highlighted;
    NodeIndex m_selected = kNoNode;
    std::vector<std::shared_ptr<ComponentHost::GeometryHandle>> m_markedGeometry;
    std::string m_information;
    std::vector<ComponentTreeObserver*> m_observers;
    std::vector<NodeIndex> m_changedStates;
};

template <class Record>
constexpr NodeKind ComponentTree::RecordKindOf() {
    if constexpr (std::is_same_v<Record, ProjectRecord>)
        return NodeKind::Project;
    else if constexpr (std::is_same_v<Record, DisciplineRecord>)
        return NodeKind::Discipline;
    else if constexpr (std::is_same_v<Record, MajorCategoryRecord>)
        return NodeKind::MajorCategory;
    else if constexpr (std::is_same_v<Record, MinorCategoryRecord>)
        return NodeKind::MinorCategory;
    else if constexpr (std::is_same_v<Record, FloorRecord>)
        return NodeKind::Floor;
    else if constexpr (std::is_same_v<Record, AttributeRecord>)
        return NodeKind::Attribute;
    else if constexpr (std::is_same_v<Record, ComponentRecord>)
        return NodeKind::Component;
    else
        return NodeKind::Geometry;
}

template <class Record>
const Record* ComponentTree::FindRecord(NodeIndex node) const {
    if (!IsValid(node)) return nullptr;
    const Node& n = m_nodes[static_cast<std::size_t>(node)];
    const auto& records = std::get<std::vector<Record>>(m_records);
    if (n.recordKind != RecordKindOf<Record>() || n.record < 0 ||
        static_cast<std::size_t>(n.record) >= records.size())
        return nullptr;
    return &records[static_cast<std::size_t>(n.record)];
}

} // namespace obsidra::components
