// The headless half of the 3D view: net looks, what each kind of geometry draws, the batches a
// walk builds and which of them a change rebuilds, picking and item bounds.
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "host/view/camera.h"
#include "host/view/item_bounds.h"
#include "host/view/net_look.h"
#include "host/view/picking.h"
#include "host/view/scene_cache.h"

namespace obsidra::host::view {
namespace {

std::vector<std::string> g_errors;

class SceneTest : public testing::Test {
protected:
    void SetUp() override {
        HC_Reset_System();
        g_errors.clear();
        HC_Define_Error_Handler([](const char* function, const char* message) {
            g_errors.push_back(std::string(function) + ": " + message);
        });
    }
    void TearDown() override {
        EXPECT_TRUE(g_errors.empty()) << g_errors.front();
        HC_Define_Error_Handler(nullptr);
        HC_Reset_System();
    }

    // A unit square in z = 0 from (x, y), in the open segment.
    static HC_KEY Square(float x = 0, float y = 0) {
        HC_POINT points[] = {{x, y, 0}, {x + 1, y, 0}, {x + 1, y + 1, 0}, {x, y + 1, 0}};
        int faces[] = {4, 0, 1, 2, 3};
        return HC_Insert_Shell(4, points, 5, faces);
    }

    // The instances of a segment (by its key) the cache holds.
    static std::vector<const SegmentInstance*> InstancesOf(const SceneCache& cache, HC_KEY key) {
        std::vector<const SegmentInstance*> found;
        for (const SegmentInstance& instance : cache.Instances())
            if (instance.alive && instance.segment == key) found.push_back(&instance);
        return found;
    }

