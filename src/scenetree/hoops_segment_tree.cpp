#include "scenetree/hoops_segment_tree.h"

#include <algorithm>
#include <unordered_set>

#include <obsidra/hc_undo.h>

#include "mvo/utility.h"
#include "scenetree/database_lists.h"
#include "scenetree/model_texts.h"
#include "scenetree/scene_access.h"

using namespace obsidra::scenetree;

namespace {

// A page's range as kept in its data; false for a node that is no page of that kind.
bool PageRange(const TreeGraphItem* page, NodeKind kind, int& first, int& last) {
    NodeData data = DataOf(page);
    if (data.kind != kind || data.first < 1 || data.last < data.first) return false;
    first = static_cast<int>(data.first);
    last = static_cast<int>(data.last);
    return true;
}

std::string ReferenceFilter(HC_KEY reference) {
    char filter[HC_TEXT_MAX] = "";
    HC_Show_Reference_Geometry_Filt(reference, filter);
    return filter;
}

} // namespace

HoopsSegmentTree::HoopsSegmentTree(HBaseView* view, TreeGraph* graph, HC_KEY startKey,
                                   SegmentTreeNotifier* notifier)
    : m_view(view), m_graph(graph), m_notifier(notifier),
      m_lists(obsidra::descriptors::MakeDescriptorLists()) {
    m_startKey = startKey == -1 && view ? view->GetModelKey() : startKey;
    // A view's Reset gives it a fresh root; a plain graph keeps (or lacks) one, so the tree
    // makes sure it starts from an empty root either way.
    m_graph->Reset();
    if (!m_graph->GetRoot()) m_graph->SetRoot(new TreeGraphItem(m_graph));
    m_graph->SetMessageTarget(this);
    MakeTopNode();
}

void HoopsSegmentTree::MakeTopNode() {
    TreeGraphItem* root = m_graph->GetRoot();
    DeleteChildren(root);
    m_topNode = nullptr;
    root->SetLabel("model");
    root->SetKey(m_startKey);
    if (!IsAlive(m_startKey)) return;
    m_topNode = MakeSegmentNode(root, m_startKey, 0);
    UpdateSelectionState(m_topNode);
}

void HoopsSegmentTree::OpenNode(TreeGraphItem* node) {
    if (node->GetExpandedMark()) return;
    m_graph->OnExpandItem(node, true);
    node->Expand();
}

HoopsSegmentTree::~HoopsSegmentTree() {
    if (m_graph->GetMessageTarget() == this) m_graph->SetMessageTarget(nullptr);
}

// --- Nodes ----------------------------------------------------------------------------------

TreeGraphItem* HoopsSegmentTree::MakeNode(TreeGraphItem* parent, const NodeData& data,
                                          const std::string& label, HC_KEY key,
                                          std::int32_t selectionClass, std::uint32_t flags,
                                          bool hasChildren) {
    TreeGraphItem* node = parent->AddChild(label.c_str(), key, true);
    node->SetData(PackNodeData(data));
    node->SetFlags(flags);
    node->SetSelectionClass(selectionClass);
    node->SetEditable(false);
    node->SetHasChildren(hasChildren);
    return node;
}

TreeGraphItem* HoopsSegmentTree::MakeSegmentNode(TreeGraphItem* parent, HC_KEY key,
                                                 std::uint32_t flags) {
    bool hasContents = false;
    if (m_nameFilter) {
        hasContents = FilteredParent(key);
    } else {
        SegmentScope open(key);
        ContentsSearch search("everything, first match");
        std::string type;
        HC_KEY item = 0;
        hasContents = search.Next(type, item);
    }
    TreeGraphItem* node = MakeNode(parent, {NodeKind::Segment}, HUtility::OwnName(SegmentPath(key)),
                                   key, kClassSegment, flags, hasContents);
    node->SetEditable(true);
    return node;
}

// Includes and styles show their source's pathname, named styles their name; a condition
// follows when there is one.
TreeGraphItem* HoopsSegmentTree::MakeLinkNode(TreeGraphItem* parent, HC_KEY key, NodeKind kind) {
    char text[HC_TEXT_MAX] = "";
    char condition[HC_TEXT_MAX] = "";
    if (kind == NodeKind::Include)
        HC_Show_Conditional_Include(key, text, condition);
    else if (kind == NodeKind::Style)
        HC_Show_Conditional_Style(key, text, condition);
    else
        HC_Show_Named_Style_Segment(key, text);
    unsigned long long keyValue = static_cast<unsigned long long>(key);
    std::string label = condition[0]
                            ? Format("%llX - %s (Condition: %s)", keyValue, text, condition)
                            : Format("%llX - %s", keyValue, text);
    return MakeNode(parent, {kind}, label, key, kClassLink, parent->GetFlags() & kFlagInStaticModel,
                    kind != NodeKind::NamedStyle);
}

