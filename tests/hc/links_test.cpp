#include "hc_test.h"

namespace {

using Links = HcTest;

TEST_F(Links, IncludesAndStylesLeadToTheirSegmentsWithTheirConditionsAndGoWithThem) {
    HC_KEY lib = HC_Create_Segment("/lib/part");
    HC_Open_Segment("/scene");
    HC_KEY plain = HC_Include_Segment("/lib/part");
    HC_KEY conditional = HC_Conditional_Include("/lib/part", " night ");
    HC_KEY style = HC_Conditional_Style("/styles/red", "selected");
    HC_KEY byKey = HC_Style_Segment_By_Key(lib);
    HC_Close_Segment();

    char path[HC_TEXT_MAX], condition[HC_TEXT_MAX];
    EXPECT_EQ(HC_Show_Include_Segment(plain, path), lib);
    EXPECT_STREQ(path, "/lib/part");
    EXPECT_EQ(HC_Show_Include_Segment(conditional, nullptr), lib);
    HC_Show_Conditional_Include(conditional, path, condition);
    EXPECT_STREQ(condition, "night");
    HC_Show_Conditional_Include(plain, path, condition);
    EXPECT_STREQ(condition, "") << "empty means unconditional";
    EXPECT_EQ(HC_Show_Style_Segment(style, path), HC_Create_Segment("/styles/red"));
    EXPECT_STREQ(path, "/styles/red") << "a style's source is created when it is named";
    HC_Show_Conditional_Style(style, path, condition);
    EXPECT_STREQ(condition, "selected");
    EXPECT_EQ(HC_Show_Style_Segment(byKey, nullptr), lib);
    EXPECT_EQ(Type(style), "style");
    // Asking an include what a style is fails.
    TakeErrors();
    EXPECT_EQ(HC_Show_Style_Segment(plain, path), 0);
    EXPECT_EQ(TakeErrors().size(), 1u);

    // Deleting a target deletes the links to it.
    HC_Delete_Segment("/lib");
    for (HC_KEY link : {plain, conditional, byKey})
        EXPECT_EQ(HC_Show_Existence_By_Key(link, "self"), 0);
    EXPECT_EQ(Type(style), "style");
}

TEST_F(Links, NamedStylesResolveThroughTheOwnersDefinitions) {
    HC_KEY red = HC_Create_Segment("/styles/red");
    HC_Open_Segment("/scene");
    HC_Define_Named_Style("warning", "/styles/red");
    HC_Open_Segment("part");
    HC_KEY named = HC_Conditional_Named_Style("Warning", "hot");
    char name[HC_TEXT_MAX], source[HC_TEXT_MAX];
    EXPECT_EQ(HC_Show_Named_Style("WARNING", source), red) << "inherited from /scene";
    EXPECT_STREQ(source, "/styles/red");
    HC_Close_Segment();
    HC_Begin_Named_Style_Search();
    std::vector<std::string> names;
    while (HC_Find_Named_Style(name))
        names.push_back(name);
    HC_End_Named_Style_Search();
    EXPECT_EQ(names, std::vector<std::string>{"warning"});
    HC_Close_Segment();
    HC_Show_Named_Style_Segment(named, name);
    EXPECT_STREQ(name, "Warning");
    EXPECT_EQ(Type(named), "named style");

    HC_Open_Segment("/scene");
    HC_UnDefine_Named_Style("warning");
    TakeErrors();
    EXPECT_EQ(HC_Show_Named_Style("warning", source), 0);
    HC_Close_Segment();
    EXPECT_EQ(TakeErrors().size(), 1u);
}

TEST_F(Links, ReferencesNameSegmentsOrGeometryWithConditionAndFilterAndGoWithThem) {
    HC_Open_Segment("/parts");
    HC_KEY shell = Triangle();
    HC_Close_Segment();
    HC_KEY parts = HC_Create_Segment("/parts");
    HC_Open_Segment("/scene");
    HC_KEY toSegment = HC_Filtered_Reference_By_Key(parts, "", "no shells, no lines");
    HC_KEY toShell = HC_Conditional_Reference_By_Key(shell, "zoomed");
    HC_Close_Segment();

    char text[HC_TEXT_MAX];
    EXPECT_EQ(HC_Show_Reference_Geometry(toSegment), parts);
    EXPECT_EQ(HC_Show_Reference_Geometry_Filt(toSegment, text), parts);
    EXPECT_STREQ(text, "no shells, no lines");
    EXPECT_EQ(HC_Show_Reference_Geometry_Filt(toShell, text), shell);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(HC_Show_Conditional_Reference(toShell, text), shell);
    EXPECT_STREQ(text, "zoomed");

    // A segment's reference keys are its reference items; a reference's is its target.
    HC_KEY keys[4];
    int count = 0;
    HC_Show_Reference_Keys(HC_Create_Segment("/scene"), &count, keys);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(keys[0], toSegment);
    EXPECT_EQ(keys[1], toShell);
    HC_Show_Reference_Keys(toShell, &count, keys);
    ASSERT_EQ(count, 1);
    EXPECT_EQ(keys[0], shell);

    HC_Delete_Segment("/parts");
    HC_Open_Segment("/scene");
    EXPECT_EQ(HC_Show_Existence("references"), 0) << "gone with their targets";
    HC_Close_Segment();
}

TEST_F(Links, ReferencesMadeWhileAGeometryItemIsOpenAreAttachedToIt) {
    HC_Open_Segment("/a");
    HC_KEY shell = Triangle();
    HC_KEY marker = HC_Insert_Marker(1, 2, 3);
    HC_Open_Geometry(shell);
    HC_KEY attached = HC_Reference_Geometry_By_Key(marker);
    HC_Close_Geometry();
    EXPECT_EQ(HC_Show_Existence("references"), 0) << "not one of the segment's items";
    HC_Close_Segment();
    int count = 0;
    HC_KEY keys[2];
    HC_Show_Reference_Keys_Count(shell, &count);
    EXPECT_EQ(count, 1);
    HC_Show_Reference_Keys(shell, &count, keys);
    EXPECT_EQ(keys[0], attached);
    EXPECT_EQ(HC_Show_Reference_Geometry(attached), marker);
    EXPECT_EQ(HC_Show_Owner_Original_Key(attached), HC_Create_Segment("/a"));
    HC_Delete_By_Key(shell);
    EXPECT_EQ(HC_Show_Existence_By_Key(attached, "self"), 0);
}

TEST_F(Links, OnlySegmentsCanBeIncludedAndOnlyGeometryOrSegmentsReferenced) {
    HC_Open_Segment("/a");
    HC_KEY shell = Triangle();
    HC_KEY include = HC_Include_Segment("/b");
    TakeErrors();
    EXPECT_EQ(HC_Include_Segment_By_Key(shell), 0);
    EXPECT_EQ(HC_Reference_Geometry_By_Key(include), 0);
    HC_Close_Segment();
    EXPECT_EQ(TakeErrors().size(), 2u);
}

} // namespace
