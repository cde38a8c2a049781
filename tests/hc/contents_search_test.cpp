#include "hc_test.h"

namespace {

using ContentsSearch = HcTest;

// A segment holding one of everything, created out of contents order.
HC_KEY Everything() {
    HC_KEY s = HC_Open_Segment("/s");
    HC_Insert_Line(0, 0, 0, 1, 1, 1);
    HC_Reference_Geometry("/target");
    HC_Create_Segment("child2");
    HC_Named_Style_Segment("bold");
    HC_Style_Segment("/style");
    HC_Include_Segment("/inc");
    HC_Create_Segment("child1");
    HC_Insert_Marker(0, 0, 0);
    HC_Set_Color("faces=red");
    HC_Set_Heuristics("static model");
    HC_Close_Segment();
    return s;
}

TEST_F(ContentsSearch, FiltersSelectKindsInContentsOrderAndCountsMatch) {
    HC_Open_Segment_By_Key(Everything());
    struct {
        const char* filter;
        std::vector<std::string> types;
    } const rows[] = {
        {"everything, static model",
         {"static model", "segment", "segment", "include", "style", "named style", "reference",
          "line", "marker", "color", "heuristics"}},
        {"segments", {"segment", "segment"}},
        {"segments, includes", {"segment", "segment", "include"}},
        {"geometry", {"line", "marker"}},
        {"markers", {"marker"}},
        {"reference", {"reference"}},
        {"references", {"reference"}},
        {"named styles", {"named style"}},
        {"static model", {"static model"}},
        {"attributes", {"color", "heuristics"}},
        {"everything, no attributes, no segments",
         {"include", "style", "named style", "reference", "line", "marker"}},
        {"everything, first match", {"segment"}},
        {"shell", {}},
        {"  Segments ,   INCLUDES  ", {"segment", "segment", "include"}},
    };
    EXPECT_EQ(Types(".", "segments, gizmos"), (std::vector<std::string>{"segment", "segment"}));
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{
                                "HC_Begin_Contents_Search: unknown content type \"gizmos\""});
    for (const auto& row : rows) {
        EXPECT_EQ(Types(".", row.filter), row.types) << row.filter;
        HC_Begin_Contents_Search(".", row.filter);
        int count = -1;
        HC_Show_Contents_Count(&count);
        HC_End_Contents_Search();
        EXPECT_EQ(count, static_cast<int>(row.types.size())) << row.filter;
        EXPECT_EQ(HC_Show_Existence(row.filter), static_cast<int>(row.types.size())) << row.filter;
    }
    EXPECT_EQ(Path(List(".", "segments")[0].second), "/s/child2") << "creation order";
    HC_Close_Segment();
    EXPECT_TRUE(TakeErrors().empty());
}

TEST_F(ContentsSearch, SubtreeScopesWalkBelowAndThroughIncludes) {
    HC_Open_Segment("/lib");
    Triangle();
    HC_Close_Segment();
    HC_Open_Segment("/top");
    Triangle();
    HC_Open_Segment("a");
    Triangle();
    HC_Open_Segment("deep");
    Triangle();
    HC_Close_Segment();
    HC_Close_Segment();
    HC_Open_Segment("b");
    HC_Include_Segment("/lib");
    HC_Include_Segment("/top"); // a cycle: walked once
    HC_Close_Segment();
    EXPECT_EQ(List(".", "shells").size(), 1u);
    EXPECT_EQ(List("...", "shells").size(), 3u);
    EXPECT_EQ(List("....", "shells").size(), 4u);
    auto segments = List("...", "segments");
    ASSERT_EQ(segments.size(), 3u);
    EXPECT_EQ(Path(segments[0].second), "/top/a");
    EXPECT_EQ(Path(segments[1].second), "/top/b");
    EXPECT_EQ(Path(segments[2].second), "/top/a/deep");
    HC_Close_Segment();
    EXPECT_EQ(List("/top/a/...", "shells").size(), 2u) << "a scope may name its segment";
}

TEST_F(ContentsSearch, SearchesNestInsideNestedOpens) {
    HC_Create_Segment("/a/x");
    HC_Create_Segment("/a/y");
    HC_Open_Segment("/b");
    Triangle();
    HC_Close_Segment();
    HC_Open_Segment("/a");
    HC_Begin_Contents_Search(".", "segments");
    char type[HC_TEXT_MAX];
    HC_KEY key;
    int inner = 0, outer = 0;
    while (HC_Find_Contents(type, &key)) {
        ++outer;
        HC_Open_Segment("/b");
        HC_Begin_Contents_Search(".", "everything");
        while (HC_Find_Contents(type, &key))
            ++inner;
        HC_End_Contents_Search();
        HC_Close_Segment();
    }
    HC_End_Contents_Search();
    HC_Close_Segment();
    EXPECT_EQ(outer, 2);
    EXPECT_EQ(inner, 2);
}

TEST_F(ContentsSearch, ItemsDeletedDuringASearchAreSkipped) {
    HC_Open_Segment("/a");
    for (int i = 0; i < 4; ++i)
        HC_Create_Segment(("s" + std::to_string(i)).c_str());
    HC_Begin_Contents_Search(".", "segments");
    char type[HC_TEXT_MAX];
    HC_KEY key;
    int found = 0;
    while (HC_Find_Contents(type, &key)) {
        ++found;
        HC_Delete_Segment("s3");
    }
    HC_End_Contents_Search();
    HC_Close_Segment();
    EXPECT_EQ(found, 3);
    EXPECT_TRUE(TakeErrors().size() == 2u) << "s3 is already gone the second and third time";
}

TEST_F(ContentsSearch, ExistenceByKeyAnswersForSegmentsAndGeometry) {
    HC_KEY s = Everything();
    EXPECT_EQ(HC_Show_Existence_By_Key(s, "self"), 1);
    EXPECT_EQ(HC_Show_Existence_By_Key(s, "attributes"), 2);
    EXPECT_EQ(HC_Show_Existence_By_Key(s, "segments"), 2);
    HC_Open_Segment_By_Key(s);
    HC_KEY shell = Triangle();
    HC_Close_Segment();
    EXPECT_EQ(HC_Show_Existence_By_Key(shell, "attributes"), 0);
    HC_Open_Geometry(shell);
    HC_Set_User_Options("part=bolt");
    HC_Close_Geometry();
    EXPECT_EQ(HC_Show_Existence_By_Key(shell, "attributes"), 1);
    EXPECT_EQ(HC_Show_Existence_By_Key(shell, "user options"), 1);
    EXPECT_EQ(HC_Show_Existence_By_Key(s, "attributes"), 2) << "the item's attributes are its own";
}

} // namespace
