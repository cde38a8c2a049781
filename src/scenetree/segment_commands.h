#pragma once

// The segment browser's context-menu commands, without a window: each works on one node of the
// segment tree, makes its calls on the scene, asks the tree to show what changed and updates
// the view. What needs a person (a text to read or type, a file name, the optimise choices, a
// message) goes through SegmentCommandHost, which the browser answers with dialogs and tests
// answer from a script.

#include <optional>
#include <span>
#include <string>

#include <obsidra/hc.h>

#include "scenetree/optimize_options.h"

class HoopsSegmentTree;
class TreeGraphItem;

namespace obsidra::scenetree {

// The context menus' command ids; the attribute items have ids of their own (Run looks them up
// in the menus' attribute tables).
enum CommandId : int {
    kCmdUndefineAttribute = 5261,
    kCmdDeleteSegment = 5268,
    kCmdZoomToSegment = 5281,
    kCmdFlushSegmentContents = 5284,
    kCmdCreateChildSegment = 5285,
    kCmdActivateManipulator = 5286,
    kCmdCutSegment = 5287,
    kCmdPasteSegment = 5288,
    kCmdEdit = 5289,
    kCmdShowBounding = 5292,
    kCmdSaveToHmf = 5299,
    kCmdOptimize = 5306,
    kCmdLoadIntoSegment = 5311,
    kCmdAddStyle = 5313,
    kCmdAddInclude = 5314,
    kCmdGotoStyleInclude = 5315,
};

// One attribute item of the "Add Attribute" and "Show Net Attribute" submenus: its command id,
// its text, and the scene's name of the attribute.
struct AttributeCommand {
    int commandId;
    const char* text;
    const char* attribute;
};
std::span<const AttributeCommand> AddAttributeCommands();
std::span<const AttributeCommand> ShowNetAttributeCommands();

// A file dialog's settings. filter is in the "Description (*.ext)|*.ext||" form; the default
// extension (without dot) is added to a name typed without one.
struct FileRequest {
    std::string filter;
    std::string defaultExtension;
    bool overwritePrompt = false;
};

class SegmentCommandHost {
public:
    virtual ~SegmentCommandHost() = default;
    // Shows text for reading or editing under the caption (empty: the window's own) and returns
    // the text as left on OK, nothing on Cancel.
    virtual std::optional<std::string> EditText(const std::string& text,
                                                const std::string& caption) = 0;
    // A file to read or to write, or nothing when the user cancels.
    virtual std::optional<std::string> OpenFileName(const FileRequest& request) = 0;
    virtual std::optional<std::string> SaveFileName(const FileRequest& request) = 0;
    // The choices of the "Optimize Segment" dialog, or nothing when it is cancelled.
    virtual std::optional<OptimizeOptions> OptimizeChoices() = 0;
    virtual void ShowMessage(const std::string& text) = 0;
    // Throws the tree away and builds it anew from its root, as "Refresh" does. The tree the
    // commands were made with is gone afterwards.
    virtual void RebuildTree() = 0;
};

// The clipboard of "Cut Segment" and "Paste Segment": a segment of the scene, never the
// system's clipboard.
inline constexpr char kCutSegment[] = "/cutgeometry";
inline constexpr char kSaveOptions[] = "follow cross-references, save state = textures";
inline constexpr char kNoExtensionMessage[] =
    "Error: No file extension. Could not determine input file format.\n";

// The commands over one tree; cheap to make for each command. Every command does nothing
// without a node or with a node whose object is gone, also when the object went while the host
// was asking the user.
class SegmentCommands {
public:
    SegmentCommands(HoopsSegmentTree& tree, SegmentCommandHost& host)
        : m_tree(tree), m_host(host) {}

    // Runs the command of a menu item on the node; false for an id no menu has.
    bool Run(int commandId, TreeGraphItem* node);

    void AddAttribute(TreeGraphItem* node, const char* attribute);
    void ShowNetAttribute(TreeGraphItem* node, const char* attribute);
    void ShowBounding(TreeGraphItem* node);
    void Optimize(TreeGraphItem* node);
    void CutSegment(TreeGraphItem* node);
    void PasteSegment(TreeGraphItem* node);
    void DeleteSegment(TreeGraphItem* node);
    void FlushSegmentContents(TreeGraphItem* node);
    void CreateChildSegment(TreeGraphItem* node);
    void ZoomToSegment(TreeGraphItem* node);
    void LoadIntoSegment(TreeGraphItem* node);
    void ActivateManipulator(TreeGraphItem* node);
    void SaveToHmf(TreeGraphItem* node);
    void Edit(TreeGraphItem* node);
    void AddStyle(TreeGraphItem* node) { AddLink(node, true); }
    void AddInclude(TreeGraphItem* node) { AddLink(node, false); }
    void GotoStyleInclude(TreeGraphItem* node);
    void UndefineAttribute(TreeGraphItem* node);
    // A double-click edits an attribute line, a definition line, a text or a light at once.
    void DoubleClick(TreeGraphItem* node);

private:
    void AddLink(TreeGraphItem* node, bool style);
    // The node's key when it names a live segment, else 0.
    HC_KEY SegmentKey(const TreeGraphItem* node) const;
    void UpdateView();

    HoopsSegmentTree& m_tree;
    SegmentCommandHost& m_host;
};

} // namespace obsidra::scenetree
