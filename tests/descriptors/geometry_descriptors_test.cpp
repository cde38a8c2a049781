// Built with -Werror=switch: every geometry kind needs a sample item below.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "descriptor_test.h"

using namespace obsidra::descriptors;

namespace {

struct Item {
    HC_KEY (*insert)();
    const char* description;
};

const HC_POINT kP0{0, 0, 0}, kP1{1, 0, 0}, kP2{0, 1, 0}, kP3{1, 1, 0};

Item ItemOf(GeometryKind kind) {
    switch (kind) {
    case GeometryKind::Shell:
        return {InsertTriangle, "Points:3, 1 Faces in 1 Tristrips, LODS:0"};
    case GeometryKind::Polyline:
        return {[] {
                    HC_POINT points[] = {kP0, kP1, kP3};
                    return HC_Insert_Polyline(3, points);
                },
                "Points:3"};
    case GeometryKind::Marker:
        return {[] { return HC_Insert_Marker(1, 2, 3); }, ""};
    case GeometryKind::Circle:
        return {[] { return HC_Insert_Circle(&kP0, &kP1, &kP3); }, ""};
    case GeometryKind::Polygon:
        return {[] {
                    HC_POINT points[] = {kP0, kP1, kP3};
                    return HC_Insert_Polygon(3, points);
                },
                ""};
    case GeometryKind::CircularChord:
        return {[] { return HC_Insert_Circular_Chord(&kP1, &kP3, &kP2); }, ""};
    case GeometryKind::CircularArc:
        return {[] { return HC_Insert_Circular_Arc(&kP1, &kP3, &kP2); }, ""};
    case GeometryKind::CircularWedge:
        return {[] { return HC_Insert_Circular_Wedge(&kP1, &kP3, &kP2); }, ""};
    case GeometryKind::CuttingPlane:
        return {[] { return HC_Insert_Cutting_Plane(0, 0, 1, 0); }, ""};
    case GeometryKind::NurbsCurve:
        return {[] {
                    HC_POINT points[] = {kP0, kP1};
                    return HC_Insert_NURBS_Curve(1, 2, points, nullptr, nullptr, 0, 1);
                },
                ""};
    case GeometryKind::NurbsSurface:
        return {[] {
                    HC_POINT points[] = {kP0, kP1, kP2, kP3};
                    return HC_Insert_NURBS_Surface(1, 1, 2, 2, points, nullptr, nullptr, nullptr);
                },
                ""};
    case GeometryKind::DistantLight:
        return {[] { return HC_Insert_Distant_Light(1, 2.5, -3); }, "Position = (1, 2.5, -3)"};
    case GeometryKind::LocalLight:
        return {[] { return HC_Insert_Local_Light(1, 2, 3); }, ""};
    case GeometryKind::SpotLight:
        return {[] {
                    HC_POINT position{1, 2, 3};
                    return HC_Insert_Spot_Light(&position, &kP0, "");
                },
                " Position=(1.000000, 2.000000, 3.000000), Target=(0.000000, 0.000000, 0.000000)"};
    case GeometryKind::Text:
        return {[] { return HC_Insert_Text(1, 2, 3, "hello"); },
                "Position: 1.000000 2.000000 3.000000  Text: hello"};
    case GeometryKind::Image:
        return {[] {
                    const unsigned char pixels[6] = {};
                    return HC_Insert_Image(0, 0, 1, "rgb", 2, 1, pixels);
                },
                "Format: rgb, W:2 H:1, Pos: 0.000000 0.000000 1.000000"};
    case GeometryKind::Ellipse:
        return {[] { return HC_Insert_Ellipse(&kP0, &kP1, &kP2); }, ""};
    case GeometryKind::EllipticalArc:
        return {[] { return HC_Insert_Elliptical_Arc(&kP0, &kP1, &kP2, 0, 0.5); }, ""};
    case GeometryKind::Mesh:
        return {[] {
                    HC_POINT points[6] = {kP0, kP1, kP2, kP3, kP0, kP1};
                    return HC_Insert_Mesh(2, 3, points);
                },
                "Rows:2 Columns:3"};
    case GeometryKind::Cylinder:
        return {[] { return HC_Insert_Cylinder(&kP0, &kP1, 0.5, "both"); }, ""};
    case GeometryKind::PolyCylinder:
        return {[] {
                    HC_POINT points[] = {kP0, kP1, kP3};
                    float radii[] = {0.5f};
                    return HC_Insert_PolyCylinder(3, points, 1, radii, "none");
                },
                ""};
    case GeometryKind::Line:
        return {[] { return HC_Insert_Line(0, 0, 0, 1, 2, 3); },
                "Points: (0.000000, 0.000000, 0.000000), (1.000000, 2.000000, 3.000000)"};
    case GeometryKind::Sphere:
        return {[] {
                    HC_POINT center{1, 2, 3};
                    HC_VECTOR axis{0, 1, 0}, ortho{1, 0, 0};
                    return HC_Insert_Sphere(&center, 4, &axis, &ortho);
                },
                "Center:1.000000 2.000000 3.000000, Radius: 4.000000, Axis: 0.000000 1.000000 "
                "0.000000, Ortho: 1.000000 0.000000 0.000000"};
    case GeometryKind::Grid:
        return {[] { return HC_Insert_Grid("quadrilateral", &kP0, &kP1, &kP2, 3, 4); },
                "quadrilateral, 3 x 4"};
    case GeometryKind::InfiniteLine:
        return {[] { return HC_Insert_Infinite_Line(0, 0, 0, 1, 2, 3); },
                "Points: (0.000000, 0.000000, 0.000000), (1.000000, 2.000000, 3.000000)"};
    case GeometryKind::InfiniteRay:
        return {[] { return HC_Insert_Infinite_Ray(0, 0, 0, -1, 0, 0); },
                "Points: (0.000000, 0.000000, 0.000000), (-1.000000, 0.000000, 0.000000)"};
    }
    return {};
}

// A shell's points and face list.
std::pair<std::vector<HC_POINT>, std::vector<int>> ShellOf(HC_KEY shell) {
    int count = 0, length = 0;
    HC_Show_Shell_Size(shell, &count, &length);
    std::vector<HC_POINT> points(static_cast<size_t>(count));
    std::vector<int> faces(static_cast<size_t>(length));
    HC_Show_Shell(shell, &count, points.data(), &length, faces.data());
    return {points, faces};
}

std::string Color(HC_KEY item) {
    char color[HC_TEXT_MAX] = "";
    HC_Open_Geometry(item);
    if (HC_Show_Existence_By_Key(item, "color")) HC_Show_Color(color);
    HC_Close_Geometry();
    return color;
}

class GeometryDescriptorTest : public DescriptorTest {
protected:
    void SetUp() override {
        DescriptorTest::SetUp();
        HC_Open_Segment("/scene");
    }
    void TearDown() override {
        HC_Close_Segment();
        DescriptorTest::TearDown();
    }
};

TEST_F(GeometryDescriptorTest, EveryKindCountsAndDescribesItsItems) {
    // Spot lights are shown through the net modelling matrix; the identity keeps them in place.
    const float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    HC_Set_Modelling_Matrix(identity);
    GeometryList list = MakeGeometryList();
    ASSERT_EQ(list.size(), kGeometryKindCount);
    for (size_t i = 0; i < list.size(); ++i) {
        const GeometryInfo& info = kGeometryTable[i];
        SCOPED_TRACE(info.nameWord);
        EXPECT_EQ(list[i]->GetName(), info.nameWord);
        HC_Open_Segment(std::string(info.nameWord).c_str());
        EXPECT_EQ(list[i]->Count(), 0);
        const Item item = ItemOf(info.kind);
        HC_KEY key = item.insert();
        ASSERT_NE(key, 0);
        item.insert();
        EXPECT_EQ(list[i]->Count(), 2);
        EXPECT_EQ(list[i]->Describe(key), item.description);
        HC_Close_Segment();
    }
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

TEST_F(GeometryDescriptorTest, ShellDescriptionNamesRegionsLevelsAndDetails) {
    HoopsGeometryShell shell;
    HC_POINT points[] = {kP0, kP1, kP3, kP2};
    int faces[] = {3, 0, 1, 2, 3, 0, 2, 3, 4, 0, 1, 2, 3, 3, 1, 2, 3};
    HC_KEY key = HC_Insert_Shell(4, points, 17, faces);
    HC_Set_Face_Regions(key, 0, 4, 2);
    int tristrips = 0;
    HC_Show_Shell_Tristrip_Count(key, &tristrips);
    const std::string counts = "Points:4, 4 Faces in " + std::to_string(tristrips) + " Tristrips";
    EXPECT_EQ(shell.Describe(key), counts + ", LODS:0");

    for (int face = 0; face < 4; ++face)
        HC_Set_Face_Regions(key, face, 1, face);
    HC_Set_LOD_Type(key, 0, "triangles");
    HC_Set_LOD_Type(key, 5, "triangles");
    const char visible[] = {1};
    HC_MSet_Edge_Visibilities(key, 0, 1, visible);
    HC_POINT red{1, 0, 0};
    HC_MSet_Face_Colors_By_Value(key, 0, 1, &red);
    EXPECT_EQ(shell.Describe(key),
              counts + ", LODS:2, Regions: [0, 3] EdgeAttributes FaceAttributes");

    HC_VECTOR up{0, 0, 1};
    HC_MSet_Vertex_Normals(key, 0, 1, &up);
    EXPECT_EQ(shell.Describe(key),
              counts + ", LODS:2, Regions: [0, 3] VertexAttributes EdgeAttributes FaceAttributes");
}

// The edit window shows the shell's label and, below it, its points and faces.
std::string ShellEditText(HC_KEY key, const std::vector<HC_POINT>& points,
                          const std::vector<int>& faces) {
    HoopsGeometryShell shell;
    char text[64];
    std::snprintf(text, sizeof text, "%llX - ", static_cast<unsigned long long>(key));
    std::string edit = text + shell.Describe(key) + "\n";
    for (size_t i = 0; i < points.size(); ++i) {
        std::snprintf(text, sizeof text, "%f, %f, %f", double(points[i].x), double(points[i].y),
                      double(points[i].z));
        edit += text;
        if (i + 1 < points.size()) edit += ",     ";
    }
    edit += "\n";
    for (size_t i = 0; i < faces.size();) {
        int count = faces[i];
        edit += std::to_string(count) + ", ";
        for (int k = 1; k <= count && i + size_t(k) < faces.size(); ++k)
            edit += std::to_string(faces[i + size_t(k)]) + (k < count ? "," : "");
        i += size_t(count) + 1;
        if (i < faces.size()) edit += "   ";
    }
    return edit + "\n";
}

TEST_F(GeometryDescriptorTest, ShellEditReplacesPointsAndFacesOrNothing) {
    HoopsGeometryShell shell;
    HC_POINT points[] = {kP0, kP1, kP3, kP2};
    int faces[] = {3, 0, 1, 2, 3, 0, 2, 3};
    HC_KEY key = HC_Insert_Shell(4, points, 8, faces);

    std::vector<HC_POINT> moved = {{0, 0, 1}, {2, 0, 1}, {2, 2, 1}, {0, 2, -1.5f}};
    std::vector<int> turned = {3, 2, 1, 0, 3, 3, 2, 0};
    EXPECT_TRUE(shell.Edit(key, ShellEditText(key, moved, turned)));
    EXPECT_EQ(ShellOf(key), std::make_pair(moved, turned));

    EXPECT_TRUE(shell.Edit(key, "0 0 0, 1 0 0, 1 1 0, 0 1 0\n3 0 1 2 3 0 2 3 9 9 9"));
    EXPECT_EQ(ShellOf(key).second, std::vector<int>({3, 0, 1, 2, 3, 0, 2, 3}));

    const auto before = ShellOf(key);
    EXPECT_FALSE(shell.Edit(key, ShellEditText(key, moved, {3, 2, 1, 0, 3, 3, 2, 4})));
    EXPECT_FALSE(shell.Edit(key, ShellEditText(key, moved, {3, 2, 1, 0, 4, 3, 2, 0})));
    EXPECT_FALSE(shell.Edit(key, "1 2 3, 4 5 6"));
    EXPECT_FALSE(shell.Edit(key, "label\n0 0 0 1 0 0 1 1 0 0 1 0 3 0 1 2 3 0 2 x"));
    EXPECT_FALSE(shell.Edit(key, "0 0 0 1 0 0 1 1 0 0 1 0 3 0 1 2 3 0 2 2.5"));
    EXPECT_EQ(ShellOf(key), before);
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

TEST_F(GeometryDescriptorTest, PointEditsReadTheBracketedLinesOfTheEditWindow) {
    HC_POINT three[] = {kP0, kP1, kP3};
    HC_KEY polyline = HC_Insert_Polyline(3, three);
    EXPECT_TRUE(HoopsGeometryPolyline().Edit(
        polyline, "FFFFFFFFFFFFFFFE - Points:3\n<1.000000 2.000000 3.000000, 4.0 5.0 6.0>\n"));
    HC_POINT shown[3];
    int count = 0;
    HC_Show_Polyline(polyline, &count, shown);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(shown[1], (HC_POINT{4, 5, 6}));

    HC_KEY polygon = HC_Insert_Polygon(3, three);
    EXPECT_TRUE(HoopsGeometryPolygon().Edit(polygon, "x\n<0 0 0, 2 0 0, 2 2 0, 0 2 0>\n"));
    HC_Show_Polygon_Count(polygon, &count);
    EXPECT_EQ(count, 4);

    HC_KEY arc = HC_Insert_Circular_Arc(&kP1, &kP3, &kP2);
    EXPECT_TRUE(HoopsGeometryCircularArc().Edit(
        arc, "\n<2.000000 0.000000 0.000000, 0.000000 2.000000 0.000000, -2.000000 0.000000 "
             "0.000000>\n"));
    HC_POINT first, second, third;
    HC_Show_Circular_Arc(arc, &first, &second, &third);
    EXPECT_EQ(third, (HC_POINT{-2, 0, 0}));

    HC_KEY circle = HC_Insert_Circle(&kP0, &kP1, &kP3);
    EXPECT_TRUE(HoopsGeometryCircle().Edit(
        circle, "\n<Cenrter:1.000000 2.000000 3.000000, Radius:5.000000, Normal:0.000000 "
                "0.000000 1.000000>\n"));
    HC_POINT center;
    HC_VECTOR normal;
    float radius = 0;
    HC_Show_Circle_By_Radius(circle, &center, &radius, &normal);
    EXPECT_EQ(center, (HC_POINT{1, 2, 3}));
    EXPECT_FLOAT_EQ(radius, 5);

    HC_KEY plane = HC_Insert_Cutting_Plane(0, 0, 1, 0);
    EXPECT_TRUE(HoopsGeometryCuttingPlane().Edit(
        plane, "\n<a:0.000000, b:1.000000 c:0.000000, d:-2.000000>\n"));
    float a, b, c, d;
    HC_Show_Cutting_Plane(plane, &a, &b, &c, &d);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(d, -2);

    HC_KEY ellipse = HC_Insert_Elliptical_Arc(&kP0, &kP1, &kP2, 0.25, 0.5);
    EXPECT_TRUE(HoopsGeometryEllipticalArc().Edit(ellipse,
                                                  "\n<Cenrter:1 1 1, Major:3 1 1, Minor:1 2 1>\n"));
    HC_POINT major, minor;
    float start = 0, end = 0;
    HC_Show_Elliptical_Arc(ellipse, &center, &major, &minor, &start, &end);
    EXPECT_EQ(major, (HC_POINT{3, 1, 1}));
    EXPECT_FLOAT_EQ(start, 0.25f);
    EXPECT_FLOAT_EQ(end, 0.5f);

    HC_POINT grid[4] = {kP0, kP1, kP2, kP3};
    HC_KEY mesh = HC_Insert_Mesh(2, 2, grid);
    EXPECT_TRUE(
        HoopsGeometryMesh().Edit(mesh, "Rows:2 Columns:2\n<0 0 1, 1 0 1>\n<0 1 1, 1 1 7>\n"));
    HC_POINT meshPoints[4];
    int rows = 0, columns = 0;
    HC_Show_Mesh(mesh, &rows, &columns, meshPoints);
    EXPECT_EQ(meshPoints[3], (HC_POINT{1, 1, 7}));
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

TEST_F(GeometryDescriptorTest, PointEditsRefuseTextsThatDoNotRead) {
    HC_KEY arc = HC_Insert_Circular_Arc(&kP1, &kP3, &kP2);
    HoopsGeometryCircularArc arcs;
    EXPECT_FALSE(arcs.Edit(arc, "<1 0 0, 0 1 0>"));
    EXPECT_FALSE(arcs.Edit(arc, "<1 0 0, 0 1 0, -1 0 0"));
    EXPECT_FALSE(arcs.Edit(arc, "<1 0 0, 0 one 0, -1 0 0>"));
    EXPECT_FALSE(arcs.Edit(arc, "<1 0 0, 0 1 0, -1 0 1e39>"));
    EXPECT_FALSE(arcs.Edit(arc, "no points at all"));
    HC_POINT first, second, third;
    HC_Show_Circular_Arc(arc, &first, &second, &third);
    EXPECT_EQ(third, kP2);

    HC_POINT four[4] = {kP0, kP1, kP2, kP3};
    HC_KEY mesh = HC_Insert_Mesh(2, 2, four);
    EXPECT_FALSE(HoopsGeometryMesh().Edit(mesh, "<0 0 1, 1 0 1>\n<0 1 1>\n"));
    EXPECT_FALSE(HoopsGeometryMarker().Edit(HC_Insert_Marker(0, 0, 0), "<1 2 3>"));
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

TEST_F(GeometryDescriptorTest, TextEditReplacesTheStringAfterItsMark) {
    HoopsGeometryText text;
    HC_KEY key = HC_Insert_Text(0, 0, 0, "hello");
    std::string line = text.Describe(key);
    EXPECT_FALSE(text.Edit(key, "Position: 0 0 0  world"));
    EXPECT_EQ(text.Describe(key), line);

    EXPECT_TRUE(text.Edit(key, line.substr(0, line.find("hello")) + "a longer world"));
    char shown[HC_TEXT_MAX];
    HC_Show_Text(key, nullptr, nullptr, nullptr, shown);
    EXPECT_STREQ(shown, "a longer world");
    EXPECT_TRUE(text.Edit(key, "Text: "));
    HC_Show_Text(key, nullptr, nullptr, nullptr, shown);
    EXPECT_STREQ(shown, "");
}

TEST_F(GeometryDescriptorTest, LightsShowTheirOwnColourAndTakeANewOne) {
    HC_KEY distant = HC_Insert_Distant_Light(0, 0, -1);
    HC_KEY local = HC_Insert_Local_Light(1, 1, 1);
    HC_Set_Color("faces=blue");
    HC_Open_Geometry(distant);
    HC_Set_Color("red");
    HC_Close_Geometry();
    EXPECT_EQ(HoopsGeometryDistantLight().Describe(distant),
              "Color = \"red\", Position = (0, 0, -1)");
    EXPECT_EQ(HoopsGeometryLocalLight().Describe(local), "");

    EXPECT_TRUE(HoopsGeometryLocalLight().Edit(local, "Color: green\nsecond line"));
    EXPECT_EQ(HoopsGeometryLocalLight().Describe(local), "Color: green");
    EXPECT_FALSE(HoopsGeometryDistantLight().Edit(distant, "Color = \"yellow\""));
    EXPECT_EQ(Color(distant), "red");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

TEST_F(GeometryDescriptorTest, SpotLightIsShownInWorldCoordinates) {
    const float translate[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10, 20, 30, 1};
    const float scale[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
    HC_Set_Modelling_Matrix(translate);
    HC_Open_Segment("lamp");
    HC_Set_Modelling_Matrix(scale);
    HC_POINT position{1, 2, 3};
    HC_KEY spot = HC_Insert_Spot_Light(&position, &kP0, "concentration=2");
    HC_Close_Segment();

    HoopsGeometrySpotLight spots;
    EXPECT_EQ(spots.Describe(spot), " Position=(12.000000, 24.000000, 36.000000), "
                                    "Target=(10.000000, 20.000000, 30.000000), "
                                    "Options=concentration=2");
    EXPECT_TRUE(spots.Edit(spot, "Color: faces=red"));
    std::string described = spots.Describe(spot);
    EXPECT_EQ(described.substr(0, described.find("Position")), "Color: faces=red \n ");
    EXPECT_TRUE(spots.Edit(spot, described.replace(13, 3, "blue")));
    EXPECT_EQ(Color(spot), "faces=blue");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

} // namespace
