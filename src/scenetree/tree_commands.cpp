// What the browser's context-menu commands ask of the tree: attribute lines, deleting, flushing,
// new children and links, refreshing, and the text of "Edit" applied back to the scene.

#include "mvo/utility.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"

using namespace obsidra::scenetree;

namespace {

bool IsLink(NodeKind kind) {
    return kind == NodeKind::Include || kind == NodeKind::Style || kind == NodeKind::NamedStyle;
}

// Attribute questions go to a geometry item (or reference) opened as such, or to a segment.
class AttributeScope {
public:
    explicit AttributeScope(const TreeGraphItem* node) : m_geometry(IsItemKind(KindOf(node))) {
        HC_KEY key = node->GetKey();
        if (m_geometry)
            HC_Open_Geometry(key);
        else
            HC_Open_Segment_By_Key(key);
    }
    ~AttributeScope() {
        if (m_geometry)
            HC_Close_Geometry();
        else
            HC_Close_Segment();
    }
    AttributeScope(const AttributeScope&) = delete;
    AttributeScope& operator=(const AttributeScope&) = delete;

private:
    bool m_geometry;
};

} // namespace

TreeGraphItem* HoopsSegmentTree::AddAttribute(TreeGraphItem* node, int position, const char* name) {
    HoopsAttribute* attribute = name ? AttributeNamed(ToUpper(name)) : nullptr;
    if (!node || !attribute || !IsAlive(node->GetKey())) return nullptr;
    if (IsLink(KindOf(node))) return nullptr;
    std::string value;
    {
        AttributeScope open(node);
        if (attribute->Exists()) value = attribute->Show();
    }
    std::string label = AttributeLineLabel(*attribute, value);
    TreeGraphItem* line = nullptr;
    TreeGraphItem* before = node->GetFirstChild();
    for (int i = 0; before && i < position; ++i)
        before = before->GetNextSibling();
    if (position < 0 || !before) {
        line = node->AddChild(label.c_str(), 0, true);
    } else if (before == node->GetFirstChild()) {
        line = node->AddChild(label.c_str(), 0, false);
    } else {
        TreeGraphItem* after = node->GetFirstChild();
        while (after->GetNextSibling() != before)
            after = after->GetNextSibling();
        line = after->AddSibling(label.c_str(), 0, false);
    }
    if (!line) return nullptr;
    line->SetFlags(node->GetFlags() & kFlagInStaticModel);
    line->SetSelectionClass(kClassSegment);
    line->SetEditable(false);
    line->SetHasChildren(false);
    line->SetData(
        PackNodeData({NodeKind::AttributeLine, static_cast<std::uint32_t>(attribute->Kind())}));
    node->SetHasChildren(true);
    return line;
}

std::string HoopsSegmentTree::GetNetAttributeText(TreeGraphItem* node, const char* name) {
    HoopsAttribute* attribute = name ? AttributeNamed(ToUpper(name)) : nullptr;
    if (!node || !attribute) return {};
    const TreeGraphItem* keyed = IsObjectKey(node->GetKey()) ? node : KeyedAncestor(node);
    if (!keyed || !IsAlive(keyed->GetKey())) return {};
    if (IsLink(KindOf(keyed))) return {};
    AttributeScope open(keyed);
    return attribute->ShowNet();
}

bool HoopsSegmentTree::UndefineAttribute(TreeGraphItem* line) {
    HoopsAttribute* attribute = AttributeOfLine(line);
    TreeGraphItem* owner = line ? line->GetParent() : nullptr;
    if (!attribute || !owner || !IsAlive(owner->GetKey())) return false;
    {
        AttributeScope open(owner);
        if (attribute->Exists()) attribute->UnSet();
    }
    owner->DeleteChild(line);
    return true;
}

bool HoopsSegmentTree::DeleteNode(TreeGraphItem* node) {
    if (!node || node == m_graph->GetRoot()) return false;
    m_graph->ClearMessages();
    HC_KEY key = node->GetKey();
    if (!IsObjectKey(key) || IsKeyedGroup(KindOf(node))) return false;
    if (IsAlive(key)) HC_Delete_By_Key(key);
    RemoveNode(node);
    return true;
}

void HoopsSegmentTree::RemoveNode(TreeGraphItem* node) {
    TreeGraphItem* parent = node ? node->GetParent() : nullptr;
    if (!parent) return;
    if (node == m_topNode) m_topNode = nullptr;
    parent->DeleteChild(node);
    if (KindOf(parent) == NodeKind::SegmentPage && parent->GetParent())
        ExpandNode(parent->GetParent());
}

void HoopsSegmentTree::Flush(TreeGraphItem* node, const char* contentTypes) {
    if (!node || !contentTypes || !IsAlive(node->GetKey())) return;
    NodeKind kind = KindOf(node);
    if (kind != NodeKind::Segment && !IsKeyedGroup(kind)) return;
    {
        SegmentScope open(node->GetKey());
        HC_Flush_Contents("...", contentTypes);
    }
    ReReadChildren(node, node->GetKey());
}

TreeGraphItem* HoopsSegmentTree::AddChildNode(TreeGraphItem* parent, HC_KEY key) {
    if (!parent || !IsAlive(key) || ObjectTypeOf(key) != ObjectType::Segment) return nullptr;
    TreeGraphItem* node = MakeSegmentNode(parent, key, parent->GetFlags() & kFlagInStaticModel);
    parent->SetHasChildren(true);
    UpdateSelectionState(node);
    return node;
}

