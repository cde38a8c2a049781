// The geometry functions of the C interface that insert and show items; each kind's layout is in
// docs/formats.md, "Geometry data".
#include <algorithm>
#include <climits>
#include <string>
#include <vector>

#include "hc/geometry_api_support.h"

using namespace hc;
using namespace hc::api;

namespace {

HC_KEY Insert(ContentKind type, ItemData data) {
    Geometry* item = Current().AddGeometry(CurrentSegmentOrReport(), type);
    if (!item) return 0;
    Assign(*item, std::move(data));
    return Current().KeyOf(item->slot);
}

HC_KEY InsertPointArray(ContentKind type, int count, const HC_POINT* points, int minimum) {
    if (!CheckArray(count, points, "points")) return 0;
    if (count < minimum) {
        ReportError("a " + std::string(TypeWord(type)) + " needs at least " +
                    std::to_string(minimum) + " points");
        return 0;
    }
    return Insert(type, {.points = std::vector<HC_POINT>(points, points + count)});
}

HC_KEY InsertTwoPoints(ContentKind type, double xa, double ya, double za, double xb, double yb,
                       double zb) {
    HC_POINT a = Point(xa, ya, za), b = Point(xb, yb, zb);
    bool unbounded = type != ContentKind::Line;
    if (unbounded && a.x == b.x && a.y == b.y && a.z == b.z) {
        ReportError("the two points are the same, so they give no direction");
        return 0;
    }
    return Insert(type, {.points = {a, b}});
}

HC_KEY InsertThreePoints(ContentKind type, const HC_POINT* first, const HC_POINT* second,
                         const HC_POINT* third, std::vector<float> values = {}) {
    if (!Given({first, second, third})) return 0;
    return Insert(type, {.points = {*first, *second, *third}, .values = std::move(values)});
}

// Missing weights are 1 each.
void AppendWeights(const float* weights, size_t count, std::vector<float>& values) {
    if (weights)
        values.insert(values.end(), weights, weights + count);
    else
        values.insert(values.end(), count, 1.0f);
}

// Missing knots are uniform: 0, 1, 2, ... Knots that decrease are reported.
bool AppendKnots(const float* knots, int count, std::vector<float>& values) {
    for (int i = 0; i < count; ++i) {
        if (knots && i > 0 && knots[i] < knots[i - 1]) {
            ReportError("knot " + std::to_string(i) + " is smaller than the one before it");
            return false;
        }
        values.push_back(knots ? knots[i] : static_cast<float>(i));
    }
    return true;
}

// Degree and control point count of one NURBS direction, reported when they do not match.
bool CheckNurbsCounts(int degree, int count) {
    if (count > INT_MAX / 2) {
        ReportError("too many control points");
        return false;
    }
    if (degree < 1 || count < static_cast<long long>(degree) + 1) {
        ReportError("degree " + std::to_string(degree) + " needs at least " +
                    std::to_string(static_cast<long long>(degree) + 1) + " control points, not " +
                    std::to_string(count));
        return false;
    }
    return true;
}

// Stored caps, reported when caps name none.
bool Caps(const char* caps, std::string& word) {
    word = CapsWord(Text(caps));
    if (word.empty())
        ReportError("caps must be none, first, second or both, not \"" + std::string(Text(caps)) +
                    "\"");
    return !word.empty();
}

// The largest number of bytes an image may hold: its words must fit an int count.
constexpr size_t kMaxImageBytes = size_t(INT_MAX - 2) * 4;

// --- Show helpers --------------------------------------------------------------------------------

void ShowTwoPoints(HC_KEY key, ContentKind type, float* xa, float* ya, float* za, float* xb,
                   float* yb, float* zb) {
    Geometry* item = GeometryOf(key, type);
    HC_POINT a = PointAt(item, 0), b = PointAt(item, 1);
    Put(xa, a.x), Put(ya, a.y), Put(za, a.z), Put(xb, b.x), Put(yb, b.y), Put(zb, b.z);
}

void ShowOnePoint(HC_KEY key, ContentKind type, float* x, float* y, float* z) {
    HC_POINT p = PointAt(GeometryOf(key, type), 0);
    Put(x, p.x), Put(y, p.y), Put(z, p.z);
}

void ShowThreePoints(HC_KEY key, ContentKind type, HC_POINT* first, HC_POINT* second,
                     HC_POINT* third) {
    Geometry* item = GeometryOf(key, type);
    Put(first, PointAt(item, 0)), Put(second, PointAt(item, 1)), Put(third, PointAt(item, 2));
}

void ShowPointArray(HC_KEY key, ContentKind type, int* count, HC_POINT* points) {
    Geometry* item = GeometryOf(key, type);
    size_t n = item ? item->points.size() : 0;
    Put(count, static_cast<int>(n));
    if (item) CopyArray(item->points, 0, n, points);
}

const ShellDetails* ShellDetailsOf(HC_KEY key) {
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    return shell ? DetailsOf(*shell) : nullptr;
}

} // namespace

