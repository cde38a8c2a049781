#include <cctype>
#include <cmath>
#include <limits>
#include <ostream>
#include <tuple>

#include "hc/database.h"
#include "hc/geometry_bounds.h"
#include "hc/geometry_data.h"
#include "hc_test.h"

// Found by argument-dependent lookup, so outside the unnamed namespace; static keeps them to
// this file.
static bool operator==(const HC_POINT& a, const HC_POINT& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

static void PrintTo(const HC_POINT& p, std::ostream* out) {
    *out << "(" << p.x << ", " << p.y << ", " << p.z << ")";
}

namespace {

using Geometry = HcTest;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

void ExpectNear(const HC_POINT& actual, const HC_POINT& expected, const char* what) {
    EXPECT_NEAR(actual.x, expected.x, 1e-5) << what;
    EXPECT_NEAR(actual.y, expected.y, 1e-5) << what;
    EXPECT_NEAR(actual.z, expected.z, 1e-5) << what;
}

const hc::Geometry& Item(HC_KEY key) {
    return static_cast<const hc::Geometry&>(*hc::Current().Get(hc::Current().Resolve(key)));
}

const HC_POINT kA{0, 0, 0}, kB{1, 0, 0}, kC{0, 1, 0}, kD{1, 1, 0};
const HC_POINT kSquare[] = {kA, kB, kD, kC};

std::vector<HC_POINT> ShellPoints(HC_KEY key) {
    int count = 0;
    HC_Show_Shell_Size(key, &count, nullptr);
    std::vector<HC_POINT> points(static_cast<size_t>(count));
    HC_Show_Shell(key, nullptr, points.data(), nullptr, nullptr);
    return points;
}

std::vector<int> ShellFaces(HC_KEY key) {
    int length = 0;
    HC_Show_Shell_Size(key, nullptr, &length);
    std::vector<int> faces(static_cast<size_t>(length));
    HC_Show_Shell(key, nullptr, nullptr, nullptr, faces.data());
    return faces;
}

// A unit square of two triangles (0 1 2, 0 2 3) sharing the edge 0-2.
HC_KEY SquareShell() {
    int faces[] = {3, 0, 1, 2, 3, 0, 2, 3};
    return HC_Insert_Shell(4, kSquare, 8, faces);
}

// One item of every kind, by its type word.
struct KindRow {
    const char* word;
    HC_KEY (*insert)();
};
const KindRow kKinds[] = {
    {"shell", [] { return SquareShell(); }},
    {"polyline", [] { return HC_Insert_Polyline(3, kSquare); }},
    {"marker", [] { return HC_Insert_Marker(1, 2, 3); }},
    {"circle", [] { return HC_Insert_Circle(&kB, &kC, &kA); }},
    {"polygon", [] { return HC_Insert_Polygon(4, kSquare); }},
    {"circular chord", [] { return HC_Insert_Circular_Chord(&kB, &kD, &kC); }},
    {"circular arc", [] { return HC_Insert_Circular_Arc(&kB, &kD, &kC); }},
    {"circular wedge", [] { return HC_Insert_Circular_Wedge(&kB, &kD, &kC); }},
    {"cutting plane", [] { return HC_Insert_Cutting_Plane(0, 0, 1, -2); }},
    {"nurbs curve", [] { return HC_Insert_NURBS_Curve(2, 4, kSquare, nullptr, nullptr, 0, 1); }},
    {"nurbs surface",
     [] { return HC_Insert_NURBS_Surface(1, 1, 2, 2, kSquare, nullptr, nullptr, nullptr); }},
    {"distant light", [] { return HC_Insert_Distant_Light(0, 0, -1); }},
    {"local light", [] { return HC_Insert_Local_Light(1, 1, 1); }},
    {"spot light", [] { return HC_Insert_Spot_Light(&kA, &kB, "concentration=2"); }},
    {"text", [] { return HC_Insert_Text(1, 2, 3, "hello"); }},
    {"image",
     [] {
         unsigned char pixels[3] = {1, 2, 3};
         return HC_Insert_Image(0, 0, 0, "rgb", 1, 1, pixels);
     }},
    {"ellipse", [] { return HC_Insert_Ellipse(&kA, &kB, &kC); }},
    {"elliptical arc", [] { return HC_Insert_Elliptical_Arc(&kA, &kB, &kC, 0, 0.25); }},
    {"mesh", [] { return HC_Insert_Mesh(2, 2, kSquare); }},
    {"cylinder", [] { return HC_Insert_Cylinder(&kA, &kB, 0.5, "both"); }},
    {"polycylinder",
     [] {
         float radius = 0.25f;
         return HC_Insert_PolyCylinder(3, kSquare, 1, &radius, "none");
     }},
    {"line", [] { return HC_Insert_Line(0, 0, 0, 1, 1, 1); }},
    {"sphere", [] { return HC_Insert_Sphere(&kD, 2, &kC, &kB); }},
    {"grid", [] { return HC_Insert_Grid("quadrilateral", &kA, &kB, &kC, 2, 3); }},
    {"infinite line", [] { return HC_Insert_Infinite_Line(0, 0, 0, 1, 0, 0); }},
    {"infinite ray", [] { return HC_Insert_Infinite_Ray(0, 0, 0, 0, 1, 0); }},
};

TEST_F(Geometry, EveryKindIsCountedSearchedAndStoredWellFormed) {
    for (const KindRow& row : kKinds) {
        SCOPED_TRACE(row.word);
        HC_Open_Segment(("/" + std::string(row.word)).c_str());
        HC_KEY first = row.insert();
        HC_KEY second = row.insert();
        ASSERT_NE(first, 0);
        EXPECT_EQ(Type(first), row.word);
        EXPECT_EQ(HC_Show_Existence(row.word), 2);
        std::string upper = row.word;
        std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
        EXPECT_EQ(HC_Show_Existence(upper.c_str()), 2);
        EXPECT_EQ(HC_Show_Existence("geometry"), 2);
        auto items = List(".", row.word);
        ASSERT_EQ(items.size(), 2u);
        EXPECT_EQ(items[0], std::make_pair(std::string(row.word), first));
        EXPECT_EQ(items[1].second, second);
        EXPECT_TRUE(hc::IsWellFormed(Item(first)));
        HC_Close_Segment();
    }
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
    HC_Open_Segment("/");
    EXPECT_EQ(List("...", "geometry").size(), 2 * std::size(kKinds));
    HC_Close_Segment();
}

TEST_F(Geometry, PointKindsComeBack) {
    for (auto [insert, count, show] :
         {std::tuple{&HC_Insert_Polyline, &HC_Show_Polyline_Count, &HC_Show_Polyline},
          std::tuple{&HC_Insert_Polygon, &HC_Show_Polygon_Count, &HC_Show_Polygon}}) {
        HC_KEY key = insert(4, kSquare);
        int n = 0;
        count(key, &n);
        ASSERT_EQ(n, 4);
        HC_POINT points[4];
        show(key, &n, points);
        EXPECT_TRUE(std::equal(points, points + 4, kSquare));
    }

    // Lines, distant lights, spheres and the like come back in the geometry descriptors' tests.
    float x, y, z;
    HC_Show_Marker(HC_Insert_Marker(7, 8, 9), &x, &y, &z);
    EXPECT_EQ((HC_POINT{x, y, z}), (HC_POINT{7, 8, 9}));
    HC_Show_Local_Light(HC_Insert_Local_Light(4, 5, 6), &x, &y, &z);
    EXPECT_EQ((HC_POINT{x, y, z}), (HC_POINT{4, 5, 6}));

    HC_POINT position, target;
    char options[HC_TEXT_MAX];
    HC_Show_Spot_Light(HC_Insert_Spot_Light(&kA, &kD, " outer cone=30 "), &position, &target,
                       options);
    EXPECT_EQ(position, kA);
    EXPECT_EQ(target, kD);
    EXPECT_STREQ(options, "outer cone=30");

    char text[HC_TEXT_MAX];
    int length = 0;
    HC_KEY label = HC_Insert_Text(1, 2, 3, "label");
    HC_Show_Text(label, &x, &y, &z, text);
    HC_Show_Text_Length(label, &length);
    EXPECT_EQ((HC_POINT{x, y, z}), (HC_POINT{1, 2, 3}));
    EXPECT_STREQ(text, "label");
    EXPECT_EQ(length, 5);
}

TEST_F(Geometry, CirclesAndArcsKeepThreePointsAndConvertByRadius) {
    HC_POINT center{1, 2, 3};
    HC_VECTOR normal{0, 0, 2};
    HC_KEY circle = HC_Insert_Circle_By_Radius(&center, 0.5, &normal);
    HC_POINT shownCenter, shownNormal;
    float radius = 0;
    HC_Show_Circle_By_Radius(circle, &shownCenter, &radius, &shownNormal);
    ExpectNear(shownCenter, center, "centre");
    EXPECT_NEAR(radius, 0.5, 1e-6);
    ExpectNear(shownNormal, {0, 0, 1}, "the normal, made unit");

    // Three points on the unit circle, running counter-clockwise about +z.
    HC_KEY threePoint = HC_Insert_Circle(&kB, &kC, &kA);
    HC_Show_Circle_By_Radius(threePoint, &shownCenter, &radius, &shownNormal);
    ExpectNear(shownCenter, {0.5f, 0.5f, 0}, "centre");
    EXPECT_NEAR(radius, std::sqrt(0.5), 1e-6);
    ExpectNear(shownNormal, {0, 0, 1}, "normal");

    using Show = void (*)(HC_KEY, HC_POINT*, HC_POINT*, HC_POINT*);
    for (auto [key, show] :
         {std::pair{threePoint, Show{&HC_Show_Circle}},
          std::pair{HC_Insert_Circular_Arc(&kB, &kC, &kA), Show{&HC_Show_Circular_Arc}},
          std::pair{HC_Insert_Circular_Chord(&kB, &kC, &kA), Show{&HC_Show_Circular_Chord}},
          std::pair{HC_Insert_Circular_Wedge(&kB, &kC, &kA), Show{&HC_Show_Circular_Wedge}},
          std::pair{HC_Insert_Ellipse(&kB, &kC, &kA), Show{&HC_Show_Ellipse}}}) {
        HC_POINT p[3];
        show(key, &p[0], &p[1], &p[2]);
        EXPECT_EQ(p[0], kB);
        EXPECT_EQ(p[1], kC);
        EXPECT_EQ(p[2], kA);
    }
    HC_POINT p[3];
    float start = 0, end = 0;
    HC_Show_Elliptical_Arc(HC_Insert_Elliptical_Arc(&kA, &kB, &kC, 0.125, 0.75), &p[0], &p[1],
                           &p[2], &start, &end);
    EXPECT_EQ(p[1], kB);
    EXPECT_EQ(std::make_pair(start, end), std::make_pair(0.125f, 0.75f));
}

TEST_F(Geometry, SolidsPlanesAndGridsComeBack) {
    HC_POINT first, second;
    float radius = 0;
    char text[HC_TEXT_MAX];
    HC_Show_Cylinder(HC_Insert_Cylinder(&kA, &kB, 0.5, "FIRST"), &first, &second, &radius, text);
    EXPECT_EQ(first, kA);
    EXPECT_EQ(radius, 0.5f);
    EXPECT_STREQ(text, "first");

    float radii[] = {0.1f, 0.2f};
    HC_KEY tube = HC_Insert_PolyCylinder(3, kSquare, 2, radii, nullptr);
    int pointCount = 0, radiusCount = 0;
    HC_Show_PolyCylinder_Counts(tube, &pointCount, &radiusCount);
    EXPECT_EQ(std::make_pair(pointCount, radiusCount), std::make_pair(3, 2));
    float shownRadii[2];
    HC_Show_PolyCylinder(tube, nullptr, nullptr, nullptr, shownRadii, text);
    EXPECT_EQ(shownRadii[1], 0.2f);
    EXPECT_STREQ(text, "both") << "no caps given means both";

    float a, b, c, d;
    HC_Show_Cutting_Plane(HC_Insert_Cutting_Plane(1, 0, 0, -4), &a, &b, &c, &d);
    EXPECT_EQ((std::vector<float>{a, b, c, d}), (std::vector<float>{1, 0, 0, -4}));

    HC_POINT origin, r1, r2;
    int count1 = 0, count2 = 0;
    HC_Show_Grid(HC_Insert_Grid("Radial", &kA, &kB, &kC, 4, 12), text, &origin, &r1, &r2, &count1,
                 &count2);
    EXPECT_STREQ(text, "radial");
    EXPECT_EQ(r2, kC);
    EXPECT_EQ(std::make_pair(count1, count2), std::make_pair(4, 12));
}

TEST_F(Geometry, NurbsKeepWeightsAndKnotsOrMakeThemUniform) {
    float weights[] = {1, 2, 2, 1};
    float knots[] = {0, 0, 0, 0.5f, 1, 1, 1};
    HC_KEY given = HC_Insert_NURBS_Curve(2, 4, kSquare, weights, knots, 0.25, 0.75);
    HC_KEY uniform = HC_Insert_NURBS_Curve(2, 4, kSquare, nullptr, nullptr, 0, 1);
    int degree = 0, count = 0;
    HC_Show_NURBS_Curve_Size(given, &degree, &count);
    ASSERT_EQ(std::make_pair(degree, count), std::make_pair(2, 4));
    HC_POINT points[4];
    float shownWeights[4], shownKnots[7], start, end;
    HC_Show_NURBS_Curve(given, nullptr, nullptr, points, shownWeights, shownKnots, &start, &end);
    EXPECT_TRUE(std::equal(points, points + 4, kSquare));
    EXPECT_TRUE(std::equal(weights, weights + 4, shownWeights));
    EXPECT_TRUE(std::equal(knots, knots + 7, shownKnots));
    EXPECT_EQ(std::make_pair(start, end), std::make_pair(0.25f, 0.75f));
    HC_Show_NURBS_Curve(uniform, nullptr, nullptr, nullptr, shownWeights, shownKnots, nullptr,
                        nullptr);
    EXPECT_EQ(std::vector<float>(shownWeights, shownWeights + 4), std::vector<float>(4, 1));
    EXPECT_EQ(std::vector<float>(shownKnots, shownKnots + 7),
              (std::vector<float>{0, 1, 2, 3, 4, 5, 6}));

    float vKnots[] = {0, 0, 1, 1};
    HC_POINT six[6] = {kA, kB, kC, kD, kA, kB};
    HC_KEY surface = HC_Insert_NURBS_Surface(2, 1, 3, 2, six, nullptr, nullptr, vKnots);
    int uDegree, vDegree, uCount, vCount;
    HC_Show_NURBS_Surface_Size(surface, &uDegree, &vDegree, &uCount, &vCount);
    EXPECT_EQ((std::vector<int>{uDegree, vDegree, uCount, vCount}), (std::vector<int>{2, 1, 3, 2}));
    float uShown[6], vShown[4];
    HC_Show_NURBS_Surface(surface, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, uShown,
                          vShown);
    EXPECT_EQ(uShown[5], 5);
    EXPECT_TRUE(std::equal(vKnots, vKnots + 4, vShown));
}

TEST_F(Geometry, ImagesKeepFormatSizeAndEveryPixelByte) {
    unsigned char pixels[2 * 3 * 3];
    for (size_t i = 0; i < sizeof pixels; ++i)
        pixels[i] = static_cast<unsigned char>(250 + i); // wraps past 255
    HC_KEY image = HC_Insert_Image(1, 2, 3, "RGB, name=tiles", 2, 3, pixels);
    float x, y, z;
    char format[HC_TEXT_MAX];
    int width = 0, height = 0;
    HC_Show_Image_Size(image, &x, &y, &z, format, &width, &height);
    EXPECT_EQ((HC_POINT{x, y, z}), (HC_POINT{1, 2, 3}));
    EXPECT_STREQ(format, "RGB, name=tiles");
    EXPECT_EQ(std::make_pair(width, height), std::make_pair(2, 3));
    unsigned char shown[sizeof pixels + 1];
    shown[sizeof pixels] = 77;
    HC_Show_Image(image, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, shown);
    EXPECT_TRUE(std::equal(pixels, pixels + sizeof pixels, shown));
    EXPECT_EQ(shown[sizeof pixels], 77) << "nothing written past the pixels";
}

TEST_F(Geometry, ShellCountsFacesStripsRegionsAndLevels) {
    struct {
        const char* what;
        std::vector<int> faces;
        int faceCount, strips;
    } const rows[] = {
        {"two triangles sharing an edge", {3, 0, 1, 2, 3, 0, 2, 3}, 2, 1},
        {"a quadrilateral", {4, 0, 1, 2, 3}, 1, 1},
        {"a face with a hole", {4, 0, 1, 2, 3, -3, 0, 1, 2}, 1, 1},
        {"triangles that share nothing", {3, 0, 1, 2, 3, 3, 4, 5}, 2, 2},
        {"a fan of three", {3, 0, 1, 2, 3, 0, 2, 3, 3, 0, 3, 4}, 3, 1},
        {"a fan of four", {3, 0, 1, 2, 3, 0, 2, 3, 3, 0, 3, 4, 3, 0, 4, 5}, 4, 2},
        {"a strip of three", {3, 0, 1, 2, 3, 1, 2, 3, 3, 2, 3, 4}, 3, 1},
        {"no faces", {}, 0, 0},
    };
    HC_POINT points[6] = {};
    for (const auto& row : rows) {
        HC_KEY shell = HC_Insert_Shell(6, points, int(row.faces.size()), row.faces.data());
        int faces = -1, strips = -1;
        HC_Show_Shell_Face_Count(shell, &faces);
        HC_Show_Shell_Tristrip_Count(shell, &strips);
        EXPECT_EQ(faces, row.faceCount) << row.what;
        EXPECT_EQ(strips, row.strips) << row.what;
    }

    int strip[] = {3, 0, 1, 2, 3, 1, 2, 3, 3, 2, 3, 4};
    HC_KEY shell = HC_Insert_Shell(6, points, 12, strip);
    int lowest = -1, highest = -1;
    HC_Show_Region_Range(shell, &lowest, &highest);
    EXPECT_EQ(std::make_pair(lowest, highest), std::make_pair(0, 0)) << "no regions";
    HC_Set_Face_Regions(shell, 0, 3, 2);
    HC_Show_Region_Range(shell, &lowest, &highest);
    EXPECT_EQ(std::make_pair(lowest, highest), std::make_pair(2, 2)) << "a single region";
    HC_Set_Face_Regions(shell, 1, 1, 0);
    HC_Set_Face_Regions(shell, 2, 1, 3);
    HC_Show_Region_Range(shell, &lowest, &highest);
    EXPECT_EQ(std::make_pair(lowest, highest), std::make_pair(0, 3));

    auto levels = [shell] {
        std::vector<std::string> types;
        char type[HC_TEXT_MAX];
        for (int level = 0; level < 8; ++level) {
            HC_Show_LOD_Type(shell, level, type);
            types.push_back(type);
        }
        return types;
    };
    EXPECT_EQ(levels(), std::vector<std::string>(8, "invalid"));
    HC_Set_LOD_Type(shell, 1, "triangle strips");
    HC_Set_LOD_Type(shell, 7, " decimated ");
    auto set = levels();
    EXPECT_EQ(set[1], "triangle strips");
    EXPECT_EQ(set[7], "decimated");
    EXPECT_EQ(std::count(set.begin(), set.end(), "invalid"), 6);
    HC_Set_LOD_Type(shell, 7, "INVALID");
    EXPECT_EQ(levels()[7], "invalid");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

TEST_F(Geometry, VertexEdgeAndFaceAttributesAnswerExistence) {
    HC_KEY shell = SquareShell();
    const char* words[] = {"vertex attributes", "edge attributes", "face attributes"};
    auto present = [&] {
        std::vector<int> counts;
        for (const char* word : words)
            counts.push_back(HC_Show_Existence_By_Key(shell, word));
        return counts;
    };
    EXPECT_EQ(present(), (std::vector<int>{0, 0, 0}));
    HC_VECTOR normal{0, 0, 1};
    HC_MSet_Vertex_Normals(shell, 3, 1, &normal);
    EXPECT_EQ(present(), (std::vector<int>{1, 0, 0}));
    char visible[] = {1, 0};
    HC_MSet_Edge_Visibilities(shell, 4, 2, visible);
    HC_POINT red{1, 0, 0};
    HC_MSet_Face_Colors_By_Value(shell, 1, 1, &red);
    EXPECT_EQ(present(), (std::vector<int>{1, 1, 1}));
    EXPECT_EQ(HC_Show_Existence_By_Key(shell, "VERTEX ATTRIBUTES, Face Attributes"), 2);
    EXPECT_EQ(HC_Show_Existence("vertex attributes"), 0) << "a segment has none";
    hc::Geometry copy(hc::ContentKind::Shell);
    hc::CopyGeometryData(Item(shell), copy);
    std::vector<std::string> unknown;
    EXPECT_EQ(hc::CountDetails(copy, hc::Filter::Parse("vertex attributes, edge attributes, "
                                                       "face attributes",
                                                       unknown)),
              3);
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});

    // Deleting point 1 takes face 0 (0 1 2) with it; face 1 (now 0 1 2) keeps its colour and its
    // edges, the normal moves with point 3.
    HC_Edit_Shell_Points(shell, 1, 1, 0, nullptr);
    EXPECT_EQ(ShellFaces(shell), (std::vector<int>{3, 0, 1, 2}));
    EXPECT_EQ(present(), (std::vector<int>{1, 1, 1}));
    HC_Edit_Shell_Faces(shell, 0, 1, 0, nullptr);
    EXPECT_EQ(present(), (std::vector<int>{1, 0, 0})) << "no faces, so no edges";
    HC_Edit_Shell_Points(shell, 2, 1, 0, nullptr);
    EXPECT_EQ(present(), (std::vector<int>{0, 0, 0}));
    EXPECT_FALSE(Item(shell).extras) << "a shell without details is back to its small size";
}

TEST_F(Geometry, ShellPointEditsRenumberTheFaces) {
    struct {
        const char* what;
        int offset, deleteCount, insertCount;
        std::vector<int> faces;
        size_t points;
    } const rows[] = {
        {"replace in place", 1, 2, 2, {3, 0, 1, 2, 3, 0, 2, 3}, 4},
        {"insert before the last", 3, 0, 2, {3, 0, 1, 2, 3, 0, 2, 5}, 6},
        {"delete the last", 3, 1, 0, {3, 0, 1, 2}, 3},
        {"replace two by one: the second goes with its face", 0, 2, 1, {3, 0, 1, 2}, 3},
        {"append", 4, 0, 1, {3, 0, 1, 2, 3, 0, 2, 3}, 5},
    };
    HC_POINT extra[2] = {{5, 5, 5}, {6, 6, 6}};
    for (const auto& row : rows) {
        HC_KEY shell = SquareShell();
        HC_Edit_Shell_Points(shell, row.offset, row.deleteCount, row.insertCount, extra);
        EXPECT_EQ(ShellFaces(shell), row.faces) << row.what;
        auto points = ShellPoints(shell);
        ASSERT_EQ(points.size(), row.points) << row.what;
        if (row.insertCount > 0) {
            EXPECT_EQ(points[size_t(row.offset)], extra[0]) << row.what;
        }
    }
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

TEST_F(Geometry, ShellFaceEditsReplaceWholeFacesWithTheirHoles) {
    HC_POINT points[8] = {};
    int faces[] = {4, 0, 1, 2, 3, -3, 4, 5, 6, 3, 0, 1, 7};
    HC_KEY shell = HC_Insert_Shell(8, points, 13, faces);
    HC_Set_Face_Regions(shell, 1, 1, 5);
    int triangle[] = {3, 1, 2, 7};
    HC_Edit_Shell_Faces(shell, 0, 1, 4, triangle);
    EXPECT_EQ(ShellFaces(shell), (std::vector<int>{3, 1, 2, 7, 3, 0, 1, 7}));
    int lowest, highest;
    HC_Show_Region_Range(shell, &lowest, &highest);
    EXPECT_EQ(std::make_pair(lowest, highest), std::make_pair(0, 5)) << "the region stays";
    HC_Edit_Shell_Faces(shell, 2, 0, 4, triangle);
    int count = 0;
    HC_Show_Shell_Face_Count(shell, &count);
    EXPECT_EQ(count, 3) << "appended";
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

TEST_F(Geometry, PolylineAndPolygonEditsSplice) {
    HC_POINT insert[2] = {{9, 9, 9}, {8, 8, 8}};
    for (auto [insertItem, edit, show] :
         {std::tuple{&HC_Insert_Polyline, &HC_Edit_Polyline, &HC_Show_Polyline},
          std::tuple{&HC_Insert_Polygon, &HC_Edit_Polygon, &HC_Show_Polygon}}) {
        HC_KEY key = insertItem(4, kSquare);
        edit(key, 1, 2, 2, insert);
        edit(key, 4, 0, 1, insert);
        edit(key, 0, 1, 0, nullptr);
        int count = 0;
        HC_POINT points[8];
        show(key, &count, points);
        EXPECT_EQ(std::vector<HC_POINT>(points, points + count),
                  (std::vector<HC_POINT>{insert[0], insert[1], kC, insert[0]}));
    }
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

TEST_F(Geometry, WholeItemEditsKeepTheKey) {
    HC_KEY circle = HC_Insert_Circle(&kB, &kC, &kA);
    HC_POINT center{0, 0, 5};
    HC_VECTOR normal{1, 0, 0};
    HC_Edit_Circle_By_Radius(circle, &center, 2, &normal);
    HC_POINT shownCenter, shownNormal;
    float radius;
    HC_Show_Circle_By_Radius(circle, &shownCenter, &radius, &shownNormal);
    ExpectNear(shownCenter, center, "centre");
    EXPECT_NEAR(radius, 2, 1e-5);
    ExpectNear(shownNormal, normal, "normal");
    HC_Edit_Circle(circle, &kA, &kB, &kD);
    HC_POINT p[3];
    HC_Show_Circle(circle, &p[0], &p[1], &p[2]);
    EXPECT_EQ(p[2], kD);

    HC_KEY arc = HC_Insert_Circular_Arc(&kA, &kB, &kD);
    HC_Edit_Circular_Arc(arc, &kD, &kC, &kA);
    HC_Show_Circular_Arc(arc, &p[0], nullptr, nullptr);
    EXPECT_EQ(p[0], kD);

    HC_KEY elliptical = HC_Insert_Elliptical_Arc(&kA, &kB, &kC, 0, 0.5);
    HC_Edit_Elliptical_Arc(elliptical, &kD, &kB, &kC, 0.5, 1);
    float start, end;
    HC_Show_Elliptical_Arc(elliptical, &p[0], nullptr, nullptr, &start, &end);
    EXPECT_EQ(p[0], kD);
    EXPECT_EQ(std::make_pair(start, end), std::make_pair(0.5f, 1.0f));

    HC_KEY plane = HC_Insert_Cutting_Plane(1, 0, 0, 0);
    HC_Edit_Cutting_Plane(plane, 0, 1, 0, 3);
    float a, b, c, d;
    HC_Show_Cutting_Plane(plane, &a, &b, &c, &d);
    EXPECT_EQ((std::vector<float>{a, b, c, d}), (std::vector<float>{0, 1, 0, 3}));

    HC_POINT grid[6], shown[6];
    for (int i = 0; i < 6; ++i)
        grid[i] = shown[i] = {float(i), 0, 0};
    HC_KEY mesh = HC_Insert_Mesh(3, 2, grid);
    HC_POINT block[2] = {{7, 7, 7}, {8, 8, 8}};
    HC_Edit_Mesh(mesh, 1, 1, 2, 1, block); // rows 1 and 2 of column 1
    shown[3] = block[0];
    shown[5] = block[1];
    int rows = 0, columns = 0;
    HC_Show_Mesh_Size(mesh, &rows, &columns);
    EXPECT_EQ(std::make_pair(rows, columns), std::make_pair(3, 2));
    HC_Show_Mesh(mesh, nullptr, nullptr, grid);
    EXPECT_TRUE(std::equal(grid, grid + 6, shown));

    // The text descriptor's edit: delete the whole string at row 0, column 0, insert the new.
    HC_KEY text = HC_Insert_Text(0, 0, 0, "old words");
    HC_Edit_Text(text, 0, 4, 5, "news");
    HC_Edit_Text(text, 0, 0, 0, "the ");
    char shownText[HC_TEXT_MAX];
    HC_Show_Text(text, nullptr, nullptr, nullptr, shownText);
    EXPECT_STREQ(shownText, "the old news");
    // Shows of a dead key would have been reported.
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

TEST_F(Geometry, MisuseIsReportedAndChangesNothing) {
    HC_KEY shell = SquareShell();
    HC_KEY polyline = HC_Insert_Polyline(2, kSquare);
    HC_KEY text = HC_Insert_Text(0, 0, 0, "abc");
    HC_KEY mesh = HC_Insert_Mesh(2, 2, kSquare);
    HC_KEY line = HC_Insert_Line(0, 0, 0, 1, 1, 1);
    static HC_KEY s, p, t, m, l;
    s = shell, p = polyline, t = text, m = mesh, l = line;
    struct {
        void (*call)();
        const char* message;
    } const rows[] = {
        {[] { HC_Insert_Polygon(-1, kSquare); },
         "HC_Insert_Polygon: the count -1 of points is negative"},
        {[] { HC_Insert_Polygon(2, kSquare); },
         "HC_Insert_Polygon: a polygon needs at least 3 points"},
        {[] { HC_Insert_Mesh(2, 2, nullptr); },
         "HC_Insert_Mesh: no points are given for a count of 4"},
        {[] { HC_Insert_Mesh(1, 5, kSquare); },
         "HC_Insert_Mesh: a mesh needs at least 2 rows and 2 columns, not 1 x 5"},
        {[] { HC_Insert_Circle(&kA, nullptr, &kB); }, "HC_Insert_Circle: a point argument is null"},
        {[] { HC_Insert_Circle_By_Radius(&kA, -1, &kB); },
         "HC_Insert_Circle_By_Radius: the radius is negative"},
        {[] { HC_Insert_Circle_By_Radius(&kA, 1, &kA); },
         "HC_Insert_Circle_By_Radius: the normal is zero"},
        {[] { HC_Insert_Cutting_Plane(0, 0, 0, 1); },
         "HC_Insert_Cutting_Plane: the plane's normal (a, b, c) is zero"},
        {[] { HC_Insert_Infinite_Ray(1, 1, 1, 1, 1, 1); },
         "HC_Insert_Infinite_Ray: the two points are the same, so they give no direction"},
        {[] { HC_Insert_NURBS_Curve(3, 3, kSquare, nullptr, nullptr, 0, 1); },
         "HC_Insert_NURBS_Curve: degree 3 needs at least 4 control points, not 3"},
        {[] {
             float knots[] = {0, 1, 0.5f, 2, 3, 4};
             HC_Insert_NURBS_Curve(1, 4, kSquare, nullptr, knots, 0, 1);
         },
         "HC_Insert_NURBS_Curve: knot 2 is smaller than the one before it"},
        {[] { HC_Insert_Image(0, 0, 0, "jpeg", 1, 1, "x"); },
         "HC_Insert_Image: unknown image format \"jpeg\""},
        {[] { HC_Insert_Image(0, 0, 0, "rgba", 2, 2, nullptr); },
         "HC_Insert_Image: no pixel bytes are given for a count of 16"},
        {[] {
             float radii[] = {1, 1, 1, 1, 1};
             HC_Insert_PolyCylinder(4, kSquare, 5, radii, "both");
         },
         "HC_Insert_PolyCylinder: a polycylinder needs at least 2 points and 1 to 4 radii"},
        {[] { HC_Insert_Cylinder(&kA, &kB, 1, "top"); },
         "HC_Insert_Cylinder: caps must be none, first, second or both, not \"top\""},
        {[] { HC_Insert_Grid("hexagonal", &kA, &kB, &kC, 1, 1); },
         "HC_Insert_Grid: a grid is quadrilateral or radial, not \"hexagonal\""},
        {[] { HC_Insert_Text(0, 0, 0, std::string(HC_TEXT_MAX, 'x').c_str()); },
         "HC_Insert_Text: a text holds at most 4095 bytes"},
        {[] { HC_Show_Circle(l, nullptr, nullptr, nullptr); },
         "HC_Show_Circle: key FFFFFFFFFFFFFFF9 is not a circle"},
        {[] { HC_Set_Face_Regions(s, 1, 2, 0); },
         "HC_Set_Face_Regions: faces 1 to 3 do not lie within the 2 there are"},
        {[] { HC_MSet_Vertex_Normals(s, 0, 2, nullptr); },
         "HC_MSet_Vertex_Normals: no normals are given for a count of 2"},
        {[] { HC_MSet_Edge_Visibilities(s, 6, 1, "\1"); },
         "HC_MSet_Edge_Visibilities: edges 6 to 7 do not lie within the 6 there are"},
        {[] { HC_Set_LOD_Type(s, 8, "x"); }, "HC_Set_LOD_Type: level 8 is not 0 to 7"},
        {[] { HC_Edit_Shell_Points(s, 2, 3, 0, nullptr); },
         "HC_Edit_Shell_Points: points 2 to 5 do not lie within the 4 there are"},
        {[] {
             int faces[] = {3, 0, 1, 4};
             HC_Edit_Shell_Faces(s, 0, 1, 4, faces);
         },
         "HC_Edit_Shell_Faces: inserted face list entry 3 names no point"},
        {[] {
             int faces[] = {3, 0, 1};
             HC_Edit_Shell_Faces(s, 0, 1, 3, faces);
         },
         "HC_Edit_Shell_Faces: inserted face list entry 0 does not fit the list"},
        {[] { HC_Edit_Shell_Faces(s, -1, 1, 0, nullptr); },
         "HC_Edit_Shell_Faces: faces -1 to 0 do not lie within the 2 there are"},
        {[] { HC_Edit_Polyline(p, 0, 1, 0, nullptr); },
         "HC_Edit_Polyline: at least 2 points must remain, not 1"},
        {[] { HC_Edit_Polyline(p, 0, 0, -2, kSquare); },
         "HC_Edit_Polyline: the count -2 of points is negative"},
        {[] { HC_Edit_Mesh(m, 1, 0, 2, 1, kSquare); },
         "HC_Edit_Mesh: rows 1 to 3 do not lie within the 2 there are"},
        {[] { HC_Edit_Text(t, 1, 0, 0, "x"); },
         "HC_Edit_Text: a text has one row, row 0, not row 1"},
        {[] { HC_Edit_Text(t, 0, 2, 2, "x"); },
         "HC_Edit_Text: characters 2 to 4 do not lie within the 3 there are"},
        {[] { HC_Edit_Circle(l, &kA, &kB, &kC); },
         "HC_Edit_Circle: key FFFFFFFFFFFFFFF9 is not a circle"},
        {[] { HC_Show_Shell_Size(-123456, nullptr, nullptr); },
         "HC_Show_Shell_Size: invalid key FFFFFFFFFFFE1DC0"},
    };
    for (const auto& row : rows) {
        row.call();
        auto errors = TakeErrors();
        ASSERT_EQ(errors.size(), 1u) << row.message;
        EXPECT_EQ(errors[0], row.message);
    }
    EXPECT_EQ(HC_Show_Existence("geometry"), 5) << "no failed insert made an item";
    EXPECT_EQ(ShellFaces(shell), (std::vector<int>{3, 0, 1, 2, 3, 0, 2, 3}));
    EXPECT_EQ(ShellPoints(shell).size(), 4u);
    EXPECT_FALSE(Item(shell).extras) << "no detail was half set";
    EXPECT_EQ(Item(polyline).points.size(), 2u);
    EXPECT_EQ(Item(text).Text(), "abc");
}

TEST_F(Geometry, NotANumberIsStoredAndShowsDoNotNeedEveryPointer) {
    HC_POINT odd{kNaN, 0, 0};
    HC_KEY circle = HC_Insert_Circle(&odd, &kB, &kC);
    HC_KEY marker = HC_Insert_Marker(kNaN, 1, 2);
    ASSERT_NE(circle, 0);
    ASSERT_NE(marker, 0);
    float x = 0;
    HC_Show_Marker(marker, &x, nullptr, nullptr);
    EXPECT_TRUE(std::isnan(x));
    HC_Show_Circle_By_Radius(circle, nullptr, nullptr, nullptr);
    HC_POINT min, max;
    EXPECT_FALSE(hc::LocalBounds(Item(marker), min, max)) << "its one point is not a number";
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

TEST_F(Geometry, LocalBoundsPerKind) {
    // An arc of the unit circle about the origin from 30 to 60 degrees.
    const float c30 = std::sqrt(3.0f) / 2, s45 = std::sqrt(0.5f);
    const HC_POINT kFrom{c30, 0.5f, 0}, kThrough{s45, s45, 0}, kTo{0.5f, c30, 0};
    const float kHi = 0.5f + std::sqrt(0.5f), kLo = 0.5f - std::sqrt(0.5f);
    HC_KEY sphere = HC_Insert_Sphere(&kD, 2, &kC, &kB);
    struct {
        const char* what;
        HC_KEY key;
        HC_POINT min, max;
    } const rows[] = {
        {"shell", SquareShell(), {0, 0, 0}, {1, 1, 0}},
        {"circle, three points", HC_Insert_Circle(&kB, &kC, &kA), {kLo, kLo, 0}, {kHi, kHi, 0}},
        {"half arc", HC_Insert_Circular_Arc(&kB, &kD, &kC), {0, 0, 0}, {kHi, kHi, 0}},
        {"3/4 arc, clockwise", HC_Insert_Circular_Arc(&kB, &kC, &kD), {kLo, kLo, 0}, {1, kHi, 0}},
        {"chord", HC_Insert_Circular_Chord(&kFrom, &kThrough, &kTo), {.5, .5, 0}, {c30, c30, 0}},
        {"wedge: its centre", HC_Insert_Circular_Wedge(&kFrom, &kThrough, &kTo), {}, {c30, c30, 0}},
        {"ellipse", HC_Insert_Ellipse(&kA, &kB, &kC), {-1, -1, 0}, {1, 1, 0}},
        {"elliptical arc, 1/4-1/2",
         HC_Insert_Elliptical_Arc(&kA, &kB, &kC, .25, .5),
         {-1, 0, 0},
         {0, 1, 0}},
        {"sphere", sphere, {-1, -1, -2}, {3, 3, 2}},
        {"cylinder along x", HC_Insert_Cylinder(&kA, &kB, .5, "both"), {0, -.5, -.5}, {1, .5, .5}},
        {"grid", HC_Insert_Grid("quadrilateral", &kA, &kB, &kC, 2, 3), {0, 0, 0}, {2, 3, 0}},
        {"radial grid", HC_Insert_Grid("radial", &kA, &kB, &kC, 2, 8), {-2, -2, 0}, {2, 2, 0}},
        {"text at its position", HC_Insert_Text(1, 2, 3, "wide"), {1, 2, 3}, {1, 2, 3}},
        {"nurbs: its points",
         HC_Insert_NURBS_Curve(2, 4, kSquare, nullptr, nullptr, 0, 1),
         {},
         {1, 1, 0}},
    };
    HC_POINT min, max;
    for (const auto& row : rows) {
        ASSERT_TRUE(hc::LocalBounds(Item(row.key), min, max)) << row.what;
        ExpectNear(min, row.min, row.what);
        ExpectNear(max, row.max, row.what);
    }
    for (HC_KEY unbounded :
         {HC_Insert_Grid("quadrilateral", &kA, &kB, &kC, 0, 3), HC_Insert_Distant_Light(0, 0, 1),
          HC_Insert_Spot_Light(&kA, &kB, ""), HC_Insert_Cutting_Plane(0, 0, 1, 0),
          HC_Insert_Infinite_Line(0, 0, 0, 1, 0, 0), HC_Insert_Infinite_Ray(0, 0, 0, 1, 0, 0)})
        EXPECT_FALSE(hc::LocalBounds(Item(unbounded), min, max)) << Type(unbounded);
    float radii[] = {1, 0.5f};
    HC_POINT ends[2] = {kA, {0, 0, 4}};
    ASSERT_TRUE(hc::LocalBounds(Item(HC_Insert_PolyCylinder(2, ends, 2, radii, "")), min, max));
    ExpectNear(min, {-1, -1, 0}, "polycylinder");
    ExpectNear(max, {1, 1, 4}, "polycylinder");

    HC_POINT center;
    float radius = 0;
    EXPECT_TRUE(hc::LocalSphere(Item(sphere), center, radius));
    EXPECT_EQ(center, kD);
    EXPECT_EQ(radius, 2);
    EXPECT_FALSE(hc::LocalSphere(Item(rows[0].key), center, radius));
}

} // namespace
