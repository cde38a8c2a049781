#include <atomic>

#include "hc/hc_test.h"
#include "scenetree/name_filter.h"

using namespace obsidra::scenetree;

namespace {

// "/wall root" holds Walls (wall 1, door), roof (Wall trim) and floor.
class NameFilter : public HcTest {
protected:
    void SetUp() override {
        HcTest::SetUp();
        m_root = HC_Open_Segment("/wall root");
        m_walls = HC_Open_Segment("Walls");
        m_wall = HC_Create_Segment("wall 1");
        HC_Create_Segment("door");
        HC_Close_Segment();
        m_roof = HC_Open_Segment("roof");
        m_trim = HC_Create_Segment("Wall trim");
        HC_Close_Segment();
        HC_Create_Segment("floor");
        HC_Close_Segment();
    }

    HC_KEY m_root = 0, m_walls = 0, m_wall = 0, m_roof = 0, m_trim = 0;
};

TEST_F(NameFilter, KeepsHitsAndTheirAncestorsAndHandsHitsOverInBatches) {
    std::vector<std::vector<HC_KEY>> batches;
    SegmentNameMatches matches =
        FilterSegmentNames(m_root, "WALL", nullptr, [&](std::span<const HC_KEY> hits) {
            batches.emplace_back(hits.begin(), hits.end());
        });
    EXPECT_EQ(matches.hits, 3u) << "the root is never a hit";
    EXPECT_FALSE(matches.cancelled);
    EXPECT_EQ(matches.keep, (std::unordered_set<HC_KEY>{m_root, m_walls, m_wall, m_roof, m_trim}));
    std::unordered_set<HC_KEY> parents;
    for (const auto& [parent, kept] : matches.children)
        parents.insert(parent);
    EXPECT_EQ(parents, (std::unordered_set<HC_KEY>{m_root, m_walls, m_roof}))
        << "Walls, a hit itself, is also the parent of one";
    EXPECT_EQ(batches, (std::vector<std::vector<HC_KEY>>{{m_walls}, {m_wall, m_trim}}))
        << "the first hit at once, in the tree's order";

    for (const char* nothing : {"", "window"}) {
        batches.clear();
        matches = FilterSegmentNames(m_root, nothing, nullptr,
                                     [&](std::span<const HC_KEY>) { batches.emplace_back(); });
        EXPECT_TRUE(matches.keep.empty()) << nothing;
        EXPECT_TRUE(batches.empty()) << nothing;
    }
    EXPECT_TRUE(FilterSegmentNames(m_trim, "wall").keep.empty()) << "a leaf root";
    HC_Delete_By_Key(m_roof);
    EXPECT_TRUE(FilterSegmentNames(m_roof, "wall").keep.empty()) << "a dead root";
    EXPECT_TRUE(TakeErrors().empty());
}

TEST_F(NameFilter, StopsWhenCancelled) {
    HC_Open_Segment_By_Key(m_walls);
    for (int i = 0; i < 5000; ++i)
        HC_Create_Segment(("wall " + std::to_string(i + 2)).c_str());
    HC_Close_Segment();
    std::atomic<bool> cancel = false;
    // A new keystroke arrives while the first hits are being shown.
    SegmentNameMatches matches = FilterSegmentNames(
        m_root, "wall", &cancel, [&](std::span<const HC_KEY>) { cancel = true; });
    EXPECT_TRUE(matches.cancelled);
    EXPECT_GT(matches.hits, 0u);
    EXPECT_LT(matches.hits, 1000u);
    cancel = false;
    EXPECT_EQ(FilterSegmentNames(m_root, "wall", &cancel).hits, 5003u);
}

} // namespace
