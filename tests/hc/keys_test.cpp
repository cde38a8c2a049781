#include "hc_test.h"

namespace {

using Keys = HcTest;

TEST_F(Keys, NewObjectsGetDistinctNegativeKeysThatAreNeverZeroOrMinusOne) {
    HC_KEY root = HC_Create_Segment("/");
    HC_KEY a = HC_Create_Segment("/a");
    HC_Open_Segment_By_Key(a);
    HC_KEY shell = Triangle();
    HC_KEY include = HC_Include_Segment("/b");
    HC_Close_Segment();
    std::vector<HC_KEY> keys = {root, a, shell, include, HC_Create_Segment("/b")};
    for (HC_KEY key : keys)
        EXPECT_LT(key, -1);
    std::sort(keys.begin(), keys.end());
    EXPECT_EQ(std::adjacent_find(keys.begin(), keys.end()), keys.end());
    EXPECT_EQ(Type(a), "segment");
    EXPECT_EQ(Type(shell), "shell");
    EXPECT_EQ(Type(include), "include");
}

TEST_F(Keys, DeadKeysAreNeverHandedOutAgainAndGiveEmptyTextZeroCountsAndZeroKeys) {
    HC_KEY a = HC_Create_Segment("/a");
    HC_Open_Segment_By_Key(a);
    HC_KEY shell = Triangle();
    HC_Close_Segment();
    HC_Delete_By_Key(a);
    EXPECT_EQ(HC_Show_Existence_By_Key(shell, "self"), 0) << "gone with its segment";
    HC_KEY again = HC_Create_Segment("/a");
    EXPECT_NE(again, a);
    EXPECT_NE(again, shell);
    EXPECT_EQ(HC_Show_Existence_By_Key(a, "self"), 0);
    TakeErrors();
    EXPECT_EQ(Type(a), "");
    EXPECT_EQ(Path(a), "");
    EXPECT_EQ(HC_Show_Original_Key(a), 0);
    EXPECT_EQ(HC_Show_Owner_Original_Key(a), 0);
    char path[HC_TEXT_MAX] = "untouched";
    EXPECT_EQ(HC_Show_Owner_By_Key(a, path), 0);
    EXPECT_STREQ(path, "");
    EXPECT_EQ(HC_Show_Include_Segment(a, path), 0);
    int count = -1;
    HC_Show_Reference_Keys_Count(a, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(HC_Show_Existence_By_Key(a, "attributes"), 0);
    for (HC_KEY nothing : {HC_KEY{0}, HC_KEY{-1}, HC_KEY{12345}})
        EXPECT_EQ(Type(nothing), "");
    // Each failed call says so; existence questions are how a caller checks, and never fail.
    EXPECT_EQ(TakeErrors().size(), 10u);
}

TEST_F(Keys, RenumberedKeysNameTheObjectAndMapBackToTheOriginal) {
    HC_KEY a = HC_Create_Segment("/a");
    HC_KEY b = HC_Create_Segment("/a/b");
    EXPECT_EQ(HC_Renumber_Key(b, 42, "global"), 42);
    EXPECT_EQ(Path(42), "/a/b");
    EXPECT_EQ(HC_Show_Original_Key(42), b);
    EXPECT_EQ(Path(b), "/a/b") << "the original key stays valid";
    EXPECT_EQ(HC_Show_Owner_Original_Key(42), a);
    // Contents searches answer the key the object goes by now.
    HC_Open_Segment_By_Key(a);
    auto items = List(".", "segments");
    HC_Close_Segment();
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].second, 42);
    // Back to the original key.
    EXPECT_EQ(HC_Renumber_Key(42, b, "global"), b);
    EXPECT_EQ(HC_Show_Existence_By_Key(42, "self"), 0);
}

TEST_F(Keys, LocalKeysResolveOnlyWithTheirOwnerOpen) {
    HC_KEY a = HC_Create_Segment("/a");
    HC_Open_Segment_By_Key(a);
    HC_KEY shell = Triangle();
    EXPECT_EQ(HC_Renumber_Key(shell, 7, "local"), 7);
    EXPECT_EQ(Type(7), "shell");
    HC_Close_Segment();
    EXPECT_EQ(HC_Show_Existence_By_Key(7, "self"), 0);
    HC_Open_Segment("/elsewhere");
    HC_KEY other = Triangle();
    EXPECT_EQ(HC_Renumber_Key(other, 7, "local"), 7) << "another owner may use the same key";
    HC_Close_Segment();
}

TEST_F(Keys, RenumberingRefusesKeysInUseAndKeysOfTheDatabase) {
    HC_KEY a = HC_Create_Segment("/a");
    HC_KEY b = HC_Create_Segment("/b");
    ASSERT_EQ(HC_Renumber_Key(a, 5, "global"), 5);
    TakeErrors();
    EXPECT_EQ(HC_Renumber_Key(b, 5, "global"), 0);
    EXPECT_EQ(HC_Renumber_Key(b, 0, "global"), 0);
    EXPECT_EQ(HC_Renumber_Key(b, -1, "global"), 0);
    EXPECT_EQ(HC_Renumber_Key(b, a, "global"), 0);
    EXPECT_EQ(HC_Renumber_Key(b, 9, "sideways"), 0);
    EXPECT_EQ(TakeErrors().size(), 5u);
    EXPECT_EQ(Path(5), "/a");
    // A deleted renumbered object frees nothing for reuse by mistake: its key is simply dead.
    HC_Delete_By_Key(5);
    EXPECT_EQ(HC_Show_Existence_By_Key(5, "self"), 0);
    EXPECT_EQ(HC_Renumber_Key(b, 5, "global"), 5);
}

} // namespace
