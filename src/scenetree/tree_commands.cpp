// What the browser's context-menu commands ask of the tree: attribute lines, deleting, flushing,
// new children and links, refreshing, and the text of "Edit" applied back to the scene.

#include <cstring>

#include "mvo/utility.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"

using namespace obsidra::scenetree;

namespace {

bool LabelIs(const TreeGraphItem* node, const char* label) {
    return node && node->GetLabel() && std::strcmp(node->GetLabel(), label) == 0;
}

// Attribute questions go to a geometry item opened as such, or to a segment.
class AttributeScope {
public:
    AttributeScope(HC_KEY key, bool geometry) : m_geometry(geometry) {
        if (geometry)
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
    std::string type = KeyTypeOf(node);
    if (type == "include" || type == "style" || type == "named style") return nullptr;
    std::string value;
    {
        AttributeScope open(node->GetKey(), type != "segment");
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
    line->SetData(kDataAttributeLine | static_cast<std::uint64_t>(attribute->Kind()));
    node->SetHasChildren(true);
    return line;
}

std::string HoopsSegmentTree::GetNetAttributeText(TreeGraphItem* node, const char* name) {
    HoopsAttribute* attribute = name ? AttributeNamed(ToUpper(name)) : nullptr;
    if (!node || !attribute) return {};
    const TreeGraphItem* keyed = IsObjectKey(node->GetKey()) ? node : KeyedAncestor(node);
    if (!keyed || !IsAlive(keyed->GetKey())) return {};
    std::string type = KeyTypeOf(keyed);
    if (type == "include" || type == "style" || type == "named style") return {};
    AttributeScope open(keyed->GetKey(), type != "segment");
    return attribute->ShowNet();
}

bool HoopsSegmentTree::UndefineAttribute(TreeGraphItem* line) {
    HoopsAttribute* attribute = AttributeOfLine(line);
    TreeGraphItem* owner = line ? line->GetParent() : nullptr;
    if (!attribute || !owner || !IsAlive(owner->GetKey())) return false;
    {
        AttributeScope open(owner->GetKey(), KeyTypeOf(owner) != "segment");
        if (attribute->Exists()) attribute->UnSet();
    }
    owner->DeleteChild(line);
    return true;
}

bool HoopsSegmentTree::DeleteNode(TreeGraphItem* node) {
    if (!node || node == m_graph->GetRoot()) return false;
    m_graph->ClearMessages();
    HC_KEY key = node->GetKey();
    if (!IsObjectKey(key) || LabelIs(node, kStaticTreeLabel) || LabelIs(node, kReferencesLabel))
        return false;
    if (IsAlive(key)) HC_Delete_By_Key(key);
    TreeGraphItem* parent = node->GetParent();
    if (node == m_topNode) m_topNode = nullptr;
    parent->DeleteChild(node);
    if (!IsObjectKey(parent->GetKey()) && parent->GetLabel() &&
        std::strstr(parent->GetLabel(), "SEGMENTS") && parent->GetParent())
        ExpandNode(parent->GetParent());
    return true;
}

void HoopsSegmentTree::Flush(TreeGraphItem* node, const char* contentTypes) {
    if (!node || !contentTypes || !IsAlive(node->GetKey()) || KeyTypeOf(node) != "segment") return;
    {
        SegmentScope open(node->GetKey());
        HC_Flush_Contents("...", contentTypes);
    }
    ReReadChildren(node, node->GetKey());
}

TreeGraphItem* HoopsSegmentTree::AddChildNode(TreeGraphItem* parent, HC_KEY key) {
    if (!parent || !IsAlive(key) || KeyType(key) != "segment") return nullptr;
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
        if (KeyTypeOf(node) == "segment" && !LabelIs(node, kStaticTreeLabel) &&
            !LabelIs(node, kReferencesLabel)) {
            node->SetLabel(OwnName(SegmentPath(key)).c_str());
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
    std::string type;
    {
        SegmentScope open(node->GetKey());
        if (!IsAlive(key)) return nullptr;
        type = KeyType(key);
    }
    if (type != "include" && type != "style") return nullptr;
    const char* label = type == "include" ? kIncludesLabel : kStylesLabel;
    for (TreeGraphItem* group = node->GetFirstChild(); group; group = group->GetNextSibling()) {
        if (!LabelIs(group, label)) continue;
        for (TreeGraphItem* child = group->GetFirstChild(); child; child = child->GetNextSibling())
            if (child->GetKey() == key) return child;
        if (!group->GetExpandedMark()) return nullptr;
        SegmentScope open(node->GetKey());
        TreeGraphItem* link = MakeLinkNode(group, key, type);
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
    const TreeGraphItem* kind = node->GetParent();
    return kind && LabelIs(kind, kindName) && LabelIs(kind->GetParent(), kGeometryLabel);
}

std::string HoopsSegmentTree::GetEditText(TreeGraphItem* node) {
    if (!node) return {};
    if (HoopsAttribute* attribute = AttributeOfLine(node)) {
        TreeGraphItem* owner = node->GetParent();
        if (!owner || !IsAlive(owner->GetKey())) return {};
        AttributeScope open(owner->GetKey(), KeyTypeOf(owner) != "segment");
        return attribute->Exists() ? attribute->Show() : std::string();
    }
    std::string label = node->GetLabel() ? node->GetLabel() : "";
    if (IsObjectKey(node->GetKey()) && IsAlive(node->GetKey()) && KeyTypeOf(node) == "segment" &&
        !LabelIs(node, kStaticTreeLabel) && !LabelIs(node, kReferencesLabel))
        return OwnName(SegmentPath(node->GetKey()));
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
            AttributeScope open(owner->GetKey(), KeyTypeOf(owner) != "segment");
            attribute->Set(text);
            if (!attribute->Exists()) return false;
            value = attribute->Show();
        }
        node->SetLabel(AttributeLineLabel(*attribute, value).c_str());
        return true;
    }
    if (IsDefinitionLine(node)) {
        const TreeGraphItem* kindNode = node->GetParent();
        HoopsDefineGeometry* kind =
            kindNode && kindNode->GetLabel() ? DefinitionKindNamed(kindNode->GetLabel()) : nullptr;
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
    std::string type = KeyTypeOf(node);
    if (type == "segment") {
        if (LabelIs(node, kStaticTreeLabel) || LabelIs(node, kReferencesLabel)) return false;
        std::string name(text.substr(0, text.find('\n')));
        if (!HUtility::RenameSegment(key, name.c_str())) return false;
        node->SetLabel(OwnName(SegmentPath(key)).c_str());
        return true;
    }
    HoopsGeometry* kind = GeometryKindNamed(ToUpper(type));
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