    static Rgba FirstFaceColour(const SegmentInstance& instance) {
        return instance.batch.triangles.vertices.at(0).rgba;
    }
};

TEST(NetLookTest, ColourTexts) {
    const struct {
        const char* text;
        std::optional<Rgba> rgba;
    } rows[] = {
        {"red", MakeRgba(1, 0, 0)},
        {"Light  Blue", MakeRgba(0.5f, 0.5f, 1)},
        {"dark red", MakeRgba(0.5f, 0, 0)},
        {"(r=0.750 g=0.730 b=0.680)", MakeRgba(0.75f, 0.73f, 0.68f)},
        {"(diffuse=(r=0 g=1 b=0),transmission=(r=1 g=1 b=1))", MakeRgba(0, 1, 0, 0)},
        {"(diffuse=red)", MakeRgba(1, 0, 0)},
        {"no such colour", std::nullopt},
        {"(r=1 g=0)", std::nullopt},
        {"(r=nan g=2 b=-1)", MakeRgba(0, 1, 0)},
        {"", std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ParseColour(row.text), row.rgba) << row.text;
}

TEST(NetLookTest, MergedOptionsGiveEachPartItsColourAndVisibility) {
    OptionMap colour, visibility;
    colour.Merge("faces=red, edges=(r=0 g=0 b=1)", true);
    colour.Merge("lines=green", true);
    visibility.Merge("no markers, text=off", false);
    Look look = ResolveLook(colour, visibility);
    EXPECT_EQ(look.ColourOf(Part::Faces), MakeRgba(1, 0, 0));
    EXPECT_EQ(look.ColourOf(Part::Edges), MakeRgba(0, 0, 1));
    EXPECT_EQ(look.ColourOf(Part::Lines), MakeRgba(0, 1, 0));
    EXPECT_TRUE(look.Shows(Part::Faces));
    EXPECT_FALSE(look.Shows(Part::Markers));
    EXPECT_FALSE(look.Shows(Part::Text));
    EXPECT_FALSE(look.edgesNamed);

    // A colour named alone colours everything, over what came before.
    colour.Merge("yellow", true);
    EXPECT_EQ(ResolveLook(colour, visibility).ColourOf(Part::Edges), MakeRgba(1, 1, 0));
    visibility.Merge("off", false);
    EXPECT_FALSE(ResolveLook(colour, visibility).Shows(Part::Faces));
    visibility.Merge("faces=on", false);
    EXPECT_TRUE(ResolveLook(colour, visibility).Shows(Part::Faces));
}

const HC_POINT kTriangle[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
const int kOneFace[] = {3, 0, 1, 2};
const HC_POINT kGrid[] = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {1, 1, 0},
                          {2, 1, 0}, {0, 2, 0}, {1, 2, 0}, {2, 2, 0}};

std::string TypeOf(HC_KEY key) {
    char type[HC_TEXT_MAX];
    HC_Show_Key_Type(key, type);
    return type;
}

TEST_F(SceneTest, EachKindDrawsWhatItShould) {
    HC_Open_Segment("/scene");
    HC_POINT a{0, 0, 0}, b{1, 1, 0}, c{2, 0, 0}, axis{0, 0, 1}, ortho{1, 0, 0};
    const struct {
        const char* name;
        HC_KEY (*insert)();
        size_t triangles, lines, points;
    } rows[] = {
        {"square shell: two triangles and its outline", [] { return Square(); }, 2, 4, 0},
        {"triangle shell: no edges by default",
         [] { return HC_Insert_Shell(3, kTriangle, 4, kOneFace); }, 1, 0, 0},
        {"3x3 mesh", [] { return HC_Insert_Mesh(3, 3, kGrid); }, 8, 0, 0},
        {"polyline", [] { return HC_Insert_Polyline(3, kTriangle); }, 0, 2, 0},
        {"line", [] { return HC_Insert_Line(0, 0, 0, 1, 1, 1); }, 0, 1, 0},
        {"marker", [] { return HC_Insert_Marker(1, 2, 3); }, 0, 0, 1},
        {"text", [] { return HC_Insert_Text(1, 2, 3, "hello"); }, 0, 0, 1},
        {"light: nothing", [] { return HC_Insert_Local_Light(0, 0, 0); }, 0, 0, 0},
    };
    for (const auto& row : rows) {
        HC_KEY item = row.insert();
        DrawBatch batch;
        ExtractItem(item, TypeOf(item), NetState{}, batch);
        EXPECT_EQ(batch.triangles.vertices.size(), 3 * row.triangles) << row.name;
        EXPECT_EQ(batch.lines.vertices.size(), 2 * row.lines) << row.name;
        EXPECT_EQ(batch.points.vertices.size(), row.points) << row.name;
        for (const Primitives* p : {&batch.triangles, &batch.lines, &batch.points})
            EXPECT_EQ(p->Empty() ? item : p->ItemOf(0), item) << row.name;
    }
    HC_Flush_Contents(".", "everything");

    // Curved kinds: within their bounds, through their points.
    const struct {
        const char* name;
        HC_KEY key;
        bool faces, lines;
    } curves[] = {
        {"circle", HC_Insert_Circle(&a, &b, &c), true, false},
        {"arc", HC_Insert_Circular_Arc(&a, &b, &c), false, true},
        {"wedge", HC_Insert_Circular_Wedge(&a, &b, &c), true, false},
        {"sphere", HC_Insert_Sphere(&b, 1, &axis, &ortho), true, false},
        {"cylinder", HC_Insert_Cylinder(&a, &c, 0.5, "both"), true, false},
    };
    for (const auto& curve : curves) {
        DrawBatch batch;
        ExtractItem(curve.key, TypeOf(curve.key), NetState{}, batch);
        EXPECT_EQ(!batch.triangles.Empty(), curve.faces) << curve.name;
        EXPECT_EQ(!batch.lines.Empty() && curve.lines, curve.lines) << curve.name;
        EXPECT_LE(batch.bounds.max.x, 2.001f) << curve.name;
        EXPECT_GE(batch.bounds.min.x, -0.501f) << curve.name;
    }

    // Translucent faces are kept apart, to be drawn last.
    NetState glass;
    glass.colour.Merge("faces=(diffuse=(r=0 g=0 b=1),transmission=(r=0.6 g=0.6 b=0.6))", true);
    HC_KEY pane = Square();
    DrawBatch panes;
    ExtractItem(pane, "shell", glass, panes);
    EXPECT_TRUE(panes.triangles.Empty());
    ASSERT_EQ(panes.translucent.vertices.size(), 6u);
    EXPECT_EQ(panes.translucent.ItemOf(1), pane);
    EXPECT_EQ(panes.lines.vertices.size(), 8u);

    // A point that is not a number is drawn as the driver likes but stays out of the box.
    HC_POINT odd[] = {{0, 0, 0}, {std::nanf(""), 0, 0}, {1, 1, 0}};
    HC_KEY polyline = HC_Insert_Polyline(3, odd);
    DrawBatch batch;
    ExtractItem(polyline, "polyline", NetState{}, batch);
    EXPECT_EQ(batch.lines.vertices.size(), 4u);
    EXPECT_FLOAT_EQ(batch.bounds.max.x, 1);
    HC_Close_Segment();
}

TEST_F(SceneTest, WalkCarriesNetAttributesThroughIncludesAndStyles) {
    HC_Open_Segment("/library/part");
    HC_KEY part = HC_Open_Segment("box");
    Square();
    HC_Close_Segment();
    HC_Close_Segment();
    HC_Open_Segment("/library/red style");
    HC_Set_Color("faces=red");
    HC_Close_Segment();

    HC_KEY root = HC_Open_Segment("/scene");
    HC_Open_Segment("left");
    HC_KEY leftInclude = HC_Include_Segment("/library/part");
    HC_Close_Segment();
    HC_Open_Segment("right");
    float shift[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10, 0, 0, 1};
    HC_Set_Modelling_Matrix(shift);
    HC_Style_Segment("/library/red style");
    HC_Set_Color("edges=blue");
    HC_Include_Segment("/library/part");
    HC_Close_Segment();
    HC_Open_Segment("night only");
    HC_Conditional_Include("/library/part", "night");
    HC_Close_Segment();
    HC_Close_Segment();

    SceneCache cache(root);
    cache.Sync();
    auto boxes = InstancesOf(cache, part);
    ASSERT_EQ(boxes.size(), 2u) << "the conditional include is not drawn";
    const SegmentInstance* left = boxes[0]->batch.bounds.min.x < 5 ? boxes[0] : boxes[1];
    const SegmentInstance* right = left == boxes[0] ? boxes[1] : boxes[0];
    EXPECT_EQ(left->links, std::vector<HC_KEY>{leftInclude});
    EXPECT_FLOAT_EQ(right->batch.bounds.min.x, 10);
    EXPECT_EQ(FirstFaceColour(*right), MakeRgba(1, 0, 0));
    EXPECT_EQ(right->batch.lines.vertices.at(0).rgba, MakeRgba(0, 0, 1));
    EXPECT_NE(FirstFaceColour(*left), MakeRgba(1, 0, 0));
    EXPECT_FLOAT_EQ(cache.Bounds().max.x, 11);

    HC_Open_Segment("/scene");
    HC_Set_Conditions("night");
    HC_Close_Segment();
    cache.Sync();
    EXPECT_EQ(InstancesOf(cache, part).size(), 3u);
}

TEST_F(SceneTest, ChangesRebuildOnlyWhatTheyTouch) {
    HC_Open_Segment("/library/part");
    Square();
    HC_Close_Segment();
    HC_KEY root = HC_Open_Segment("/scene");
    HC_KEY keys[4];
    for (int i = 0; i < 4; ++i) {
        keys[i] = HC_Open_Segment(("s" + std::to_string(i)).c_str());
        Square(static_cast<float>(2 * i));
        HC_Close_Segment();
    }
    HC_Open_Segment("s0");
    HC_Include_Segment("/library/part");
    HC_Close_Segment();
    HC_Open_Segment("s1");
    HC_Include_Segment("/library/part");
    HC_Close_Segment();
    HC_Close_Segment();

    SceneCache cache(root);
    cache.Sync();
    EXPECT_EQ(cache.BuiltLastSync(), 7); // the scene, four segments, the part twice
    cache.TakeTouched();
    cache.Sync();
    EXPECT_EQ(cache.BuiltLastSync(), 0);
    EXPECT_TRUE(cache.TakeTouched().empty());

    const struct {
        const char* name;
        void (*change)(const HC_KEY* keys);
        int built;
    } rows[] = {
        {"colour of a leaf",
         [](const HC_KEY* k) {
             HC_Open_Segment_By_Key(k[2]);
             HC_Set_Color("faces=green");
             HC_Close_Segment();
         },
         1},
        {"an inserted item",
         [](const HC_KEY* k) {
             HC_Open_Segment_By_Key(k[3]);
             HC_Insert_Marker(0, 0, 0);
             HC_Close_Segment();
         },
         1},
        {"the included part, drawn twice",
         [](const HC_KEY*) {
             HC_Open_Segment("/library/part");
             HC_Set_Visibility("edges=off");
             HC_Close_Segment();
         },
         2},
        {"a deleted segment", [](const HC_KEY* k) { HC_Delete_By_Key(k[3]); }, 0},
        {"an item's colour",
         [](const HC_KEY* k) {
             HC_Open_Segment_By_Key(k[2]);
             HC_KEY item = 0;
             char type[HC_TEXT_MAX];
             HC_Begin_Contents_Search(".", "shells");
             HC_Find_Contents(type, &item);
             HC_End_Contents_Search();
             HC_Close_Segment();
             HC_Open_Geometry(item);
             HC_Set_Color("faces=blue");
             HC_Close_Geometry();
         },
         1},
        {"a segment with a subtree",
         [](const HC_KEY* k) {
             HC_Open_Segment_By_Key(k[0]);
             HC_Set_Color("faces=red");
             HC_Close_Segment();
         },
         2},
    };
    for (const auto& row : rows) {
        row.change(keys);
        cache.Sync();
        EXPECT_EQ(cache.BuiltLastSync(), row.built) << row.name;
        EXPECT_FALSE(cache.TakeTouched().empty()) << row.name;
    }
    EXPECT_TRUE(InstancesOf(cache, keys[3]).empty());
    EXPECT_EQ(FirstFaceColour(*InstancesOf(cache, keys[2]).at(0)), MakeRgba(0, 0, 1));
    EXPECT_EQ(FirstFaceColour(*InstancesOf(cache, keys[0]).at(0)), MakeRgba(1, 0, 0));

    // A change the journal no longer holds refreshes everything.
    HC_Reset_System();
    cache.Sync();
    EXPECT_TRUE(cache.Instances().empty() || !cache.Instances()[0].alive);
}

TEST_F(SceneTest, AnIncludeCycleIsWalkedOnce) {
    HC_KEY root = HC_Open_Segment("/scene");
    HC_Open_Segment("a");
    Square();
    HC_Include_Segment("/scene");
    HC_Close_Segment();
    HC_Close_Segment();
    SceneCache cache(root);
    cache.Sync();
    EXPECT_EQ(cache.BuiltLastSync(), 2);
}

TEST_F(SceneTest, PickFindsTheNearestItemAndItsPath) {
    HC_Open_Segment("/library/part");
    HC_KEY far = Square();
    HC_Close_Segment();
    HC_KEY root = HC_Open_Segment("/scene");
    HC_KEY include = HC_Include_Segment("/library/part");
    HC_Open_Segment("near");
    float lift[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 1, 1};
    HC_Set_Modelling_Matrix(lift);
    HC_KEY near = Square();
    HC_Close_Segment();
    HC_Close_Segment();

    SceneCache cache(root);
    cache.Sync();
    Camera camera;
    camera.SetViewport(200, 100);
    camera.Fit(cache.Bounds());
    Vec3 centre;
    ASSERT_TRUE(camera.Project(cache.Bounds().Centre(), centre));
    EXPECT_NEAR(centre.x, 100, 1);
    EXPECT_NEAR(centre.y, 50, 1);

    camera.Orbit(0, 1000); // from straight above: the near square hides the far one
    ASSERT_TRUE(camera.Project({0.5f, 0.5f, 1}, centre));
    PickHit hit = Pick(cache, camera, centre.x, centre.y);
    EXPECT_EQ(hit.item, near);
    EXPECT_EQ(Pick(cache, camera, 1, 1).item, -1);

    HC_Open_Segment("/scene/near");
    HC_Set_Visibility("faces=off, edges=off");
    HC_Close_Segment();
    cache.Sync();
    hit = Pick(cache, camera, centre.x, centre.y);
    ASSERT_EQ(hit.item, far);
    const auto& links = cache.Instances()[hit.instance].links;
    EXPECT_EQ(SelectionPath(hit.item, links, 0, root), (std::vector<HC_KEY>{far, include, root}));
    EXPECT_EQ(SelectionPath(hit.item, links, include, root), (std::vector<HC_KEY>{far, root}));

    // A line is picked within a few pixels of it, ahead of the face it lies on.
    HC_Open_Segment("/scene/near");
    HC_KEY line = HC_Insert_Line(0, 0.5, 0, 1, 0.5, 0);
    HC_Close_Segment();
    cache.Sync();
    ASSERT_TRUE(camera.Project({0.5f, 0.5f, 1}, centre));
    EXPECT_EQ(Pick(cache, camera, centre.x + 2, centre.y + 2).item, line);
    EXPECT_EQ(Pick(cache, camera, centre.x + 10, centre.y + 10).item, far);
}

TEST_F(SceneTest, WorldBoundsFollowTheIncludePath) {
    HC_Open_Segment("/library/part");
    HC_KEY square = Square();
    HC_Close_Segment();
    HC_Open_Segment("/scene");
    float shift[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1};
    HC_Set_Modelling_Matrix(shift);
    HC_KEY include = HC_Include_Segment("/library/part");
    HC_Close_Segment();

    HC_KEY path[] = {square, include};
    EXPECT_FLOAT_EQ(WorldBounds(square, 2, path).min.x, 5);
    EXPECT_FLOAT_EQ(WorldBounds(square, 0, nullptr).min.x, 0);
    EXPECT_TRUE(WorldBounds(-1, 0, nullptr).Empty());
    HC_Delete_By_Key(square);
    EXPECT_TRUE(WorldBounds(square, 2, path).Empty());
}

} // namespace
} // namespace obsidra::host::view
