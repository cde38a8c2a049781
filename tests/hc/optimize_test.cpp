#include <functional>

#include "hc/testing/optimize_scene.h"
#include "hc_test.h"

namespace {

using hc::testing::BuildOptimizeScene;
using hc::testing::DrawnScene;

class OptimizeTest : public HcTest {
protected:
    void SetUp() override {
        HcTest::SetUp();
        m_root = BuildOptimizeScene("/scene", 12);
        m_before = DrawnScene(m_root);
        ASSERT_GT(m_before.size(), 200u);
    }

    // Every segment below the scene, the scene itself left ou
    std::vector<HC_KEY> Segments() {
        std::vector<HC_KEY> keys;
        for (auto& [type, key] : List("/scene/...", "segments"))
            if (key != m_root) keys.push_back(key);
        return keys;
    }
    int CountBelow(const char* filter) {
        return static_cast<int>(List("/scene/...", filter).size());
    }
    std::string Name(HC_KEY segment) {
        std::string path = Path(segment);
        return path.substr(path.rfind('/') + 1);
    }

    HC_KEY m_root = 0;
    std::vector<std::string> m_before;
};

// Every option and mix of options draws the same scene; most have an effect to see as well.
TEST_F(OptimizeTest, EachOptionDrawsTheSameAndHasItsStructuralEffect) {
    struct Case {
        const char* options;
        std::function<void()> check;
    };
    const Case kCases[] = {
        {"", nullptr},
        {"process includes", nullptr},
        {"extract geometry attributes", nullptr},
        {"generate mapping,merge shells", nullptr},
        {"segment names=(discard,record,sequence)", nullptr},
        {"preserve user data=(merge,localize),reorganize", nullptr},
        {"preserve user data=merge,reorganize", nullptr},
        {"preserve user data=localize,reorganize", nullptr},
        {"reorganize=(attributes,spatial)", nullptr},
        {"process includes,localize matrices,preserve user data=(merge,localize),reorganize",
         nullptr},
        {"expand includes,collapse matrices,remove duplicate shells,extract geometry attributes,"
         "generate mapping,segment names=(discard,record,sequence),merge shells,discard user data,"
         "reorganize=(attributes,spatial)",
         nullptr},
        {"expand includes", [this] { EXPECT_EQ(CountBelow("includes"), 0); }},
        {"collapse matrices",
         [this] {
             // Groups that include the part keep theirs: the include needs it.
             EXPECT_EQ(CountBelow("modelling matrices"), 3);
         }},
        {"localize matrices",
         [this] {
             // The groups hold includes, so their matrices stay; leaves keep theirs.
             EXPECT_EQ(CountBelow("modelling matrices"), 3 + 24);
         }},
        {"remove duplicate shells", [this] { EXPECT_EQ(CountBelow("shells"), 24 * 3); }},
        {"merge shells",
         [this] {
             // The one item-coloured triangle per group stays apart in a leaf.
             EXPECT_EQ(CountBelow("shells"), 24 + 12);
         }},
        {"extract geometry attributes,merge shells",
         [this] { EXPECT_EQ(CountBelow("shells"), 24 + 12); }},
        {"instance shells",
         [this] {
             EXPECT_EQ(CountBelow("shells"), 12);
             EXPECT_EQ(CountBelow("includes"), 3 + 12 * 7);
         }},
        {"segment names=discard",
         [this] {
             for (HC_KEY key : Segments())
                 EXPECT_EQ(Name(key).front(), '@') << Path(key);
         }},
        {"segment names=(record,sequence)",
         [this] {
             std::vector<HC_KEY> segments = Segments();
             ASSERT_EQ(segments.size(), 36u);
             EXPECT_EQ(Name(segments[0]), "0");
             HC_Open_Segment_By_Key(segments[0]);
             char options[HC_TEXT_MAX];
             HC_Show_User_Options(options);
             HC_Close_Segment();
             EXPECT_EQ(std::string(options), "id=0,original name=\"group 0\"");
         }},
        {"discard user data",
         [this] {
             EXPECT_EQ(CountBelow("user options"), 0);
             EXPECT_EQ(List("/include library/part", "user options").size(), 1u) << "outside";
         }},
        {"process includes,discard user data",
         [this] { EXPECT_EQ(List("/include library/part", "user options").size(), 0u); }},
        {"reorganize",
         [this] {
             // Groups differ by their user options and matrices: nothing folds.
             EXPECT_EQ(Segments().size(), 36u);
         }},
        {"discard user data,collapse matrices,reorganize",
         [this] {
             // Each group's two leaves, bare once their matrices are in their points, fold into
             // one; the groups' named leaves keep the groups apart.
             EXPECT_EQ(Segments().size(), 24u);
         }},
        {"reorganize=spatial",
         [this] {
             HC_Open_Segment("/scene");
             EXPECT_LE(Types(".", "segments").size(), 8u);
             HC_Close_Segment();
         }},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.options);
        HC_Reset_System();
        m_root = BuildOptimizeScene("/scene", 12);
        HC_Optimize_Segment_Tree("/scene", c.options);
        if (c.check) c.check();
        EXPECT_EQ(DrawnScene(m_root), m_before);
        EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
    }
}

TEST_F(OptimizeTest, BadOptionsAreReportedAndChangeNothing) {
    for (const char* options :
         {"merge shells,shrink wrap", "segment names=forget", "reorganize=(", "merge shells=7"}) {
        SCOPED_TRACE(options);
        HC_Optimize_Segment_Tree("/scene", options);
        EXPECT_EQ(TakeErrors().size(), 1u);
        EXPECT_EQ(CountBelow("shells"), 24 * 4);
    }
    HC_Optimize_Segment_Tree("/nowhere", "merge shells");
    EXPECT_EQ(TakeErrors().size(), 1u);
}

TEST_F(OptimizeTest, MergingWithAMappingKeepsWhereEachFaceCameFrom) {
    // As the browser runs it: on the open segment.
    HC_Open_Segment("/scene/group 0/leaf 0");
    HC_Optimize_Segment_Tree(".", "merge shells,generate mapping");
    HC_Close_Segment();
    auto shells = List("/scene/group 0/leaf 0", "shells");
    ASSERT_EQ(shells.size(), 1u);
    int lowest = -1, highest = -1;
    HC_Show_Region_Range(shells[0].second, &lowest, &highest);
    // Three triangles, then the cube: regions 0 to 3.
    EXPECT_EQ(lowest, 0);
    EXPECT_EQ(highest, 3);
}

} // namespace
