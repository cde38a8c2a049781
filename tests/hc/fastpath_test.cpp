// The fast-path questions answer what the C interface would, for any key and any range.
#include <cstdio>
#include <fstream>

#include <obsidra/hc_fastpath.h>

#include "hc_test.h"

namespace {

class FastPathTest : public HcTest {
protected:
    void SetUp() override {
        HcTest::SetUp();
        m_owner = HC_Open_Segment("/owner");
        for (const char* name : {"a", "b", "c", "d", "e"})
            m_children.push_back(HC_Create_Segment(name));
        HC_Close_Segment();
    }
    std::vector<HC_KEY> Page(HC_KEY segment, int first, int last) {
        std::vector<HC_KEY> keys(16, 0);
        keys.resize(
            static_cast<size_t>(HC_Fast_Subsegment_Keys(segment, first, last, keys.data())));
        return keys;
    }

    HC_KEY m_owner = 0;
    std::vector<HC_KEY> m_children;
};

TEST_F(FastPathTest, PagesOfSubsegmentsFromEitherEnd) {
    const auto& c = m_children;
    const struct {
        const char* name;
        int first, last;
        std::vector<HC_KEY> keys;
    } rows[] = {
        {"head, walked from the front", 0, 1, {c[0], c[1]}},
        {"tail, walked from the back", 3, 4, {c[3], c[4]}},
        {"past the end is cut", 3, 10, {c[3], c[4]}},
        {"one in the middle", 2, 2, {c[2]}},
        {"wholly past the end", 5, 6, {}},
        {"negative first", -1, 2, {}},
        {"reversed range", 2, 1, {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Page(m_owner, row.first, row.last), row.keys) << row.name;
    EXPECT_EQ(HC_Fast_Subsegment_Count(m_owner), 5);
    EXPECT_EQ(HC_Fast_Subsegment_Count(-123456), 0);
    EXPECT_TRUE(Page(-123456, 0, 3).empty());
    EXPECT_TRUE(Page(c[0], 0, 3).empty()) << "a leaf has no page";

    // Renumbered keys are the ones a contents search gives.
    HC_Renumber_Key(c[1], 77, "global");
    EXPECT_EQ(Page(m_owner, 1, 1), std::vector<HC_KEY>{77});
}

TEST_F(FastPathTest, PositionsNamesAndHoldings) {
    for (size_t i = 0; i < m_children.size(); ++i)
        EXPECT_EQ(HC_Fast_Subsegment_Position(m_owner, m_children[i]), static_cast<int>(i) + 1);
    HC_KEY grandchild = HC_Create_Segment("/owner/a/deeper");
    EXPECT_EQ(HC_Fast_Subsegment_Position(m_owner, grandchild), 0);
    EXPECT_EQ(HC_Fast_Subsegment_Position(m_owner, -123456), 0);
    EXPECT_EQ(HC_Fast_Subsegment_Position(-123456, m_children[0]), 0);

    EXPECT_STREQ(HC_Fast_Segment_Name(HC_Create_Segment("/"), nullptr), "/");
    size_t length = 0;
    EXPECT_STREQ(HC_Fast_Segment_Name(m_children[2], &length), "c");
    EXPECT_EQ(length, 1u);
    HC_Open_Segment_By_Key(m_owner);
    HC_KEY nameless = HC_Open_Segment("");
    HC_KEY shell = Triangle();
    HC_Close_Segment();
    HC_Close_Segment();
    EXPECT_STREQ(HC_Fast_Segment_Name(nameless, &length), "");
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(HC_Fast_Segment_Name(shell, &length), nullptr);
    EXPECT_EQ(HC_Fast_Segment_Name(-123456, &length), nullptr);

    EXPECT_EQ(HC_Fast_Segment_Holds(m_owner), unsigned{HC_HOLDS_SUBSEGMENTS});
    EXPECT_EQ(HC_Fast_Segment_Holds(nameless), unsigned{HC_HOLDS_GEOMETRY});
    HC_Open_Segment_By_Key(m_children[4]);
    HC_Include_Segment("/owner/a");
    HC_Define_Local_Texture("t", "source=x");
    HC_Close_Segment();
    EXPECT_EQ(HC_Fast_Segment_Holds(m_children[4]),
              unsigned{HC_HOLDS_LINKS | HC_HOLDS_DEFINITIONS});
    EXPECT_EQ(HC_Fast_Segment_Holds(shell), 0u);
    EXPECT_TRUE(TakeErrors().empty()) << "no question is reported";
}

// The one-call walk agrees with HC_Find_Contents and the two questions it saves.
TEST_F(FastPathTest, FindContentsAnswersWhatAWalkAsks) {
    HC_Open_Segment_By_Key(m_children[1]);
    Triangle();
    HC_Close_Segment();
    HC_Open_Segment_By_Key(m_owner);
    std::vector<HC_FAST_CONTENTS_ITEM> fast;
    HC_Begin_Contents_Search(".", "everything");
    for (HC_FAST_CONTENTS_ITEM item{}; HC_Fast_Find_Contents(&item);)
        fast.push_back(item);
    HC_End_Contents_Search();
    HC_Begin_Contents_Search(".", "everything");
    char type[HC_TEXT_MAX];
    HC_KEY key = 0;
    for (const HC_FAST_CONTENTS_ITEM& item : fast) {
        ASSERT_TRUE(HC_Find_Contents(type, &key));
        EXPECT_EQ(item.key, key);
        EXPECT_EQ(std::string(item.type, item.type_length), type);
        EXPECT_EQ(item.holds, HC_Fast_Segment_Holds(key));
        size_t length = 0;
        EXPECT_EQ(item.name, HC_Fast_Segment_Name(key, &length));
        EXPECT_EQ(item.name_length, length);
    }
    EXPECT_FALSE(HC_Find_Contents(type, &key));
    HC_End_Contents_Search();
    HC_Close_Segment();
    EXPECT_EQ(fast.size(), m_children.size());
    HC_FAST_CONTENTS_ITEM none{};
    EXPECT_FALSE(HC_Fast_Find_Contents(&none)) << "no search is going on";
}

TEST_F(FastPathTest, ReadsAMetafileIntoASegmentOrSaysWhyNot) {
    const std::string good = testing::TempDir() + "fastpath_good.hmf";
    const std::string bad = testing::TempDir() + "fastpath_bad.hmf";
    std::ofstream(good) << "(Segment \"walls\" (Color \"faces=red\"))\n";
    std::ofstream(bad) << "(Segment \"walls\"\n(Colour \"faces=red\"))\n";
    char error[HC_TEXT_MAX] = "";

    EXPECT_TRUE(HC_Fast_Read_Metafile(good.c_str(), m_children[0], error));
    EXPECT_EQ(Path(HC_Create_Segment("/owner/a/walls")), "/owner/a/walls");

    EXPECT_FALSE(HC_Fast_Read_Metafile(bad.c_str(), m_children[1], error));
    EXPECT_EQ(std::string(error).rfind(bad + ": ", 0), 0u) << error;
    EXPECT_TRUE(Types("/owner/b", "segments").empty()) << "a text with a mistake loads nothing";

    const std::string missing = testing::TempDir() + "fastpath_missing.hmf";
    EXPECT_FALSE(HC_Fast_Read_Metafile(missing.c_str(), m_children[1], error));
    EXPECT_EQ(std::string(error), "cannot read \"" + missing + "\": No such file or directory");
    EXPECT_FALSE(HC_Fast_Read_Metafile(good.c_str(), -123456, error));
    EXPECT_STREQ(error, "the segment to load into does not exist");
    EXPECT_TRUE(TakeErrors().empty()) << "failures are answered, not reported";
    std::remove(good.c_str());
    std::remove(bad.c_str());
}

} // namespace
