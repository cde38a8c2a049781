#include "segment_tree_test.h"

using namespace obsidra::scenetree;

namespace {

class ExpansionTest : public SegmentTreeTest {
protected:
    struct Everything {
        HC_KEY all, a, include, style, named;
    };
    // "all" in the model: one thing of every group (a shell with a colour of its own, a
    // reference to a segment and one to the shell), then the subsegments a and b.
    Everything BuildEverything() {
        HC_Open_Segment("/library/part");
        Triangle();
        HC_KEY part = HC_Create_Segment(".");
        Close();
        OpenModelPath(ModelKey(), "all");
        HC_Set_Heuristics("static model");
        HC_POINT line[] = {{0, 0, 0}, {1, 1, 1}};
        HC_Insert_Polyline(2, line);
        HC_KEY shell = Triangle();
        HC_Open_Geometry(shell);
        HC_Set_Color("faces=red");
        HC_Close_Geometry();
        HC_Define_Local_Texture("wood", "source=oak");
        Everything made{HC_Create_Segment("."), 0, HC_Include_Segment("/library/part"),
                        HC_Conditional_Style("/library/part", "night"), 0};
        HC_Define_Named_Style("red", "/library/part");
        made.named = HC_Named_Style_Segment("red");
        HC_Reference_Geometry_By_Key(part);
        HC_Reference_Geometry_By_Key(shell);
        made.a = HC_Create_Segment("a");
        HC_Create_Segment("b");
        Close(2);
        return made;
    }
};

TEST_F(ExpansionTest, ConstructionMakesTheRootAndTheTopNodeOfTheModel) {
    HoopsSegmentTree& tree = MakeTree();
    TreeGraphItem* root = m_graph.GetRoot();
    EXPECT_STREQ(root->GetLabel(), "model");
    EXPECT_EQ(root->GetKey(), ModelKey());
    ASSERT_EQ(root->GetChildCount(), 1u);
    TreeGraphItem* top = tree.GetTopNode();
    EXPECT_EQ(top, root->GetFirstChild());
    EXPECT_EQ(top->GetLabel(), "@" + KeyHex(ModelKey()));
    EXPECT_EQ(KeyHex(ModelKey()).substr(0, 1), "F");
    EXPECT_EQ(KeyHex(ModelKey()).size(), 16u);
    EXPECT_EQ(top->GetSelectionClass(), kClassSegment);
    EXPECT_EQ(top->GetFlags(), 0u);
    EXPECT_FALSE(Shown(top)->HasChildren()) << "the model is empty";
    EXPECT_EQ(m_graph.GetMessageTarget(), &tree);

    HoopsSegmentTree& fromRoot = MakeTree(HC_Create_Segment("/"));
    EXPECT_STREQ(fromRoot.GetTopNode()->GetLabel(), "/");
    EXPECT_TRUE(Shown(fromRoot.GetTopNode())->HasChildren());
}

TEST_F(ExpansionTest, GroupsComeBeforeSubsegmentsInTheirFixedOrder) {
    const auto [all, a, include, style, named] = BuildEverything();
    TreeGraphItem* node = Open(Expand(Top()), "all");
    EXPECT_EQ(Labels(node), (Strings{"STATIC_TREE", "GEOMETRY", "DEFINES", "INCLUDES", "STYLES",
                                     "NAMED STYLES", "REFERENCES", "a", "b"}));
    struct Row {
        const char* label;
        HC_KEY key;
        std::int32_t selectionClass;
        std::uint32_t flags;
        bool hasChildren;
    };
    const Row rows[] = {
        {"STATIC_TREE", all, kClassGroup, 0x11, true},
        {"GEOMETRY", 0, kClassGeometry, 0, true},
        {"DEFINES", 0, kClassGeometry, 0, true},
        {"INCLUDES", 0, kClassLink, 0, true},
        {"STYLES", 0, kClassLink, 0, true},
        {"NAMED STYLES", 0, kClassLink, 0, true},
        {"REFERENCES", all, kClassLink, 0, true},
        {"a", a, kClassSegment, 0, false},
    };
    TreeGraphItem* child = node->GetFirstChild();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ASSERT_NE(child, nullptr);
        EXPECT_STREQ(child->GetLabel(), row.label);
        EXPECT_EQ(child->GetKey(), row.key);
        EXPECT_EQ(child->GetSelectionClass(), row.selectionClass);
        EXPECT_EQ(child->GetFlags(), row.flags);
        EXPECT_EQ(Shown(child)->HasChildren(), row.hasChildren);
        child = child->GetNextSibling();
    }

