#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>

#include "../hc/hc_test.h"
#include "mvo/base_view.h"
#include "mvo/geom_handle.h"

namespace {

// A view of a model holding "holder" (turned a quarter about z, then moved 10 along x: a point
// (x, y, z) of it is (10 - y, x, z) in the world) and in it "part", a 2x2x2 box from the origin,
// whose centre is (1, 1, 1) in its own coordinates and (9, 1, 1) in the world.
class Manipulator : public HcTest {
protected:
    void SetUp() override {
        HcTest::SetUp();
        m_model = std::make_unique<HBaseModel>();
        m_view = std::make_unique<HBaseView>(m_model.get());
        HC_Open_Segment_By_Key(m_model->GetModelKey());
        HC_Open_Segment("holder");
        const float moved[] = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 10, 0, 0, 1};
        HC_Set_Modelling_Matrix(moved);
        m_part = HC_Open_Segment("part");
        const HC_POINT corners[] = {{0, 0, 0}, {2, 2, 2}};
        m_box = HC_Insert_Polyline(2, corners);
        HC_Close_Segment();
        m_other = HC_Create_Segment("other");
        HC_Close_Segment();
        HC_Close_Segment();
    }
    void TearDown() override {
        m_view.reset();
        m_model.reset();
        HcTest::TearDown();
    }

    bool SetUpAll(HC_KEY segment) {
        return HUtilityGeomHandle::SetupManipulator(segment, m_view.get(), nullptr, true, true,
                                                    true, true, true, true);
    }
    HC_KEY Handles() {
        const HC_KEY pick = List(HandlesPath().c_str(), "geometry").at(0).second;
        return HUtilityGeomHandle::HandleOf(pick).handles;
    }
    std::string HandlesPath() {
        return Path(m_view->GetSceneKey()) + "/" + HUtilityGeomHandle::kHandlesSegment + "/...";
    }
    std::vector<std::string> HandleNames() {
        std::vector<std::string> names;
        HC_Open_Segment_By_Key(m_view->GetSceneKey());
        for (auto& [type, key] : List(".", "segments"))
            names.push_back(Path(key).substr(Path(m_view->GetSceneKey()).size() + 1));
        HC_Close_Segment();
        return names;
    }
    // Where the segment's own matrix puts a point.
    static HC_POINT Moved(HC_KEY segment, HC_POINT point) {
        float matrix[16];
        HC_Open_Segment_By_Key(segment);
        HC_Show_Modelling_Matrix(matrix);
        HC_Close_Segment();
        HC_Compute_Transformed_Points(1, &point, matrix, &point);
        return point;
    }

    std::unique_ptr<HBaseModel> m_model;
    std::unique_ptr<HBaseView> m_view;
    HC_KEY m_part = 0;
    HC_KEY m_box = 0;
    HC_KEY m_other = 0;
};

::testing::AssertionResult Near(const HC_POINT& actual, const HC_POINT& expected) {
    if (std::abs(actual.x - expected.x) < 1e-4f && std::abs(actual.y - expected.y) < 1e-4f &&
        std::abs(actual.z - expected.z) < 1e-4f)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "(" << actual.x << ", " << actual.y << ", " << actual.z << "), not (" << expected.x
           << ", " << expected.y << ", " << expected.z << ")";
}

