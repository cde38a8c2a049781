// The name filter walked in slices, as the browser runs it between keystrokes.
#include "segment_tree_test.h"

using namespace obsidra::scenetree;
using Progress = HoopsSegmentTree::NameFilterProgress;

namespace {

// Walls (wall 1, door), roof (Wall trim), floor, and "many" with 1200 "wall part"s, a door in
// every hundredth.
class NameFilterWalk : public SegmentTreeTest {
protected:
    void SetUp() override {
        SegmentTreeTest::SetUp();
        OpenModelPath(ModelKey());
        for (const char* path : {"Walls/wall 1", "Walls/door", "roof/Wall trim", "floor"})
            HC_Create_Segment(path);
        HC_Open_Segment("many");
        for (int i = 0; i < 1200; ++i) {
            const HC_KEY part = HC_Open_Segment(("wall part " + std::to_string(i)).c_str());
            if (i == 0) m_firstPart = part;
            if (i % 100 == 0) HC_Create_Segment("door");
            HC_Close_Segment();
        }
        Close(2);
    }

    HC_KEY m_firstPart = 0;

    // The open rows below a node, one per line, indented by depth.
    static std::string Shape(const TreeGraphItem* item, int depth = 0) {
        std::string shape;
        for (const TreeGraphItem* child = item->GetFirstChild(); child;
             child = child->GetNextSibling()) {
            shape += std::string(static_cast<size_t>(depth), ' ') + child->GetLabel() + '\n';
            if (child->GetExpandedMark()) shape += Shape(child, depth + 1);
        }
        return shape;
    }
};

TEST_F(NameFilterWalk, SliceBySliceFindsWhatTheWholeWalkFinds) {
    for (const char* text : {"wall", "DOOR", "part 11", "nothing"}) {
        const SegmentNameMatches whole = FilterSegmentNames(ModelKey(), text);
        for (size_t budget : {1, 7, 500}) {
            SegmentNameWalk walk(ModelKey(), text);
            size_t slices = 1;
            while (!walk.Step(budget))
                ++slices;
            EXPECT_GT(slices, 2u) << text;
            EXPECT_TRUE(walk.Step(budget)) << "an ended walk stays ended";
            EXPECT_EQ(walk.Hits().size(), whole.hits) << text << " " << budget;
            EXPECT_EQ(walk.Matches().keep, whole.keep) << text << " " << budget;
            EXPECT_EQ(walk.Matches().children.size(), whole.children.size())
                << text << " " << budget;
            for (const auto& [parent, kept] : whole.children)
                EXPECT_EQ(walk.Matches().children.at(parent).keys, kept.keys);
        }
    }
}

TEST_F(NameFilterWalk, ShowsFirstHitsThenTheWholeResultAndANewTextDropsTheOldWalk) {
    Open(Expand(Top()), "Walls");
    const std::string unfiltered = Shape(Top());
    Tree().SetNameFilter("door");
    const std::string doors = Shape(Top());
    Tree().SetNameFilter("");
    EXPECT_EQ(Shape(Top()), unfiltered);

    Tree().StartNameFilter("wall");
    EXPECT_EQ(Shape(Top()), unfiltered) << "nothing shown before the walk finds something";
    EXPECT_EQ(Tree().ContinueNameFilter(2), Progress::FirstHitsShown);
    EXPECT_EQ(Shape(Top()), "Walls\n wall 1\n") << "the first hits";
    // A key typed mid-walk: the rest of the old walk never shows.
    Tree().StartNameFilter("door");
    int slices = 0;
    while (Tree().ContinueNameFilter(100) != Progress::Done)
        ++slices;
    EXPECT_GT(slices, 10);
    EXPECT_FALSE(Tree().IsNameFilterRunning());
    EXPECT_EQ(Shape(Top()), doors);

    // Cleared mid-walk: the tree open as before the first filter, not as the first hits had it.
    Tree().StartNameFilter("wall");
    Tree().ContinueNameFilter(5);
    Tree().StartNameFilter("");
    EXPECT_FALSE(Tree().IsNameFilterRunning());
    EXPECT_EQ(Shape(Top()), unfiltered);

    // A remake mid-walk runs the walk's text whole.
    Tree().StartNameFilter("door");
    Tree().ContinueNameFilter(5);
    Tree().Remake();
    EXPECT_FALSE(Tree().IsNameFilterRunning());
    EXPECT_EQ(Shape(Top()), doors);
    EXPECT_TRUE(TakeErrors().empty());
}

// The pages of a filtered list are cut from one listing of the kept children, made again when
// the segment's children change.
TEST_F(NameFilterWalk, APageOpenedAgainFollowsADeletedChild) {
    Tree().SetNameFilter("wall part");
    TreeGraphItem* many = Top()->GetFirstChild();
    ASSERT_STREQ(many->GetLabel(), "many");
    TreeGraphItem* second = Expand(many->GetLastChild());
    EXPECT_EQ(Labels(second).front(), "wall part 1000");
    HC_Delete_By_Key(m_firstPart);
    EXPECT_EQ(Labels(Expand(second)).front(), "wall part 1001");
    EXPECT_EQ(Labels(Expand(many->GetFirstChild())).front(), "wall part 1");
}

} // namespace
