#include "segment_tree_test.h"

using namespace obsidra::scenetree;

namespace {

using CommandsTest = SegmentTreeTest;

TEST_F(CommandsTest, AttributeLinesAreAddedEditedShownNetAndUndefined) {
    OpenModelPath(ModelKey());
    HC_Set_Color("edges=blue");
    HC_Create_Segment("part");
    Close();
    TreeGraphItem* part = Open(Expand(Top()), "part");

    TreeGraphItem* line = Tree().AddAttribute(part, -1, "COLOR");
    ASSERT_NE(line, nullptr);
    EXPECT_STREQ(line->GetLabel(), "COLOR: ");
    EXPECT_TRUE(Tree().IsAttributeLine(line));
    EXPECT_EQ(Tree().GetEditCaption(line), "part");
    EXPECT_TRUE(Tree().ApplyEditedText(line, "faces=red"));
    EXPECT_STREQ(line->GetLabel(), "COLOR: faces=red");
    EXPECT_EQ(Tree().GetEditText(line), "faces=red");
    EXPECT_EQ(Tree().GetNetAttributeText(part, "COLOR"), "edges=blue,faces=red");

    EXPECT_EQ(Tree().AddAttribute(part, 0, "MARKER SIZE")->GetNextSibling(), line)
        << "position 0 puts the line first";
    EXPECT_EQ(Tree().AddAttribute(part, -1, "NO SUCH ATTRIBUTE"), nullptr);

    EXPECT_TRUE(Tree().UndefineAttribute(line));
    EXPECT_EQ(Labels(part), (Strings{"MARKER SIZE: "}));
    EXPECT_EQ(Tree().GetNetAttributeText(part, "COLOR"), "edges=blue");
}

// Pages are rebuilt when the last segment of one goes: see the delete and cut commands.
TEST_F(CommandsTest, DeleteNodeDeletesSegmentsButNotGroupingNodes) {
    OpenModelPath(ModelKey());
    Triangle();
    HC_Create_Segment("doomed");
    Close();
    TreeGraphItem* top = Expand(Top());
    ASSERT_EQ(Labels(top), (Strings{"GEOMETRY", "doomed"}));
    const HC_KEY doomed = top->GetLastChild()->GetKey();
    EXPECT_FALSE(Tree().DeleteNode(nullptr));
    EXPECT_FALSE(Tree().DeleteNode(top->GetFirstChild())) << "a grouping node stays";
    EXPECT_TRUE(Tree().DeleteNode(top->GetLastChild()));
    EXPECT_FALSE(IsAlive(doomed));
    EXPECT_EQ(Labels(top), (Strings{"GEOMETRY"}));
}

// The commands add the first link of a kind by refreshing the node; a second one goes into
// the group that is there.
TEST_F(CommandsTest, ALinkJoinsItsGroupOnceThereIsOne) {
    HC_Create_Segment("/library/a");
    Make("part");
    TreeGraphItem* part = Open(Expand(Top()), "part");
    HC_Open_Segment_By_Key(part->GetKey());
    HC_KEY first = HC_Include_Segment("/library/a");
    HC_Close_Segment();
    EXPECT_EQ(Tree().InsertStyleOrIncludeNode(first, part), nullptr) << "no INCLUDES node yet";
    Tree().RefreshNode(part);
    TreeGraphItem* includes = Open(part, "INCLUDES");
    HC_Open_Segment_By_Key(part->GetKey());
    HC_KEY second = HC_Include_Segment("/library/a");
    HC_Close_Segment();
    TreeGraphItem* inserted = Tree().InsertStyleOrIncludeNode(second, part);
    ASSERT_NE(inserted, nullptr);
    EXPECT_EQ(inserted->GetParent(), includes);
    EXPECT_EQ(Labels(includes),
              (Strings{KeyHex(first) + " - /library/a", KeyHex(second) + " - /library/a"}));
}

TEST_F(CommandsTest, EditTextsGoBackThroughTheirDescriptors) {
    OpenModelPath(ModelKey(), "part");
    HC_KEY text = HC_Insert_Text(0, 0, 0, "old");
    HC_Define_Line_Style("dash", "4 on, 2 off");
    Close(2);
    TreeGraphItem* part = Open(Expand(Top()), "part");
    EXPECT_EQ(Tree().GetEditText(part), "part");
    EXPECT_TRUE(Tree().ApplyEditedText(part, "renamed"));
    EXPECT_STREQ(part->GetLabel(), "renamed");

    TreeGraphItem* textNode = Open(Open(part, "GEOMETRY"), "TEXT")->GetFirstChild();
    EXPECT_TRUE(Tree().IsGeometryOfKind(textNode, "TEXT"));
    EXPECT_FALSE(Tree().IsGeometryOfKind(textNode, "SHELL"));
    std::string edit = Tree().GetEditText(textNode);
    EXPECT_EQ(edit, KeyHex(text) + " - Position: 0.000000 0.000000 0.000000  Text: old");
    EXPECT_TRUE(Tree().ApplyEditedText(textNode, edit.substr(0, edit.find("old")) + "new"));
    EXPECT_EQ(textNode->GetLabel(),
              KeyHex(text) + " - Position: 0.000000 0.000000 0.000000  Text: new");

    TreeGraphItem* dash = Open(Open(part, "DEFINES"), "LINE PATTERN DEFINITION")->GetFirstChild();
    ASSERT_NE(dash, nullptr);
    EXPECT_TRUE(Tree().IsDefinitionLine(dash));
    EXPECT_TRUE(Tree().ApplyEditedText(dash, "dash - 8 on, 1 off"));
    EXPECT_STREQ(dash->GetLabel(), "dash - 8 on, 1 off");
}

} // namespace
