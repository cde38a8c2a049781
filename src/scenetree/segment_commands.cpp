#include "scenetree/segment_commands.h"

#include <cstring>

#include "mvo/base_view.h"
#include "mvo/hdb.h"
#include "mvo/utility.h"
#include "scenetree/edit_appendix.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/manipulator.h"
#include "scenetree/scene_access.h"

namespace obsidra::scenetree {

namespace {

constexpr AttributeCommand kAddAttribute[] = {
    {5262, "Camera", "CAMERA"},
    {5257, "Color", "COLOR"},
    {5300, "Condition", "CONDITION"},
    {5266, "Driver Options", "DRIVER OPTIONS"},
    {5294, "Edge Weight", "EDGE WEIGHT"},
    {5308, "Face Pattern", "FACE PATTERN"},
    {5279, "Handedness", "HANDEDNESS"},
    {5282, "Heuristic", "HEURISTICS"},
    {5305, "Line Pattern", "LINE PATTERN"},
    {5295, "Line Weight", "LINE WEIGHT"},
    {5297, "Marker Size", "MARKER SIZE"},
    {5309, "Marker Symbol", "MARKER SYMBOL"},
    {5263, "Modelling Matrix", "MODELLING MATRIX"},
    {5260, "Rendering Options", "RENDERING OPTIONS"},
    {5259, "Selectability", "SELECTABILITY"},
    {5267, "System Options", "SYSTEM OPTIONS"},
    {5301, "Text Alignment", "TEXT ALIGNMENT"},
    {5310, "Text Font", "TEXT FONT"},
    {5264, "User Options", "USER OPTIONS"},
    {5293, "Variable Edge Weight", "VARIABLE EDGE WEIGHT"},
    {5296, "Variable Line Weight", "VARIABLE LINE WEIGHT"},
    {5298, "Variable Marker Size", "VARIABLE MARKER SIZE"},
    {5258, "Visibility", "VISIBILITY"},
    {5303, "Window", "WINDOW"},
    {5302, "Window Pattern", "WINDOW PATTERN"},
    {5312, "Unicode Option", "UNICODE OPTIONS"},
};

constexpr AttributeCommand kShowNetAttribute[] = {
    {5273, "Camera", "CAMERA"},
    {5291, "Clip Region", "CLIP REGION"},
    {5269, "Color", "COLOR"},
    {5277, "Driver Options", "DRIVER OPTIONS"},
    {5280, "Handedness", "HANDEDNESS"},
    {5283, "Heuristic", "HEURISTICS"},
    {5274, "Modelling Matrix", "MODELLING MATRIX"},
    {5272, "Rendering Options", "RENDERING OPTIONS"},
    {5271, "Selectability", "SELECTABILITY"},
    {5290, "Subwindow", "WINDOW"},
    {5278, "System Options", "SYSTEM OPTIONS"},
    {5276, "Text Font", "TEXT FONT"},
    {5275, "User Options", "USER OPTIONS"},
    {5270, "Visibility", "VISIBILITY"},
};

const char* AttributeOf(std::span<const AttributeCommand> commands, int commandId) {
    for (const AttributeCommand& command : commands)
        if (command.commandId == commandId) return command.attribute;
    return nullptr;
}

// A node without an object, or one whose object is still there.
bool Usable(const TreeGraphItem* node) {
    return node && (!IsObjectKey(node->GetKey()) || IsAlive(node->GetKey()));
}

TreeGraphItem* ChildWithKey(TreeGraphItem* node, HC_KEY key) {
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
        if (child->GetKey() == key) return child;
    return nullptr;
}

} // namespace

std::span<const AttributeCommand> AddAttributeCommands() {
    return kAddAttribute;
}

std::span<const AttributeCommand> ShowNetAttributeCommands() {
    return kShowNetAttribute;
}

bool SegmentCommands::Run(int commandId, TreeGraphItem* node) {
    switch (commandId) {
    case kCmdUndefineAttribute:
        UndefineAttribute(node);
        return true;
    case kCmdDeleteSegment:
        DeleteSegment(node);
        return true;
    case kCmdZoomToSegment:
        ZoomToSegment(node);
        return true;
    case kCmdFlushSegmentContents:
        FlushSegmentContents(node);
        return true;
    case kCmdCreateChildSegment:
        CreateChildSegment(node);
        return true;
    case kCmdActivateManipulator:
        ActivateManipulator(node);
        return true;
    case kCmdCutSegment:
        CutSegment(node);
        return true;
    case kCmdPasteSegment:
        PasteSegment(node);
        return true;
    case kCmdEdit:
        Edit(node);
        return true;
    case kCmdShowBounding:
        ShowBounding(node);
        return true;
    case kCmdSaveToHmf:
        SaveToHmf(node);
        return true;
    case kCmdOptimize:
        Optimize(node);
        return true;
    case kCmdLoadIntoSegment:
        LoadIntoSegment(node);
        return true;
    case kCmdAddStyle:
        AddStyle(node);
        return true;
    case kCmdAddInclude:
        AddInclude(node);
        return true;
    case kCmdGotoStyleInclude:
        GotoStyleInclude(node);
        return true;
    default:
        break;
    }
    if (const char* attribute = AttributeOf(kAddAttribute, commandId)) {
        AddAttribute(node, attribute);
        return true;
    }
    if (const char* attribute = AttributeOf(kShowNetAttribute, commandId)) {
        ShowNetAttribute(node, attribute);
        return true;
    }
    return false;
}

HC_KEY SegmentCommands::SegmentKey(const TreeGraphItem* node) const {
    if (!node) return 0;
    const HC_KEY key = node->GetKey();
    return IsObjectKey(key) && IsAlive(key) && ObjectTypeOf(key) == ObjectType::Segment ? key : 0;
}

void SegmentCommands::UpdateView() {
    if (HBaseView* view = m_tree.GetView()) view->Update();
}

// The line is edited at once, so that the new value can be typed.
void SegmentCommands::AddAttribute(TreeGraphItem* node, const char* attribute) {
    if (!Usable(node)) return;
    if (TreeGraphItem* line = m_tree.AddAttribute(node, -1, attribute)) Edit(line);
}

void SegmentCommands::ShowNetAttribute(TreeGraphItem* node, const char* attribute) {
    if (!Usable(node)) return;
    m_host.EditText(m_tree.GetNetAttributeText(node, attribute), std::string());
}

void SegmentCommands::ShowBounding(TreeGraphItem* node) {
    const HC_KEY key = SegmentKey(node);
    if (!key) return;
    HC_POINT min{}, max{};
    {
        SegmentScope open(key);
        HC_Compute_Circumcuboid(".", &min, &max);
    }
    m_host.EditText(Format("Bounding: Min = %f %f %f   Max = %f %f %f", double(min.x),
                           double(min.y), double(min.z), double(max.x), double(max.y),
                           double(max.z)),
                    std::string());
}

void SegmentCommands::Optimize(TreeGraphItem* node) {
    const HC_KEY key = SegmentKey(node);
    if (!key) return;
    const std::optional<OptimizeOptions> choices = m_host.OptimizeChoices();
    if (!choices || !IsAlive(key)) return;
    const std::string options = ComposeOptimizeOptions(*choices);
    {
        SegmentScope open(key);
        HC_Optimize_Segment_Tree(".", options.c_str());
    }
    UpdateView();
    m_host.RebuildTree();
}

// The clipboard holds the last cut segment only: what it held before is flushed.
void SegmentCommands::CutSegment(TreeGraphItem* node) {
    const HC_KEY key = SegmentKey(node);
    if (!key) return;
    if (HBaseView* view = m_tree.GetView())
        if (view->GetSelection()->IsSelected(key)) view->GetSelection()->DeSelect(key);
    HC_Open_Segment(kCutSegment);
    HC_Flush_Contents(".", "everything");
    // A segment in the clipboard has just been flushed; one above it cannot move into it, and
    // its node stays.
    bool gone = !IsAlive(key);
    if (!gone) {
        HC_Move_By_Key(key, ".");
        gone = SegmentPath(key).starts_with(std::string(kCutSegment) + "/");
    }
    HC_Close_Segment();
    if (gone) m_tree.RemoveNode(node);
    UpdateView();
}

// The clipboard keeps what it holds, so one cut can be pasted many times.
void SegmentCommands::PasteSegment(TreeGraphItem* node) {
    const HC_KEY key = SegmentKey(node);
    if (!key || !HUtility::SegmentExists(kCutSegment)) return;
    {
        SegmentScope open(key);
        HC_Copy_Segment((std::string(kCutSegment) + "/*").c_str(), "./*");
    }
    m_tree.ReReadChildren(node, key);
    UpdateView();
}

void SegmentCommands::DeleteSegment(TreeGraphItem* node) {
    if (Usable(node) && m_tree.DeleteNode(node)) UpdateView();
}

void SegmentCommands::FlushSegmentContents(TreeGraphItem* node) {
    const HC_KEY key = SegmentKey(node);
    if (!key) return;
    const std::optional<std::string> types = m_host.EditText(std::string(), "Flush Content Types");
    if (!types || types->empty() || !IsAlive(key)) return;
    m_tree.Flush(node, types->c_str());
    UpdateView();
}

void SegmentCommands::CreateChildSegment(TreeGraphItem* node) {
    const HC_KEY key = SegmentKey(node);
    if (!key) return;
    HC_KEY child = 0;
    {
        SegmentScope open(key);
        child = HC_Create_Segment("");
    }
    m_tree.AddChildNode(node, child);
    // An expanded node makes its children anew when refreshed, the new one among them.
    m_tree.RefreshNode(node);
    if (TreeGraphItem* shown = ChildWithKey(node, child)) m_tree.RefreshNode(shown);
}

void SegmentCommands::ZoomToSegment(TreeGraphItem* node) {
    HBaseView* view = m_tree.GetView();
    if (!view || !node || !IsObjectKey(node->GetKey()) || !IsAlive(node->GetKey())) return;
    const std::vector<HC_KEY> path = m_tree.GetIncludePath(node);
    view->FitItemByPath(node->GetKey(), static_cast<int>(path.size()), path.data());
    view->Update();
}

// A file of a type no handler reads is passed over without a word; a file the handler cannot
// read leaves the segment as it was.
void SegmentCommands::LoadIntoSegment(TreeGraphItem* node) {
    const HC_KEY key = SegmentKey(node);
    if (!key) return;
    const std::optional<std::string> file = m_host.OpenFileName({"", "hsf", false});
    if (!file || !IsAlive(key)) return;
    if (HUtility::FindFileNameExtension(*file).empty()) {
        m_host.ShowMessage(kNoExtensionMessage);
        return;
    }
    SegmentScope open(key);
    const std::string path = file->substr(0, HC_TEXT_MAX - 1);
    char extension[HC_TEXT_MAX] = "";
    HC_Parse_String(path.c_str(), ".", -1, extension);
    if (HInputHandler* handler = HDB::GetHIOManager()->GetInputHandler(ToLower(extension))) {
        const HC_KEY segment = HC_Open_Segment(".");
        HC_Close_Segment();
        handler->FileInputByKey(path.c_str(), segment, "");
    }
    UpdateView();
}

void SegmentCommands::ActivateManipulator(TreeGraphItem* node) {
    if (const HC_KEY key = SegmentKey(node)) SetupManipulator(key, m_tree.GetView());
}

void SegmentCommands::SaveToHmf(TreeGraphItem* node) {
    const HC_KEY key = SegmentKey(node);
    if (!key) return;
    const std::optional<std::string> file =
        m_host.SaveFileName({"HOOPS MetaFile File (*.hmf)|*.hmf||", "hmf", true});
    if (!file || !IsAlive(key)) return;
    SegmentScope open(key);
    HC_Write_Metafile(".", file->c_str(), kSaveOptions);
}

void SegmentCommands::Edit(TreeGraphItem* node) {
    if (!Usable(node)) return;
    std::string text = m_tree.GetEditText(node);
    std::string caption;
    if (m_tree.IsAttributeLine(node))
        caption = m_tree.GetEditCaption(node);
    else if (node->GetTag())
        caption = node->GetTag();
    if (IsObjectKey(node->GetKey()))
        text += EditAppendix(node->GetKey(),
                             [&](const char* kind) { return m_tree.IsGeometryOfKind(node, kind); });
    if (const std::optional<std::string> edited = m_host.EditText(text, caption))
        m_tree.ApplyEditedText(node, *edited);
}

void SegmentCommands::AddLink(TreeGraphItem* node, bool style) {
    const HC_KEY key = SegmentKey(node);
    if (!key) return;
    const std::optional<std::string> name = m_host.EditText(std::string(), std::string());
    if (!name || name->empty() || !IsAlive(key)) return;
    HC_KEY link = 0;
    {
        SegmentScope open(key);
        link = style ? HC_Style_Segment(name->c_str()) : HC_Include_Segment(name->c_str());
    }
    m_tree.InsertStyleOrIncludeNode(link, node);
    m_tree.ExpandNode(node);
}

void SegmentCommands::GotoStyleInclude(TreeGraphItem* node) {
    if (!node || !IsObjectKey(node->GetKey()) || !IsAlive(node->GetKey())) return;
    const HC_KEY key = node->GetKey();
    const std::string type = KeyType(key);
    char pathname[HC_TEXT_MAX] = "";
    if (type == "style") {
        char condition[HC_TEXT_MAX] = "";
        HC_Show_Conditional_Style(key, pathname, condition);
    } else if (type == "include") {
        HC_Show_Include_Segment(key, pathname);
    }
    if (!*pathname) return;
    const HC_KEY target = HC_Open_Segment(pathname);
    HC_Close_Segment();
    TreeGraphItem* top = node;
    const TreeGraphItem* root = m_tree.GetGraph()->GetRoot();
    while (top->GetParent() && top->GetParent() != root)
        top = top->GetParent();
    m_tree.FindAndSelectByKeyText(KeyText(target).c_str(), top);
}

void SegmentCommands::UndefineAttribute(TreeGraphItem* node) {
    if (m_tree.UndefineAttribute(node)) UpdateView();
}

void SegmentCommands::DoubleClick(TreeGraphItem* node) {
    if (!Usable(node)) return;
    bool edits = m_tree.IsAttributeLine(node) || m_tree.IsDefinitionLine(node);
    for (const char* kind : {"TEXT", "DISTANT LIGHT", "LOCAL LIGHT", "SPOT LIGHT"})
        edits = edits || m_tree.IsGeometryOfKind(node, kind);
    if (edits) Edit(node);
}

} // namespace obsidra::scenetree