void HoopsSegmentTree::RefreshNode(TreeGraphItem* node) {
    if (!node || node == m_graph->GetRoot()) return;
    HC_KEY key = node->GetKey();
    if (IsObjectKey(key)) {
        if (!IsAlive(key)) return;
        if (KindOf(node) == NodeKind::Segment) {
            node->SetLabel(HUtility::OwnName(SegmentPath(key)).c_str());
            SegmentScope open(key);
            ContentsSearch search("everything, first match");
            std::string type;
            HC_KEY item = 0;
            node->SetHasChildren(search.Next(type, item));
        }
    }
    if (node->GetExpandedMark()) ExpandNode(node);
    UpdateSelectionState(node);
}

TreeGraphItem* HoopsSegmentTree::InsertStyleOrIncludeNode(HC_KEY key, TreeGraphItem* node) {
    if (!node || !IsAlive(node->GetKey())) return nullptr;
    ObjectType type = ObjectType::None;
    {
        SegmentScope open(node->GetKey());
        if (!IsAlive(key)) return nullptr;
        type = ObjectTypeOf(key);
    }
    if (type != ObjectType::Include && type != ObjectType::Style) return nullptr;
    bool include = type == ObjectType::Include;
    NodeKind groupKind = include ? NodeKind::IncludesGroup : NodeKind::StylesGroup;
    for (TreeGraphItem* group = node->GetFirstChild(); group; group = group->GetNextSibling()) {
        if (KindOf(group) != groupKind) continue;
        for (TreeGraphItem* child = group->GetFirstChild(); child; child = child->GetNextSibling())
            if (child->GetKey() == key) return child;
        if (!group->GetExpandedMark()) return nullptr;
        SegmentScope open(node->GetKey());
        TreeGraphItem* link =
            MakeLinkNode(group, key, include ? NodeKind::Include : NodeKind::Style);
        UpdateSelectionState(link);
        return link;
    }
    return nullptr;
}

void HoopsSegmentTree::ReReadChildren(TreeGraphItem* node, HC_KEY key) {
    if (!node || !IsAlive(key)) return;
    ExpandNode(node);
}

bool HoopsSegmentTree::IsGeometryOfKind(const TreeGraphItem* node, const char* kindName) {
    if (!node || !kindName || !IsObjectKey(node->GetKey())) return false;
    const TreeGraphItem* kindNode = node->GetParent();
    HoopsGeometry* kind = GeometryKindOf(kindNode);
    return kind && KindOf(kindNode) == NodeKind::GeometryKind && kind->GetName() == kindName;
}

std::string HoopsSegmentTree::GetEditText(TreeGraphItem* node) {
    if (!node) return {};
    if (HoopsAttribute* attribute = AttributeOfLine(node)) {
        TreeGraphItem* owner = node->GetParent();
        if (!owner || !IsAlive(owner->GetKey())) return {};
        AttributeScope open(owner);
        return attribute->Exists() ? attribute->Show() : std::string();
    }
    std::string label = node->GetLabel() ? node->GetLabel() : "";
    if (KindOf(node) == NodeKind::Segment && IsAlive(node->GetKey()))
        return HUtility::OwnName(SegmentPath(node->GetKey()));
    return label.substr(0, 32767);
}

std::string HoopsSegmentTree::GetEditCaption(const TreeGraphItem* node) const {
    const TreeGraphItem* parent = node ? node->GetParent() : nullptr;
    return parent && parent->GetLabel() ? parent->GetLabel() : "";
}

bool HoopsSegmentTree::ApplyEditedText(TreeGraphItem* node, std::string_view text) {
    if (!node) return false;
    if (HoopsAttribute* attribute = AttributeOfLine(node)) {
        TreeGraphItem* owner = node->GetParent();
        if (!owner || !IsAlive(owner->GetKey())) return false;
        std::string value;
        {
            AttributeScope open(owner);
            attribute->Set(text);
            if (!attribute->Exists()) return false;
            value = attribute->Show();
        }
        node->SetLabel(AttributeLineLabel(*attribute, value).c_str());
        return true;
    }
    if (IsDefinitionLine(node)) {
        HoopsDefineGeometry* kind = DefinitionKindOf(node);
        ContentOwner owner;
        if (!kind || !ResolveOwner(KeyedAncestor(node), owner)) return false;
        auto parts = kind->SplitText(text);
        if (!parts) return false;
        std::string line;
        {
            SegmentScope open(owner.segment);
            kind->Define(parts->name, parts->definition);
            line = kind->Describe(parts->name);
        }
        if (!line.empty()) node->SetLabel(line.c_str());
        return true;
    }
    HC_KEY key = node->GetKey();
    if (!IsAlive(key)) return false;
    NodeKind nodeKind = KindOf(node);
    if (nodeKind == NodeKind::Segment) {
        std::string name(text.substr(0, text.find('\n')));
        if (!HUtility::RenameSegment(key, name.c_str())) return false;
        node->SetLabel(HUtility::OwnName(SegmentPath(key)).c_str());
        return true;
    }
    HoopsGeometry* kind = nodeKind == NodeKind::GeometryItem ? GeometryKindOf(node) : nullptr;
    if (!kind) return false;
    bool edited = false;
    std::string description;
    {
        SegmentScope open(HC_Show_Owner_Original_Key(key));
        edited = kind->Edit(key, text);
        description = kind->Describe(key);
    }
    if (edited)
        node->SetLabel(
            Format("%llX - %s", static_cast<unsigned long long>(key), description.c_str()).c_str());
    return edited;
}
