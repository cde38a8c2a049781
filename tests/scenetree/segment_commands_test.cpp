// The context-menu commands without a window: a scripted host answers the dialogs.
#include <filesystem>
#include <fstream>
#include <functional>
#include <unistd.h>

#include "mvo/geom_handle.h"
#include "mvo/utility.h"
#include "scenetree/segment_commands.h"
#include "segment_tree_test.h"

using namespace obsidra::scenetree;

namespace {

// Answers every question from the test's script and records what was asked.
class ScriptedHost : public SegmentCommandHost {
public:
    std::optional<std::string> EditText(const std::string& text,
                                        const std::string& caption) override {
        shown.emplace_back(text, caption);
        Asking();
        return edit ? edit(text) : std::nullopt;
    }
    std::optional<std::string> OpenFileName(const FileRequest& request) override {
        requests.push_back(request);
        Asking();
        return file;
    }
    std::optional<std::string> SaveFileName(const FileRequest& request) override {
        requests.push_back(request);
        Asking();
        return file;
    }
    std::optional<OptimizeOptions> OptimizeChoices() override {
        Asking();
        return optimize;
    }
    void ShowMessage(const std::string& text) override { messages.push_back(text); }
    void RebuildTree() override { ++rebuilds; }

    // What the text window gives back for the text it was shown; unset: Cancel.
    std::function<std::optional<std::string>(const std::string&)> edit;
    std::optional<std::string> file;
    std::optional<OptimizeOptions> optimize;
    std::vector<std::pair<std::string, std::string>> shown;
    std::vector<FileRequest> requests;
    std::vector<std::string> messages;
    int rebuilds = 0;
    // What happens in the scene while a question is open.
    std::function<void()> whileAsking;

private:
    void Asking() {
        if (whileAsking) std::exchange(whileAsking, nullptr)();
    }
};

class SegmentCommandsTest : public SegmentTreeTest {
protected:
    bool Run(int commandId, TreeGraphItem* node) {
        return SegmentCommands(Tree(), m_host).Run(commandId, node);
    }
    void Answer(std::string text) {
        m_host.edit = [text](const std::string&) { return text; };
    }
    ScriptedHost m_host;
};

TEST_F(SegmentCommandsTest, CuttingTwoKeepsTheSecondAndPastingTwiceAddsTwice) {
    OpenModelPath(ModelKey());
    HC_Open_Segment("a");
    Triangle();
    HC_Close_Segment();
    const HC_KEY b = HC_Open_Segment("b");
    Triangle();
    HC_Close_Segment();
    const HC_KEY target = HC_Create_Segment("target");
    Close();
    m_view->GetSelection()->Select(b);
    TreeGraphItem* top = Expand(Top());
    const HC_KEY a = Open(top, "a")->GetKey();

    EXPECT_TRUE(Run(kCmdCutSegment, Open(top, "a")));
    EXPECT_TRUE(Run(kCmdCutSegment, Open(top, "b")));
    EXPECT_EQ(Labels(top), (Strings{"target"}));
    EXPECT_FALSE(IsAlive(a)) << "the first cut is flushed from the clipboard";
    EXPECT_EQ(Path(b), "/cutgeometry/b");
    EXPECT_FALSE(m_view->GetSelection()->IsSelected(b));

    TreeGraphItem* pasteHere = Open(top, "target");
    Run(kCmdPasteSegment, pasteHere);
    Run(kCmdPasteSegment, pasteHere);
    EXPECT_EQ(Labels(pasteHere), (Strings{"b"}));
    HC_Open_Segment_By_Key(target);
    EXPECT_EQ(Types("...", "shells").size(), 2u) << "each paste copies the clipboard again";
    Close();
    EXPECT_EQ(Path(b), "/cutgeometry/b") << "the clipboard keeps its segment";

    Run(kCmdCutSegment, MakeTree(HC_Open_Segment("/")).GetTopNode());
    HC_Close_Segment();
    EXPECT_EQ(TakeErrors().size(), 1u) << "the root cannot move into the clipboard";
    EXPECT_NE(Top(), nullptr) << "and its node stays";
}

TEST_F(SegmentCommandsTest, TakingTheOnlyChildOffAPageRebuildsThePages) {
    for (int command : {kCmdDeleteSegment, kCmdCutSegment}) {
        OpenModelPath(ModelKey());
        HC_Flush_Contents(".", "everything");
        Close();
        MakeNumbered(1001);
        TreeGraphItem* top = Expand(MakeTree().GetTopNode());
        TreeGraphItem* lastPage = Expand(top->GetLastChild());
        ASSERT_EQ(lastPage->GetChildCount(), 1u);
        Run(command, lastPage->GetFirstChild());
        EXPECT_EQ(top->GetChildCount(), 1000u) << command;
        EXPECT_STREQ(top->GetFirstChild()->GetLabel(), "s0") << command;
    }
}

TEST_F(SegmentCommandsTest, FlushAsksForTheTypesAndClearsTheWholeSubtree) {
    OpenModelPath(ModelKey(), "part");
    Triangle();
    HC_Set_Color("faces=red");
    HC_Open_Segment("inner");
    Triangle();
    Close(3);
    TreeGraphItem* part = Open(Expand(Top()), "part");
    Run(kCmdFlushSegmentContents, part);
    EXPECT_EQ(m_host.shown.back(),
              (std::pair<std::string, std::string>{"", "Flush Content Types"}));
    EXPECT_EQ(Labels(part), (Strings{"GEOMETRY", "inner"})) << "cancelled";

    Answer("shells");
    Run(kCmdFlushSegmentContents, part);
    HC_Open_Segment_By_Key(part->GetKey());
    EXPECT_EQ(Types("...", "everything"), (Strings{"segment", "color"}));
    Close();
    EXPECT_EQ(Labels(part), (Strings{"inner"}));
}

TEST_F(SegmentCommandsTest, ANewChildShowsAtOnceExpandedOrNot) {
    const HC_KEY part = Make("part");
    TreeGraphItem* top = Expand(Top());
    TreeGraphItem* node = Open(top, "part");
    for (bool expanded : {true, false}) {
        if (!expanded) {
            node = Expand(MakeTree().GetTopNode())->GetFirstChild();
            ASSERT_FALSE(node->GetExpandedMark());
        }
        const size_t before = node->GetChildCount();
        Run(kCmdCreateChildSegment, node);
        HC_Open_Segment_By_Key(part);
        const std::vector<std::pair<std::string, HC_KEY>> children = List(".", "segments");
        Close();
        EXPECT_EQ(node->GetChildCount(), before + 1) << expanded;
        ASSERT_EQ(children.size(), expanded ? 1u : 2u);
        EXPECT_EQ(node->GetLastChild()->GetLabel(), "@" + KeyHex(children.back().second));
    }
}

TEST_F(SegmentCommandsTest, AStyleIsAddedAndGoneTo) {
    const HC_KEY look = Make("look");
    Make("part");
    TreeGraphItem* part = Open(Expand(Top()), "part");
    Run(kCmdAddStyle, part);
    EXPECT_EQ(m_host.shown.back(), (std::pair<std::string, std::string>{"", ""}));
    EXPECT_EQ(Labels(part), Strings{}) << "cancelled: nothing added";

    Answer("../look");
    Run(kCmdAddStyle, part);
    TreeGraphItem* style = Open(part, "STYLES")->GetFirstChild();
    ASSERT_NE(style, nullptr);
    Run(kCmdGotoStyleInclude, part);
    EXPECT_TRUE(Tree().GetRevealedNodes().empty()) << "a segment goes nowhere";
    Run(kCmdGotoStyleInclude, style);
    ASSERT_EQ(Tree().GetRevealedNodes().size(), 1u);
    EXPECT_EQ(Tree().GetRevealedNodes().front()->GetKey(), look);

    Answer("../look");
    Run(kCmdAddInclude, part);
    TreeGraphItem* include = Open(part, "INCLUDES")->GetFirstChild();
    ASSERT_NE(include, nullptr);
    Run(kCmdGotoStyleInclude, include);
    EXPECT_EQ(Tree().GetRevealedNodes().front()->GetKey(), look);
}

// Sibling parts of the same colour fold into one (that the drawing stays is the optimiser's own
// test).
TEST_F(SegmentCommandsTest, OptimizeRunsTheChoicesAndRebuilds) {
    OpenModelPath(ModelKey(), "scene");
    for (int i = 0; i < 4; ++i) {
        HC_Open_Segment(("part" + std::to_string(i)).c_str());
        HC_Set_Color("faces=red");
        Triangle();
        HC_Close_Segment();
    }
    Close(2);
    TreeGraphItem* scene = Open(Expand(Top()), "scene");
    Run(kCmdOptimize, scene);
    EXPECT_EQ(m_host.rebuilds, 0) << "cancelled";

    m_host.optimize = OptimizeOptions{};
    Run(kCmdOptimize, scene);
    EXPECT_EQ(m_host.rebuilds, 1);
    HC_Open_Segment_By_Key(scene->GetKey());
    EXPECT_LT(Types(".", "segments").size(), 4u) << "reorganised";
    Close();
}

TEST_F(SegmentCommandsTest, EditAppendsCoordinatesAndAppliesTheEditedText) {
    OpenModelPath(ModelKey(), "part");
    const HC_KEY shell = Triangle();
    Close(2);
    TreeGraphItem* part = Open(Expand(Top()), "part");
    TreeGraphItem* item = Open(Open(part, "GEOMETRY"), "SHELL")->GetFirstChild();
    const std::string label = item->GetLabel();
    for (const char* text : {"garbage", "1 2"}) {
        Answer(text);
        Run(kCmdEdit, item);
        EXPECT_EQ(item->GetLabel(), label) << text;
    }
    m_host.edit = [](std::string text) {
        text.replace(text.find("1.000000, 0.000000"), 18, "5.000000, 6.000000");
        return text;
    };
    Run(kCmdEdit, item);
    const std::string shown = m_host.shown.back().first;
    EXPECT_EQ(shown.substr(0, label.size() + 1), label + "\n");
    EXPECT_NE(shown.find("\n3, 0,1,2\n"), std::string::npos) << shown;
    HC_POINT points[3];
    int count = 0, length = 0, faces[4];
    HC_Show_Shell(shell, &count, points, &length, faces);
    EXPECT_EQ(points[1].x, 5.0f);
    EXPECT_EQ(points[1].y, 6.0f);

    Answer("faces=green");
    Run(5257, part);
    EXPECT_EQ(m_host.shown.back(), (std::pair<std::string, std::string>{"", "part"}))
        << "Add Attribute edits the new line under its segment's caption";
    EXPECT_EQ(Tree().GetNetAttributeText(part, "COLOR"), "faces=green");
    Run(5269, part);
    EXPECT_EQ(m_host.shown.back(), (std::pair<std::string, std::string>{"faces=green", ""}));
}

TEST_F(SegmentCommandsTest, ADoubleClickEditsTextsButNotShellsOrSegments) {
    OpenModelPath(ModelKey(), "part");
    Triangle();
    HC_Insert_Text(0, 0, 0, "label");
    Close(2);
    TreeGraphItem* part = Open(Expand(Top()), "part");
    TreeGraphItem* geometry = Open(part, "GEOMETRY");
    SegmentCommands commands(Tree(), m_host);
    commands.DoubleClick(part);
    commands.DoubleClick(Open(geometry, "SHELL")->GetFirstChild());
    EXPECT_TRUE(m_host.shown.empty());
    commands.DoubleClick(Open(geometry, "TEXT")->GetFirstChild());
    ASSERT_EQ(m_host.shown.size(), 1u);
    EXPECT_NE(m_host.shown[0].first.find("Text: label"), std::string::npos);
}

TEST_F(SegmentCommandsTest, ShowBoundingShowsTheCircumcuboid) {
    OpenModelPath(ModelKey(), "part");
    Triangle();
    Close(2);
    Run(kCmdShowBounding, Open(Expand(Top()), "part"));
    EXPECT_EQ(m_host.shown.back().first,
              "Bounding: Min = 0.000000 0.000000 0.000000   Max = 1.000000 1.000000 0.000000");

    Run(5286, Open(Expand(Top()), "part")); // "Activate Manipulator"
    EXPECT_EQ(HUtilityGeomHandle::GetManipulatedSegment(m_view.get()), Make("part"));
}

TEST_F(SegmentCommandsTest, SavedSubtreeLoadsIntoAnotherSegment) {
    OpenModelPath(ModelKey());
    HC_Open_Segment("lib");
    Triangle();
    HC_Close_Segment();
    HC_Open_Segment("part");
    HC_Set_Color("faces=red");
    Triangle();
    HC_Include_Segment("../lib");
    HC_Open_Segment("inner");
    HC_Insert_Marker(1, 2, 3);
    Close(3);
    const HC_KEY copy = Make("copy");
    TreeGraphItem* top = Expand(Top());
    const auto file = std::filesystem::temp_directory_path() /
                      ("segment_commands_" + std::to_string(::getpid()) + ".hmf");

    m_host.file = file.string();
    Run(kCmdSaveToHmf, Open(top, "part"));
    EXPECT_EQ(m_host.requests.back().filter, "HOOPS MetaFile File (*.hmf)|*.hmf||");
    EXPECT_TRUE(m_host.requests.back().overwritePrompt);
    std::ifstream written(file);
    const std::string saved((std::istreambuf_iterator<char>(written)), {});
    EXPECT_NE(saved.find("lib"), std::string::npos) << "the include's segment is followed";

    Run(kCmdLoadIntoSegment, Open(top, "copy"));
    EXPECT_EQ(m_host.requests.back().defaultExtension, "hsf");
    HC_Open_Segment_By_Key(copy);
    EXPECT_EQ(Types(".", "everything"), (Strings{"segment", "include", "shell", "color"}));
    HC_Close_Segment();
    EXPECT_GT(m_view->GetUpdateCount(), 0);

    // A file that does not read leaves the segment as it was; an unknown type is passed over.
    std::ofstream(file) << "(Segment \"x\" (Shell";
    const auto copyBefore = List("/", "everything");
    Run(kCmdLoadIntoSegment, Open(top, "copy"));
    EXPECT_FALSE(TakeErrors().empty()) << "the reader says why";
    m_host.file = "scene.unknown";
    Run(kCmdLoadIntoSegment, Open(top, "copy"));
    EXPECT_TRUE(m_host.messages.empty());
    m_host.file = "no_extension";
    Run(kCmdLoadIntoSegment, Open(top, "copy"));
    EXPECT_EQ(m_host.messages,
              Strings{"Error: No file extension. Could not determine input file format.\n"});
    HC_Open_Segment_By_Key(copy);
    EXPECT_EQ(Types(".", "everything"), (Strings{"segment", "include", "shell", "color"}));
    HC_Close_Segment();
    std::filesystem::remove(file);
}

TEST_F(SegmentCommandsTest, NoNodeADeadKeyOrAnUnknownIdDoesNothing) {
    const HC_KEY part = Make("part");
    TreeGraphItem* node = Open(Expand(Top()), "part");
    HC_Delete_By_Key(part);
    Answer("x");
    m_host.file = "x.hmf";
    m_host.optimize = OptimizeOptions{};
    const int updates = m_view->GetUpdateCount();
    for (int id = 5257; id <= 5315; ++id) {
        Run(id, nullptr);
        Run(id, node);
    }
    EXPECT_EQ(m_host.shown, (std::vector<std::pair<std::string, std::string>>{}));
    EXPECT_TRUE(m_host.requests.empty());
    EXPECT_EQ(m_host.rebuilds, 0);
    EXPECT_EQ(m_view->GetUpdateCount(), updates);
    EXPECT_FALSE(Run(1, node));
    EXPECT_FALSE(HUtility::SegmentExists(kCutSegment));

    // The segment may go while the user is being asked.
    for (int command : {kCmdFlushSegmentContents, kCmdAddStyle, kCmdOptimize, kCmdSaveToHmf,
                        kCmdLoadIntoSegment}) {
        const HC_KEY doomed = Make("doomed");
        m_host.whileAsking = [doomed] { HC_Delete_By_Key(doomed); };
        Run(command, Open(Expand(MakeTree().GetTopNode()), "doomed"));
        EXPECT_FALSE(HUtility::SegmentExists(ModelPath().append("/doomed").c_str())) << command;
    }
}

} // namespace