extern "C" {

// --- Insert --------------------------------------------------------------------------------------

HC_KEY HC_Insert_Shell(int pointCount, const HC_POINT* points, int faceListLength,
                       const int* faceList) {
    HC_API(HC_Insert_Shell);
    if (!CheckArray(pointCount, points, "points") ||
        !CheckArray(faceListLength, faceList, "face list entries"))
        return 0;
    // Each face: a vertex count (negative for a hole), then that many point indices.
    std::string problem = FaceListProblem(faceList, faceListLength, pointCount);
    if (!problem.empty()) {
        ReportError(problem);
        return 0;
    }
    return Insert(ContentKind::Shell,
                  {.points = std::vector<HC_POINT>(points, points + pointCount),
                   .ints = std::vector<int>(faceList, faceList + faceListLength)});
}

HC_KEY HC_Insert_Polyline(int count, const HC_POINT* points) {
    HC_API(HC_Insert_Polyline);
    return InsertPointArray(ContentKind::Polyline, count, points, 2);
}

HC_KEY HC_Insert_Polygon(int count, const HC_POINT* points) {
    HC_API(HC_Insert_Polygon);
    return InsertPointArray(ContentKind::Polygon, count, points, 3);
}

HC_KEY HC_Insert_Line(double xa, double ya, double za, double xb, double yb, double zb) {
    HC_API(HC_Insert_Line);
    return InsertTwoPoints(ContentKind::Line, xa, ya, za, xb, yb, zb);
}

HC_KEY HC_Insert_Infinite_Line(double xa, double ya, double za, double xb, double yb, double zb) {
    HC_API(HC_Insert_Infinite_Line);
    return InsertTwoPoints(ContentKind::InfiniteLine, xa, ya, za, xb, yb, zb);
}

HC_KEY HC_Insert_Infinite_Ray(double xa, double ya, double za, double xb, double yb, double zb) {
    HC_API(HC_Insert_Infinite_Ray);
    return InsertTwoPoints(ContentKind::InfiniteRay, xa, ya, za, xb, yb, zb);
}

HC_KEY HC_Insert_Marker(double x, double y, double z) {
    HC_API(HC_Insert_Marker);
    return Insert(ContentKind::Marker, {.points = {Point(x, y, z)}});
}

HC_KEY HC_Insert_Text(double x, double y, double z, const char* text) {
    HC_API(HC_Insert_Text);
    if (Text(text).size() >= HC_TEXT_MAX) {
        ReportError("a text holds at most " + std::to_string(HC_TEXT_MAX - 1) + " bytes");
        return 0;
    }
    return Insert(ContentKind::Text, {.points = {Point(x, y, z)}, .text = std::string(Text(text))});
}

HC_KEY HC_Insert_Circle(const HC_POINT* first, const HC_POINT* second, const HC_POINT* third) {
    HC_API(HC_Insert_Circle);
    return InsertThreePoints(ContentKind::Circle, first, second, third);
}

HC_KEY HC_Insert_Circle_By_Radius(const HC_POINT* center, double radius, const HC_VECTOR* normal) {
    HC_API(HC_Insert_Circle_By_Radius);
    std::vector<HC_POINT> points;
    if (!CircleByRadius(center, radius, normal, points)) return 0;
    return Insert(ContentKind::Circle, {.points = std::move(points)});
}

HC_KEY HC_Insert_Circular_Arc(const HC_POINT* first, const HC_POINT* second,
                              const HC_POINT* third) {
    HC_API(HC_Insert_Circular_Arc);
    return InsertThreePoints(ContentKind::CircularArc, first, second, third);
}

HC_KEY HC_Insert_Circular_Chord(const HC_POINT* first, const HC_POINT* second,
                                const HC_POINT* third) {
    HC_API(HC_Insert_Circular_Chord);
    return InsertThreePoints(ContentKind::CircularChord, first, second, third);
}

HC_KEY HC_Insert_Circular_Wedge(const HC_POINT* first, const HC_POINT* second,
                                const HC_POINT* third) {
    HC_API(HC_Insert_Circular_Wedge);
    return InsertThreePoints(ContentKind::CircularWedge, first, second, third);
}

HC_KEY HC_Insert_Ellipse(const HC_POINT* center, const HC_POINT* major, const HC_POINT* minor) {
    HC_API(HC_Insert_Ellipse);
    return InsertThreePoints(ContentKind::Ellipse, center, major, minor);
}

HC_KEY HC_Insert_Elliptical_Arc(const HC_POINT* center, const HC_POINT* major,
                                const HC_POINT* minor, double start, double end) {
    HC_API(HC_Insert_Elliptical_Arc);
    return InsertThreePoints(ContentKind::EllipticalArc, center, major, minor,
                             {static_cast<float>(start), static_cast<float>(end)});
}

HC_KEY HC_Insert_Cutting_Plane(double a, double b, double c, double d) {
    HC_API(HC_Insert_Cutting_Plane);
    if (!CheckPlane(a, b, c)) return 0;
    return Insert(ContentKind::CuttingPlane,
                  {.values = {static_cast<float>(a), static_cast<float>(b), static_cast<float>(c),
                              static_cast<float>(d)}});
}

HC_KEY HC_Insert_NURBS_Curve(int degree, int controlPointCount, const HC_POINT* controlPoints,
                             const float* weights, const float* knots, double startU, double endU) {
    HC_API(HC_Insert_NURBS_Curve);
    if (!CheckArray(controlPointCount, controlPoints, "control points") ||
        !CheckNurbsCounts(degree, controlPointCount))
        return 0;
    std::vector<float> values;
    AppendWeights(weights, size_t(controlPointCount), values);
    if (!AppendKnots(knots, controlPointCount + degree + 1, values)) return 0;
    values.push_back(static_cast<float>(startU));
    values.push_back(static_cast<float>(endU));
    return Insert(ContentKind::NurbsCurve, {.points = std::vector<HC_POINT>(
                                                controlPoints, controlPoints + controlPointCount),
                                            .ints = {degree},
                                            .values = std::move(values)});
}

HC_KEY HC_Insert_NURBS_Surface(int uDegree, int vDegree, int uCount, int vCount,
                               const HC_POINT* controlPoints, const float* weights,
                               const float* uKnots, const float* vKnots) {
    HC_API(HC_Insert_NURBS_Surface);
    if (!CheckNurbsCounts(uDegree, uCount) || !CheckNurbsCounts(vDegree, vCount)) return 0;
    long long count = static_cast<long long>(uCount) * vCount;
    if (count > INT_MAX / 2) {
        ReportError("too many control points");
        return 0;
    }
    if (!CheckArray(count, controlPoints, "control points")) return 0;
    std::vector<float> values;
    AppendWeights(weights, size_t(count), values);
    if (!AppendKnots(uKnots, uCount + uDegree + 1, values) ||
        !AppendKnots(vKnots, vCount + vDegree + 1, values))
        return 0;
    return Insert(ContentKind::NurbsSurface,
                  {.points = std::vector<HC_POINT>(controlPoints, controlPoints + count),
                   .ints = {uDegree, vDegree, uCount, vCount},
                   .values = std::move(values)});
}

HC_KEY HC_Insert_Distant_Light(double dx, double dy, double dz) {
    HC_API(HC_Insert_Distant_Light);
    if (dx == 0 && dy == 0 && dz == 0) {
        ReportError("the direction is zero");
        return 0;
    }
    return Insert(ContentKind::DistantLight, {.points = {Point(dx, dy, dz)}});
}

HC_KEY HC_Insert_Local_Light(double x, double y, double z) {
    HC_API(HC_Insert_Local_Light);
    return Insert(ContentKind::LocalLight, {.points = {Point(x, y, z)}});
}

HC_KEY HC_Insert_Spot_Light(const HC_POINT* position, const HC_POINT* target, const char* options) {
    HC_API(HC_Insert_Spot_Light);
    if (!Given({position, target})) return 0;
    if (IsZero(ToVec(*target) - ToVec(*position))) {
        ReportError("the target is the position, so the light has no direction");
        return 0;
    }
    OptionList parsed;
    if (!OptionList::Parse(Text(options), parsed)) {
        ReportError("cannot understand the options \"" + std::string(Text(options)) + "\"");
        return 0;
    }
    return Insert(ContentKind::SpotLight,
                  {.points = {*position, *target}, .text = std::string(Trim(Text(options)))});
}

HC_KEY HC_Insert_Image(double x, double y, double z, const char* format, int width, int height,
                       const void* data) {
    HC_API(HC_Insert_Image);
    int pixelSize = PixelSize(Text(format));
    if (pixelSize == 0) {
        ReportError("unknown image format \"" + std::string(Text(format)) + "\"");
        return 0;
    }
    if (width < 0 || height < 0) {
        ReportError("the size " + std::to_string(width) + " x " + std::to_string(height) +
                    " is negative");
        return 0;
    }
    size_t pixels = size_t(width) * size_t(height);
    if (pixels > kMaxImageBytes / size_t(pixelSize)) {
        ReportError("the image is too large");
        return 0;
    }
    size_t bytes = pixels * size_t(pixelSize);
    if (!CheckArray(static_cast<long long>(bytes), data, "pixel bytes")) return 0;
    std::vector<int> ints{width, height};
    std::vector<int> packed = PackBytes(static_cast<const unsigned char*>(data), bytes);
    ints.insert(ints.end(), packed.begin(), packed.end());
    return Insert(ContentKind::Image, {.points = {Point(x, y, z)},
                                       .ints = std::move(ints),
                                       .text = std::string(Trim(Text(format)))});
}

HC_KEY HC_Insert_Mesh(int rows, int columns, const HC_POINT* points) {
    HC_API(HC_Insert_Mesh);
    if (rows < 2 || columns < 2) {
        ReportError("a mesh needs at least 2 rows and 2 columns, not " + std::to_string(rows) +
                    " x " + std::to_string(columns));
        return 0;
    }
    long long count = static_cast<long long>(rows) * columns;
    if (count > INT_MAX) {
        ReportError("the mesh has too many points");
        return 0;
    }
    if (!CheckArray(count, points, "points")) return 0;
    return Insert(ContentKind::Mesh, {.points = std::vector<HC_POINT>(points, points + count),
                                      .ints = {rows, columns}});
}

HC_KEY HC_Insert_Cylinder(const HC_POINT* first, const HC_POINT* second, double radius,
                          const char* caps) {
    HC_API(HC_Insert_Cylinder);
    std::string word;
    if (!Given({first, second}) || !Caps(caps, word)) return 0;
    if (radius < 0) {
        ReportError("the radius is negative");
        return 0;
    }
    return Insert(ContentKind::Cylinder, {.points = {*first, *second},
                                          .values = {static_cast<float>(radius)},
                                          .text = std::move(word)});
}

HC_KEY HC_Insert_PolyCylinder(int pointCount, const HC_POINT* points, int radiusCount,
                              const float* radii, const char* caps) {
    HC_API(HC_Insert_PolyCylinder);
    std::string word;
    if (!CheckArray(pointCount, points, "points") || !CheckArray(radiusCount, radii, "radii") ||
        !Caps(caps, word))
        return 0;
    if (pointCount < 2 || radiusCount < 1 || radiusCount > pointCount) {
        ReportError("a polycylinder needs at least 2 points and 1 to " +
                    std::to_string(pointCount) + " radii");
        return 0;
    }
    if (std::any_of(radii, radii + radiusCount, [](float r) { return r < 0; })) {
        ReportError("a radius is negative");
        return 0;
    }
    return Insert(ContentKind::PolyCylinder,
                  {.points = std::vector<HC_POINT>(points, points + pointCount),
                   .values = std::vector<float>(radii, radii + radiusCount),
                   .text = std::move(word)});
}

HC_KEY HC_Insert_Sphere(const HC_POINT* center, double radius, const HC_VECTOR* axis,
                        const HC_VECTOR* ortho) {
    HC_API(HC_Insert_Sphere);
    if (!Given({center, axis, ortho})) return 0;
    if (radius < 0) {
        ReportError("the radius is negative");
        return 0;
    }
    return Insert(ContentKind::Sphere,
                  {.points = {*center, *axis, *ortho}, .values = {static_cast<float>(radius)}});
}

HC_KEY HC_Insert_Grid(const char* type, const HC_POINT* origin, const HC_POINT* reference1,
                      const HC_POINT* reference2, int count1, int count2) {
    HC_API(HC_Insert_Grid);
    if (!Given({origin, reference1, reference2})) return 0;
    std::string word = GridType(Text(type));
    if (word.empty()) {
        ReportError("a grid is quadrilateral or radial, not \"" + std::string(Text(type)) + "\"");
        return 0;
    }
    if (count1 < 0 || count2 < 0) {
        ReportError("the grid counts " + std::to_string(count1) + ", " + std::to_string(count2) +
                    " are negative");
        return 0;
    }
    return Insert(ContentKind::Grid, {.points = {*origin, *reference1, *reference2},
                                      .ints = {count1, count2},
                                      .text = std::move(word)});
}

// --- Show ----------------------------------------------------------------------------------------

void HC_Show_Shell_Size(HC_KEY key, int* pointCount, int* faceListLength) {
    HC_API(HC_Show_Shell_Size);
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    Put(pointCount, shell ? static_cast<int>(shell->points.size()) : 0);
    Put(faceListLength, shell ? static_cast<int>(shell->ints.size()) : 0);
}

void HC_Show_Shell(HC_KEY key, int* pointCount, HC_POINT* points, int* faceListLength,
                   int* faceList) {
    HC_API(HC_Show_Shell);
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    Put(pointCount, shell ? static_cast<int>(shell->points.size()) : 0);
    Put(faceListLength, shell ? static_cast<int>(shell->ints.size()) : 0);
    if (!shell) return;
    CopyArray(shell->points, 0, shell->points.size(), points);
    CopyArray(shell->ints, 0, shell->ints.size(), faceList);
}

void HC_Show_Shell_Face_Count(HC_KEY key, int* faceCount) {
    HC_API(HC_Show_Shell_Face_Count);
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    Put(faceCount, shell ? FaceCount(shell->ints) : 0);
}

void HC_Show_Shell_Tristrip_Count(HC_KEY key, int* tristripCount) {
    HC_API(HC_Show_Shell_Tristrip_Count);
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    Put(tristripCount, shell ? TristripCount(shell->ints) : 0);
}

void HC_Show_Region_Range(HC_KEY key, int* lowest, int* highest) {
    HC_API(HC_Show_Region_Range);
    const ShellDetails* details = ShellDetailsOf(key);
    bool any = details && !details->regions.empty();
    Put(lowest, any ? *std::min_element(details->regions.begin(), details->regions.end()) : 0);
    Put(highest, any ? *std::max_element(details->regions.begin(), details->regions.end()) : 0);
}

void HC_Show_LOD_Type(HC_KEY key, int level, char* type) {
    HC_API(HC_Show_LOD_Type);
    CopyOut("", type);
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    if (!shell) return;
    if (level < 0 || level >= kLodLevels) {
        ReportError("level " + std::to_string(level) + " is not 0 to " +
                    std::to_string(kLodLevels - 1));
        return;
    }
    const ShellDetails* details = DetailsOf(*shell);
    bool set = details && size_t(level) < details->lodTypes.size() &&
               !details->lodTypes[size_t(level)].empty();
    CopyOut(set ? std::string_view(details->lodTypes[size_t(level)]) : "invalid", type);
}

void HC_Show_Polyline_Count(HC_KEY key, int* count) {
    HC_API(HC_Show_Polyline_Count);
    ShowPointArray(key, ContentKind::Polyline, count, nullptr);
}

void HC_Show_Polyline(HC_KEY key, int* count, HC_POINT* points) {
    HC_API(HC_Show_Polyline);
    ShowPointArray(key, ContentKind::Polyline, count, points);
}

void HC_Show_Polygon_Count(HC_KEY key, int* count) {
    HC_API(HC_Show_Polygon_Count);
    ShowPointArray(key, ContentKind::Polygon, count, nullptr);
}

void HC_Show_Polygon(HC_KEY key, int* count, HC_POINT* points) {
    HC_API(HC_Show_Polygon);
    ShowPointArray(key, ContentKind::Polygon, count, points);
}

void HC_Show_Line(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb, float* zb) {
    HC_API(HC_Show_Line);
    ShowTwoPoints(key, ContentKind::Line, xa, ya, za, xb, yb, zb);
}

void HC_Show_Infinite_Line(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb,
                           float* zb) {
    HC_API(HC_Show_Infinite_Line);
    ShowTwoPoints(key, ContentKind::InfiniteLine, xa, ya, za, xb, yb, zb);
}

void HC_Show_Infinite_Ray(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb,
                          float* zb) {
    HC_API(HC_Show_Infinite_Ray);
    ShowTwoPoints(key, ContentKind::InfiniteRay, xa, ya, za, xb, yb, zb);
}

void HC_Show_Marker(HC_KEY key, float* x, float* y, float* z) {
    HC_API(HC_Show_Marker);
    ShowOnePoint(key, ContentKind::Marker, x, y, z);
}

void HC_Show_Text(HC_KEY key, float* x, float* y, float* z, char* text) {
    HC_API(HC_Show_Text);
    Geometry* item = GeometryOf(key, ContentKind::Text);
    HC_POINT p = PointAt(item, 0);
    Put(x, p.x), Put(y, p.y), Put(z, p.z);
    CopyOut(item ? item->Text() : std::string(), text);
}

void HC_Show_Text_Length(HC_KEY key, int* length) {
    HC_API(HC_Show_Text_Length);
    Geometry* item = GeometryOf(key, ContentKind::Text);
    Put(length, item ? static_cast<int>(item->Text().size()) : 0);
}

void HC_Show_Circle(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third) {
    HC_API(HC_Show_Circle);
    ShowThreePoints(key, ContentKind::Circle, first, second, third);
}

void HC_Show_Circle_By_Radius(HC_KEY key, HC_POINT* center, float* radius, HC_VECTOR* normal) {
    HC_API(HC_Show_Circle_By_Radius);
    Geometry* circle = GeometryOf(key, ContentKind::Circle);
    CircleFrame frame;
    // Points on one line make no circle: it shows as its first point with no radius or normal.
    if (!circle ||
        !CircleThrough(PointAt(circle, 0), PointAt(circle, 1), PointAt(circle, 2), frame)) {
        frame = CircleFrame();
        frame.center = ToVec(PointAt(circle, 0));
    }
    Put(center, ToPoint(frame.center));
    Put(radius, static_cast<float>(frame.radius));
    Put(normal, ToPoint(frame.normal));
}

void HC_Show_Circular_Arc(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third) {
    HC_API(HC_Show_Circular_Arc);
    ShowThreePoints(key, ContentKind::CircularArc, first, second, third);
}

void HC_Show_Circular_Chord(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third) {
    HC_API(HC_Show_Circular_Chord);
    ShowThreePoints(key, ContentKind::CircularChord, first, second, third);
}

void HC_Show_Circular_Wedge(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third) {
    HC_API(HC_Show_Circular_Wedge);
    ShowThreePoints(key, ContentKind::CircularWedge, first, second, third);
}

void HC_Show_Ellipse(HC_KEY key, HC_POINT* center, HC_POINT* major, HC_POINT* minor) {
    HC_API(HC_Show_Ellipse);
    ShowThreePoints(key, ContentKind::Ellipse, center, major, minor);
}

void HC_Show_Elliptical_Arc(HC_KEY key, HC_POINT* center, HC_POINT* major, HC_POINT* minor,
                            float* start, float* end) {
    HC_API(HC_Show_Elliptical_Arc);
    Geometry* arc = GeometryOf(key, ContentKind::EllipticalArc);
    Put(center, PointAt(arc, 0)), Put(major, PointAt(arc, 1)), Put(minor, PointAt(arc, 2));
    Put(start, ValueAt(arc, 0)), Put(end, ValueAt(arc, 1));
}

void HC_Show_Cutting_Plane(HC_KEY key, float* a, float* b, float* c, float* d) {
    HC_API(HC_Show_Cutting_Plane);
    Geometry* plane = GeometryOf(key, ContentKind::CuttingPlane);
    Put(a, ValueAt(plane, 0)), Put(b, ValueAt(plane, 1)), Put(c, ValueAt(plane, 2));
    Put(d, ValueAt(plane, 3));
}

void HC_Show_NURBS_Curve_Size(HC_KEY key, int* degree, int* controlPointCount) {
    HC_API(HC_Show_NURBS_Curve_Size);
    Geometry* curve = GeometryOf(key, ContentKind::NurbsCurve);
    Put(degree, IntAt(curve, 0));
    Put(controlPointCount, curve ? static_cast<int>(curve->points.size()) : 0);
}

void HC_Show_NURBS_Curve(HC_KEY key, int* degree, int* controlPointCount, HC_POINT* controlPoints,
                         float* weights, float* knots, float* startU, float* endU) {
    HC_API(HC_Show_NURBS_Curve);
    Geometry* curve = GeometryOf(key, ContentKind::NurbsCurve);
    size_t n = curve ? curve->points.size() : 0;
    size_t knotCount = curve ? n + size_t(std::max(IntAt(curve, 0), 0)) + 1 : 0;
    Put(degree, IntAt(curve, 0));
    Put(controlPointCount, static_cast<int>(n));
    Put(startU, ValueAt(curve, n + knotCount));
    Put(endU, ValueAt(curve, n + knotCount + 1));
    if (!curve) return;
    CopyArray(curve->points, 0, n, controlPoints);
    CopyArray(curve->Values(), 0, n, weights);
    CopyArray(curve->Values(), n, knotCount, knots);
}

void HC_Show_NURBS_Surface_Size(HC_KEY key, int* uDegree, int* vDegree, int* uCount, int* vCount) {
    HC_API(HC_Show_NURBS_Surface_Size);
    Geometry* surface = GeometryOf(key, ContentKind::NurbsSurface);
    Put(uDegree, IntAt(surface, 0)), Put(vDegree, IntAt(surface, 1));
    Put(uCount, IntAt(surface, 2)), Put(vCount, IntAt(surface, 3));
}

void HC_Show_NURBS_Surface(HC_KEY key, int* uDegree, int* vDegree, int* uCount, int* vCount,
                           HC_POINT* controlPoints, float* weights, float* uKnots, float* vKnots) {
    HC_API(HC_Show_NURBS_Surface);
    Geometry* surface = GeometryOf(key, ContentKind::NurbsSurface);
    Put(uDegree, IntAt(surface, 0)), Put(vDegree, IntAt(surface, 1));
    Put(uCount, IntAt(surface, 2)), Put(vCount, IntAt(surface, 3));
    if (!surface || !CheckWellFormed(*surface)) return;
    size_t n = surface->points.size();
    size_t uKnotCount = size_t(surface->ints[2]) + size_t(surface->ints[0]) + 1;
    size_t vKnotCount = size_t(surface->ints[3]) + size_t(surface->ints[1]) + 1;
    CopyArray(surface->points, 0, n, controlPoints);
    CopyArray(surface->Values(), 0, n, weights);
    CopyArray(surface->Values(), n, uKnotCount, uKnots);
    CopyArray(surface->Values(), n + uKnotCount, vKnotCount, vKnots);
}

void HC_Show_Distant_Light(HC_KEY key, float* dx, float* dy, float* dz) {
    HC_API(HC_Show_Distant_Light);
    ShowOnePoint(key, ContentKind::DistantLight, dx, dy, dz);
}

void HC_Show_Local_Light(HC_KEY key, float* x, float* y, float* z) {
    HC_API(HC_Show_Local_Light);
    ShowOnePoint(key, ContentKind::LocalLight, x, y, z);
}

void HC_Show_Spot_Light(HC_KEY key, HC_POINT* position, HC_POINT* target, char* options) {
    HC_API(HC_Show_Spot_Light);
    Geometry* light = GeometryOf(key, ContentKind::SpotLight);
    Put(position, PointAt(light, 0)), Put(target, PointAt(light, 1));
    CopyOut(light ? light->Text() : std::string(), options);
}

void HC_Show_Image_Size(HC_KEY key, float* x, float* y, float* z, char* format, int* width,
                        int* height) {
    HC_API(HC_Show_Image_Size);
    HC_Show_Image(key, x, y, z, format, width, height, nullptr);
}

void HC_Show_Image(HC_KEY key, float* x, float* y, float* z, char* format, int* width, int* height,
                   void* data) {
    HC_API(HC_Show_Image);
    Geometry* image = GeometryOf(key, ContentKind::Image);
    HC_POINT p = PointAt(image, 0);
    Put(x, p.x), Put(y, p.y), Put(z, p.z);
    Put(width, IntAt(image, 0)), Put(height, IntAt(image, 1));
    CopyOut(image ? image->Text() : std::string(), format);
    if (image && data)
        UnpackBytes(image->ints, 2, ImageByteCount(*image), static_cast<unsigned char*>(data));
}

void HC_Show_Mesh_Size(HC_KEY key, int* rows, int* columns) {
    HC_API(HC_Show_Mesh_Size);
    Geometry* mesh = GeometryOf(key, ContentKind::Mesh);
    Put(rows, IntAt(mesh, 0)), Put(columns, IntAt(mesh, 1));
}

void HC_Show_Mesh(HC_KEY key, int* rows, int* columns, HC_POINT* points) {
    HC_API(HC_Show_Mesh);
    Geometry* mesh = GeometryOf(key, ContentKind::Mesh);
    int r = IntAt(mesh, 0), c = IntAt(mesh, 1);
    Put(rows, r), Put(columns, c);
    if (mesh && r > 0 && c > 0) CopyArray(mesh->points, 0, size_t(r) * size_t(c), points);
}

void HC_Show_Cylinder(HC_KEY key, HC_POINT* first, HC_POINT* second, float* radius, char* caps) {
    HC_API(HC_Show_Cylinder);
    Geometry* cylinder = GeometryOf(key, ContentKind::Cylinder);
    Put(first, PointAt(cylinder, 0)), Put(second, PointAt(cylinder, 1));
    Put(radius, ValueAt(cylinder, 0));
    CopyOut(cylinder ? cylinder->Text() : std::string(), caps);
}

void HC_Show_PolyCylinder_Counts(HC_KEY key, int* pointCount, int* radiusCount) {
    HC_API(HC_Show_PolyCylinder_Counts);
    HC_Show_PolyCylinder(key, pointCount, nullptr, radiusCount, nullptr, nullptr);
}

void HC_Show_PolyCylinder(HC_KEY key, int* pointCount, HC_POINT* points, int* radiusCount,
                          float* radii, char* caps) {
    HC_API(HC_Show_PolyCylinder);
    Geometry* item = GeometryOf(key, ContentKind::PolyCylinder);
    size_t n = item ? item->points.size() : 0;
    size_t r = item ? item->Values().size() : 0;
    Put(pointCount, static_cast<int>(n)), Put(radiusCount, static_cast<int>(r));
    CopyOut(item ? item->Text() : std::string(), caps);
    if (!item) return;
    CopyArray(item->points, 0, n, points);
    CopyArray(item->Values(), 0, r, radii);
}

void HC_Show_Sphere(HC_KEY key, HC_POINT* center, float* radius, HC_VECTOR* axis,
                    HC_VECTOR* ortho) {
    HC_API(HC_Show_Sphere);
    Geometry* sphere = GeometryOf(key, ContentKind::Sphere);
    Put(center, PointAt(sphere, 0)), Put(radius, ValueAt(sphere, 0));
    Put(axis, PointAt(sphere, 1)), Put(ortho, PointAt(sphere, 2));
}

void HC_Show_Grid(HC_KEY key, char* type, HC_POINT* origin, HC_POINT* reference1,
                  HC_POINT* reference2, int* count1, int* count2) {
    HC_API(HC_Show_Grid);
    Geometry* grid = GeometryOf(key, ContentKind::Grid);
    CopyOut(grid ? grid->Text() : std::string(), type);
    Put(origin, PointAt(grid, 0)), Put(reference1, PointAt(grid, 1));
    Put(reference2, PointAt(grid, 2));
    Put(count1, IntAt(grid, 0)), Put(count2, IntAt(grid, 1));
}

} // extern "C"
