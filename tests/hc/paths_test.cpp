#include <random>

#include "hc_test.h"

namespace {

using Paths = HcTest;

TEST_F(Paths, AbsoluteRelativeDotDotDotAndAnyCaseNameTheSameSegments) {
    HC_KEY b = HC_Create_Segment("/a/b");
    HC_KEY a = HC_Open_Segment("/a");
    EXPECT_EQ(HC_Create_Segment("b"), b);
    EXPECT_EQ(HC_Create_Segment("."), a);
    EXPECT_EQ(HC_Create_Segment("./b/.."), a);
    EXPECT_EQ(HC_Create_Segment(".."), HC_Create_Segment("/"));
    HC_KEY c = HC_Open_Segment("b/c");
    EXPECT_EQ(Path(c), "/a/b/c");
    EXPECT_EQ(HC_Create_Segment("../../b"), b);
    HC_Close_Segment();
    HC_Close_Segment();
    EXPECT_EQ(Path(HC_Create_Segment("/")), "/");
    EXPECT_EQ(HC_Create_Segment("x/y"), HC_Create_Segment("/x/y")) << "nothing open means /";
    HC_KEY walls = HC_Create_Segment("/House/Walls");
    EXPECT_EQ(HC_Create_Segment("/house/WALLS"), walls) << "names are found without regard to case";
    EXPECT_EQ(Path(walls), "/House/Walls") << "but keep their spelling";
}

TEST_F(Paths, NamelessSegmentsAreNewEachTimeAndAddressedByKey) {
    HC_Open_Segment("/a");
    HC_KEY first = HC_Create_Segment("");
    HC_KEY second = HC_Open_Segment("");
    HC_Close_Segment();
    HC_Close_Segment();
    EXPECT_NE(first, second);
    std::string path = Path(first);
    EXPECT_EQ(path.rfind("/a/@", 0), 0u) << path;
    EXPECT_EQ(HC_Create_Segment(path.c_str()), first);
    char name[HC_TEXT_MAX];
    HC_Parse_String(path.c_str(), "/", -1, name);
    EXPECT_EQ(name[0], '@');
    // A made-up nameless level is not created on the way.
    TakeErrors();
    EXPECT_EQ(HC_Create_Segment("/a/@123"), 0);
    EXPECT_EQ(TakeErrors().size(), 1u);
}

TEST_F(Paths, BadPathsAreReportedAndCreateNothing) {
    HC_KEY root = HC_Create_Segment("/");
    TakeErrors();
    EXPECT_EQ(HC_Create_Segment("/.."), 0);
    EXPECT_EQ(HC_Create_Segment("/a/*"), 0);
    EXPECT_EQ(HC_Create_Segment("/a/..."), 0);
    EXPECT_EQ(TakeErrors().size(), 3u);
    HC_Open_Segment_By_Key(root);
    EXPECT_EQ(HC_Show_Existence("segments"), 0);
    HC_Close_Segment();
}

TEST_F(Paths, ParseStringTakesFieldsFromEitherEnd) {
    struct {
        const char* text;
        const char* delimiter;
        int offset;
        const char* field;
    } const rows[] = {
        {"/a/b/c", "/", -1, "c"},     {"/a/b/c", "/", -2, "b"},
        {"/a/b/c", "/", 0, ""},       {"/a/b/c", "/", 1, "a"},
        {"/", "/", -1, ""},           {"x. y .hmf", ".", 1, "y"},
        {"file.HSF", ".", -1, "HSF"}, {"a/b", "/", 5, ""},
        {"a/b", "/", -5, ""},         {"", "/", -1, ""},
    };
    for (const auto& row : rows) {
        char field[HC_TEXT_MAX] = "junk";
        HC_Parse_String(row.text, row.delimiter, row.offset, field);
        EXPECT_STREQ(field, row.field) << row.text << " at " << row.offset;
    }
}

TEST_F(Paths, ManyChildrenStayFindableThroughDeletionsAndRenames) {
    // Exercises the name index: growth, backward-shift deletion and reinsertion.
    HC_Open_Segment("/many");
    std::vector<HC_KEY> keys;
    for (int i = 0; i < 5000; ++i)
        keys.push_back(HC_Create_Segment(("n" + std::to_string(i)).c_str()));
    std::mt19937 random(7);
    std::vector<int> order(keys.size());
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random);
    for (size_t i = 0; i < order.size() / 2; ++i)
        HC_Delete_By_Key(keys[order[i]]);
    for (size_t i = order.size() / 2; i < order.size(); i += 2) {
        std::string from = "n" + std::to_string(order[i]);
        HC_Rename_Segment(from.c_str(), ("r" + std::to_string(order[i])).c_str());
    }
    for (size_t i = order.size() / 2; i < order.size(); ++i) {
        bool renamed = (i - order.size() / 2) % 2 == 0;
        std::string name = (renamed ? "r" : "n") + std::to_string(order[i]);
        ASSERT_EQ(HC_Create_Segment(name.c_str()), keys[order[i]]) << name;
    }
    EXPECT_EQ(HC_Show_Existence("segments"), 2500);
    HC_Close_Segment();
    EXPECT_TRUE(TakeErrors().empty());
}

} // namespace
