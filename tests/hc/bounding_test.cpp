#include "hc_test.h"

namespace {

using Bounding = HcTest;

struct Cuboid {
    HC_POINT min, max;
};

Cuboid CuboidOf(HC_KEY key) {
    Cuboid c{};
    HC_Show_Bounding_Cuboid_By_Key(key, &c.min, &c.max);
    return c;
}

std::string Info(HC_KEY key) {
    char info[HC_TEXT_MAX];
    HC_Show_Bounding_Info_By_Key(key, info);
    return info;
}

void ExpectBox(const Cuboid& c, HC_POINT min, HC_POINT max, const char* what) {
    EXPECT_FLOAT_EQ(c.min.x, min.x) << what;
    EXPECT_FLOAT_EQ(c.min.y, min.y) << what;
    EXPECT_FLOAT_EQ(c.min.z, min.z) << what;
    EXPECT_FLOAT_EQ(c.max.x, max.x) << what;
    EXPECT_FLOAT_EQ(c.max.y, max.y) << what;
    EXPECT_FLOAT_EQ(c.max.z, max.z) << what;
}

const float kMoveX5[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1};
const float kScale2[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};

TEST_F(Bounding, SegmentsBoundTheirContentsThroughTheirChildrensMatrices) {
    HC_KEY top = HC_Open_Segment("/top");
    Triangle(); // (0,0,0) (1,0,0) (0,1,0)
    HC_KEY moved = HC_Open_Segment("moved");
    HC_Set_Modelling_Matrix(kMoveX5);
    Triangle();
    HC_Close_Segment();
    HC_Close_Segment();
    EXPECT_EQ(Info(top), "type=cuboid");
    EXPECT_EQ(Info(top)[5], 'c');
    ExpectBox(CuboidOf(top), {0, 0, 0}, {6, 1, 0}, "top");
    ExpectBox(CuboidOf(moved), {0, 0, 0}, {1, 1, 0}, "a segment's own matrix is not in its bounds");

    // Bounds follow edits without being asked for everything again.
    HC_Open_Segment_By_Key(moved);
    HC_Set_Modelling_Matrix(kScale2);
    HC_Close_Segment();
    ExpectBox(CuboidOf(top), {0, 0, 0}, {2, 2, 0}, "after the matrix changed");
    HC_Open_Segment("/top/moved/deeper");
    HC_Insert_Marker(0, 0, 7);
    HC_Close_Segment();
    ExpectBox(CuboidOf(top), {0, 0, 0}, {2, 2, 14}, "after a marker was added below");
    HC_Delete_Segment("/top/moved");
    ExpectBox(CuboidOf(top), {0, 0, 0}, {1, 1, 0}, "after the child was deleted");
}

TEST_F(Bounding, IncludesAndReferencesAddTheirTargetsAsPlaced) {
    HC_Open_Segment("/library/part");
    HC_Set_Modelling_Matrix(kMoveX5);
    Triangle();
    HC_Close_Segment();
    HC_KEY scene = HC_Open_Segment("/scene");
    HC_Include_Segment("/library/part");
    HC_Close_Segment();
    ExpectBox(CuboidOf(scene), {5, 0, 0}, {6, 1, 0}, "include");
    // Changing the included segment changes the includer.
    HC_Open_Segment("/library/part");
    HC_Insert_Marker(0, 0, 3);
    HC_Close_Segment();
    ExpectBox(CuboidOf(scene), {5, 0, 0}, {6, 1, 3}, "include after its target changed");

    HC_Open_Segment("/shapes");
    HC_KEY marker = HC_Insert_Marker(-1, -2, -3);
    HC_Close_Segment();
    HC_KEY holder = HC_Open_Segment("/holder");
    HC_KEY reference = HC_Reference_Geometry_By_Key(marker);
    HC_Close_Segment();
    ExpectBox(CuboidOf(holder), {-1, -2, -3}, {-1, -2, -3}, "reference to an item");
    EXPECT_EQ(Info(reference), "type=cuboid");
}

TEST_F(Bounding, WhatHasNoExtentHasNoInfoAndSpheresAreSpheres) {
    HC_KEY empty = HC_Create_Segment("/empty");
    EXPECT_EQ(Info(empty), "");
    HC_Open_Segment("/a");
    HC_KEY light = HC_Insert_Local_Light(0, 0, 0);
    HC_POINT center{1, 2, 3};
    HC_VECTOR axis{0, 1, 0}, ortho{1, 0, 0};
    HC_KEY sphere = HC_Insert_Sphere(&center, 2, &axis, &ortho);
    HC_Close_Segment();
    EXPECT_EQ(Info(light), "");
    EXPECT_EQ(Info(sphere), "type=sphere");
    EXPECT_EQ(Info(sphere)[5], 's');
    HC_POINT c;
    float radius = 0;
    HC_Show_Bounding_Sphere_By_Key(sphere, &c, &radius);
    EXPECT_FLOAT_EQ(radius, 2);
    EXPECT_FLOAT_EQ(c.z, 3);
    ExpectBox(CuboidOf(sphere), {-1, 0, 1}, {3, 4, 5}, "a sphere's cuboid");
}

TEST_F(Bounding, IncludeCyclesEndAndCircumcuboidAnswersForAPath) {
    HC_Open_Segment("/loop");
    Triangle();
    HC_Include_Segment("/loop");
    HC_Close_Segment();
    HC_POINT min, max;
    EXPECT_TRUE(HC_Compute_Circumcuboid("/loop", &min, &max));
    EXPECT_FLOAT_EQ(max.x, 1);
    HC_Create_Segment("/nothing");
    EXPECT_FALSE(HC_Compute_Circumcuboid("/nothing", &min, &max));
}

} // namespace
