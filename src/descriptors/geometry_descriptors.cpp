#include "descriptors/geometry_descriptors.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <optional>
#include <vector>

#include "descriptors/descriptor_text.h"

using namespace obsidra::descriptors;

namespace {

// The levels of detail a shell may have.
constexpr int kLodLevels = 8;

std::vector<HC_POINT> Points(const std::vector<double>& numbers, size_t first, size_t count) {
    std::vector<HC_POINT> points(count);
    for (size_t i = 0; i < count; ++i) {
        const double* xyz = &numbers[first + 3 * i];
        points[i] = {float(xyz[0]), float(xyz[1]), float(xyz[2])};
    }
    return points;
}

// The bracketed numbers of an edit text when there are exactly count of them.
std::optional<std::vector<double>> Exactly(std::string_view text, size_t count) {
    std::optional<std::vector<double>> numbers = ReadBracketedNumbers(text);
    if (!numbers || numbers->size() != count) return std::nullopt;
    return numbers;
}

// The light's own colour, or empty when it has none.
std::string LightColor(HC_KEY key) {
    HC_Open_Geometry(key);
    std::string color = ExistenceHere("color") ? ShowText(HC_Show_Color) : std::string();
    HC_Close_Geometry();
    return color;
}

std::string LineText(void (*show)(HC_KEY, float*, float*, float*, float*, float*, float*),
                     HC_KEY key) {
    float xa = 0, ya = 0, za = 0, xb = 0, yb = 0, zb = 0;
    show(key, &xa, &ya, &za, &xb, &yb, &zb);
    return Format("Points: (%f, %f, %f), (%f, %f, %f)", double(xa), double(ya), double(za),
                  double(xb), double(yb), double(zb));
}

// --- Descriptions --------------------------------------------------------------------------------

std::string DescribeShell(HC_KEY key) {
    int points = 0, faceListLength = 0, faces = 0, tristrips = 0;
    HC_Show_Shell_Size(key, &points, &faceListLength);
    HC_Show_Shell_Face_Count(key, &faces);
    HC_Show_Shell_Tristrip_Count(key, &tristrips);
    int lods = 0;
    for (int level = 0; level < kLodLevels; ++level) {
        std::string type = ShowText([&](char* text) { HC_Show_LOD_Type(key, level, text); });
        if (!type.empty() && type != "invalid") ++lods;
    }
    std::string text =
        Format("Points:%d, %d Faces in %d Tristrips, LODS:%d", points, faces, tristrips, lods);
    int lowest = 0, highest = 0;
    HC_Show_Region_Range(key, &lowest, &highest);
    if (lowest != highest) AppendFormat(text, ", Regions: [%d, %d]", lowest, highest);
    if (HC_Show_Existence_By_Key(key, "vertex attributes"))
        AppendBounded(text, " VertexAttributes");
    if (HC_Show_Existence_By_Key(key, "edge attributes")) AppendBounded(text, " EdgeAttributes");
    if (HC_Show_Existence_By_Key(key, "face attributes")) AppendBounded(text, " FaceAttributes");
    return text;
}

std::string DescribePolyline(HC_KEY key) {
    int count = 0;
    HC_Show_Polyline_Count(key, &count);
    return Format("Points:%d", count);
}

std::string DescribeDistantLight(HC_KEY key) {
    std::string color = LightColor(key);
    float dx = 0, dy = 0, dz = 0;
    HC_Show_Distant_Light(key, &dx, &dy, &dz);
    std::string text = color.empty() ? std::string() : Format("Color = \"%s\", ", color.c_str());
    AppendFormat(text, "Position = (%g, %g, %g)", double(dx), double(dy), double(dz));
    return text;
}

std::string DescribeLocalLight(HC_KEY key) {
    std::string color = LightColor(key);
    return color.empty() ? std::string() : Format("Color: %s", color.c_str());
}

// The position and target in world coordinates: the owner's net modelling matrix applied.
std::string DescribeSpotLight(HC_KEY key) {
    std::string color = LightColor(key);
    std::string text = color.empty() ? std::string() : Format("Color: %s \n", color.c_str());
    float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    HC_Open_Segment_By_Key(HC_Show_Owner_Original_Key(key));
    HC_PShow_Net_Modelling_Matrix(0, nullptr, matrix);
    HC_Close_Segment();
    HC_POINT position{}, target{};
    char options[HC_TEXT_MAX] = "";
    HC_Show_Spot_Light(key, &position, &target, options);
    HC_POINT world[2]{};
    HC_Compute_Transformed_Points(1, &position, matrix, &world[0]);
    HC_Compute_Transformed_Points(1, &target, matrix, &world[1]);
    return Format("%s Position=(%f, %f, %f), Target=(%f, %f, %f)%s%s", text.c_str(),
                  double(world[0].x), double(world[0].y), double(world[0].z), double(world[1].x),
                  double(world[1].y), double(world[1].z), options[0] ? ", Options=" : "", options);
}

std::string DescribeText(HC_KEY key) {
    float x = 0, y = 0, z = 0;
    char text[HC_TEXT_MAX] = "";
    HC_Show_Text(key, &x, &y, &z, text);
    return Format("Position: %f %f %f  Text: %s", double(x), double(y), double(z), text);
}

std::string DescribeImage(HC_KEY key) {
    float x = 0, y = 0, z = 0;
    char format[HC_TEXT_MAX] = "";
    int width = 0, height = 0;
    HC_Show_Image_Size(key, &x, &y, &z, format, &width, &height);
    return Format("Format: %s, W:%d H:%d, Pos: %f %f %f", format, width, height, double(x),
                  double(y), double(z));
}

std::string DescribeMesh(HC_KEY key) {
    int rows = 0, columns = 0;
    HC_Show_Mesh_Size(key, &rows, &columns);
    return Format("Rows:%d Columns:%d", rows, columns);
}

std::string DescribeLine(HC_KEY key) {
    return LineText(HC_Show_Line, key);
}

std::string DescribeSphere(HC_KEY key) {
    HC_POINT center{};
    HC_VECTOR axis{}, ortho{};
    float radius = 0;
    HC_Show_Sphere(key, &center, &radius, &axis, &ortho);
    return Format("Center:%f %f %f, Radius: %f, Axis: %f %f %f, Ortho: %f %f %f", double(center.x),
                  double(center.y), double(center.z), double(radius), double(axis.x),
                  double(axis.y), double(axis.z), double(ortho.x), double(ortho.y),
                  double(ortho.z));
}

std::string DescribeGrid(HC_KEY key) {
    char type[HC_TEXT_MAX] = "";
    int count1 = 0, count2 = 0;
    HC_Show_Grid(key, type, nullptr, nullptr, nullptr, &count1, &count2);
    return Format("%s, %d x %d", type, count1, count2);
}

std::string DescribeInfiniteLine(HC_KEY key) {
    return LineText(HC_Show_Infinite_Line, key);
}

std::string DescribeInfiniteRay(HC_KEY key) {
    return LineText(HC_Show_Infinite_Ray, key);
}

// --- Edits ---------------------------------------------------------------------------------------

// A face list of loops, each a vertex count (negative for a hole) and that many indices of the
// shell's points.
bool FaceListFits(const std::vector<int>& faces, int pointCount) {
    for (size_t i = 0; i < faces.size();) {
        long long n = std::llabs(static_cast<long long>(faces[i]));
        if (n == 0 || i + 1 + size_t(n) > faces.size()) return false;
        for (size_t j = i + 1; j <= i + size_t(n); ++j)
            if (faces[j] < 0 || faces[j] >= pointCount) return false;
        i += size_t(n) + 1;
    }
    return true;
}

// The edit window shows the item's label on the first line and the shell's numbers below it;
// a first line that holds anything but numbers is that label.
bool EditShell(HC_KEY key, std::string_view text) {
    int pointCount = 0, faceListLength = 0;
    HC_Show_Shell_Size(key, &pointCount, &faceListLength);
    if (pointCount < 1) return false;
    size_t lineEnd = text.find('\n');
    if (!ReadNumberList(text.substr(0, lineEnd)))
        text = lineEnd == std::string_view::npos ? std::string_view() : text.substr(lineEnd + 1);
    std::optional<std::vector<double>> numbers = ReadNumberList(text);
    size_t pointNumbers = 3 * size_t(pointCount);
    if (!numbers || numbers->size() < pointNumbers + size_t(faceListLength)) return false;
    std::vector<int> faces;
    for (size_t i = pointNumbers; i < pointNumbers + size_t(faceListLength); ++i) {
        double entry = (*numbers)[i];
        if (entry != std::trunc(entry) || entry < INT_MIN || entry > INT_MAX) return false;
        faces.push_back(static_cast<int>(entry));
    }
    if (!FaceListFits(faces, pointCount)) return false;
    std::vector<HC_POINT> points = Points(*numbers, 0, size_t(pointCount));
    HC_Edit_Shell_Points(key, 0, pointCount, pointCount, points.data());
    if (faceListLength > 0) {
        int faceCount = 0;
        HC_Show_Shell_Face_Count(key, &faceCount);
        HC_Edit_Shell_Faces(key, 0, faceCount, faceListLength, faces.data());
    }
    return true;
}

template <void (*ShowCount)(HC_KEY, int*),
          void (*EditPoints)(HC_KEY, int, int, int, const HC_POINT*)>
bool EditPointList(HC_KEY key, std::string_view text) {
    std::optional<std::vector<double>> numbers = ReadBracketedNumbers(text);
    if (!numbers || numbers->empty() || numbers->size() % 3 != 0 || numbers->size() / 3 > INT_MAX)
        return false;
    int count = 0;
    ShowCount(key, &count);
    std::vector<HC_POINT> points = Points(*numbers, 0, numbers->size() / 3);
    EditPoints(key, 0, count, static_cast<int>(points.size()), points.data());
    return true;
}

bool EditCircle(HC_KEY key, std::string_view text) {
    std::optional<std::vector<double>> n = Exactly(text, 7);
    if (!n) return false;
    HC_POINT center = Points(*n, 0, 1)[0];
    HC_VECTOR normal = Points(*n, 4, 1)[0];
    HC_Edit_Circle_By_Radius(key, &center, (*n)[3], &normal);
    return true;
}

bool EditCircularArc(HC_KEY key, std::string_view text) {
    std::optional<std::vector<double>> n = Exactly(text, 9);
    if (!n) return false;
    std::vector<HC_POINT> p = Points(*n, 0, 3);
    HC_Edit_Circular_Arc(key, &p[0], &p[1], &p[2]);
    return true;
}

bool EditCuttingPlane(HC_KEY key, std::string_view text) {
    std::optional<std::vector<double>> n = Exactly(text, 4);
    if (!n) return false;
    HC_Edit_Cutting_Plane(key, (*n)[0], (*n)[1], (*n)[2], (*n)[3]);
    return true;
}

bool EditEllipticalArc(HC_KEY key, std::string_view text) {
    std::optional<std::vector<double>> n = Exactly(text, 9);
    if (!n) return false;
    float start = 0, end = 0;
    HC_Show_Elliptical_Arc(key, nullptr, nullptr, nullptr, &start, &end);
    std::vector<HC_POINT> p = Points(*n, 0, 3);
    HC_Edit_Elliptical_Arc(key, &p[0], &p[1], &p[2], start, end);
    return true;
}

bool EditMesh(HC_KEY key, std::string_view text) {
    int rows = 0, columns = 0;
    HC_Show_Mesh_Size(key, &rows, &columns);
    if (rows < 1 || columns < 1) return false;
    size_t count = size_t(rows) * size_t(columns);
    std::optional<std::vector<double>> n = Exactly(text, 3 * count);
    if (!n) return false;
    std::vector<HC_POINT> points = Points(*n, 0, count);
    HC_Edit_Mesh(key, 0, 0, rows, columns, points.data());
    return true;
}

bool EditText(HC_KEY key, std::string_view text) {
    constexpr std::string_view kMark = "Text: ";
    size_t at = text.find(kMark);
    if (at == std::string_view::npos) return false;
    char current[HC_TEXT_MAX] = "";
    HC_Show_Text(key, nullptr, nullptr, nullptr, current);
    HC_Edit_Text(key, 0, 0, static_cast<int>(std::strlen(current)),
                 std::string(text.substr(at + kMark.size())).c_str());
    return true;
}

// A spot light's description goes on after its colour's line, so the colour ends there.
bool EditLight(HC_KEY key, std::string_view text) {
    constexpr std::string_view kMark = "Color: ";
    size_t at = text.find(kMark);
    if (at == std::string_view::npos) return false;
    std::string_view color = text.substr(at + kMark.size());
    color = color.substr(0, color.find('\n'));
    HC_Open_Geometry(key);
    HC_Set_Color(std::string(color).c_str());
    HC_Close_Geometry();
    return true;
}

// --- The table -----------------------------------------------------------------------------------

struct GeometryCalls {
    GeometryKind kind;
    std::string (*describe)(HC_KEY);        // null: an empty description
    bool (*edit)(HC_KEY, std::string_view); // null: no edits
};

constexpr GeometryCalls kGeometryCalls[] = {
    {GeometryKind::Shell, DescribeShell, EditShell},
    {GeometryKind::Polyline, DescribePolyline,
     EditPointList<HC_Show_Polyline_Count, HC_Edit_Polyline>},
    {GeometryKind::Marker, nullptr, nullptr},
    {GeometryKind::Circle, nullptr, EditCircle},
    {GeometryKind::Polygon, nullptr, EditPointList<HC_Show_Polygon_Count, HC_Edit_Polygon>},
    {GeometryKind::CircularChord, nullptr, nullptr},
    {GeometryKind::CircularArc, nullptr, EditCircularArc},
    {GeometryKind::CircularWedge, nullptr, nullptr},
    {GeometryKind::CuttingPlane, nullptr, EditCuttingPlane},
    {GeometryKind::NurbsCurve, nullptr, nullptr},
    {GeometryKind::NurbsSurface, nullptr, nullptr},
    {GeometryKind::DistantLight, DescribeDistantLight, EditLight},
    {GeometryKind::LocalLight, DescribeLocalLight, EditLight},
    {GeometryKind::SpotLight, DescribeSpotLight, EditLight},
    {GeometryKind::Text, DescribeText, EditText},
    {GeometryKind::Image, DescribeImage, nullptr},
    {GeometryKind::Ellipse, nullptr, nullptr},
    {GeometryKind::EllipticalArc, nullptr, EditEllipticalArc},
    {GeometryKind::Mesh, DescribeMesh, EditMesh},
    {GeometryKind::Cylinder, nullptr, nullptr},
    {GeometryKind::PolyCylinder, nullptr, nullptr},
    {GeometryKind::Line, DescribeLine, nullptr},
    {GeometryKind::Sphere, DescribeSphere, nullptr},
    {GeometryKind::Grid, DescribeGrid, nullptr},
    {GeometryKind::InfiniteLine, DescribeInfiniteLine, nullptr},
    {GeometryKind::InfiniteRay, DescribeInfiniteRay, nullptr},
};

constexpr bool InKindOrder() {
    if (std::size(kGeometryCalls) != kGeometryKindCount) return false;
    for (size_t i = 0; i < kGeometryKindCount; ++i)
        if (kGeometryCalls[i].kind != kGeometryTable[i].kind) return false;
    return true;
}
static_assert(InKindOrder(), "one row per geometry kind, in the order of the kinds");

const GeometryCalls& CallsOf(GeometryKind kind) {
    return kGeometryCalls[static_cast<size_t>(kind)];
}

} // namespace

