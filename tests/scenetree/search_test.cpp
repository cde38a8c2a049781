#include "segment_tree_test.h"

using namespace obsidra::scenetree;

namespace {

// The model holds:
//   wall_a (COLOR faces=red, a shell, a reference to /library/door)
//     wall_b (includes /library/door, styled by /library/red_style, a texture "brick")
//   roof (a polyline, a reference to the door's shell, the named style "night")
class SearchTest : public SegmentTreeTest {
protected:
    void SetUp() override {
        SegmentTreeTest::SetUp();
        HC_Open_Segment("/library/door");
        m_doorShell = Triangle();
        m_door = HC_Create_Segment(".");
        HC_Close_Segment();
        m_style = HC_Create_Segment("/library/red_style");
        OpenModelPath(ModelKey(), "wall_a");
        m_wallA = HC_Create_Segment(".");
        HC_Set_Color("faces=red");
        m_shell = Triangle();
        m_doorReference = HC_Reference_Geometry_By_Key(m_door);
        HC_Open_Segment("wall_b");
        m_wallB = HC_Create_Segment(".");
        m_include = HC_Include_Segment("/library/door");
        m_styleLink = HC_Style_Segment("/library/red_style");
        HC_Define_Local_Texture("brick", "source=clay");
        Close(3);
        OpenModelPath(ModelKey(), "roof");
        HC_Define_Named_Style("night", "/library/red_style");
        m_named = HC_Named_Style_Segment("night");
        HC_POINT line[] = {{0, 0, 0}, {1, 0, 0}};
        m_polyline = HC_Insert_Polyline(2, line);
        m_shellReference = HC_Reference_Geometry_By_Key(m_doorShell);
        Close(2);
    }

    std::vector<HC_KEY> Hits() const {
        std::vector<HC_KEY> hits;
        for (const SearchResult& result : m_tree->GetSearchResults())
            hits.push_back(result.keys.back());
        return hits;
    }
    std::vector<HC_KEY> Revealed() const {
        std::vector<HC_KEY> keys;
        for (TreeGraphItem* node : m_tree->GetRevealedNodes())
            keys.push_back(node->GetKey());
        return keys;
    }

