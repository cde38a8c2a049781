#include "components/component_tree.h"

#include <algorithm>
#include <map>
#include <utility>

#include "components/component_id.h"
#include "components/information_text.h"

namespace obsidra::components {

namespace {

std::string GeometryLabel(std::size_t place) {
    return "几何" + std::to_string(place);
}

} // namespace

std::optional<Grouping> GroupingFromIndex(int index) {
    switch (index) {
    case static_cast<int>(Grouping::ByFloor):
        return Grouping::ByFloor;
    case static_cast<int>(Grouping::ByDiscipline):
        return Grouping::ByDiscipline;
    default:
        return std::nullopt;
    }
}

ComponentTree::ComponentTree(ComponentHost* host) : m_host(host) {}

void ComponentTree::AddObserver(ComponentTreeObserver* observer) {
    if (observer &&
        std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void ComponentTree::RemoveObserver(ComponentTreeObserver* observer) {
    std::erase(m_observers, observer);
}

// ---- building ------------------------------------------------------------------------------

void ComponentTree::Clear() {
    const bool hadSelection = m_selected != kNoNode || !m_information.empty();
    NotifyAboutToReset();
    ResetData();
    NotifyReset();
    if (hadSelection) NotifyInformation();
}

void ComponentTree::Build(std::span<ComponentHost::Project* const> projects) {
    const bool hadSelection = m_selected != kNoNode || !m_information.empty();
    NotifyAboutToReset();
    ResetData();

    const NodeIndex root = AddNode(kNoNode, NodeKind::Root, std::string(kRootLabel));
    for (ComponentHost::Project* project : projects) {
        const ProjectData* data = project ? project->GetProjectData() : nullptr;
        if (data) AddProject(root, *data);
    }
    LinkChildren();
    m_highlighted.assign(m_nodes.size(), false);

    // Every box starts ticked; the reset tells the view, so no state change is reported.
    Assign(root, CheckState::Checked);
    SetSubtreeStates(root, CheckState::Checked);
    m_changedStates.clear();

    NotifyReset();
    if (hadSelection) NotifyInformation();
}

void ComponentTree::RebuildFromHost() {
    std::vector<ComponentHost::Project*> projects;
    ComponentHost::Model* model = m_host ? m_host->GetModel() : nullptr;
    ComponentHost::ProjectSource* source = model ? model->GetProjectSource() : nullptr;
    if (source) source->CollectProjects(projects);
    Build(projects);
    RefreshHighlightFromHost();
}

void ComponentTree::ResetData() {
    // The marks of the selection go with it; the host redraws when the view is next drawn.
    for (const auto& handle : m_markedGeometry)
        if (ComponentHost::Geometry* geometry = handle->GetGeometry())
            geometry->SetHighlighted(false);
    m_markedGeometry.clear();
    m_nodes.clear();
    m_childIndices.clear();
    std::apply([](auto&... tables) { (tables.clear(), ...); }, m_records);
    m_componentNodes.clear();
    m_highlighted.clear();
    m_selected = kNoNode;
    m_information.clear();
    m_changedStates.clear();
}

NodeIndex ComponentTree::AddNode(NodeIndex parent, NodeKind kind, std::string label) {
    const auto index = static_cast<NodeIndex>(m_nodes.size());
    Node& node = m_nodes.emplace_back();
    node.parent = parent;
    node.kind = kind;
    // A check-box tree gives every new item an unticked box.
    node.state = CheckState::Unchecked;
    node.label = std::move(label);
    return index;
}

template <class Record>
NodeIndex ComponentTree::AddNode(NodeIndex parent, NodeKind kind, std::string label,
                                 Record&& record) {
    using Plain = std::remove_cvref_t<Record>;
    auto& records = std::get<std::vector<Plain>>(m_records);
    const NodeIndex index = AddNode(parent, kind, std::move(label));
    Node& node = m_nodes[static_cast<std::size_t>(index)];
    node.recordKind = RecordKindOf<Plain>();
    node.record = static_cast<std::int32_t>(records.size());
    records.push_back(std::forward<Record>(record));
    return index;
}

void ComponentTree::AddProject(NodeIndex root, const ProjectData& project) {
    const NodeIndex node =
        AddNode(root, NodeKind::Project, project.name, MakeProjectRecord(project));
    if (m_grouping == Grouping::ByDiscipline) {
        AddDisciplines(node, project, {});
        return;
    }
    for (const auto& [name, floor] : project.floors) {
        // These floor nodes keep their record but no kind: selecting one shows nothing.
        const NodeIndex floorNode =
            AddNode(node, NodeKind::None, name, MakeFloorRecord(name, floor));
        AddDisciplines(floorNode, project, name);
    }
}

void ComponentTree::AddDisciplines(NodeIndex parent, const ProjectData& project,
                                   std::string_view floorFilter) {
    for (const DisciplineData& discipline : project.disciplines) {
        const NodeIndex disciplineNode = AddNode(parent, NodeKind::Discipline, discipline.name,
                                                 MakeDisciplineRecord(discipline));
        for (const MajorCategoryData& major : discipline.majorCategories) {
            const NodeIndex majorNode = AddNode(disciplineNode, NodeKind::MajorCategory, major.name,
                                                MakeMajorCategoryRecord(major));
            for (const MinorCategoryData& minor : major.minorCategories)
                AddMinorCategory(majorNode, project, discipline, major, minor, floorFilter);
        }
    }
}

void ComponentTree::AddMinorCategory(NodeIndex parent, const ProjectData& project,
                                     const DisciplineData& discipline,
                                     const MajorCategoryData& major, const MinorCategoryData& minor,
                                     std::string_view floorFilter) {
    const NodeIndex minorNode =
        AddNode(parent, NodeKind::MinorCategory, minor.name, MakeMinorCategoryRecord(minor));
    const auto entry =
        project.componentIndex.find(CategoryPath{discipline.name, major.name, minor.name});
    if (entry == project.componentIndex.end()) return;

    std::map<std::string_view, NodeIndex> floorNodes;
    for (const ComponentGroupData& group : entry->second) {
        NodeIndex groupParent = minorNode;
        if (m_grouping == Grouping::ByDiscipline) {
            auto [place, isNew] = floorNodes.try_emplace(group.floorName, kNoNode);
            if (isNew) {
                const auto floor = project.floors.find(group.floorName);
                place->second = floor != project.floors.end()
                                    ? AddNode(minorNode, NodeKind::Floor, group.floorName,
                                              MakeFloorRecord(group.floorName, floor->second))
                                    : AddNode(minorNode, NodeKind::Floor, group.floorName);
            }
            groupParent = place->second;
        } else if (group.floorName != floorFilter) {
            continue;
        }
        AddGroup(groupParent, project, minor, group);
    }
}

void ComponentTree::AddGroup(NodeIndex parent, const ProjectData& project,
                             const MinorCategoryData& minor, const ComponentGroupData& group) {
    const auto attribute = minor.attributes.find(group.attributeKey);
    if (attribute == minor.attributes.end()) return;
    const NodeIndex attributeNode = AddNode(parent, NodeKind::Attribute, attribute->second.name,
                                            MakeAttributeRecord(attribute->second));
    for (const ComponentData& component : group.components) {
        const NodeIndex componentNode =
            AddNode(attributeNode, NodeKind::Component, IdentifierText(component.id),
                    MakeComponentRecord(component));
        m_componentNodes.try_emplace(component.handle, componentNode);
        for (std::size_t place = 0; place < component.geometries.size(); ++place)
            AddNode(componentNode, NodeKind::Geometry, GeometryLabel(place),
                    MakeGeometryRecord(component.geometries[place], project.partitionTypes));
    }
}

// Nodes are only ever appended, and a parent is always made before its children, so one pass
// in index order lays out each node's children in insertion order, and one pass backwards sees
// every node after all of its descendants.
void ComponentTree::LinkChildren() {
    for (const Node& node : m_nodes)
        if (node.parent != kNoNode) ++m_nodes[static_cast<std::size_t>(node.parent)].childCount;
    std::int32_t offset = 0;
    for (Node& node : m_nodes) {
        node.firstChild = offset;
        offset += node.childCount;
        node.childCount = 0;
    }
    m_childIndices.resize(static_cast<std::size_t>(offset));
    for (std::size_t i = 0; i < m_nodes.size(); ++i) {
        Node& node = m_nodes[i];
        if (node.parent == kNoNode) continue;
        Node& parent = m_nodes[static_cast<std::size_t>(node.parent)];
        node.row = parent.childCount++;
        m_childIndices[static_cast<std::size_t>(parent.firstChild + node.row)] =
            static_cast<NodeIndex>(i);
    }
    for (std::size_t i = m_nodes.size(); i-- > 0;) {
        Node& node = m_nodes[i];
        if (node.kind == NodeKind::Component) node.componentCount = 1;
        if (node.parent != kNoNode)
            m_nodes[static_cast<std::size_t>(node.parent)].componentCount += node.componentCount;
    }
}

// ---- node table ----------------------------------------------------------------------------

NodeIndex ComponentTree::Parent(NodeIndex node) const {
    return IsValid(node) ? m_nodes[static_cast<std::size_t>(node)].parent : kNoNode;
}

int ComponentTree::Row(NodeIndex node) const {
    return IsValid(node) ? m_nodes[static_cast<std::size_t>(node)].row : 0;
}

std::span<const NodeIndex> ComponentTree::Children(NodeIndex node) const {
    if (!IsValid(node)) return {};
    const Node& n = m_nodes[static_cast<std::size_t>(node)];
    return std::span<const NodeIndex>(m_childIndices)
        .subspan(static_cast<std::size_t>(n.firstChild), static_cast<std::size_t>(n.childCount));
}

const std::string& ComponentTree::Label(NodeIndex node) const {
    static const std::string kEmpty;
    return IsValid(node) ? m_nodes[static_cast<std::size_t>(node)].label : kEmpty;
}

NodeKind ComponentTree::Kind(NodeIndex node) const {
    return IsValid(node) ? m_nodes[static_cast<std::size_t>(node)].kind : NodeKind::None;
}

CheckState ComponentTree::GetCheckState(NodeIndex node) const {
    return IsValid(node) ? m_nodes[static_cast<std::size_t>(node)].state : CheckState::NoBox;
}

int ComponentTree::ComponentCount(NodeIndex node) const {
    return IsValid(node) ? m_nodes[static_cast<std::size_t>(node)].componentCount : 0;
}

// ---- check boxes ---------------------------------------------------------------------------

void ComponentTree::Assign(NodeIndex node, CheckState state) {
    Node& n = m_nodes[static_cast<std::size_t>(node)];
    if (n.state == state) return;
    n.state = state;
    if (!m_observers.empty()) m_changedStates.push_back(node);
}

void ComponentTree::SetBox(NodeIndex node, CheckState state) {
    if (!IsValid(node)) return;
    Assign(node, state);
    NotifyCheckStates();
}

void ComponentTree::SetCheckState(NodeIndex node, CheckState state, bool withSubtree) {
    if (!IsValid(node)) return;
    Assign(node, state);
    if (withSubtree && state != CheckState::NoBox) SetSubtreeStates(node, state);
    AlignAncestors(node, state);
    NotifyCheckStates();
}

// The first child always takes the state, box or not; later children only when they have a
// box. Every child's subtree is visited either way.
void ComponentTree::SetSubtreeStates(NodeIndex node, CheckState state) {
    const std::span<const NodeIndex> children = Children(node);
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (i == 0 || m_nodes[static_cast<std::size_t>(children[i])].state != CheckState::NoBox)
            Assign(children[i], state);
        SetSubtreeStates(children[i], state);
    }
}

// Siblings are scanned outward from the node, following ones first, and the scan stops at the
// first box that disagrees. A box-less sibling that ends the following scan counts as agreeing
// and skips the preceding scan.
void ComponentTree::AlignAncestors(NodeIndex node, CheckState state) {
    const auto stateOf = [this](NodeIndex n) { return m_nodes[static_cast<std::size_t>(n)].state; };
    const auto disagrees = [state](CheckState t) { return t != state && t != CheckState::NoBox; };

    for (NodeIndex current = node;;) {
        const NodeIndex parent = Parent(current);
        if (parent == kNoNode) return;
        const std::span<const NodeIndex> siblings = Children(parent);
        const auto row = static_cast<std::size_t>(Row(current));

        CheckState last = state;
        for (std::size_t i = row + 1; i < siblings.size(); ++i) {
            last = stateOf(siblings[i]);
            if (disagrees(last)) break;
        }
        if (last == state) {
            for (std::size_t i = row; i-- > 0;) {
                last = stateOf(siblings[i]);
                if (disagrees(last)) break;
            }
        }

        if (disagrees(last)) {
            for (NodeIndex ancestor = parent; ancestor != kNoNode; ancestor = Parent(ancestor))
                if (stateOf(ancestor) != CheckState::NoBox)
                    Assign(ancestor, CheckState::PartlyChecked);
            return;
        }
        if (stateOf(parent) != CheckState::NoBox) Assign(parent, state);
        current = parent;
    }
}

void ComponentTree::ToggleByMouse(NodeIndex node) {
    const CheckState current = GetCheckState(node);
    if (current == CheckState::NoBox) return;
    const CheckState next =
        current == CheckState::Checked ? CheckState::Unchecked : CheckState::Checked;
    SetCheckState(node, next, true);
    ApplyVisibility(node, next != CheckState::Unchecked);
    RedrawHost();
}

void ComponentTree::ToggleSelectedByKey() {
    const CheckState current = GetCheckState(m_selected);
    if (current == CheckState::NoBox) return;
    SetCheckState(m_selected,
                  current == CheckState::Checked ? CheckState::Unchecked : CheckState::Checked,
                  true);
}

// Geometry nodes are always leaves, so only leaves are looked at; a subtree walk visits them in
// tree order, which is the order the host sees the calls in.
template <class Visit>
void ComponentTree::ForEachGeometryRecord(NodeIndex node, Visit&& visit) const {
    if (!IsValid(node)) return;
    std::vector<NodeIndex> pending{node};
    while (!pending.empty()) {
        const NodeIndex current = pending.back();
        pending.pop_back();
        const std::span<const NodeIndex> children = Children(current);
        if (!children.empty()) {
            pending.insert(pending.end(), children.rbegin(), children.rend());
            continue;
        }
        if (Kind(current) != NodeKind::Geometry) continue;
        if (const GeometryRecord* record = FindRecord<GeometryRecord>(current)) visit(*record);
    }
}

template <class Apply>
void ComponentTree::ForEachGeometry(NodeIndex node, Apply&& apply) {
    ComponentHost::GeometryIndex* index = m_host ? m_host->GetGeometryIndex() : nullptr;
    if (!index) return;
    ForEachGeometryRecord(node, [&](const GeometryRecord& record) {
        const std::shared_ptr<ComponentHost::GeometryHandle> handle =
            index->FindGeometry(record.id);
        if (ComponentHost::Geometry* geometry = handle ? handle->GetGeometry() : nullptr)
            apply(*geometry);
    });
}

void ComponentTree::ApplyVisibility(NodeIndex node, bool visible) {
    ForEachGeometry(node, [visible](ComponentHost::Geometry& g) { g.SetVisible(visible); });
}

void ComponentTree::RedrawHost() {
    ComponentHost::View* view = m_host ? m_host->GetView() : nullptr;
    if (view) view->RedrawView();
}

void ComponentTree::Isolate(NodeIndex node) {
    if (!IsValid(node)) return;
    SetCheckState(Root(), CheckState::Unchecked, true);
    ApplyVisibility(Root(), false);
    if (GetCheckState(node) != CheckState::NoBox) {
        SetCheckState(node, CheckState::Checked, true);
    } else {
        for (const NodeIndex child : Children(node))
            if (GetCheckState(child) != CheckState::NoBox)
                SetCheckState(child, CheckState::Checked, true);
    }
    ApplyVisibility(node, true);
    RedrawHost();
}

void ComponentTree::XRay(NodeIndex node) {
    if (!IsValid(node)) return;
    ForEachGeometry(Root(), [](ComponentHost::Geometry& g) { g.SetXRay(true); });
    ForEachGeometry(node, [](ComponentHost::Geometry& g) { g.SetXRay(false); });
    RedrawHost();
}

void ComponentTree::ShowAll() {
    if (Root() == kNoNode) return;
    SetCheckState(Root(), CheckState::Checked, true);
    ForEachGeometry(Root(), [](ComponentHost::Geometry& g) {
        g.SetVisible(true);
        g.SetXRay(false);
    });
    RedrawHost();
}

// ---- highlight -----------------------------------------------------------------------------

void ComponentTree::SetHighlight(std::span<const std::uint64_t> componentHandles) {
    std::fill(m_highlighted.begin(), m_highlighted.end(), false);
    for (const std::uint64_t handle : componentHandles) {
        const auto found = m_componentNodes.find(handle);
        if (found == m_componentNodes.end()) continue;
        for (NodeIndex node = found->second; node != kNoNode; node = Parent(node))
            m_highlighted[static_cast<std::size_t>(node)] = true;
    }
    NotifyHighlight(true);
}

void ComponentTree::RefreshHighlightFromHost() {
    std::vector<std::uint64_t> handles;
    ComponentHost::View* view = m_host ? m_host->GetView() : nullptr;
    if (view) view->CollectHighlightedComponents(handles);
    SetHighlight(handles);
}

void ComponentTree::MarkComponent(std::uint64_t componentHandle) {
    const auto found = m_componentNodes.find(componentHandle);
    if (found == m_componentNodes.end()) return;
    for (NodeIndex node = found->second; node != kNoNode; node = Parent(node))
        m_highlighted[static_cast<std::size_t>(node)] = true;
    NotifyHighlight(false);
}

bool ComponentTree::IsHighlighted(NodeIndex node) const {
    return IsValid(node) && m_highlighted[static_cast<std::size_t>(node)];
}

// ---- selection -----------------------------------------------------------------------------

void ComponentTree::Select(NodeIndex node) {
    m_selected = IsValid(node) ? node : kNoNode;
    m_information = InformationText(m_selected);
    NotifyInformation();
    MarkSelectedGeometry(m_selected);
}

// The marks are display state that the host draws on its own: no redraw is asked, so that a
// selection costs the host's view nothing it did not ask for.
void ComponentTree::MarkSelectedGeometry(NodeIndex node) {
    for (const auto& handle : m_markedGeometry)
        if (ComponentHost::Geometry* geometry = handle->GetGeometry())
            geometry->SetHighlighted(false);
    m_markedGeometry.clear();
    ComponentHost::GeometryIndex* index = m_host ? m_host->GetGeometryIndex() : nullptr;
    if (index && node != kNoNode) {
        // The handles are kept, so that the marks can be taken back whatever the host frees.
        ForEachGeometryRecord(node, [&](const GeometryRecord& record) {
            if (auto handle = index->FindGeometry(record.id)) {
                if (ComponentHost::Geometry* geometry = handle->GetGeometry())
                    geometry->SetHighlighted(true);
                m_markedGeometry.push_back(std::move(handle));
            }
        });
    }
}

std::string ComponentTree::InformationText(NodeIndex node) const {
    const NodeKind kind = Kind(node);
    const auto withCount = [&](const auto* record) {
        return record ? components::InformationText(*record) + CountLine(kind, ComponentCount(node))
                      : std::string();
    };
    switch (kind) {
    case NodeKind::Project:
        return withCount(FindRecord<ProjectRecord>(node));
    case NodeKind::Discipline:
        return withCount(FindRecord<DisciplineRecord>(node));
    case NodeKind::MajorCategory:
        return withCount(FindRecord<MajorCategoryRecord>(node));
    case NodeKind::MinorCategory:
        return withCount(FindRecord<MinorCategoryRecord>(node));
    case NodeKind::Floor:
        return withCount(FindRecord<FloorRecord>(node));
    case NodeKind::Attribute:
        return withCount(FindRecord<AttributeRecord>(node));
    case NodeKind::Component: {
        const ComponentRecord* record = FindRecord<ComponentRecord>(node);
        return record ? components::InformationText(*record) : std::string();
    }
    case NodeKind::Geometry: {
        const GeometryRecord* record = FindRecord<GeometryRecord>(node);
        return record ? components::InformationText(*record) : std::string();
    }
    case NodeKind::None:
    case NodeKind::Root:
        break;
    }
    return {};
}

// ---- notifications -------------------------------------------------------------------------

// Observers may remove themselves while being notified, so each round works on a copy.
void ComponentTree::NotifyAboutToReset() {
    for (ComponentTreeObserver* observer : std::vector(m_observers))
        observer->TreeAboutToReset();
}

void ComponentTree::NotifyReset() {
    for (ComponentTreeObserver* observer : std::vector(m_observers))
        observer->TreeReset();
}

void ComponentTree::NotifyCheckStates() {
    if (m_changedStates.empty()) return;
    const std::vector<NodeIndex> changed = std::move(m_changedStates);
    m_changedStates.clear();
    for (ComponentTreeObserver* observer : std::vector(m_observers))
        observer->CheckStatesChanged(changed);
}

void ComponentTree::NotifyHighlight(bool repaintNow) {
    for (ComponentTreeObserver* observer : std::vector(m_observers))
        observer->HighlightChanged(repaintNow);
}

void ComponentTree::NotifyInformation() {
    for (ComponentTreeObserver* observer : std::vector(m_observers))
        observer->InformationChanged(m_information);
}

} // namespace obsidra::components
