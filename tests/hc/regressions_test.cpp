// Faults the command soak and the fuzzers found, each replayed through the C interface with
// the database checking itself afterwards.
#include <cstdio>

#include <obsidra/hc_check.h>

#include "hc_test.h"

namespace {

class Regressions : public HcTest {
protected:
    void TearDown() override {
        char report[1024];
        EXPECT_EQ(HC_Check_Database(report, sizeof report), 0) << report;
        HcTest::TearDown();
    }
};

// A reference attached to an item, aimed at a later item of the same segment, was detached
// as its target went, after the segment had gone: finding its segment read the dead one.
TEST_F(Regressions, DeletingASegmentWhoseItemReferencesALaterItem) {
    HC_Open_Segment("/a/p");
    const HC_KEY first = Triangle();
    const HC_KEY second = Triangle();
    HC_Open_Geometry(first);
    HC_Reference_Geometry_By_Key(second);
    HC_Close_Geometry();
    HC_Close_Segment();
    HC_Delete_Segment("/a");
    EXPECT_EQ(Types("/", "everything"), std::vector<std::string>{});
    EXPECT_TRUE(TakeErrors().empty());
}

// A key renumbered locally is filed under its segment; deleting the segment's owner looked for
// it there after the segment had gone.
TEST_F(Regressions, DeletingTheOwnerOfLocallyRenumberedObjects) {
    HC_Open_Segment("/a/b");
    HC_Renumber_Key(Triangle(), 7, "local");
    HC_Close_Segment();
    HC_Renumber_Key(HC_Create_Segment("/a/b/c"), 8, "local");
    HC_Delete_Segment("/a");
    HC_Open_Segment("/x");
    EXPECT_EQ(HC_Renumber_Key(Triangle(), 7, "local"), 7) << "the key is free again";
    HC_Close_Segment();
    EXPECT_TRUE(TakeErrors().empty());
}

// An item deleted with its segment takes a reference from outside with it; marking bounds stale
// from there went through an include back into the subtree, to a segment whose owner was gone.
TEST_F(Regressions, DeletingAnItemWhoseReferenceLeadsBackIntoTheDeletedSubtree) {
    HC_Open_Segment("/a/x");
    const HC_KEY item = Triangle();
    HC_Open_Segment("z");
    HC_Include_Segment("/p");
    HC_Close_Segment();
    HC_Close_Segment();
    HC_Open_Segment("/p");
    HC_Reference_Geometry_By_Key(item);
    HC_Close_Segment();
    HC_POINT min, max;
    HC_Compute_Circumcuboid("/", &min, &max);
    HC_Delete_Segment("/a/x");
    EXPECT_EQ(Types("/p", "everything"), std::vector<std::string>{});
    EXPECT_TRUE(TakeErrors().empty());
}

// A named style outlives its source segment, and names nothing then; writing it read the dead
// segment's path.
TEST_F(Regressions, SavingANamedStyleWhoseSourceWasDeleted) {
    HC_Open_Segment("/scene");
    HC_Define_Named_Style("look", "/styles/look");
    HC_Define_Named_Style("kept", "/styles/kept");
    HC_Close_Segment();
    HC_Delete_Segment("/styles/look");
    const std::string file = testing::TempDir() + "regressions_named_style.hmf";
    HC_Write_Metafile("/scene", file.c_str(), "");
    HC_Read_Metafile(file.c_str(), "/copy", "");
    char source[HC_TEXT_MAX] = "";
    HC_Open_Segment("/copy");
    EXPECT_NE(HC_Show_Named_Style("kept", source), 0);
    HC_Close_Segment();
    EXPECT_STREQ(source, "/styles/kept");
    std::remove(file.c_str());
    TakeErrors();
}

} // namespace
