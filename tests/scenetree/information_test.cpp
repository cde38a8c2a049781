#include "scenetree/model_texts.h"
#include "segment_tree_test.h"

using namespace obsidra::scenetree;

namespace {

using InformationTest = SegmentTreeTest;

TEST_F(InformationTest, ASegmentShowsItsPathKeyAttributesCensusAndBounds) {
    OpenModelPath(ModelKey(), "walls");
    HC_Set_Color("faces=red");
    // Two quads sharing an edge: 2 faces, no triangles, 6 vertices.
    HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}, {2, 1, 0}};
    int faces[] = {4, 0, 1, 2, 3, 4, 1, 4, 5, 2};
    HC_Insert_Shell(6, points, 10, faces);
    HC_KEY walls = HC_Create_Segment(".");
    Close(2);
    HC_KEY empty = Make("empty");
    m_graph.OnSelectItem(Open(Expand(Top()), "walls"));
    EXPECT_EQ(m_graph.Messages(),
              (Strings{ModelPath() + "/walls", "Key: " + KeyHex(walls), "COLOR: faces=red",
                       "2 faces, 6 vertices", "1 shells",
                       "Bounding type=cuboid: { (0.000000, 0.000000, 0.000000), (2.000000, "
                       "1.000000, 0.000000) }"}));
    // An empty segment writes no census and no bounds.
    m_graph.OnSelectItem(Open(Top(), "empty"));
    EXPECT_EQ(m_graph.Messages(), (Strings{ModelPath() + "/empty", "Key: " + KeyHex(empty)}));
}

TEST_F(InformationTest, CensusLinesKeepTheirOrderAndPluralWords) {
    OpenModelPath(ModelKey());
    HC_Insert_Text(0, 0, 0, "t");
    HC_POINT center{0, 0, 0};
    HC_VECTOR axis{0, 0, 1}, ortho{1, 0, 0};
    HC_Insert_Sphere(&center, 1, &axis, &ortho);
    HC_POINT line[] = {{0, 0, 0}, {1, 0, 0}};
    HC_Insert_Polyline(2, line);
    HC_Insert_Polyline(2, line);
    Triangle();
    Close();
    EXPECT_EQ(CensusLines(ModelKey()), (Strings{"1 faces, 1 triangles, 3 vertices", "1 shells",
                                                "2 polylines", "1 spheres", "1 text strings"}));
}