int HoopsGeometry::Count() {
    return HC_Show_Existence(std::string(GetName()).c_str());
}

std::string HoopsGeometry::Describe(HC_KEY) {
    return {};
}

bool HoopsGeometry::Edit(HC_KEY, std::string_view) {
    return false;
}

std::string_view GeometryKindDescriptor::GetName() const {
    return kGeometryTable[static_cast<size_t>(Kind())].nameWord;
}

std::string GeometryKindDescriptor::Describe(HC_KEY key) {
    const GeometryCalls& calls = CallsOf(Kind());
    return calls.describe ? calls.describe(key) : std::string();
}

bool GeometryKindDescriptor::Edit(HC_KEY key, std::string_view text) {
    const GeometryCalls& calls = CallsOf(Kind());
    return calls.edit && calls.edit(key, text);
}

namespace obsidra::descriptors {

std::unique_ptr<HoopsGeometry> MakeGeometry(GeometryKind kind) {
    switch (kind) {
#define OBSIDRA_CASE(Class, Kind, Word)                                                            \
    case GeometryKind::Kind: {                                                                     \
        static_assert(Class::kKind == GeometryKind::Kind);                                         \
        return std::make_unique<Class>();                                                          \
    }
        OBSIDRA_GEOMETRY_DESCRIPTORS(OBSIDRA_CASE)
#undef OBSIDRA_CASE
    }
    return nullptr;
}

} // namespace obsidra::descriptors
