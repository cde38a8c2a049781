#include <atomic>

#include "segment_tree_test.h"

namespace {

// Walls (wall 1 with a shell, door), roof (Wall trim), floor, and "many" with 1200 "wall part"s.
class NameFilteredTree : public SegmentTreeTest {
protected:
    void SetUp() override {
        SegmentTreeTest::SetUp();
        OpenModelPath(ModelKey(), "Walls");
        HC_Open_Segment("wall 1");
        Triangle();
        Close();
        HC_Create_Segment("door");
        Close(2);
        OpenModelPath(ModelKey());
        HC_Create_Segment("roof/Wall trim");
        HC_Create_Segment("floor");
        HC_Open_Segment("many");
        for (int i = 0; i < 1200; ++i)
            HC_Create_Segment(("wall part " + std::to_string(i)).c_str());
        Close(2);
    }
};

TEST_F(NameFilteredTree, ShowsTheWayToEachHitOpenAndBringsBackWhatWasOpen) {
    Open(Expand(Top()), "Walls");
    const auto unfiltered = Labels(Top());

    EXPECT_EQ(Tree().SetNameFilter("WALL"), 1203);
    EXPECT_EQ(Labels(Top()), (Strings{"Walls", "roof", "many"}))
        << "no grouping nodes, no segment without a hit below it";
    TreeGraphItem* walls = Top()->GetFirstChild();
    EXPECT_TRUE(walls->GetExpandedMark());
    EXPECT_EQ(Labels(walls), Strings{"wall 1"});
    EXPECT_FALSE(Shown(walls->GetFirstChild())->HasChildren()) << "a hit shows no contents";
    TreeGraphItem* many = walls->GetNextSibling()->GetNextSibling();
    EXPECT_EQ(Labels(many), (Strings{"SEGMENTS 1-1000", "SEGMENTS 1001-1200"}));
    EXPECT_EQ(many->GetFirstChild()->GetChildCount(), 1000) << "the first page is open";
    EXPECT_EQ(Labels(Expand(many->GetLastChild())).back(), "wall part 1199");

    const TreeGraphItem* trim = walls->GetNextSibling()->GetFirstChild();
    const std::vector<HC_KEY> chain = Tree().SegmentChain(trim);
    std::atomic<bool> cancelled{true};
    EXPECT_EQ(Tree().SetNameFilter("door", &cancelled), -1);
    EXPECT_EQ(Labels(Top()), (Strings{"Walls", "roof", "many"})) << "unchanged";

    EXPECT_EQ(Tree().SetNameFilter(""), 0);
    EXPECT_EQ(Labels(Top()), unfiltered);
    walls = Top()->GetFirstChild();
    EXPECT_TRUE(walls->GetExpandedMark()) << "open again as before the filter";
    EXPECT_EQ(Labels(walls), (Strings{"wall 1", "door"}));
    const TreeGraphItem* revealed = Tree().RevealSegmentChain(chain);
    ASSERT_NE(revealed, nullptr);
    EXPECT_STREQ(revealed->GetLabel(), "Wall trim");
}

} // namespace
