#include <cctype>
#include <random>

#include "hc_test.h"

namespace {

class SegmentSearch : public HcTest {
protected:
    // Every pathname a segment search for the pattern yields, in order.
    static std::vector<std::string> Find(const char* pattern) {
        std::vector<std::string> found;
        char path[HC_TEXT_MAX];
        HC_Begin_Segment_Search(pattern);
        while (HC_Find_Segment(path))
            found.push_back(path);
        HC_End_Segment_Search();
        return found;
    }
    using Paths = std::vector<std::string>;
};

TEST_F(SegmentSearch, WildcardsMatchWithinALevelAndDotsAcrossLevels) {
    for (const char* path : {"/scene/Wall77/door", "/scene/wall8/w77", "/scene/roof/x/y/a77b",
                             "/scene/roof/x/w7", "/other/w77"})
        HC_Create_Segment(path);
    EXPECT_EQ(Find("/scene/*"), (Paths{"/scene/Wall77", "/scene/wall8", "/scene/roof"}));
    EXPECT_EQ(Find("/scene/.../*77*"),
              (Paths{"/scene/Wall77", "/scene/wall8/w77", "/scene/roof/x/y/a77b"}))
        << "parents first, children in list order, nothing outside the base";
    EXPECT_EQ(Find("/scene/roof/..."), (Paths{"/scene/roof", "/scene/roof/x", "/scene/roof/x/y",
                                              "/scene/roof/x/y/a77b", "/scene/roof/x/w7"}))
        << "dots match no level too";
    EXPECT_EQ(Find("/.../.../w7").size(), 1u) << "a segment reached two ways comes out once";
    EXPECT_EQ(Find("/scene/wall77"), (Paths{"/scene/Wall77"})) << "a plain path names one segment";
    HC_Open_Segment("/scene/roof");
    EXPECT_EQ(Find("x/*"), (Paths{"/scene/roof/x/y", "/scene/roof/x/w7"})) << "relative";
    HC_Close_Segment();
}

TEST_F(SegmentSearch, NamelessSegmentsMatchOnlyWildcardsThatTakeNothing) {
    HC_Open_Segment("/a");
    HC_KEY nameless = HC_Create_Segment("");
    HC_Create_Segment("b");
    HC_Close_Segment();
    EXPECT_EQ(Find("/a/*"), (Paths{Path(nameless), "/a/b"}));
    EXPECT_EQ(Find("/a/%"), (Paths{"/a/b"}));
    EXPECT_EQ(Find(("/.../" + Path(nameless).substr(3)).c_str()), (Paths{Path(nameless)}));
}

TEST_F(SegmentSearch, HitsAreFixedAtTheBeginAndDeletedOnesPassedOver) {
    for (const char* path : {"/s/a1", "/s/a2", "/s/a3"})
        HC_Create_Segment(path);
    char path[HC_TEXT_MAX];
    int count = 0;
    HC_Begin_Segment_Search("/s/a*");
    HC_Show_Segment_Count(&count);
    EXPECT_EQ(count, 3);
    ASSERT_TRUE(HC_Find_Segment(path));
    EXPECT_STREQ(path, "/s/a1");
    HC_Delete_Segment("/s/a2");
    HC_Create_Segment("/s/a4");
    {
        // A search begun inside another ends without disturbing it.
        EXPECT_EQ(Find("/s/*").size(), 3u);
    }
    ASSERT_TRUE(HC_Find_Segment(path));
    EXPECT_STREQ(path, "/s/a3");
    EXPECT_FALSE(HC_Find_Segment(path));
    HC_End_Segment_Search();
    EXPECT_TRUE(TakeErrors().empty());
}

TEST_F(SegmentSearch, MisuseIsReportedAndFindsNothing) {
    HC_Create_Segment("/a/b");
    char path[HC_TEXT_MAX];
    EXPECT_FALSE(HC_Find_Segment(path));
    HC_End_Segment_Search();
    EXPECT_EQ(TakeErrors().size(), 2u);
    EXPECT_TRUE(Find("/a/*/..").empty());
    EXPECT_TRUE(Find("/missing/*").empty());
    EXPECT_TRUE(Find("").empty());
    EXPECT_EQ(TakeErrors().size(), 3u);
    HC_Open_Segment("/a/b");
    HC_Delete_Segment("");
    HC_Close_Segment();
    EXPECT_EQ(TakeErrors().size(), 1u);
    EXPECT_EQ(Find("/a/*").size(), 1u) << "an empty pattern deletes nothing";
    EXPECT_TRUE(Find("/a/*/nothing").empty()) << "nothing matching is no error";
    EXPECT_TRUE(TakeErrors().empty());
}

// Plain recursive matchers, to check the database's against.
bool Glob(const char* name, const char* wildcard) {
    if (!*wildcard) return !*name;
    if (*wildcard == '*') return Glob(name, wildcard + 1) || (*name && Glob(name + 1, wildcard));
    return *name && (*wildcard == '%' || std::tolower(*wildcard) == std::tolower(*name)) &&
           Glob(name + 1, wildcard + 1);
}

// Whether the levels of a path below the base match the pattern's levels, "..." taking any
// number of them.
bool LevelsMatch(const std::vector<std::string>& path, size_t p,
                 const std::vector<std::string>& pattern, size_t q) {
    if (q == pattern.size()) return p == path.size();
    if (pattern[q] == "...") {
        for (size_t skip = p; skip <= path.size(); ++skip)
            if (LevelsMatch(path, skip, pattern, q + 1)) return true;
        return false;
    }
    return p < path.size() && Glob(path[p].c_str(), pattern[q].c_str()) &&
           LevelsMatch(path, p + 1, pattern, q + 1);
}

// Each pattern's hits are the segments of "/t/..." (tree order, checked above) whose levels a
// plain recursive matcher accepts: the automaton must find the same ones, each once, in order.
TEST_F(SegmentSearch, RandomPatternsAgreeWithAPlainMatcher) {
    std::mt19937 random(7);
    const char* names[] = {"a", "B", "ab", "ba", "abc", "cab"};
    const char* levels[] = {"*", "a*", "%b", "...", "ab", "*A*", "b%", "...", "c*"};
    for (int n = 0; n < 150; ++n) {
        std::string path = "/t";
        for (int depth = 1 + random() % 4; depth > 0; --depth)
            path += std::string("/") + names[random() % std::size(names)];
        HC_Create_Segment(path.c_str());
    }
    const Paths tree = Find("/t/...");
    for (int round = 0; round < 200; ++round) {
        std::vector<std::string> pattern;
        std::string text = "/t";
        for (int n = 1 + random() % 3; n > 0; --n) {
            pattern.push_back(levels[random() % std::size(levels)]);
            text += "/" + pattern.back();
        }
        Paths expected;
        for (const std::string& segment : tree) {
            std::vector<std::string> path;
            for (size_t at = 3; at < segment.size();) {
                size_t slash = std::min(segment.find('/', at), segment.size());
                path.push_back(segment.substr(at, slash - at));
                at = slash + 1;
            }
            if (LevelsMatch(path, 0, pattern, 0)) expected.push_back(segment);
        }
        EXPECT_EQ(Find(text.c_str()), expected) << text;
    }
}

TEST_F(SegmentSearch, EditsTakeTheSamePatterns) {
    for (const char* path : {"/a/keep", "/a/x1/y", "/a/x2", "/a/deep/x3"})
        HC_Create_Segment(path);
    HC_Delete_Segment("/a/.../x*");
    EXPECT_EQ(Find("/a/..."), (Paths{"/a", "/a/keep", "/a/deep"}));
}

} // namespace