    HC_KEY m_door = 0, m_doorShell = 0, m_style = 0, m_wallA = 0, m_wallB = 0, m_shell = 0;
    HC_KEY m_doorReference = 0, m_include = 0, m_styleLink = 0, m_named = 0, m_polyline = 0;
    HC_KEY m_shellReference = 0;
};

TEST_F(SearchTest, EveryKindFindsItsItemsAndRevealsThem) {
    const struct {
        const char* name;
        SearchKind kind;
        std::string text;
        std::vector<HC_KEY> hits;
    } rows[] = {
        {"attribute value", SearchKind::Attribute, "red", {m_wallA}},
        {"attribute name", SearchKind::Attribute, "color", {m_wallA}},
        {"geometry type", SearchKind::Geometry, "shell", {m_doorShell, m_shell}},
        {"segment name, deeper first", SearchKind::Segment, "wall", {m_wallB, m_wallA}},
        {"include path", SearchKind::Include, "door", {m_include}},
        {"style path", SearchKind::Style, "red_style", {m_styleLink}},
        {"segment reference", SearchKind::SegmentReference, "library/door", {m_doorReference}},
        {"geometry reference", SearchKind::GeometryReference, "shell", {m_shellReference}},
        {"definition", SearchKind::Definition, "bri", {m_wallB}},
        {"key", SearchKind::Key, KeyHex(m_polyline), {m_polyline}},
        {"named style", SearchKind::NamedStyle, "nig", {m_named}},
        {"nothing", SearchKind::Segment, "window", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        MakeTree();
        EXPECT_EQ(Tree().Search(row.kind, row.text), static_cast<int>(row.hits.size()));
        EXPECT_EQ(Hits(), row.hits);
        EXPECT_EQ(Tree().GetRevealedNodes().size(), row.hits.size());
        for (TreeGraphItem* node : Tree().GetRevealedNodes())
            EXPECT_TRUE(Shown(node)->Highlighted());
    }
    EXPECT_TRUE(m_notifier.GetMessages().empty());
}

TEST_F(SearchTest, RevealingExpandsThePathToEachHit) {
    MakeTree();
    ASSERT_EQ(Tree().SearchGeometry("shell"), 2);
    const auto& revealed = Tree().GetRevealedNodes();
    // The door's shell is reached through wall_b's include.
    TreeGraphItem* doorShell = revealed[0];
    EXPECT_EQ(doorShell->GetKey(), m_doorShell);
    EXPECT_STREQ(doorShell->GetParent()->GetLabel(), "SHELL");
    EXPECT_EQ(Tree().GetIncludePath(doorShell),
              (std::vector<HC_KEY>{m_doorShell, m_include, ModelKey()}));
    EXPECT_EQ(Tree().GetSearchResults()[0].keys,
              (std::vector<HC_KEY>{ModelKey(), m_wallA, m_wallB, m_include, m_door, m_doorShell}));

    MakeTree();
    EXPECT_TRUE(Tree().FindAndSelectByKeyText(KeyHex(m_styleLink).c_str()));
    EXPECT_EQ(Revealed(), (std::vector<HC_KEY>{m_styleLink}));
    EXPECT_STREQ(Tree().GetRevealedNodes()[0]->GetParent()->GetLabel(), "STYLES");
    EXPECT_FALSE(Tree().FindAndSelectByKeyText("not a key"));
    EXPECT_FALSE(Tree().FindAndSelectByKeyText("12345"));
}

TEST_F(SearchTest, StartSegmentNeverMatchesAndSearchesStartAtTheNodeGiven) {
    MakeTree();
    TreeGraphItem* wallA = Open(Expand(Top()), "wall_a");
    EXPECT_EQ(Tree().SearchSegments("wall", wallA), 1);
    EXPECT_EQ(Hits(), (std::vector<HC_KEY>{m_wallB}));
    EXPECT_EQ(Tree().SearchGeometry("polyline", wallA), 0);
}

TEST_F(SearchTest, ReplaceAndUnsetChangeAttributeValues) {
    MakeTree();
    EXPECT_EQ(Tree().SearchAttributes("red$$blue"), 0);
    char color[HC_TEXT_MAX];
    HC_Open_Segment_By_Key(m_wallA);
    HC_Show_Color(color);
    HC_Close_Segment();
    EXPECT_STREQ(color, "faces=blue");

    EXPECT_EQ(Tree().SearchAttributes("blue$$unset"), 0);
    HC_Open_Segment_By_Key(m_wallA);
    EXPECT_EQ(HC_Show_Existence("color"), 0);
    HC_Close_Segment();
    EXPECT_TRUE(Tree().GetRevealedNodes().empty());
}

TEST_F(SearchTest, DeleteModeDeletesEveryHitWhereTheKindAllowsIt) {
    MakeTree();
    // For attributes a second text is a replacement, so "delete" only names the attribute.
    EXPECT_EQ(Tree().SearchAttributes("color$$delete"), 1);
    EXPECT_EQ(Tree().SearchDefinitions("brick$$delete"), 1);
    EXPECT_EQ(Tree().SearchKey(m_polyline, nullptr), 1);
    EXPECT_EQ(Tree().Search(SearchKind::Key, KeyHex(m_polyline) + "$$delete"), 1);
    EXPECT_TRUE(IsAlive(m_wallA));
    EXPECT_TRUE(IsAlive(m_polyline));

    EXPECT_EQ(Tree().SearchSegments("wall$$delete"), 2);
    EXPECT_FALSE(IsAlive(m_wallA));
    EXPECT_FALSE(IsAlive(m_wallB));
    EXPECT_TRUE(Tree().GetRevealedNodes().empty());
    EXPECT_EQ(Tree().SearchGeometry("polyline$$delete"), 1);
    EXPECT_FALSE(IsAlive(m_polyline));
}

TEST_F(SearchTest, ASelfIncludingSegmentStopsAtTheDepthLimitWithOneMessage) {
    OpenModelPath(ModelKey(), "loop");
    HC_KEY loop = HC_Create_Segment(".");
    HC_Include_Segment_By_Key(loop);
    Triangle();
    Close(2);
    MakeTree();
    int hits = Tree().SearchGeometry("shell");
    EXPECT_EQ(m_notifier.GetMessages(),
              (Strings{"Maximum search depth reached.  Some search results may be omitted."}));
    // Every level of the cycle adds the segment and its include to the path.
    EXPECT_GT(hits, 100);
    for (const SearchResult& result : Tree().GetSearchResults())
        EXPECT_LE(result.keys.size(), 256u);
}

// Two ways round the cycle double the paths at every level: the search ends after a bounded
// number of steps with the same message, instead of walking 2^128 paths.
TEST_F(SearchTest, ACycleWithTwoWaysRoundEndsTooWithTheMessage) {
    OpenModelPath(ModelKey(), "loop");
    HC_KEY loop = HC_Create_Segment(".");
    HC_Include_Segment_By_Key(loop);
    HC_Include_Segment_By_Key(loop);
    Close(2);
    MakeTree();
    Tree().SearchSegments("no such segment");
    EXPECT_EQ(m_notifier.GetMessages(),
              (Strings{"Maximum search depth reached.  Some search results may be omitted."}));
}

} // namespace