    EXPECT_EQ(Labels(Open(node, "GEOMETRY")), (Strings{"SHELL", "POLYLINE"}));
    EXPECT_EQ(Labels(Open(node, "DEFINES")), (Strings{"LOCAL TEXTURE", "NAMED STYLE DEFINITION"}));
    EXPECT_EQ(Labels(Open(node, "INCLUDES")), (Strings{KeyHex(include) + " - /library/part"}));
    EXPECT_EQ(Labels(Open(node, "STYLES")),
              (Strings{KeyHex(style) + " - /library/part (Condition: night)"}));
    TreeGraphItem* named_styles = Open(node, "NAMED STYLES");
    EXPECT_EQ(Labels(named_styles), (Strings{KeyHex(named) + " - red"}));
    EXPECT_FALSE(Shown(named_styles->GetFirstChild())->HasChildren());
    TreeGraphItem* includeNode = Open(node, "INCLUDES")->GetFirstChild();
    EXPECT_TRUE(Shown(includeNode)->HasChildren());
    EXPECT_EQ(Labels(Expand(includeNode)), (Strings{"part"}));

    TreeGraphItem* staticTree = Open(node, "STATIC_TREE");
    EXPECT_TRUE(staticTree->GetExpandedMark());
    for (TreeGraphItem* inside = staticTree->GetFirstChild(); inside;
         inside = inside->GetNextSibling())
        EXPECT_EQ(inside->GetFlags() & kFlagInStaticModel, kFlagInStaticModel)
            << inside->GetLabel();
}

// Each node is reached by the labels on its way down from the top node, "*" standing for the
// first child; what it is comes from its data, so a view may relabel it freely.
TEST_F(ExpansionTest, EveryNodeKeepsItsKindAsData) {
    BuildEverything();
    const struct {
        std::vector<std::string> path;
        NodeKind kind;
    } rows[] = {
        {{"all"}, NodeKind::Segment},
        {{"all", "a"}, NodeKind::Segment},
        {{"all", "STATIC_TREE"}, NodeKind::StaticTree},
        {{"all", "GEOMETRY"}, NodeKind::GeometryGroup},
        {{"all", "GEOMETRY", "SHELL"}, NodeKind::GeometryKind},
        {{"all", "GEOMETRY", "SHELL", "*"}, NodeKind::GeometryItem},
        {{"all", "GEOMETRY", "SHELL", "*", "*"}, NodeKind::AttributeLine},
        {{"all", "DEFINES"}, NodeKind::DefinesGroup},
        {{"all", "DEFINES", "LOCAL TEXTURE"}, NodeKind::DefinitionKind},
        {{"all", "DEFINES", "LOCAL TEXTURE", "*"}, NodeKind::DefinitionLine},
        {{"all", "INCLUDES"}, NodeKind::IncludesGroup},
        {{"all", "INCLUDES", "*"}, NodeKind::Include},
        {{"all", "INCLUDES", "*", "*"}, NodeKind::Segment},
        {{"all", "STYLES"}, NodeKind::StylesGroup},
        {{"all", "STYLES", "*"}, NodeKind::Style},
        {{"all", "NAMED STYLES"}, NodeKind::NamedStylesGroup},
        {{"all", "NAMED STYLES", "*"}, NodeKind::NamedStyle},
        {{"all", "REFERENCES"}, NodeKind::ReferencesGroup},
        {{"all", "REFERENCES", "GEOMETRY_REF"}, NodeKind::GeometryRefGroup},
        {{"all", "REFERENCES", "GEOMETRY_REF", "*"}, NodeKind::GeometryReference},
        {{"all", "REFERENCES", "SEGMENT_REF"}, NodeKind::SegmentRefGroup},
        {{"all", "REFERENCES", "SEGMENT_REF", "*"}, NodeKind::SegmentReference},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.path));
        TreeGraphItem* node = Expand(Top());
        for (size_t i = 0; i < row.path.size() && node; ++i)
            node = row.path[i] == "*" ? Expand(node->GetFirstChild()) : Open(node, row.path[i]);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(KindOf(node), row.kind);
        std::vector<std::string> before = Labels(node);
        node->SetLabel("relabelled");
        EXPECT_EQ(Labels(Expand(node)), before) << "a relabelled node expands as before";
    }
    EXPECT_EQ(KindOf(m_graph.GetRoot()), NodeKind::None);
}

