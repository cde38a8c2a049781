#include "scenetree/hoops_segment_tree.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <unordered_set>

#include "mvo/utility.h"
#include "scenetree/database_lists.h"
#include "scenetree/model_texts.h"
#include "scenetree/scene_access.h"

using namespace obsidra::scenetree;

namespace {

bool LabelIs(const TreeGraphItem* node, const char* label) {
    return node && node->GetLabel() && std::strcmp(node->GetLabel(), label) == 0;
}

bool IsLinkGroup(const TreeGraphItem* node) {
    return LabelIs(node, kIncludesLabel) || LabelIs(node, kStylesLabel) ||
           LabelIs(node, kNamedStylesLabel);
}

// Reads "SEGMENTS %d-%d" or "REFERENCES %d-%d" back from a page's label.
bool PageRange(const TreeGraphItem* page, const char* format, int& first, int& last) {
    return page->GetLabel() && std::sscanf(page->GetLabel(), format, &first, &last) == 2 &&
           first >= 1 && last >= first;
}

std::string ReferenceFilter(HC_KEY reference) {
    char filter[HC_TEXT_MAX] = "";
    HC_Show_Reference_Geometry_Filt(reference, filter);
    return filter;
}

// Makes "SEGMENTS %d-%d" or "REFERENCES %d-%d" pages of kPageSize over count entries.
template <typename MakePage>
void MakePages(int count, MakePage makePage) {
    for (int i = 0; i < count; i += kPageSize)
        makePage(i + 1, std::min(i + kPageSize, count));
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
    TreeGraphItem* root = m_graph->GetRoot();
    DeleteChildren(root);
    root->SetLabel("model");
    root->SetKey(m_startKey);
    if (!IsAlive(m_startKey)) return;
    m_topNode = MakeSegmentNode(root, m_startKey, 0);
    UpdateSelectionState(m_topNode);
}

HoopsSegmentTree::~HoopsSegmentTree() {
    if (m_graph->GetMessageTarget() == this) m_graph->SetMessageTarget(nullptr);
}

// --- Nodes ----------------------------------------------------------------------------------

TreeGraphItem* HoopsSegmentTree::MakeNode(TreeGraphItem* parent, const std::string& label,
                                          HC_KEY key, std::int32_t selectionClass,
                                          std::uint32_t flags, bool hasChildren) {
    TreeGraphItem* node = parent->AddChild(label.c_str(), key, true);
    node->SetFlags(flags);
    node->SetSelectionClass(selectionClass);
    node->SetEditable(false);
    node->SetHasChildren(hasChildren);
    return node;
}

TreeGraphItem* HoopsSegmentTree::MakeSegmentNode(TreeGraphItem* parent, HC_KEY key,
                                                 std::uint32_t flags) {
    bool hasContents = false;
    {
        SegmentScope open(key);
        ContentsSearch search("everything, first match");
        std::string type;
        HC_KEY item = 0;
        hasContents = search.Next(type, item);
    }
    TreeGraphItem* node =
        MakeNode(parent, OwnName(SegmentPath(key)), key, kClassSegment, flags, hasContents);
    node->SetEditable(true);
    return node;
}

// Includes and styles show their source's pathname, named styles their name; a condition
// follows when there is one.
TreeGraphItem* HoopsSegmentTree::MakeLinkNode(TreeGraphItem* parent, HC_KEY key,
                                              const std::string& type) {
    char text[HC_TEXT_MAX] = "";
    char condition[HC_TEXT_MAX] = "";
    if (type == "include")
        HC_Show_Conditional_Include(key, text, condition);
    else if (type == "style")
        HC_Show_Conditional_Style(key, text, condition);
    else
        HC_Show_Named_Style_Segment(key, text);
    unsigned long long keyValue = static_cast<unsigned long long>(key);
    std::string label = condition[0]
                            ? Format("%llX - %s (Condition: %s)", keyValue, text, condition)
                            : Format("%llX - %s", keyValue, text);
    return MakeNode(parent, label, key, kClassLink, parent->GetFlags() & kFlagInStaticModel,
                    type != "named style");
}

// A reference to a segment shows the segment and the filter; a reference to a geometry item
// shows where the item sits below the model ("%s\nKey: %llX").
TreeGraphItem* HoopsSegmentTree::MakeReferenceNode(TreeGraphItem* parent, HC_KEY reference,
                                                   HC_KEY target, const std::string& targetType) {
    std::uint32_t inherited = parent->GetFlags() & kFlagInStaticModel;
    unsigned long long keyValue = static_cast<unsigned long long>(reference);
    if (targetType == "segment") {
        std::string filter = ReferenceFilter(reference);
        std::string label = Format("%llX - %s - %s", keyValue, SegmentPath(target).c_str(),
                                   filter.empty() ? "no filter" : filter.c_str());
        return MakeNode(parent, label, reference, kClassGeometry,
                        inherited | kFlagReferencedSegment, true);
    }
    std::string label;
    if (GeometryKindNamed(ToUpper(targetType))) {
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
    return MakeNode(parent, label, reference, kClassSegment, inherited | kFlagReferencedGeometry,
                    hasAttributes);
}

std::string HoopsSegmentTree::AttributeLineLabel(const HoopsAttribute& attribute,
                                                 const std::string& value) const {
    return Format("%.*s: %s", static_cast<int>(attribute.GetName().size()),
                  attribute.GetName().data(), value.c_str());
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
    if (LabelIs(keyed, kStaticTreeLabel) || LabelIs(keyed, kReferencesLabel) ||
        KeyType(key) != "reference") {
        owner.segment = key;
        return true;
    }
    HC_KEY target = HC_Show_Reference_Geometry(key);
    if (!IsAlive(target) || KeyType(target) != "segment") return false;
    owner.segment = target;
    owner.reference = key;
    owner.filter = ToLower(ReferenceFilter(key));
    return true;
}

// Links are asked about with their owner open, so that keys renumbered locally resolve.
std::string HoopsSegmentTree::KeyTypeOf(const TreeGraphItem* node) const {
    const TreeGraphItem* parent = node->GetParent();
    if (IsLinkGroup(parent) && parent->GetParent() && IsAlive(parent->GetParent()->GetKey())) {
        SegmentScope open(parent->GetParent()->GetKey());
        return KeyType(node->GetKey());
    }
    return KeyType(node->GetKey());
}

HoopsGeometry* HoopsSegmentTree::GeometryKindNamed(std::string_view name) const {
    for (const auto& kind : m_lists.geometry)
        if (kind->GetName() == name) return kind.get();
    return nullptr;
}

HoopsDefineGeometry* HoopsSegmentTree::DefinitionKindNamed(std::string_view name) const {
    for (const auto& kind : m_lists.definitions)
        if (kind->GetName() == name) return kind.get();
    return nullptr;
}

HoopsAttribute* HoopsSegmentTree::AttributeNamed(std::string_view name) const {
    for (const auto& attribute : m_lists.segmentAttributes)
        if (attribute->GetName() == name) return attribute.get();
    return nullptr;
}

HoopsAttribute* HoopsSegmentTree::AttributeOfLine(const TreeGraphItem* line) const {
    if (!IsAttributeLine(line)) return nullptr;
    size_t kind = static_cast<size_t>(line->GetData() & 0xFFFFFFFFu);
    return kind < m_lists.segmentAttributes.size() ? m_lists.segmentAttributes[kind].get()
                                                   : nullptr;
}

bool HoopsSegmentTree::IsAttributeLine(const TreeGraphItem* node) const {
    return node && !IsObjectKey(node->GetKey()) &&
           (node->GetData() & ~0xFFFFFFFFull) == kDataAttributeLine;
}

bool HoopsSegmentTree::IsDefinitionLine(const TreeGraphItem* node) const {
    return node && !IsObjectKey(node->GetKey()) &&
           (node->GetData() & ~0xFFFFFFFFull) == kDataDefinitionLine;
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
    std::string_view label = node->GetLabel() ? node->GetLabel() : "";
    if (HoopsGeometry* kind = GeometryKindNamed(label))
        ExpandGeometryKind(node, *kind);
    else if (HoopsDefineGeometry* definition = DefinitionKindNamed(label))
        ExpandDefinitionKind(node, *definition);
    else if (label == kIncludesLabel)
        ExpandLinkGroup(node, "includes");
    else if (label == kStylesLabel)
        ExpandLinkGroup(node, "styles");
    else if (label == kNamedStylesLabel)
        ExpandNamedStyles(node);
    else if (label == kGeometryLabel)
        ExpandGeometryGroup(node);
    else if (label == kDefinesLabel)
        ExpandDefinesGroup(node);
    else if (label == kSegmentRefLabel || label == kGeometryRefLabel)
        ExpandReferenceKind(node);
    else if (label.find(kReferencesLabel) != std::string_view::npos)
        ExpandReferencePage(node);
    else if (label.find("SEGMENTS") != std::string_view::npos)
        ExpandSegmentPage(node);
}

void HoopsSegmentTree::ExpandKeyed(TreeGraphItem* node) {
    HC_KEY key = node->GetKey();
    if (LabelIs(node, kStaticTreeLabel)) return ExpandSegment(node, key);
    if (LabelIs(node, kReferencesLabel)) return ExpandReferencesGroup(node, key);
    std::string type = KeyTypeOf(node);
    if (type == "segment") return ExpandSegment(node, key);
    if (type == "include" || type == "style") {
        HC_KEY source = type == "include" ? HC_Show_Include_Segment(key, nullptr)
                                          : HC_Show_Style_Segment(key, nullptr);
        DeleteChildren(node);
        if (!IsAlive(source)) return;
        TreeGraphItem* child = MakeSegmentNode(node, source, node->GetFlags() & kFlagInStaticModel);
        UpdateSelectionState(child);
        return;
    }
    if (type == "named style") return;
    ExpandItem(node, type);
}

void HoopsSegmentTree::ExpandSegment(TreeGraphItem* node, HC_KEY segment) {
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
        MakeNode(node, kStaticTreeLabel, self, kClassGroup, kFlagInStaticModel | kFlagStaticModel,
                 true);
    if (hasGeometry) MakeNode(node, kGeometryLabel, 0, kClassGeometry, inherited, true);
    if (hasDefinitions) MakeNode(node, kDefinesLabel, 0, kClassGeometry, inherited, true);
    if (hasIncludes) MakeNode(node, kIncludesLabel, 0, kClassLink, inherited, true);
    if (hasStyles) MakeNode(node, kStylesLabel, 0, kClassLink, inherited, true);
    if (hasNamedStyles) MakeNode(node, kNamedStylesLabel, 0, kClassLink, inherited, true);
    if (hasReferences) MakeNode(node, kReferencesLabel, segment, kClassLink, inherited, true);
    if (count > kPageSize) {
        MakePages(count, [&](int first, int last) {
            TreeGraphItem* page = MakeNode(node, Format("SEGMENTS %d-%d", first, last), 0,
                                           kClassSegmentPage, inherited, true);
            UpdateSelectionState(page);
        });
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
    if (!PageRange(page, "SEGMENTS %d-%d", first, last) || !owner) return;
    DeleteChildren(page);
    std::uint32_t inherited = page->GetFlags() & kFlagInStaticModel;
    for (HC_KEY key : SubsegmentKeys(owner->GetKey(), first - 1, last - 1))
        UpdateSelectionState(MakeSegmentNode(page, key, inherited));
}

// Includes and styles are refreshed in place: nodes of links still there keep their place (and
// their expanded children), nodes of links gone go, new links are appended.
void HoopsSegmentTree::ExpandLinkGroup(TreeGraphItem* group, const char* filter) {
    HC_KEY segment = group->GetParent()->GetKey();
    std::vector<std::pair<std::string, HC_KEY>> links;
    {
        SegmentScope open(segment);
        ContentsSearch search(filter);
        std::string type;
        HC_KEY key = 0;
        while (search.Next(type, key))
            links.emplace_back(type, key);
    }
    std::unordered_set<HC_KEY> found;
    for (const auto& link : links)
        found.insert(link.second);
    std::unordered_set<HC_KEY> shown;
    for (TreeGraphItem* child = group->GetFirstChild(); child;) {
        TreeGraphItem* next = child->GetNextSibling();
        if (IsObjectKey(child->GetKey()) && !found.count(child->GetKey()))
            group->DeleteChild(child);
        else
            shown.insert(child->GetKey());
        child = next;
    }
    for (const auto& [type, key] : links)
        if (!shown.count(key)) UpdateSelectionState(MakeLinkNode(group, key, type));
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
        MakeLinkNode(group, key, "named style");
}

// Under a reference, the kinds the reference's filter leaves out ("no shells", "no geometry")
// are not offered.
void HoopsSegmentTree::ExpandGeometryGroup(TreeGraphItem* group) {
    ContentOwner owner;
    ResolveOwner(KeyedAncestor(group), owner);
    DeleteChildren(group);
    std::uint32_t flags = group->GetFlags() & kFlagInStaticModel;
    if (owner.reference) flags |= group->GetFlags() & kFlagReferencedGeometry;
    std::vector<HoopsGeometry*> present = PresentKinds(owner);
    for (HoopsGeometry* kind : present)
        MakeNode(group, std::string(kind->GetName()), 0, kClassGeometry, flags, true);
}

std::vector<HoopsGeometry*> HoopsSegmentTree::PresentKinds(const ContentOwner& owner) {
    std::vector<HoopsGeometry*> present;
    SegmentScope open(owner.segment);
    for (const auto& kind : m_lists.geometry) {
        if (owner.reference) {
            std::string excluded = "no " + ToLower(kind->GetName());
            if (owner.filter.find("no geometry") != std::string::npos ||
                owner.filter.find(excluded) != std::string::npos)
                continue;
        }
        if (kind->Count() > 0) present.push_back(kind.get());
    }
    return present;
}

void HoopsSegmentTree::ExpandGeometryKind(TreeGraphItem* kindNode, HoopsGeometry& kind) {
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
        UpdateSelectionState(MakeNode(kindNode, label, key, kClassGeometry, flags, hasAttributes));
    }
}

void HoopsSegmentTree::ExpandDefinesGroup(TreeGraphItem* group) {
    ContentOwner owner;
    ResolveOwner(KeyedAncestor(group), owner);
    DeleteChildren(group);
    std::vector<HoopsDefineGeometry*> present;
    {
        SegmentScope open(owner.segment);
        for (const auto& kind : m_lists.definitions)
            if (kind->Count() > 0) present.push_back(kind.get());
    }
    for (HoopsDefineGeometry* kind : present)
        MakeNode(group, std::string(kind->GetName()), 0, kClassGeometry,
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
    std::uint64_t data = 0;
    for (size_t i = 0; i < m_lists.definitions.size(); ++i)
        if (m_lists.definitions[i].get() == &kind) data = kDataDefinitionLine | i;
    for (const std::string& line : lines) {
        TreeGraphItem* node = MakeNode(kindNode, line, 0, kClassGeometry,
                                       kindNode->GetFlags() & kFlagInStaticModel, false);
        node->SetData(data);
    }
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
            (IsObjectKey(target) && KeyType(target) == "segment" ? toSegments : toGeometry) = true;
        }
    }
    std::uint32_t inherited = node->GetFlags() & kFlagInStaticModel;
    if (toGeometry) MakeNode(node, kGeometryRefLabel, 0, kClassGroup, inherited, true);
    if (toSegments) MakeNode(node, kSegmentRefLabel, 0, kClassGroup, inherited, true);
}

namespace {

struct ReferenceEntry {
    HC_KEY reference;
    HC_KEY target;
    std::string targetType;
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
    bool segments = LabelIs(group, kSegmentRefLabel);
    std::vector<ReferenceEntry> entries = ListReferences(references->GetKey(), "reference");
    int total = static_cast<int>(entries.size());
    int ofKind = static_cast<int>(std::count_if(entries.begin(), entries.end(), [&](auto& e) {
        return (e.targetType == "segment") == segments;
    }));
    std::uint32_t inherited = group->GetFlags() & kFlagInStaticModel;
    if (total > kPageSize && ofKind >= kPageSize) {
        MakePages(total, [&](int first, int last) {
            TreeGraphItem* page = MakeNode(group, Format("REFERENCES %d-%d", first, last), 0,
                                           kClassReferencePage, inherited, true);
            UpdateSelectionState(page);
        });
        return;
    }
    for (const ReferenceEntry& entry : entries)
        if ((entry.targetType == "segment") == segments)
            UpdateSelectionState(
                MakeReferenceNode(group, entry.reference, entry.target, entry.targetType));
}

void HoopsSegmentTree::ExpandReferencePage(TreeGraphItem* page) {
    int first = 0, last = 0;
    const TreeGraphItem* group = page->GetParent();
    const TreeGraphItem* references = group ? group->GetParent() : nullptr;
    if (!PageRange(page, "REFERENCES %d-%d", first, last) || !references ||
        !IsAlive(references->GetKey()))
        return;
    DeleteChildren(page);
    bool segments = LabelIs(group, kSegmentRefLabel);
    std::vector<ReferenceEntry> entries = ListReferences(references->GetKey(), "references");
    for (int i = first - 1; i < last && i < static_cast<int>(entries.size()); ++i)
        if ((entries[static_cast<size_t>(i)].targetType == "segment") == segments) {
            const ReferenceEntry& entry = entries[static_cast<size_t>(i)];
            UpdateSelectionState(
                MakeReferenceNode(page, entry.reference, entry.target, entry.targetType));
        }
}

// A geometry item (or a reference) lists the attributes set on it; one reached through a
// reference also lists what it refers to, and a reference to a segment offers that segment's
// geometry and references unless its filter says "no reference".
void HoopsSegmentTree::ExpandItem(TreeGraphItem* node, const std::string& type) {
    HC_KEY key = node->GetKey();
    DeleteChildren(node);
    bool throughReference = (node->GetFlags() & (kFlagReferencedSegment | kFlagReferencedGeometry));
    const auto& list = m_lists.ForGeometryItem(type, throughReference || type == "reference");
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
        MakeNode(node, label, 0, kClassSegment, inherited, false)
            ->SetData(kDataAttributeLine | kind);
    if (!throughReference && type != "reference") return;

    int count = 0;
    HC_Show_Reference_Keys_Count(key, &count);
    std::vector<HC_KEY> keys(static_cast<size_t>(std::max(count, 0)));
    if (count > 0) HC_Show_Reference_Keys(key, &count, keys.data());
    for (HC_KEY referenced : keys) {
        if (!IsAlive(referenced)) continue;
        std::string referencedType = KeyType(referenced);
        HC_KEY target =
            referencedType == "reference" ? HC_Show_Reference_Geometry(referenced) : referenced;
        if (!IsAlive(target)) continue;
        std::string targetType = KeyType(target);
        if (targetType == "segment") {
            if (type != "reference" ||
                ToLower(ReferenceFilter(key)).find("no reference") != std::string::npos)
                continue;
            bool hasReferences = false;
            {
                SegmentScope open(target);
                hasReferences = HC_Show_Existence("reference") != 0;
            }
            ContentOwner owner{target, key, ToLower(ReferenceFilter(key))};
            if (!PresentKinds(owner).empty())
                MakeNode(node, kGeometryLabel, 0, kClassGeometry,
                         inherited | kFlagReferencedGeometry, true);
            if (hasReferences)
                MakeNode(node, kReferencesLabel, target, kClassLink, inherited, true);
            continue;
        }
        HoopsGeometry* kind = GeometryKindNamed(ToUpper(targetType));
        std::string label;
        if (kind) {
            SegmentScope open(HC_Show_Owner_Original_Key(target));
            label = Format("%llX - %s - %s", static_cast<unsigned long long>(referenced),
                           std::string(kind->GetName()).c_str(), kind->Describe(target).c_str());
        } else {
            label = Format("%llX - Unknown Geometry", static_cast<unsigned long long>(referenced));
        }
        MakeNode(node, label, referenced, kClassSegment, inherited | kFlagReferencedGeometry,
                 false);
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
        HoopsGeometry* kind = node->GetLabel() ? GeometryKindNamed(node->GetLabel()) : nullptr;
        if (kind && LabelIs(node->GetParent(), kGeometryLabel)) {
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
    std::string type = KeyTypeOf(node);
    if (type == "segment") {
        SegmentLines(key, lines);
    } else if (type == "reference") {
        std::string filter = ReferenceFilter(key);
        lines.push_back(filter.empty() ? "no filter" : filter);
    } else if (type == "include" || type == "style" || type == "named style") {
        lines.push_back(node->GetLabel() ? node->GetLabel() : "");
    } else {
        lines.push_back(node->GetLabel() ? node->GetLabel() : "");
        int count = 0;
        HC_Show_Reference_Keys_Count(key, &count);
        if (count > 0) lines.push_back(Format("%d references", count));
    }
    if (std::string bounding = BoundingText(key); !bounding.empty())
        lines.push_back(std::move(bounding));
    return lines;
}

std::vector<HC_KEY> HoopsSegmentTree::IncludesAbove(const TreeGraphItem* node) const {
    std::vector<HC_KEY> includes;
    for (const TreeGraphItem* up = node ? node->GetParent() : nullptr;
         up && up != m_graph->GetRoot(); up = up->GetParent())
        if (LabelIs(up->GetParent(), kIncludesLabel) && IsObjectKey(up->GetKey()))
            includes.push_back(up->GetKey());
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
    if (page->GetSelectionClass() == kClassSegmentPage) {
        if (!PageRange(page, "SEGMENTS %d-%d", first, last)) return false;
        HC_KEY owner = page->GetParent()->GetKey();
        if (!IsAlive(owner)) return false;
        for (HC_KEY key : SubsegmentKeys(owner, first - 1, last - 1))
            if (selection->IsSelected(key) || selection->IsSelected(HC_Show_Original_Key(key)))
                return true;
        return false;
    }
    const TreeGraphItem* references = page->GetParent() ? page->GetParent()->GetParent() : nullptr;
    if (!PageRange(page, "REFERENCES %d-%d", first, last) || !references ||
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
    std::int32_t selectionClass = node->GetSelectionClass();
    if (selectionClass == kClassSegmentPage || selectionClass == kClassReferencePage)
        return PageHoldsSelection(node);
    HC_KEY key = node->GetKey();
    if (!IsObjectKey(key) || LabelIs(node, kStaticTreeLabel) || LabelIs(node, kReferencesLabel) ||
        !IsAlive(key))
        return false;
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
    if (KeyTypeOf(item) != "segment" || LabelIs(item, kStaticTreeLabel) ||
        LabelIs(item, kReferencesLabel))
        return;
    if (HUtility::RenameSegment(item->GetKey(), text))
        item->SetLabel(OwnName(SegmentPath(item->GetKey())).c_str());
}