// A reference to a segment shows the segment and the filter; a reference to a geometry item
// shows where the item sits below the model ("%s\nKey: %llX").
TreeGraphItem* HoopsSegmentTree::MakeReferenceNode(TreeGraphItem* parent, HC_KEY reference,
                                                   HC_KEY target, const std::string& targetType) {
    std::uint32_t inherited = parent->GetFlags() & kFlagInStaticModel;
    unsigned long long keyValue = static_cast<unsigned long long>(reference);
    if (ObjectTypeOfWord(targetType) == ObjectType::Segment) {
        std::string filter = ReferenceFilter(reference);
        std::string label = Format("%llX - %s - %s", keyValue, SegmentPath(target).c_str(),
                                   filter.empty() ? "no filter" : filter.c_str());
        return MakeNode(parent, {NodeKind::SegmentReference}, label, reference, kClassGeometry,
                        inherited | kFlagReferencedSegment, true);
    }
    std::string label;
    if (GeometryKindIndex(targetType) != kNoKind) {
        std::string path = SegmentPath(target);
        size_t cut = 0;
        for (int level = 0; level < 3 && cut != std::string::npos; ++level)
            cut = path.find('/', cut == 0 && level == 0 ? 0 : cut + 1);
        path = cut == std::string::npos ? std::string() : path.substr(cut + 1);
        label = Format("%s\nKey: %llX", path.c_str(), keyValue);
    } else {
        label = Format("%llX - Unknown Geometry", keyValue);
    }
    bool hasAttributes = false;
    {
        GeometryScope open(reference);
        for (const auto& attribute : m_lists.referencedItemAttributes)
            hasAttributes = hasAttributes || attribute->Exists();
    }
    return MakeNode(parent, {NodeKind::GeometryReference}, label, reference, kClassSegment,
                    inherited | kFlagReferencedGeometry, hasAttributes);
}

std::string HoopsSegmentTree::AttributeLineLabel(const HoopsAttribute& attribute,
                                                 const std::string& value) const {
    return Format("%.*s: %s", static_cast<int>(attribute.GetName().size()),
                  attribute.GetName().data(), value.c_str());
}

namespace {

// The fixed grouping nodes: the label each shows and how the selection step treats it.
constexpr struct {
    NodeKind kind;
    const char* label;
    std::int32_t selectionClass;
} kGroups[] = {
    {NodeKind::StaticTree, kStaticTreeLabel, kClassGroup},
    {NodeKind::GeometryGroup, kGeometryLabel, kClassGeometry},
    {NodeKind::DefinesGroup, kDefinesLabel, kClassGeometry},
    {NodeKind::IncludesGroup, kIncludesLabel, kClassLink},
    {NodeKind::StylesGroup, kStylesLabel, kClassLink},
    {NodeKind::NamedStylesGroup, kNamedStylesLabel, kClassLink},
    {NodeKind::ReferencesGroup, kReferencesLabel, kClassLink},
    {NodeKind::GeometryRefGroup, kGeometryRefLabel, kClassGroup},
    {NodeKind::SegmentRefGroup, kSegmentRefLabel, kClassGroup},
};

} // namespace

TreeGraphItem* HoopsSegmentTree::MakeGroup(TreeGraphItem* parent, NodeKind kind, HC_KEY key,
                                           std::uint32_t flags) {
    for (const auto& group : kGroups)
        if (group.kind == kind)
            return MakeNode(parent, {kind}, group.label, key, group.selectionClass, flags, true);
    return nullptr;
}

static_assert(kPageSize <= 0xFFFF, "a page node keeps its length in 16 bits");

// Pages of kPageSize over count entries: "SEGMENTS %d-%d" or "REFERENCES %d-%d".
void HoopsSegmentTree::MakePages(TreeGraphItem* parent, NodeKind kind, int count) {
    bool segments = kind == NodeKind::SegmentPage;
    const char* format = segments ? "SEGMENTS %d-%d" : "REFERENCES %d-%d";
    std::int32_t selectionClass = segments ? kClassSegmentPage : kClassReferencePage;
    std::uint32_t inherited = parent->GetFlags() & kFlagInStaticModel;
    for (int i = 0; i < count; i += kPageSize) {
        NodeData range{kind};
        range.first = static_cast<std::uint32_t>(i + 1);
        range.last = static_cast<std::uint32_t>(std::min(i + kPageSize, count));
        UpdateSelectionState(
            MakeNode(parent, range,
                     Format(format, static_cast<int>(range.first), static_cast<int>(range.last)), 0,
                     selectionClass, inherited, true));
    }
}

// Children go one by one from the front; the graph's cursor rule does not apply, since no
// cursor is used.
void HoopsSegmentTree::DeleteChildren(TreeGraphItem* node) {
    while (TreeGraphItem* child = node->GetFirstChild())
        node->DeleteChild(child);
}

const TreeGraphItem* HoopsSegmentTree::KeyedAncestor(const TreeGraphItem* node) const {
    for (const TreeGraphItem* up = node ? node->GetParent() : nullptr; up; up = up->GetParent())
        if (IsObjectKey(up->GetKey())) return up;
    return nullptr;
}