TEST_F(ExpansionTest, GeometryKindsListTheirItemsAndItemsTheirAttributes) {
    OpenModelPath(ModelKey());
    HC_KEY first = Triangle();
    HC_KEY second = Triangle();
    HC_Open_Geometry(second);
    HC_Set_User_Options("tag=door");
    HC_Set_Color("faces=red");
    HC_Close_Geometry();
    HC_KEY text = HC_Insert_Text(0, 0, 0, "hello");
    Close();

    TreeGraphItem* geometry = Open(Expand(Top()), "GEOMETRY");
    EXPECT_EQ(Labels(geometry), (Strings{"SHELL", "TEXT"}));
    TreeGraphItem* shells = Open(geometry, "SHELL");
    const std::string shell = "Points:3, 1 Faces in 1 Tristrips, LODS:0";
    EXPECT_EQ(Labels(shells),
              (Strings{KeyHex(first) + " - " + shell, KeyHex(second) + " - " + shell}));
    EXPECT_EQ(shells->GetFirstChild()->GetKey(), first);
    EXPECT_EQ(shells->GetFirstChild()->GetSelectionClass(), kClassGeometry);
    EXPECT_FALSE(Shown(shells->GetFirstChild())->HasChildren());
    TreeGraphItem* withAttributes = shells->GetLastChild();
    EXPECT_TRUE(Shown(withAttributes)->HasChildren());
    EXPECT_EQ(Labels(Expand(withAttributes)),
              (Strings{"COLOR: faces=red", "USER OPTIONS: tag=door"}));
    EXPECT_TRUE(Tree().IsAttributeLine(withAttributes->GetFirstChild()));
    EXPECT_EQ(Labels(Open(geometry, "TEXT")),
              (Strings{KeyHex(text) + " - Position: 0.000000 0.000000 0.000000  Text: hello"}));
}

struct PagingRow {
    const char* name;
    int subsegments;
    std::vector<std::string> pages;
};

class PagingTest : public SegmentTreeTest, public ::testing::WithParamInterface<PagingRow> {};

TEST_P(PagingTest, LongListsOfSubsegmentsComeInPagesOfAThousand) {
    const PagingRow& row = GetParam();
    MakeNumbered(row.subsegments);
    TreeGraphItem* top = Expand(Top());
    if (row.pages.empty()) {
        ASSERT_EQ(top->GetChildCount(), static_cast<size_t>(row.subsegments));
        EXPECT_STREQ(top->GetLastChild()->GetLabel(),
                     ("s" + std::to_string(row.subsegments - 1)).c_str());
        return;
    }
    EXPECT_EQ(Labels(top), row.pages);
    for (TreeGraphItem* page = top->GetFirstChild(); page; page = page->GetNextSibling()) {
        EXPECT_EQ(page->GetKey(), 0);
        EXPECT_EQ(page->GetSelectionClass(), kClassSegmentPage);
        EXPECT_TRUE(Shown(page)->HasChildren());
    }
    TreeGraphItem* last = Expand(top->GetLastChild());
    int first = 0, end = 0;
    ASSERT_EQ(std::sscanf(last->GetLabel(), "SEGMENTS %d-%d", &first, &end), 2);
    NodeData range = DataOf(last);
    EXPECT_EQ(range.kind, NodeKind::SegmentPage);
    EXPECT_EQ(range.first, static_cast<std::uint32_t>(first));
    EXPECT_EQ(range.last, static_cast<std::uint32_t>(end));
    ASSERT_EQ(last->GetChildCount(), static_cast<size_t>(end - first + 1));
    EXPECT_STREQ(last->GetFirstChild()->GetLabel(), ("s" + std::to_string(first - 1)).c_str());
    EXPECT_STREQ(last->GetLastChild()->GetLabel(), ("s" + std::to_string(end - 1)).c_str());
}