TEST_F(Manipulator, HandlesAreTheViewsAndToldApartFromTheModel) {
    ASSERT_TRUE(SetUpAll(m_part));
    EXPECT_EQ(HUtilityGeomHandle::GetManipulatedSegment(m_view.get()), m_part);

    std::set<std::pair<HHandleKind, int>> found;
    for (auto& [type, key] : List(HandlesPath().c_str(), "geometry")) {
        HManipulatorHandle handle = HUtilityGeomHandle::HandleOf(key);
        EXPECT_EQ(handle.segment, m_part);
        found.emplace(handle.kind, handle.axis);
    }
    EXPECT_EQ(found.size(), 9u) << "a move, a turn and a stretch along each axis";
    for (HC_KEY user :
         {m_box, m_part, m_other, m_model->GetModelKey(), HC_KEY{0}, HC_KEY{-1}, HC_KEY{-987654}})
        EXPECT_FALSE(HUtilityGeomHandle::HandleOf(user)) << user;

    // Nothing of them in the model, its bounds or a metafile written of it.
    HC_Open_Segment_By_Key(m_part);
    EXPECT_EQ(Types(".", "everything"), std::vector<std::string>{"polyline"});
    HC_Close_Segment();
    HC_POINT min, max;
    HC_Show_Bounding_Cuboid_By_Key(m_part, &min, &max);
    EXPECT_TRUE(Near(max, HC_POINT{2, 2, 2}));
    const std::string file = ::testing::TempDir() + "obsidra_manipulator.hmf";
    HC_Write_Metafile(Path(m_model->GetModelKey()).c_str(), file.c_str(), "");
    std::stringstream written;
    written << std::ifstream(file).rdbuf();
    EXPECT_NE(written.str().find("part"), std::string::npos);
    EXPECT_EQ(written.str().find("manipulator"), std::string::npos);
    std::remove(file.c_str());
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

TEST_F(Manipulator, OneManipulatorAViewReplacedAndRemoved) {
    HBaseView* view = m_view.get();
    ASSERT_TRUE(HUtilityGeomHandle::SetupManipulator(m_part, view, nullptr, true, false, false,
                                                     true, false, false));
    EXPECT_EQ(HandleNames(), (std::vector<std::string>{"manipulator handles"}));
    ASSERT_TRUE(SetUpAll(m_part));
    ASSERT_TRUE(SetUpAll(m_other));
    EXPECT_EQ(HUtilityGeomHandle::GetManipulatedSegment(view), m_other);
    EXPECT_EQ(HandleNames(), (std::vector<std::string>{"manipulator handles"}));

    // Keys that are no segment of the model change nothing.
    const HC_KEY outside = HC_Create_Segment("/outside");
    for (HC_KEY bad : {m_box, outside, m_view->GetSceneKey(), HC_KEY{-987654}, HC_KEY{0}})
        EXPECT_FALSE(SetUpAll(bad)) << bad;
    EXPECT_FALSE(HUtilityGeomHandle::SetupManipulator(m_part, nullptr, nullptr, true, true, true,
                                                      true, true, true));
    EXPECT_EQ(HUtilityGeomHandle::GetManipulatedSegment(view), m_other);

    EXPECT_FALSE(HUtilityGeomHandle::SetupManipulator(m_part, view, nullptr, true, true, true,
                                                      false, false, false))
        << "no axis, no handle";
    EXPECT_EQ(HUtilityGeomHandle::GetManipulatedSegment(view), 0);
    ASSERT_TRUE(SetUpAll(m_part));
    HUtilityGeomHandle::RemoveManipulator(view);
    HUtilityGeomHandle::RemoveManipulator(view);
    EXPECT_EQ(HUtilityGeomHandle::GetManipulatedSegment(view), 0);
    EXPECT_TRUE(HandleNames().empty());
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

TEST_F(Manipulator, DragsChangeTheModellingMatrixAndTakeTheHandlesAlong) {
    const struct {
        const char* name;
        HHandleKind kind;
        int axis;
        HC_POINT from, to; // in the world, where the centre is (9, 1, 1)
        HC_POINT origin;   // where the part's origin goes
    } drags[] = {
        {"move 3 along x", HHandleKind::Translate, 0, {9, 1, 1}, {5, 4, 1}, {3, 0, 0}},
        {"turn 90 degrees about z", HHandleKind::Rotate, 2, {9, 2, 1}, {8, 1, 7}, {2, 0, 0}},
        {"stretch twice along x", HHandleKind::Scale, 0, {9, 2, 1}, {6, 3, 1}, {-1, 0, 0}},
        {"stretch twice along z", HHandleKind::Scale, 2, {9, 1, 0}, {9, 1, -1}, {0, 0, -1}},
    };
    for (const auto& drag : drags) {
        SCOPED_TRACE(drag.name);
        ASSERT_TRUE(SetUpAll(m_part));
        const HManipulatorHandle handle{drag.kind, drag.axis, m_part, Handles()};
        ASSERT_TRUE(HUtilityGeomHandle::ApplyDrag(handle, drag.from, drag.to));
        EXPECT_TRUE(Near(Moved(m_part, {0, 0, 0}), drag.origin));
        // The handles are drawn where the part is: moved as it was, then as its holder is.
        EXPECT_TRUE(Near(Moved(handle.handles, {0, 0, 0}),
                         {10 - drag.origin.y, drag.origin.x, drag.origin.z}));
        HC_Open_Segment_By_Key(m_part);
        HC_UnSet_Modelling_Matrix();
        HC_Close_Segment();
    }

    // Drags without meaning, and handles that are gone, change nothing.
    ASSERT_TRUE(SetUpAll(m_part));
    const HC_KEY handles = Handles();
    const HC_POINT centre{9, 1, 1}, aside{9, 2, 1};
    EXPECT_FALSE(
        HUtilityGeomHandle::ApplyDrag({HHandleKind::Rotate, 2, m_part, handles}, centre, aside));
    EXPECT_FALSE(HUtilityGeomHandle::ApplyDrag({HHandleKind::Scale, 0, m_part, handles}, aside,
                                               HC_POINT{9, 0, 1}));
    EXPECT_FALSE(HUtilityGeomHandle::ApplyDrag({HHandleKind::Translate, 0, m_other, handles},
                                               centre, aside));
    EXPECT_FALSE(HUtilityGeomHandle::ApplyDrag({}, centre, aside));
    EXPECT_EQ(HC_Show_Existence_By_Key(m_part, "modelling matrix"), 0);
    HC_Delete_By_Key(m_part);
    EXPECT_FALSE(
        HUtilityGeomHandle::ApplyDrag({HHandleKind::Translate, 0, m_part, handles}, centre, aside));
    EXPECT_EQ(HUtilityGeomHandle::GetManipulatedSegment(m_view.get()), 0);
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

} // namespace