TEST_F(InformationTest, BoundingLinesByType) {
    OpenModelPath(ModelKey(), "parts");
    HC_KEY shell = Triangle();
    HC_POINT center{1, 2, 3};
    HC_VECTOR axis{0, 0, 1}, ortho{1, 0, 0};
    HC_KEY sphere = HC_Insert_Sphere(&center, 2, &axis, &ortho);
    HC_KEY text = HC_Insert_Text(0, 0, 0, "t");
    HC_POINT line[] = {{0, 0, 0}, {1, 0, 0}};
    HC_KEY polyline = HC_Insert_Polyline(2, line);
    HC_KEY toShell = HC_Reference_Geometry_By_Key(shell);
    HC_KEY toSphere = HC_Reference_Geometry_By_Key(sphere);
    HC_KEY toText = HC_Reference_Geometry_By_Key(text);
    Close(2);
    const std::string triangle = ": { (0.000000, 0.000000, 0.000000), (1.000000, 1.000000, "
                                 "0.000000) }";
    struct Row {
        const char* name;
        HC_KEY key;
        std::string line;
    };
    const Row rows[] = {
        {"shell", shell, "Bounding type=cuboid" + triangle},
        {"sphere item has no line", sphere, ""},
        {"text", text, ""},
        {"polyline", polyline, ""},
        {"reference to a shell", toShell, "Referee Bounding type=cuboid" + triangle},
        // A sphere is not among the referees whose info text is taken, but its bounds are asked.
        {"reference to a sphere", toSphere,
         "Bounding type=cuboid: { (-1.000000, 0.000000, 1.000000), (3.000000, 4.000000, "
         "5.000000) }"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(BoundingText(row.key), row.line) << row.name;
    // A text keeps the reference's own info text, but its bounds are asked of the text.
    EXPECT_EQ(BoundingText(toText).rfind("Bounding type=cuboid", 0), 0u) << BoundingText(toText);
}

TEST_F(InformationTest, GeometryKindsCountPiecesAndReferencesShowTheirFilter) {
    OpenModelPath(ModelKey(), "lib");
    Triangle();
    HC_POINT line[] = {{0, 0, 0}, {1, 0, 0}};
    HC_Insert_Polyline(2, line);
    HC_Insert_Polyline(2, line);
    HC_KEY lib = HC_Create_Segment(".");
    Close(2);
    OpenModelPath(ModelKey(), "user");
    HC_Filtered_Reference_By_Key(lib, "", "no lines");
    HC_Reference_Geometry_By_Key(lib);
    Close(2);
    TreeGraphItem* top = Expand(Top());
    TreeGraphItem* geometry = Open(Open(top, "lib"), "GEOMETRY");
    m_graph.OnSelectItem(geometry->GetFirstChild());
    EXPECT_EQ(m_graph.Messages(), (Strings{"1 piece of geometry"}));
    m_graph.OnSelectItem(geometry->GetLastChild());
    EXPECT_EQ(m_graph.Messages(), (Strings{"2 pieces of geometry"}));

    TreeGraphItem* refs = Open(Open(Open(top, "user"), "REFERENCES"), "SEGMENT_REF");
    m_graph.OnSelectItem(refs->GetFirstChild());
    ASSERT_FALSE(m_graph.Messages().empty());
    EXPECT_EQ(m_graph.Messages().front(), "no lines");
    m_graph.OnSelectItem(refs->GetLastChild());
    EXPECT_EQ(m_graph.Messages().front(), "no filter");
}

TEST_F(InformationTest, SelectionStateFollowsTheViewsSelectionThroughIncludes) {
    HC_KEY part = HC_Create_Segment("/library/part");
    OpenModelPath(ModelKey());
    HC_KEY plain = HC_Create_Segment("plain");
    HC_KEY include = HC_Include_Segment("/library/part");
    Close();
    HSelectionSet* selection = m_view->GetSelection();
    selection->Select(plain);
    std::vector<HC_KEY> path{part, include, ModelKey()};
    selection->Select(part, 3, path.data());

    TreeGraphItem* top = Expand(Top());
    TreeGraphItem* plainNode = top->GetLastChild();
    EXPECT_TRUE(Shown(plainNode)->Highlighted());
    TreeGraphItem* includeNode = Open(top, "INCLUDES")->GetFirstChild();
    TreeGraphItem* partNode = Expand(includeNode)->GetFirstChild();
    EXPECT_EQ(Tree().GetIncludePath(partNode), path);
    EXPECT_TRUE(Shown(partNode)->Highlighted());
    EXPECT_FALSE(Shown(includeNode)->Highlighted());

    selection->DeSelectAll();
    selection->Select(part);
    Tree().RefreshSelectionStates();
    EXPECT_FALSE(Shown(partNode)->Highlighted()) << "selected, but not through this include";
    EXPECT_FALSE(Shown(plainNode)->Highlighted());
}

TEST_F(InformationTest, APageIsSelectedWhenItsRangeHoldsASelectedSegment) {
    const HC_KEY picked = MakeNumbered(1500)[1200];
    m_view->GetSelection()->Select(picked);
    TreeGraphItem* top = Expand(Top());
    EXPECT_FALSE(Shown(top->GetFirstChild())->Highlighted());
    EXPECT_TRUE(Shown(top->GetLastChild())->Highlighted());
}

TEST_F(InformationTest, ShowBoundingPassesTheIncludePathToTheView) {
    HC_KEY part = HC_Create_Segment("/library/part");
    OpenModelPath(ModelKey());
    HC_KEY include = HC_Include_Segment("/library/part");
    Close();
    TreeGraphItem* partNode =
        Expand(Open(Expand(Top()), "INCLUDES")->GetFirstChild())->GetFirstChild();
    Tree().ShowBounding(partNode, true);
    EXPECT_EQ(m_view->GetVisualizedBoundingKey(), part);
    EXPECT_EQ(m_view->GetVisualizedBoundingPath(),
              (std::vector<HC_KEY>{part, include, ModelKey()}));
    Tree().ShowBounding(partNode, false);
    EXPECT_EQ(m_view->GetVisualizedBoundingKey(), -1);

    Tree().SetShowBounding(true);
    m_graph.OnSelectItem(Top());
    EXPECT_EQ(m_view->GetVisualizedBoundingKey(), ModelKey());
}

TEST_F(InformationTest, EditingASegmentLabelRenamesTheSegment) {
    HC_KEY old = Make("old");
    TreeGraphItem* node = Expand(Top())->GetFirstChild();
    m_graph.OnEndLabelEdit(node, "new");
    EXPECT_STREQ(node->GetLabel(), "new");
    EXPECT_EQ(Path(old), ModelPath() + "/new");
    m_graph.OnEndLabelEdit(node, nullptr);
    EXPECT_STREQ(node->GetLabel(), "new");
}

} // namespace