INSTANTIATE_TEST_SUITE_P(
    Counts, PagingTest,
    ::testing::Values(PagingRow{"exactly1000", 1000, {}},
                      PagingRow{"one1001", 1001, {"SEGMENTS 1-1000", "SEGMENTS 1001-1001"}},
                      PagingRow{"three2345",
                                2345,
                                {"SEGMENTS 1-1000", "SEGMENTS 1001-2000", "SEGMENTS 2001-2345"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(ExpansionTest, DirectListingsShowOriginalKeysAndPagesTheKeysAsListed) {
    OpenModelPath(ModelKey());
    HC_KEY renamed = HC_Create_Segment("renumbered");
    HC_Renumber_Key(renamed, 77, "global");
    Close();
    EXPECT_EQ(Expand(Top())->GetFirstChild()->GetKey(), renamed);

    MakeNumbered(1000);
    TreeGraphItem* page = Expand(Expand(Top())->GetFirstChild());
    EXPECT_STREQ(page->GetFirstChild()->GetLabel(), "renumbered");
    EXPECT_EQ(page->GetFirstChild()->GetKey(), 77);
}

TEST_F(ExpansionTest, IncludesAreRefreshedInPlace) {
    HC_Create_Segment("/library/a");
    HC_Create_Segment("/library/b");
    HC_Create_Segment("/library/c");
    OpenModelPath(ModelKey());
    HC_KEY a = HC_Include_Segment("/library/a");
    HC_KEY b = HC_Conditional_Include("/library/b", "night");
    Close();
    TreeGraphItem* includes = Open(Expand(Top()), "INCLUDES");
    EXPECT_EQ(Labels(includes), (Strings{KeyHex(a) + " - /library/a",
                                         KeyHex(b) + " - /library/b (Condition: night)"}));
    TreeGraphItem* kept = Expand(includes->GetFirstChild());
    ASSERT_EQ(kept->GetChildCount(), 1u);

    HC_Delete_By_Key(b);
    OpenModelPath(ModelKey());
    HC_KEY c = HC_Include_Segment("/library/c");
    Close();
    Expand(includes);
    EXPECT_EQ(Labels(includes),
              (Strings{KeyHex(a) + " - /library/a", KeyHex(c) + " - /library/c"}));
    EXPECT_EQ(includes->GetFirstChild(), kept);
    EXPECT_EQ(kept->GetChildCount(), 1u) << "a kept include keeps its children";
}

TEST_F(ExpansionTest, ReferencesSplitIntoGeometryAndSegmentReferences) {
    OpenModelPath(ModelKey(), "lib");
    HC_KEY shell = Triangle();
    HC_Insert_Marker(0, 0, 0);
    HC_KEY lib = HC_Create_Segment(".");
    Close(2);
    OpenModelPath(ModelKey(), "user");
    HC_KEY toSegment = HC_Filtered_Reference_By_Key(lib, "", "no shells");
    HC_KEY toShell = HC_Reference_Geometry_By_Key(shell);
    HC_KEY user = HC_Create_Segment(".");
    Close(2);

    TreeGraphItem* references = Open(Open(Expand(Top()), "user"), "REFERENCES");
    EXPECT_EQ(references->GetKey(), user);
    EXPECT_EQ(Labels(references), (Strings{"GEOMETRY_REF", "SEGMENT_REF"}));
    for (TreeGraphItem* group = references->GetFirstChild(); group; group = group->GetNextSibling())
        EXPECT_EQ(group->GetSelectionClass(), kClassGroup);

    TreeGraphItem* toGeometry = Open(references, "GEOMETRY_REF")->GetFirstChild();
    ASSERT_NE(toGeometry, nullptr);
    EXPECT_EQ(toGeometry->GetLabel(), "lib\nKey: " + KeyHex(toShell));
    EXPECT_EQ(toGeometry->GetKey(), toShell);
    EXPECT_EQ(toGeometry->GetFlags(), kFlagReferencedGeometry);
    EXPECT_EQ(toGeometry->GetSelectionClass(), kClassSegment);
    EXPECT_FALSE(Shown(toGeometry)->HasChildren());

    TreeGraphItem* toLib = Open(references, "SEGMENT_REF")->GetFirstChild();
    ASSERT_NE(toLib, nullptr);
    EXPECT_EQ(toLib->GetLabel(), KeyHex(toSegment) + " - " + Path(lib) + " - no shells");
    EXPECT_EQ(toLib->GetFlags(), kFlagReferencedSegment);
    EXPECT_EQ(toLib->GetSelectionClass(), kClassGeometry);
    EXPECT_EQ(Labels(Open(Expand(toLib), "GEOMETRY")), (Strings{"MARKER"}))
        << "the filter leaves the shell out";
}

TEST_F(ExpansionTest, ReferencesOfOneKindPageOnlyWhenThatKindFillsAPage) {
    HC_KEY target = HC_Create_Segment("/library/target");
    OpenModelPath(ModelKey());
    HC_KEY shell = Triangle();
    for (int i = 0; i < 1001; ++i)
        HC_Reference_Geometry_By_Key(target);
    HC_KEY toShell = HC_Reference_Geometry_By_Key(shell);
    Close();
    TreeGraphItem* references = Open(Expand(Top()), "REFERENCES");
    TreeGraphItem* segments = Open(references, "SEGMENT_REF");
    EXPECT_EQ(Labels(segments), (Strings{"REFERENCES 1-1000", "REFERENCES 1001-1002"}));
    EXPECT_EQ(segments->GetFirstChild()->GetSelectionClass(), kClassReferencePage);
    NodeData range = DataOf(segments->GetLastChild());
    EXPECT_EQ(range.kind, NodeKind::ReferencePage);
    EXPECT_EQ(range.first, 1001u);
    EXPECT_EQ(range.last, 1002u);
    EXPECT_EQ(Expand(segments->GetLastChild())->GetChildCount(), 1u)
        << "the last page holds one segment reference and the shell's";
    TreeGraphItem* geometry = Open(references, "GEOMETRY_REF");
    ASSERT_EQ(geometry->GetChildCount(), 1u);
    EXPECT_EQ(geometry->GetFirstChild()->GetKey(), toShell);
}

TEST_F(ExpansionTest, ANodeWhoseObjectIsGoneStaysAsItIs) {
    OpenModelPath(ModelKey(), "doomed");
    Triangle();
    HC_Create_Segment("child");
    HC_KEY doomed = HC_Create_Segment(".");
    Close(2);
    TreeGraphItem* node = Open(Expand(Top()), "doomed");
    TreeGraphItem* geometry = node->GetFirstChild();
    ASSERT_EQ(Labels(node), (Strings{"GEOMETRY", "child"}));

    HC_Delete_By_Key(doomed);
    node->SetExpandedMark(false);
    Expand(node);
    Expand(geometry);
    EXPECT_EQ(Labels(node), (Strings{"GEOMETRY", "child"}));
    EXPECT_FALSE(node->GetExpandedMark());
    EXPECT_FALSE(geometry->GetExpandedMark());
    m_graph.AddMessage("before");
    m_graph.OnSelectItem(node);
    m_graph.OnSelectItem(geometry);
    EXPECT_TRUE(m_graph.Messages().empty());
    Tree().RefreshNode(node);
    Tree().UpdateSelectionState(node);
    EXPECT_STREQ(node->GetLabel(), "doomed");
}

} // namespace