bool HoopsSegmentTree::ResolveOwner(const TreeGraphItem* keyed, ContentOwner& owner) const {
    if (!keyed || !IsAlive(keyed->GetKey())) return false;
    HC_KEY key = keyed->GetKey();
    NodeKind kind = KindOf(keyed);
    if (kind != NodeKind::SegmentReference && kind != NodeKind::GeometryReference) {
        owner.segment = key;
        return true;
    }
    HC_KEY target = HC_Show_Reference_Geometry(key);
    if (!IsAlive(target) || ObjectTypeOf(target) != ObjectType::Segment) return false;
    owner.segment = target;
    owner.reference = key;
    owner.filter = ToLower(ReferenceFilter(key));
    return true;
}

std::uint32_t HoopsSegmentTree::GeometryKindIndex(std::string_view typeWord) const {
    std::string name = ToUpper(typeWord);
    for (size_t i = 0; i < m_lists.geometry.size(); ++i)
        if (m_lists.geometry[i]->GetName() == name) return static_cast<std::uint32_t>(i);
    return kNoKind;
}

HoopsGeometry* HoopsSegmentTree::GeometryKindOf(const TreeGraphItem* node) const {
    NodeData data = DataOf(node);
    bool typed = data.kind == NodeKind::GeometryKind || data.kind == NodeKind::GeometryItem;
    return typed && data.index < m_lists.geometry.size() ? m_lists.geometry[data.index].get()
                                                         : nullptr;
}

HoopsDefineGeometry* HoopsSegmentTree::DefinitionKindOf(const TreeGraphItem* node) const {
    NodeData data = DataOf(node);
    bool typed = data.kind == NodeKind::DefinitionKind || data.kind == NodeKind::DefinitionLine;
    return typed && data.index < m_lists.definitions.size() ? m_lists.definitions[data.index].get()
                                                            : nullptr;
}

HoopsAttribute* HoopsSegmentTree::AttributeNamed(std::string_view name) const {
    for (const auto& attribute : m_lists.segmentAttributes)
        if (attribute->GetName() == name) return attribute.get();
    return nullptr;
}

HoopsAttribute* HoopsSegmentTree::AttributeOfLine(const TreeGraphItem* line) const {
    NodeData data = DataOf(line);
    if (data.kind != NodeKind::AttributeLine) return nullptr;
    return data.index < m_lists.segmentAttributes.size()
               ? m_lists.segmentAttributes[data.index].get()
               : nullptr;
}

bool HoopsSegmentTree::IsAttributeLine(const TreeGraphItem* node) const {
    return KindOf(node) == NodeKind::AttributeLine;
}

bool HoopsSegmentTree::IsDefinitionLine(const TreeGraphItem* node) const {
    return KindOf(node) == NodeKind::DefinitionLine;
}

// --- Expansion ------------------------------------------------------------------------------

void HoopsSegmentTree::OnExpandItem(TreeGraphItem* item, bool expanding) {
    if (!item || item->GetGraph() != m_graph) return;
    if (!expanding) {
        item->SetExpandedMark(false);
        return;
    }
    ExpandNode(item);
}

void HoopsSegmentTree::ExpandNode(TreeGraphItem* node) {
    if (!node || node == m_graph->GetRoot() || IsAttributeLine(node) || IsDefinitionLine(node))
        return;
    if (IsObjectKey(node->GetKey())) {
        if (!IsAlive(node->GetKey())) return;
        ExpandKeyed(node);
    } else {
        ContentOwner owner;
        if (!ResolveOwner(KeyedAncestor(node), owner)) return;
        ExpandGroup(node);
    }
    node->SetExpandedMark(true);
}

void HoopsSegmentTree::ExpandGroup(TreeGraphItem* node) {
    switch (KindOf(node)) {
    case NodeKind::GeometryKind:
        if (GeometryKindOf(node)) ExpandGeometryKind(node, DataOf(node).index);
        return;
    case NodeKind::DefinitionKind:
        if (HoopsDefineGeometry* kind = DefinitionKindOf(node)) ExpandDefinitionKind(node, *kind);
        return;
    case NodeKind::IncludesGroup:
        return ExpandLinkGroup(node, "includes", NodeKind::Include);
    case NodeKind::StylesGroup:
        return ExpandLinkGroup(node, "styles", NodeKind::Style);
    case NodeKind::NamedStylesGroup:
        return ExpandNamedStyles(node);
    case NodeKind::GeometryGroup:
        return ExpandGeometryGroup(node);
    case NodeKind::DefinesGroup:
        return ExpandDefinesGroup(node);
    case NodeKind::SegmentRefGroup:
    case NodeKind::GeometryRefGroup:
        return ExpandReferenceKind(node);
    case NodeKind::ReferencePage:
        return ExpandReferencePage(node);
    case NodeKind::SegmentPage:
        return ExpandSegmentPage(node);
    default:
        return;
    }
}

