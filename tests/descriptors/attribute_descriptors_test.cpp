// Built with -Werror=switch: every attribute kind needs a sample below, so a kind added to the
// attribute table cannot go untested.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "descriptor_test.h"

using namespace obsidra::descriptors;

namespace {

// Where a sample is set: a segment below another, the root, or a shell opened in a segment.
enum class Place { Child, Root, Geometry };

struct Sample {
    const char* text;  // given to Set
    const char* shown; // what Show gives back: the text as the database normalises it
    const char* net;   // what ShowNet gives in a segment below: the value inherited, or nothing
    Place place = Place::Child;
    // What the kind needs besides its own line: other attributes, or a value Set cannot give.
    void (*prepare)(HoopsAttribute&) = nullptr;
    bool unsets = true; // whether UnSet removes it; what it cannot remove is always there
};

constexpr const char* kMatrix = "2.000000 0.000000 0.000000 0.000000 0.000000 2.000000 0.000000 "
                                "0.000000 0.000000 0.000000 2.000000 0.000000 1.000000 2.000000 "
                                "3.000000 1.000000";
constexpr const char* kCamera =
    "Pos: 0.000000 0.000000 5.000000 Target: 0.000000 0.000000 0.000000 Up: 0.000000 1.000000 "
    "0.000000 Width: 2.000000 Height: 1.500000 Near Limit: 0.000000 Projection:orthographic";

// A text the database keeps as it stands and a segment below inherits.
Sample Same(const char* text, Place place = Place::Child,
            void (*prepare)(HoopsAttribute&) = nullptr, bool unsets = true) {
    return {text, text, text, place, prepare, unsets};
}

std::string Pointer(const void* value) {
    char text[64];
    std::snprintf(text, sizeof text, "%p", value);
    return text;
}

Sample SampleOf(AttributeKind kind) {
    switch (kind) {
    case AttributeKind::Color:
        return Same("faces=red,edges=blue");
    case AttributeKind::Visibility:
        return {"Edges=Off, markers", "edges=Off,markers", "edges=Off,markers"};
    case AttributeKind::Selectability:
        return Same("faces=on");
    case AttributeKind::Callback:
        return Same("draw segment=trace");
    case AttributeKind::RenderingOptions:
        return Same("lighting interpolation=phong");
    case AttributeKind::UserOptions:
        return Same("owner=ann,size=3");
    case AttributeKind::UnicodeOptions:
        return Same("title=abc", Place::Child,
                    [](HoopsAttribute&) { HC_Set_User_Options("owner=ann"); });
    case AttributeKind::UserValue:
        return Same("-42");
    case AttributeKind::UserIndex:
        return {"", "1 : { (7 = 0x10)}", "", Place::Child,
                [](HoopsAttribute&) { HC_Set_User_Index(7, reinterpret_cast<void*>(0x10)); }};
    case AttributeKind::UserData:
        return {"", "2 : {3, 9}", "", Place::Child, [](HoopsAttribute&) {
                    HC_Set_User_Data(9, "ab", 2);
                    HC_Set_User_Data(3, "c", 1);
                }};
    case AttributeKind::Camera:
        return Same(kCamera);
    case AttributeKind::ModellingMatrix:
    case AttributeKind::TextureMatrix:
        return Same(kMatrix);
    case AttributeKind::Heuristics:
        return Same("backplane cull");
    case AttributeKind::TextFont:
        return Same("name=roman,size=0.1");
    case AttributeKind::DriverOptions:
        return Same("debug=4");
    case AttributeKind::SystemOptions:
        return Same("message limit=10", Place::Root, nullptr, false);
    case AttributeKind::Handedness:
        return Same("left");
    case AttributeKind::Window:
        return Same("-1.000000 1.000000 -0.500000 0.500000");
    case AttributeKind::ClipRegion:
        return Same("Loops:1 Total:3 Specs:world", Place::Child, [](HoopsAttribute& region) {
            HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
            HC_Set_Polygonal_Clip_Region(3, points, "window");
            region.Show();
        });
    case AttributeKind::VariableEdgeWeight:
    case AttributeKind::VariableLineWeight:
    case AttributeKind::VariableMarkerSize:
        return Same("0.5 oru");
    case AttributeKind::EdgeWeight:
    case AttributeKind::LineWeight:
    case AttributeKind::MarkerSize:
        return Same("2.500000");
    case AttributeKind::Condition:
        return Same("day,night");
    case AttributeKind::TextAlignment:
        return Same("<v");
    case AttributeKind::WindowPattern:
        return Same("solid");
    case AttributeKind::WindowFrame:
        return Same("on");
    case AttributeKind::LinePattern:
        return Same("---");
    case AttributeKind::EdgePattern:
        return Same("-.-");
    case AttributeKind::FacePattern:
        return Same("##");
    case AttributeKind::MarkerSymbol:
        return Same("(*)");
    case AttributeKind::TextPath:
        return Same("0.000000 1.000000 0.000000");
    case AttributeKind::TextSpacing:
        return Same("1.500000");
    case AttributeKind::ColorMap:
        return Same("red, green, blue");
    case AttributeKind::GeometryOptions:
        return {"orientation=(0 0 1)", "orientation=(0 0 1)", "", Place::Geometry};
    case AttributeKind::ConditionalAction:
        return {"((night) ? (prune segment = segment))", "((night) ? (prune segment = segment))",
                ""};
    }
    return {};
}

// The sample's place opened; closes what it opened when it goes.
class Opened {
public:
    explicit Opened(Place place) : m_place(place) {
        HC_Open_Segment(place == Place::Root ? "/" : "/parent");
        if (place == Place::Geometry) HC_Open_Geometry(InsertTriangle());
    }
    ~Opened() {
        if (m_place == Place::Geometry) HC_Close_Geometry();
        HC_Close_Segment();
    }

private:
    Place m_place;
};

class AttributeDescriptorTest : public DescriptorTest {};

// Set from a line, Show gives it back, a segment below inherits it, UnSet removes it.
TEST_F(AttributeDescriptorTest, EveryKindSetsShowsInheritsAndUnsets) {
    const AttributeList list = MakeSegmentAttributes();
    ASSERT_EQ(list.size(), kAttributeKindCount);
    for (const AttributeInfo& info : kAttributeTable) {
        SCOPED_TRACE(info.nameWord);
        HC_Reset_System();
        const Sample sample = SampleOf(info.kind);
        std::unique_ptr<HoopsAttribute> descriptor = MakeAttribute(info.kind);
        EXPECT_EQ(list[static_cast<size_t>(info.kind)]->Kind(), info.kind);
        EXPECT_EQ(descriptor->GetName(), info.nameWord);
        Opened here(sample.place);
        EXPECT_EQ(descriptor->Exists(), !sample.unsets);
        if (sample.prepare) sample.prepare(*descriptor);
        descriptor->Set(sample.text);
        EXPECT_TRUE(descriptor->Exists());
        EXPECT_EQ(descriptor->Show(), sample.shown);
        if (sample.place == Place::Child) {
            HC_Open_Segment("child");
            EXPECT_FALSE(descriptor->Exists());
            EXPECT_EQ(descriptor->ShowNet(), sample.net);
            HC_Close_Segment();
        }
        if (sample.unsets) {
            descriptor->UnSet();
            EXPECT_FALSE(descriptor->Exists());
        }
        EXPECT_EQ(TakeErrors(), std::vector<std::string>());
    }
}

// A geometry item's attributes are asked of the item, not of the segment around it.
TEST_F(AttributeDescriptorTest, ExistsAsksTheOpenGeometryItem) {
    HoopsAttributeColor color;
    HoopsAttributeUserValue value;
    HC_Open_Segment("/part");
    HC_Set_Color("faces=red");
    HC_KEY shell = InsertTriangle();
    HC_Open_Geometry(shell);
    EXPECT_FALSE(color.Exists());
    value.Set("5");
    EXPECT_TRUE(value.Exists());
    HC_Close_Geometry();
    EXPECT_TRUE(color.Exists());
    EXPECT_FALSE(value.Exists());
    HC_Close_Segment();
}

// The near limit is shown, never set; short lines of either form are ignored.
TEST_F(AttributeDescriptorTest, CameraReadsBothFormsAndNeverSetsTheNearLimit) {
    HoopsAttributeCamera camera;
    HC_Open_Segment("/view");
    camera.Set("(Camera (1 2 3) (0 0 0) (0 0 1) 4 5 \"perspective\")");
    HC_Set_Camera_Near_Limit(0.25);
    const std::string shown = camera.Show();
    EXPECT_EQ(shown, "Pos: 1.000000 2.000000 3.000000 Target: 0.000000 0.000000 0.000000 Up: "
                     "0.000000 0.000000 1.000000 Width: 4.000000 Height: 5.000000 Near Limit: "
                     "0.250000 Projection:perspective");
    std::string edited = shown;
    camera.Set(edited.replace(edited.find("0.250000"), 8, "0.750000"));
    camera.Set("Pos: 9 9 9 Target: 8 8 8 Up: 0 1 0 Width: 3");
    camera.Set("(Camera (9 9 9) (8 8 8) (0 1 0) 3)");
    camera.Set("");
    EXPECT_EQ(camera.Show(), shown);
    HC_Close_Segment();
}

TEST_F(AttributeDescriptorTest, ClipRegionSetsOnlyTheOptionsOfPointsLastShown) {
    HC_POINT square[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    HC_Open_Segment("/clipped");
    HC_Set_Polygonal_Clip_Region(4, square, "window");

    HoopsAttributeClipRegion region;
    region.Set("Loops:1 Total:4 Specs:world");
    char specs[HC_TEXT_MAX];
    int loops = 0, total = 0;
    HC_Show_Clip_Region_Size(&loops, &total, specs);
    EXPECT_STREQ(specs, "window");

    EXPECT_EQ(region.Show(), "Loops:1 Total:4 Specs:window");
    HC_UnSet_Clip_Region();
    region.Set("Loops:7 Total:99 Specs:world");
    HC_Show_Clip_Region_Size(&loops, &total, specs);
    EXPECT_EQ(total, 4);
    EXPECT_STREQ(specs, "world");
    HC_POINT points[4];
    int counts[1];
    HC_Show_Clip_Region(&loops, counts, points, specs);
    EXPECT_EQ(points[2].x, 1.0f);
    EXPECT_EQ(points[2].y, 1.0f);

    region.Set("Loops:1 Total:4 world");
    HC_Show_Clip_Region_Size(&loops, &total, specs);
    EXPECT_STREQ(specs, "world");
    HC_Close_Segment();
}

TEST_F(AttributeDescriptorTest, ExactlyOneMemberOfEachWeightPairExists) {
    const struct {
        std::unique_ptr<HoopsAttribute> plain, variable;
        void (*set)(double);
        void (*setVariable)(const char*);
    } pairs[] = {
        {MakeAttribute(AttributeKind::EdgeWeight), MakeAttribute(AttributeKind::VariableEdgeWeight),
         HC_Set_Edge_Weight, HC_Set_Variable_Edge_Weight},
        {MakeAttribute(AttributeKind::LineWeight), MakeAttribute(AttributeKind::VariableLineWeight),
         HC_Set_Line_Weight, HC_Set_Variable_Line_Weight},
        {MakeAttribute(AttributeKind::MarkerSize), MakeAttribute(AttributeKind::VariableMarkerSize),
         HC_Set_Marker_Size, HC_Set_Variable_Marker_Size},
    };
    HC_Open_Segment("/weights");
    for (const auto& pair : pairs) {
        SCOPED_TRACE(pair.plain->GetName());
        pair.set(2.0);
        EXPECT_TRUE(pair.plain->Exists());
        EXPECT_FALSE(pair.variable->Exists());
        EXPECT_EQ(pair.plain->Show(), "2.000000");
        EXPECT_EQ(pair.variable->Show(), "2");

        pair.setVariable("3 pixels");
        EXPECT_FALSE(pair.plain->Exists());
        EXPECT_TRUE(pair.variable->Exists());
        EXPECT_EQ(pair.plain->Show(), "-1.000000");

        pair.variable->UnSet();
        EXPECT_FALSE(pair.plain->Exists());
        EXPECT_FALSE(pair.variable->Exists());
    }
    HC_Close_Segment();
}

TEST_F(AttributeDescriptorTest, UserIndexAndDataListsAreCutAt3996Characters) {
    HC_Open_Segment("/indexed");
    HoopsAttributeUserIndex indices;
    HC_Set_User_Index(1, reinterpret_cast<void*>(0x100));
    HC_Set_User_Index(20, nullptr);
    EXPECT_EQ(indices.Show(), "2 : { (1 = " + Pointer(reinterpret_cast<void*>(0x100)) +
                                  "), (20 = " + Pointer(nullptr) + ")}");
    for (long i = 100; i < 400; ++i)
        HC_Set_User_Index(i, reinterpret_cast<void*>(0xABCDEF00 + i));
    std::string shown = indices.Show();
    ASSERT_GE(shown.size(), 3996u + 6);
    EXPECT_LT(shown.size(), size_t(HC_TEXT_MAX));
    EXPECT_EQ(shown.substr(shown.size() - 6), ", ...}");
    std::string listed = shown.substr(0, shown.size() - 6);
    EXPECT_GE(listed.size(), 3996u);
    EXPECT_LT(listed.substr(0, listed.rfind(", (")).size(), 3996u);
    EXPECT_EQ(shown.substr(0, 7), "302 : {");

    for (long i = 0; i < 1000; ++i)
        HC_Set_User_Data(1000000 + i, "x", 1);
    shown = HoopsAttributeUserData().Show();
    EXPECT_EQ(shown.substr(0, 15), "1000 : {1000000");
    EXPECT_EQ(shown.substr(shown.size() - 6), ", ...}");
    EXPECT_LT(shown.size(), size_t(HC_TEXT_MAX));
    HC_Close_Segment();
}

TEST_F(AttributeDescriptorTest, GeometryOptionsActOnlyOnAnOpenGeometryItem) {
    HoopsAttributeGeometryOptions options;
    HC_Open_Segment("/part");
    options.Set("orientation=(1 0 0)");
    EXPECT_FALSE(options.Exists());
    EXPECT_EQ(options.Show(), "");
    options.UnSet();
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());

    HC_Open_Geometry(InsertTriangle());
    options.Set("orientation=(1 0 0)");
    EXPECT_TRUE(options.Exists());
    EXPECT_EQ(options.ShowNet(), "");
    HC_Close_Geometry();
    HC_Close_Segment();
}

TEST_F(AttributeDescriptorTest, ConditionalActionSetTakesBackWhatShowWrites) {
    HoopsAttributeConditionalAction actions;
    HC_Open_Segment("/a");
    HC_Set_Conditional_Action("prune segment", "night");
    HC_Set_Conditional_Action("highlight = color=red", "selected & hover");
    const std::string shown = actions.Show();
    EXPECT_EQ(shown, "((night) ? (prune segment = segment)), "
                     "((selected & hover) ? (highlight = color=red))");
    HC_Close_Segment();

    HC_Open_Segment("/b");
    actions.Set(shown);
    EXPECT_EQ(actions.Show(), shown);
    actions.UnSet();
    EXPECT_FALSE(actions.Exists());
    HC_Close_Segment();
}

TEST_F(AttributeDescriptorTest, SystemOptionsAreListedAtTheRootOnly) {
    HoopsAttributeSystemOptions system;
    HC_Open_Segment("/a");
    EXPECT_FALSE(system.Exists());
    system.Set("message limit=3");
    HC_Close_Segment();
    HC_Open_Segment("/");
    EXPECT_TRUE(system.Exists());
    EXPECT_EQ(system.ShowNet(), system.Show());
    EXPECT_NE(system.Show().find("message limit=3"), std::string::npos);
    HC_Close_Segment();
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

// Unicode options are listed only where user options are too.
TEST_F(AttributeDescriptorTest, UnicodeOptionsBorrowTheUserOptionsPresenceTest) {
    HoopsAttributeUnicodeOptions unicode;
    HoopsAttributeUserOptions user;
    HC_Open_Segment("/a");
    unicode.Set("title=abc");
    EXPECT_FALSE(unicode.Exists());
    EXPECT_FALSE(user.Exists());
    EXPECT_EQ(user.Show(), "");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
    user.Set("owner=ann");
    EXPECT_TRUE(unicode.Exists());
    HC_Close_Segment();
}

TEST_F(AttributeDescriptorTest, NumbersNeedEveryNumberOfTheirKind) {
    HoopsAttributeModellingMatrix matrix;
    HoopsAttributeWindow window;
    HoopsAttributeUserValue value;
    HC_Open_Segment("/a");
    matrix.Set("1 0 0 0 0 1 0 0 0 0 1 0 5 5 5");
    window.Set("-1 1 -1");
    value.Set("twelve");
    value.Set("99999999999999999999");
    EXPECT_FALSE(matrix.Exists());
    EXPECT_FALSE(window.Exists());
    EXPECT_FALSE(value.Exists());

    value.Set("9223372036854775807");
    EXPECT_EQ(value.Show(), "9223372036854775807");
    value.Set("-9223372036854775808 and more");
    EXPECT_EQ(value.Show(), "-9223372036854775808");
    HC_Close_Segment();
}

TEST_F(AttributeDescriptorTest, MatricesShowTheirNetProduct) {
    HoopsAttributeModellingMatrix matrix;
    HC_Open_Segment("/a");
    matrix.Set("1 0 0 0 0 1 0 0 0 0 1 0 1 0 0 1");
    HC_Open_Segment("b");
    matrix.Set("2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1");
    EXPECT_EQ(matrix.ShowNet(), "2.000000 0.000000 0.000000 0.000000 0.000000 2.000000 0.000000 "
                                "0.000000 0.000000 0.000000 2.000000 0.000000 1.000000 0.000000 "
                                "0.000000 1.000000");
    HC_Close_Segment();
    HC_Close_Segment();
}

} // namespace
