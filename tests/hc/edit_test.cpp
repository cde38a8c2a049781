#include "hc_test.h"

namespace {

using Edits = HcTest;

TEST_F(Edits, DeleteTakesTheWholeSubtreeAndStarTakesTheChildren) {
    HC_Open_Segment("/a");
    HC_KEY deep = HC_Create_Segment("b/c/d");
    HC_Open_Segment("b/c");
    HC_KEY shell = Triangle();
    HC_Close_Segment();
    HC_KEY keep = HC_Create_Segment("e");
    HC_Close_Segment();
    HC_Delete_Segment("/a/b");
    EXPECT_EQ(HC_Show_Existence_By_Key(deep, "self"), 0);
    EXPECT_EQ(HC_Show_Existence_By_Key(shell, "self"), 0);
    EXPECT_EQ(HC_Show_Existence_By_Key(keep, "self"), 1);
    HC_Create_Segment("/a/f");
    HC_Delete_Segment("/a/*");
    HC_Open_Segment("/a");
    EXPECT_EQ(HC_Show_Existence("segments"), 0);
    HC_Close_Segment();
    TakeErrors();
    HC_Delete_By_Key(HC_Create_Segment("/"));
    EXPECT_EQ(TakeErrors().size(), 1u) << "the root stays";
}

TEST_F(Edits, DeletingAnOpenSegmentLeavesTheStackBalanced) {
    HC_KEY a = HC_Open_Segment("/a");
    HC_Delete_By_Key(a);
    TakeErrors();
    EXPECT_EQ(Triangle(), 0);
    EXPECT_EQ(HC_Show_Existence("self"), 0);
    HC_Close_Segment();
    EXPECT_EQ(TakeErrors().size(), 1u);
    EXPECT_NE(Triangle(), 0) << "back at /";
}

TEST_F(Edits, RenameKeepsKeysAndRefusesTakenNames) {
    HC_KEY b = HC_Create_Segment("/a/b");
    HC_Create_Segment("/a/c");
    HC_Rename_Segment("/a/b", "bee");
    EXPECT_EQ(Path(b), "/a/bee");
    HC_Rename_Segment("/a/bee", "/z/bee");
    EXPECT_EQ(Path(b), "/z/bee") << "a path moves it";
    TakeErrors();
    HC_Rename_Segment("/a/c", "/z/BEE");
    HC_Rename_Segment("/z", "/z/inner/z");
    HC_Rename_Segment("/nothing", "x");
    EXPECT_EQ(TakeErrors().size(), 3u);
    EXPECT_EQ(Path(b), "/z/bee");
}

TEST_F(Edits, MoveChangesTheOwnerOfSegmentsAndItems) {
    HC_Open_Segment("/a");
    HC_KEY shell = Triangle();
    HC_KEY child = HC_Create_Segment("child");
    HC_Close_Segment();
    HC_Move_By_Key(shell, "/b");
    HC_Move_By_Key(child, "/b");
    char owner[HC_TEXT_MAX];
    HC_Show_Owner_By_Key(shell, owner);
    EXPECT_STREQ(owner, "/b");
    EXPECT_EQ(Path(child), "/b/child");
    TakeErrors();
    HC_Move_By_Key(HC_Create_Segment("/b"), "/b/child/below");
    EXPECT_EQ(TakeErrors().size(), 1u) << "not below itself";
}

TEST_F(Edits, CopyIsDeepAndPastingStarCopiesEveryChild) {
    HC_Open_Segment("/src");
    HC_Set_Color("faces=red");
    Triangle();
    HC_Include_Segment("/lib");
    HC_Open_Segment("kid");
    HC_Insert_Text(1, 2, 3, "label");
    HC_Close_Segment();
    HC_Close_Segment();
    HC_Copy_Segment("/src", "/dst");
    HC_Open_Segment("/dst");
    EXPECT_EQ(Types("...", "everything"),
              (std::vector<std::string>{"segment", "include", "shell", "color", "text"}));
    HC_Close_Segment();

    // The clipboard pattern: move into a holder, paste its children twice.
    HC_Open_Segment("/clip");
    HC_Flush_Contents(".", "everything");
    HC_Move_By_Key(HC_Create_Segment("/src"), "/clip");
    HC_Close_Segment();
    HC_Open_Segment("/target");
    HC_Copy_Segment("/clip/*", "./*");
    HC_Copy_Segment("/clip/*", "./*");
    EXPECT_EQ(Types("...", "shells").size(), 2u) << "pasting again adds to the same-named segment";
    EXPECT_EQ(HC_Show_Existence("segments"), 1);
    HC_Close_Segment();
    TakeErrors();
    HC_Copy_Segment("/dst", "/dst/inside");
    EXPECT_EQ(TakeErrors().size(), 1u);
}

TEST_F(Edits, FlushRemovesTheNamedKindsHereOrInTheWholeSubtree) {
    HC_Open_Segment("/a");
    Triangle();
    HC_Insert_Marker(0, 0, 0);
    HC_Set_Visibility("edges=off");
    HC_Open_Segment("b");
    Triangle();
    HC_Close_Segment();
    HC_Flush_Contents(".", "shells");
    EXPECT_EQ(Types(".", "everything"),
              (std::vector<std::string>{"segment", "marker", "visibility"}));
    HC_Flush_Contents("...", "geometry, attributes");
    EXPECT_EQ(Types("...", "everything"), std::vector<std::string>{"segment"});
    HC_Flush_Contents(".", "everything");
    EXPECT_EQ(HC_Show_Existence("everything"), 0);
    HC_Close_Segment();
}

TEST_F(Edits, HeuristicsMakeAndRemoveTheStaticModel) {
    HC_Open_Segment("/a");
    HC_Set_Heuristics("static model, no hidden surfaces");
    EXPECT_EQ(HC_Show_Existence("static model"), 1);
    HC_Begin_Contents_Search(".", "static model");
    char type[HC_TEXT_MAX];
    HC_KEY model = 0;
    ASSERT_TRUE(HC_Find_Contents(type, &model));
    HC_End_Contents_Search();
    EXPECT_EQ(Type(model), "static model");
    HC_Set_Heuristics("no static model");
    EXPECT_EQ(HC_Show_Existence("static model"), 0);
    EXPECT_EQ(HC_Show_Existence_By_Key(model, "self"), 0);
    HC_Close_Segment();
}

} // namespace