void HoopsSegmentTree::ExpandKeyed(TreeGraphItem* node) {
    HC_KEY key = node->GetKey();
    switch (KindOf(node)) {
    case NodeKind::Segment:
    case NodeKind::StaticTree:
        return ExpandSegment(node, key);
    case NodeKind::ReferencesGroup:
        return ExpandReferencesGroup(node, key);
    case NodeKind::Include:
    case NodeKind::Style: {
        HC_KEY source = KindOf(node) == NodeKind::Include ? HC_Show_Include_Segment(key, nullptr)
                                                          : HC_Show_Style_Segment(key, nullptr);
        DeleteChildren(node);
        if (!IsAlive(source)) return;
        TreeGraphItem* child = MakeSegmentNode(node, source, node->GetFlags() & kFlagInStaticModel);
        UpdateSelectionState(child);
        return;
    }
    case NodeKind::SegmentReference:
    case NodeKind::GeometryReference:
    case NodeKind::GeometryItem:
        return ExpandItem(node);
    default:
        return;
    }
}

void HoopsSegmentTree::ExpandSegment(TreeGraphItem* node, HC_KEY segment) {
    if (m_nameFilter) return ExpandFilteredSegment(node, segment);
    DeleteChildren(node);
    std::uint32_t inherited = node->GetFlags() & kFlagInStaticModel;
    bool hasStaticModel = false, hasGeometry = false, hasDefinitions = false;
    bool hasIncludes = false, hasStyles = false, hasNamedStyles = false, hasReferences = false;
    HC_KEY self = 0;
    int count = 0;
    std::vector<HC_KEY> subsegments;
    {
        SegmentScope open(segment);
        hasStaticModel = HC_Show_Existence("static model") != 0;
        if (hasStaticModel) self = HC_Create_Segment(".");
        for (const auto& kind : m_lists.geometry)
            if (!hasGeometry && kind->Count() > 0) hasGeometry = true;
        for (const auto& kind : m_lists.definitions)
            if (!hasDefinitions && kind->Count() > 0) hasDefinitions = true;
        hasIncludes = HC_Show_Existence("includes") != 0;
        hasStyles = HC_Show_Existence("styles") != 0;
        hasNamedStyles = HC_Show_Existence("named styles") != 0;
        hasReferences = HC_Show_Existence("reference") != 0;
        ContentsSearch search("segments");
        count = search.Count();
        if (count <= kPageSize) {
            subsegments.reserve(static_cast<size_t>(count));
            std::string type;
            HC_KEY key = 0;
            while (search.Next(type, key))
                subsegments.push_back(HC_Show_Original_Key(key));
        }
    }
    if (hasStaticModel)
        MakeGroup(node, NodeKind::StaticTree, self, kFlagInStaticModel | kFlagStaticModel);
    if (hasGeometry) MakeGroup(node, NodeKind::GeometryGroup, 0, inherited);
    if (hasDefinitions) MakeGroup(node, NodeKind::DefinesGroup, 0, inherited);
    if (hasIncludes) MakeGroup(node, NodeKind::IncludesGroup, 0, inherited);
    if (hasStyles) MakeGroup(node, NodeKind::StylesGroup, 0, inherited);
    if (hasNamedStyles) MakeGroup(node, NodeKind::NamedStylesGroup, 0, inherited);
    if (hasReferences) MakeGroup(node, NodeKind::ReferencesGroup, segment, inherited);
    if (count > kPageSize) {
        MakePages(node, NodeKind::SegmentPage, count);
        return;
    }
    std::unordered_set<HC_KEY> shown;
    for (const TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
        shown.insert(child->GetKey());
    for (HC_KEY key : subsegments)
        if (shown.insert(key).second) MakeSegmentNode(node, key, inherited);
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
        if (IsAlive(child->GetKey())) UpdateSelectionState(child);
}

// Page entries keep the keys the database lists them by, without mapping to original keys.
void HoopsSegmentTree::ExpandSegmentPage(TreeGraphItem* page) {
    int first = 0, last = 0;
    const TreeGraphItem* owner = page->GetParent();
    if (!PageRange(page, NodeKind::SegmentPage, first, last) || !owner) return;
    DeleteChildren(page);
    std::uint32_t inherited = page->GetFlags() & kFlagInStaticModel;
    if (m_nameFilter) {
        const std::vector<HC_KEY>& kept = FilteredSubsegments(owner->GetKey());
        for (size_t i = static_cast<size_t>(first - 1); i < kept.size() && i < size_t(last); ++i)
            OpenFiltered(MakeSegmentNode(page, kept[i], inherited));
        return;
    }
    for (HC_KEY key : SubsegmentKeys(owner->GetKey(), first - 1, last - 1))
        UpdateSelectionState(MakeSegmentNode(page, key, inherited));
}

// Includes and styles are refreshed in place: nodes of links still there keep their place (and
// their expanded children), nodes of links gone go, new links are appended.
void HoopsSegmentTree::ExpandLinkGroup(TreeGraphItem* group, const char* filter,
                                       NodeKind linkKind) {
    HC_KEY segment = group->GetParent()->GetKey();
    std::vector<HC_KEY> links;
    {
        SegmentScope open(segment);
        ContentsSearch search(filter);
        std::string type;
        HC_KEY key = 0;
        while (search.Next(type, key))
            links.push_back(key);
    }
    std::unordered_set<HC_KEY> found(links.begin(), links.end());
    std::unordered_set<HC_KEY> shown;
    for (TreeGraphItem* child = group->GetFirstChild(); child;) {
        TreeGraphItem* next = child->GetNextSibling();
        if (IsObjectKey(child->GetKey()) && !found.count(child->GetKey()))
            group->DeleteChild(child);
        else
            shown.insert(child->GetKey());
        child = next;
    }
    for (HC_KEY key : links)
        if (!shown.count(key)) UpdateSelectionState(MakeLinkNode(group, key, linkKind));
}

void HoopsSegmentTree::ExpandNamedStyles(TreeGraphItem* group) {
    DeleteChildren(group);
    std::vector<HC_KEY> styles;
    {
        SegmentScope open(group->GetParent()->GetKey());
        ContentsSearch search("named style");
        std::string type;
        HC_KEY key = 0;
        while (search.Next(type, key))
            styles.push_back(key);
    }
    SegmentScope open(group->GetParent()->GetKey());
    for (HC_KEY key : styles)
        MakeLinkNode(group, key, NodeKind::NamedStyle);
}

// Under a reference, the kinds the reference's filter leaves out ("no shells", "no geometry")
// are not offered.
void HoopsSegmentTree::ExpandGeometryGroup(TreeGraphItem* group) {
    ContentOwner owner;
    ResolveOwner(KeyedAncestor(group), owner);
    DeleteChildren(group);
    std::uint32_t flags = group->GetFlags() & kFlagInStaticModel;
    if (owner.reference) flags |= group->GetFlags() & kFlagReferencedGeometry;
    for (std::uint32_t index : PresentKinds(owner))
        MakeNode(group, {NodeKind::GeometryKind, index},
                 std::string(m_lists.geometry[index]->GetName()), 0, kClassGeometry, flags, true);
}

std::vector<std::uint32_t> HoopsSegmentTree::PresentKinds(const ContentOwner& owner) {
    std::vector<std::uint32_t> present;
    SegmentScope open(owner.segment);
    for (std::uint32_t index = 0; index < m_lists.geometry.size(); ++index) {
        HoopsGeometry* kind = m_lists.geometry[index].get();
        if (owner.reference) {
            std::string excluded = "no " + ToLower(kind->GetName());
            if (owner.filter.find("no geometry") != std::string::npos ||
                owner.filter.find(excluded) != std::string::npos)
                continue;
        }
        if (kind->Count() > 0) present.push_back(index);
    }
    return present;
}

void HoopsSegmentTree::ExpandGeometryKind(TreeGraphItem* kindNode, std::uint32_t index) {
    HoopsGeometry& kind = *m_lists.geometry[index];
    ContentOwner owner;
    ResolveOwner(KeyedAncestor(kindNode), owner);
    DeleteChildren(kindNode);
    std::uint32_t flags = kindNode->GetFlags() & (kFlagInStaticModel | kFlagReferencedGeometry);
    std::string filter = ToLower(kind.GetName());
    std::vector<std::pair<HC_KEY, std::string>> items;
    {
        SegmentScope open(owner.segment);
        ContentsSearch search(filter.c_str());
        std::string type;
        HC_KEY key = 0;
        while (search.Next(type, key))
            items.emplace_back(key, std::string());
        for (auto& [key, label] : items)
            label = Format("%llX - %s", static_cast<unsigned long long>(key),
                           kind.Describe(key).c_str());
    }
    for (const auto& [key, label] : items) {
        bool hasAttributes = HC_Show_Existence_By_Key(key, "attributes") != 0;
        UpdateSelectionState(MakeNode(kindNode, {NodeKind::GeometryItem, index}, label, key,
                                      kClassGeometry, flags, hasAttributes));
    }
}

void HoopsSegmentTree::ExpandDefinesGroup(TreeGraphItem* group) {
    ContentOwner owner;
    ResolveOwner(KeyedAncestor(group), owner);
    DeleteChildren(group);
    std::vector<std::uint32_t> present;
    {
        SegmentScope open(owner.segment);
        for (std::uint32_t index = 0; index < m_lists.definitions.size(); ++index)
            if (m_lists.definitions[index]->Count() > 0) present.push_back(index);
    }
    for (std::uint32_t index : present)
        MakeNode(group, {NodeKind::DefinitionKind, index},
                 std::string(m_lists.definitions[index]->GetName()), 0, kClassGeometry,
                 group->GetFlags() & kFlagInStaticModel, true);
}

void HoopsSegmentTree::ExpandDefinitionKind(TreeGraphItem* kindNode, HoopsDefineGeometry& kind) {
    ContentOwner owner;
    ResolveOwner(KeyedAncestor(kindNode), owner);
    DeleteChildren(kindNode);
    std::vector<std::string> lines;
    {
        SegmentScope open(owner.segment);
        kind.BeginSearch();
        std::string line;
        while (kind.FindNext(line))
            lines.push_back(line);
        kind.EndSearch();
    }
    for (const std::string& line : lines)
        MakeNode(kindNode, {NodeKind::DefinitionLine, DataOf(kindNode).index}, line, 0,
                 kClassGeometry, kindNode->GetFlags() & kFlagInStaticModel, false);
}

void HoopsSegmentTree::ExpandReferencesGroup(TreeGraphItem* node, HC_KEY segment) {
    DeleteChildren(node);
    bool toGeometry = false, toSegments = false;
    {
        SegmentScope open(segment);
        ContentsSearch search("reference");
        std::string type;
        HC_KEY key = 0;
        while (search.Next(type, key) && !(toGeometry && toSegments)) {
            HC_KEY target = HC_Show_Reference_Geometry(key);
            bool toSegment = IsObjectKey(target) && ObjectTypeOf(target) == ObjectType::Segment;
            (toSegment ? toSegments : toGeometry) = true;
        }
    }
    std::uint32_t inherited = node->GetFlags() & kFlagInStaticModel;
    if (toGeometry) MakeGroup(node, NodeKind::GeometryRefGroup, 0, inherited);
    if (toSegments) MakeGroup(node, NodeKind::SegmentRefGroup, 0, inherited);
}

namespace {

struct ReferenceEntry {
    HC_KEY reference;
    HC_KEY target;
    std::string targetType;
    bool ToSegment() const { return ObjectTypeOfWord(targetType) == ObjectType::Segment; }
};

std::vector<ReferenceEntry> ListReferences(HC_KEY segment, const char* filter) {
    std::vector<ReferenceEntry> entries;
    SegmentScope open(segment);
    ContentsSearch search(filter);
    std::string type;
    HC_KEY key = 0;
    while (search.Next(type, key)) {
        HC_KEY target = HC_Show_Reference_Geometry(key);
        entries.push_back({key, target, IsObjectKey(target) ? KeyType(target) : std::string()});
    }
    return entries;
}

} // namespace

void HoopsSegmentTree::ExpandReferenceKind(TreeGraphItem* group) {
    const TreeGraphItem* references = group->GetParent();
    if (!references || !IsAlive(references->GetKey())) return;
    DeleteChildren(group);
    bool segments = KindOf(group) == NodeKind::SegmentRefGroup;
    std::vector<ReferenceEntry> entries = ListReferences(references->GetKey(), "reference");
    int total = static_cast<int>(entries.size());
    int ofKind = static_cast<int>(std::count_if(
        entries.begin(), entries.end(), [&](auto& e) { return e.ToSegment() == segments; }));
    if (total > kPageSize && ofKind >= kPageSize) {
        MakePages(group, NodeKind::ReferencePage, total);
        return;
    }
    for (const ReferenceEntry& entry : entries)
        if (entry.ToSegment() == segments)
            UpdateSelectionState(
                MakeReferenceNode(group, entry.reference, entry.target, entry.targetType));
}

void HoopsSegmentTree::ExpandReferencePage(TreeGraphItem* page) {
    int first = 0, last = 0;
    const TreeGraphItem* group = page->GetParent();
    const TreeGraphItem* references = group ? group->GetParent() : nullptr;
    if (!PageRange(page, NodeKind::ReferencePage, first, last) || !references ||
        !IsAlive(references->GetKey()))
        return;
    DeleteChildren(page);
    bool segments = KindOf(group) == NodeKind::SegmentRefGroup;
    std::vector<ReferenceEntry> entries = ListReferences(references->GetKey(), "references");
    for (int i = first - 1; i < last && i < static_cast<int>(entries.size()); ++i)
        if (entries[static_cast<size_t>(i)].ToSegment() == segments) {
            const ReferenceEntry& entry = entries[static_cast<size_t>(i)];
            UpdateSelectionState(
                MakeReferenceNode(page, entry.reference, entry.target, entry.targetType));
        }
}

// A geometry item (or a reference) lists the attributes set on it; one reached through a
// reference also lists what it refers to, and a reference to a segment offers that segment's
// geometry and references unless its filter says "no reference".
void HoopsSegmentTree::ExpandItem(TreeGraphItem* node) {
    HC_KEY key = node->GetKey();
    DeleteChildren(node);
    bool throughReference = (node->GetFlags() & (kFlagReferencedSegment | kFlagReferencedGeometry));
    bool isReference = KindOf(node) != NodeKind::GeometryItem;
    const auto& list = m_lists.ForGeometryItem(isReference ? "reference" : KeyType(key),
                                               throughReference || isReference);
    std::vector<std::pair<size_t, std::string>> lines;
    {
        GeometryScope open(key);
        for (const auto& attribute : list)
            if (attribute->Exists())
                lines.emplace_back(static_cast<size_t>(attribute->Kind()),
                                   AttributeLineLabel(*attribute, attribute->Show()));
    }
    std::uint32_t inherited = node->GetFlags() & kFlagInStaticModel;
    for (const auto& [kind, label] : lines)
        MakeNode(node, {NodeKind::AttributeLine, static_cast<std::uint32_t>(kind)}, label, 0,
                 kClassSegment, inherited, false);
    if (!throughReference && !isReference) return;

    int count = 0;
    HC_Show_Reference_Keys_Count(key, &count);
    std::vector<HC_KEY> keys(static_cast<size_t>(std::max(count, 0)));
    if (count > 0) HC_Show_Reference_Keys(key, &count, keys.data());
    for (HC_KEY referenced : keys) {
        if (!IsAlive(referenced)) continue;
        bool referencedIsReference = ObjectTypeOf(referenced) == ObjectType::Reference;
        HC_KEY target = referencedIsReference ? HC_Show_Reference_Geometry(referenced) : referenced;
        if (!IsAlive(target)) continue;
        std::string targetType = KeyType(target);
        if (ObjectTypeOfWord(targetType) == ObjectType::Segment) {
            if (!isReference ||
                ToLower(ReferenceFilter(key)).find("no reference") != std::string::npos)
                continue;
            bool hasReferences = false;
            {
                SegmentScope open(target);
                hasReferences = HC_Show_Existence("reference") != 0;
            }
            ContentOwner owner{target, key, ToLower(ReferenceFilter(key))};
            if (!PresentKinds(owner).empty())
                MakeGroup(node, NodeKind::GeometryGroup, 0, inherited | kFlagReferencedGeometry);
            if (hasReferences) MakeGroup(node, NodeKind::ReferencesGroup, target, inherited);
            continue;
        }
        std::uint32_t index = GeometryKindIndex(targetType);
        HoopsGeometry* kind = index == kNoKind ? nullptr : m_lists.geometry[index].get();
        std::string label;
        if (kind) {
            SegmentScope open(HC_Show_Owner_Original_Key(target));
            label = Format("%llX - %s - %s", static_cast<unsigned long long>(referenced),
                           std::string(kind->GetName()).c_str(), kind->Describe(target).c_str());
        } else {
            label = Format("%llX - Unknown Geometry", static_cast<unsigned long long>(referenced));
        }
        NodeKind itemKind =
            referencedIsReference ? NodeKind::GeometryReference : NodeKind::GeometryItem;
        MakeNode(node, {itemKind, index}, label, referenced, kClassSegment,
                 inherited | kFlagReferencedGeometry, false);
    }
}

// --- Selection ------------------------------------------------------------------------------

void HoopsSegmentTree::OnSelectItem(TreeGraphItem* item) {
    if (!item || item->GetGraph() != m_graph) return;
    m_graph->ClearMessages();
    for (const std::string& line : InformationLines(item))
        m_graph->AddMessage(line.c_str());
    if (m_showBounding) ShowBounding(item, true);
}

void HoopsSegmentTree::SegmentLines(HC_KEY segment, std::vector<std::string>& lines) {
    lines.push_back(SegmentPath(segment));
    lines.push_back(Format("Key: %llX", static_cast<unsigned long long>(segment)));
    {
        SegmentScope open(segment);
        for (const auto& attribute : m_lists.segmentAttributes)
            if (attribute->Exists())
                lines.push_back(AttributeLineLabel(*attribute, attribute->Show()));
    }
    for (std::string& line : CensusLines(segment))
        lines.push_back(std::move(line));
}

std::vector<std::string> HoopsSegmentTree::InformationLines(TreeGraphItem* node) {
    std::vector<std::string> lines;
    if (!node || node == m_graph->GetRoot()) return lines;
    HC_KEY key = node->GetKey();
    if (!IsObjectKey(key)) {
        const TreeGraphItem* keyed = KeyedAncestor(node);
        ContentOwner owner;
        if (!ResolveOwner(keyed, owner)) return lines;
        if (AttributeOfLine(node)) {
            lines.push_back(node->GetLabel() ? node->GetLabel() : "");
            return lines;
        }
        HoopsGeometry* kind = GeometryKindOf(node);
        if (kind && KindOf(node) == NodeKind::GeometryKind) {
            int count = 0;
            {
                SegmentScope open(owner.segment);
                count = kind->Count();
            }
            lines.push_back(Format("%d %s of geometry", count, count == 1 ? "piece" : "pieces"));
        } else if (IsDefinitionLine(node)) {
            lines.push_back(node->GetLabel() ? node->GetLabel() : "");
        }
        return lines;
    }
    if (!IsAlive(key)) return lines;
    switch (KindOf(node)) {
    case NodeKind::Segment:
    case NodeKind::StaticTree:
    case NodeKind::ReferencesGroup:
        SegmentLines(key, lines);
        break;
    case NodeKind::SegmentReference:
    case NodeKind::GeometryReference: {
        std::string filter = ReferenceFilter(key);
        lines.push_back(filter.empty() ? "no filter" : filter);
        break;
    }
    case NodeKind::Include:
    case NodeKind::Style:
    case NodeKind::NamedStyle:
        lines.push_back(node->GetLabel() ? node->GetLabel() : "");
        break;
    default: {
        lines.push_back(node->GetLabel() ? node->GetLabel() : "");
        int count = 0;
        HC_Show_Reference_Keys_Count(key, &count);
        if (count > 0) lines.push_back(Format("%d references", count));
    }
    }
    if (std::string bounding = BoundingText(key); !bounding.empty())
        lines.push_back(std::move(bounding));
    return lines;
}

std::vector<HC_KEY> HoopsSegmentTree::IncludesAbove(const TreeGraphItem* node) const {
    std::vector<HC_KEY> includes;
    for (const TreeGraphItem* up = node ? node->GetParent() : nullptr;
         up && up != m_graph->GetRoot(); up = up->GetParent())
        if (KindOf(up) == NodeKind::Include) includes.push_back(up->GetKey());
    std::reverse(includes.begin(), includes.end());
    return includes;
}

std::vector<HC_KEY> HoopsSegmentTree::GetIncludePath(const TreeGraphItem* node) const {
    const TreeGraphItem* keyed = node && IsObjectKey(node->GetKey()) ? node : KeyedAncestor(node);
    if (!keyed || keyed == m_graph->GetRoot()) return {};
    return HUtility::BuildIncludePath(keyed->GetKey(), IncludesAbove(keyed), m_startKey);
}

bool HoopsSegmentTree::PageHoldsSelection(TreeGraphItem* page) {
    HSelectionSet* selection = m_view ? m_view->GetSelection() : nullptr;
    if (!selection || selection->GetSize() == 0) return false;
    int first = 0, last = 0;
    if (PageRange(page, NodeKind::SegmentPage, first, last)) {
        HC_KEY owner = page->GetParent()->GetKey();
        if (!IsAlive(owner)) return false;
        for (HC_KEY key : SubsegmentKeys(owner, first - 1, last - 1))
            if (selection->IsSelected(key) || selection->IsSelected(HC_Show_Original_Key(key)))
                return true;
        return false;
    }
    const TreeGraphItem* references = page->GetParent() ? page->GetParent()->GetParent() : nullptr;
    if (!PageRange(page, NodeKind::ReferencePage, first, last) || !references ||
        !IsAlive(references->GetKey()))
        return false;
    std::vector<ReferenceEntry> entries = ListReferences(references->GetKey(), "references");
    for (int i = first - 1; i < last && i < static_cast<int>(entries.size()); ++i)
        if (selection->IsSelected(entries[static_cast<size_t>(i)].reference)) return true;
    return false;
}

// Grouping nodes are never highlighted, nor STATIC_TREE and REFERENCES, which carry their
// segment's key only to find it.
bool HoopsSegmentTree::IsNodeSelected(TreeGraphItem* node) {
    if (!node || !m_view || node == m_graph->GetRoot()) return false;
    NodeKind kind = KindOf(node);
    if (kind == NodeKind::SegmentPage || kind == NodeKind::ReferencePage)
        return PageHoldsSelection(node);
    HC_KEY key = node->GetKey();
    if (!IsObjectKey(key) || IsKeyedGroup(kind) || !IsAlive(key)) return false;
    HSelectionSet* selection = m_view->GetSelection();
    if (selection->GetSize() == 0) return false;
    if (IncludesAbove(node).empty())
        return selection->IsSelected(key) || selection->IsSelected(HC_Show_Original_Key(key));
    std::vector<HC_KEY> path = GetIncludePath(node);
    return selection->IsSelected(key, static_cast<int>(path.size()), path.data());
}

void HoopsSegmentTree::UpdateSelectionState(TreeGraphItem* node) {
    if (node) node->SetHighlighted(IsNodeSelected(node));
}

void HoopsSegmentTree::RefreshSelectionStates(TreeGraphItem* item) {
    TreeGraphItem* from = item ? item : m_graph->GetRoot();
    if (!from) return;
    std::vector<TreeGraphItem*> pending{from};
    while (!pending.empty()) {
        TreeGraphItem* node = pending.back();
        pending.pop_back();
        if (node != m_graph->GetRoot()) UpdateSelectionState(node);
        for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
            pending.push_back(child);
    }
}

void HoopsSegmentTree::ShowBounding(TreeGraphItem* node, bool on) {
    if (!m_view) return;
    HC_KEY key = node ? node->GetKey() : 0;
    if (!on || !IsAlive(key)) {
        m_view->VisualizeBounding(false, -1, 0, nullptr);
        return;
    }
    std::vector<HC_KEY> path = GetIncludePath(node);
    m_view->VisualizeBounding(true, key, static_cast<int>(path.size()), path.data());
}

void HoopsSegmentTree::OnEndLabelEdit(TreeGraphItem* item, const char* text) {
    if (!item || item->GetGraph() != m_graph || !text || !IsAlive(item->GetKey())) return;
    if (KindOf(item) != NodeKind::Segment) return;
    HC_Begin_Undo_Step("Rename");
    if (HUtility::RenameSegment(item->GetKey(), text))
        item->SetLabel(HUtility::OwnName(SegmentPath(item->GetKey())).c_str());
    HC_End_Undo_Step();
}
