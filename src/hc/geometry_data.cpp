#include "hc/geometry_data.h"

#include <algorithm>
#include <numbers>

#include "hc/text.h"

namespace hc {

// --- Circles -------------------------------------------------------------------------------------

bool CircleThrough(const HC_POINT& a, const HC_POINT& b, const HC_POINT& c, CircleFrame& frame) {
    Vec pa = ToVec(a);
    Vec ab = ToVec(b) - pa;
    Vec ac = ToVec(c) - pa;
    Vec n = Cross(ab, ac);
    double n2 = Dot(n, n);
    if (!(n2 > 0) || !std::isfinite(n2)) return false;
    Vec offset = (Cross(n, ab) * Dot(ac, ac) + Cross(ac, n) * Dot(ab, ab)) * (1 / (2 * n2));
    frame.center = pa + offset;
    frame.radius = Length(offset);
    if (!(frame.radius > 0)) return false;
    frame.normal = n * (1 / std::sqrt(n2));
    frame.u = offset * (-1 / frame.radius);
    frame.v = Cross(frame.normal, frame.u);
    Vec toC = ToVec(c) - frame.center;
    double angle = std::atan2(Dot(toC, frame.v), Dot(toC, frame.u));
    frame.sweep = angle > 0 ? angle : angle + 2 * std::numbers::pi;
    return true;
}

std::vector<HC_POINT> CirclePoints(const HC_POINT& center, double radius, const HC_VECTOR& normal) {
    Vec n = ToVec(normal);
    n = n * (1 / Length(n));
    // Crossing with the axis least along the normal keeps u well away from zero.
    Vec axis = std::abs(n.x) <= std::abs(n.y) && std::abs(n.x) <= std::abs(n.z) ? Vec{1, 0, 0}
               : std::abs(n.y) <= std::abs(n.z)                                 ? Vec{0, 1, 0}
                                                                                : Vec{0, 0, 1};
    Vec u = Cross(axis, n);
    u = u * (radius / Length(u));
    Vec v = Cross(n, u);
    Vec c = ToVec(center);
    return {ToPoint(c + u), ToPoint(c + v), ToPoint(c - u)};
}

// --- Face lists ----------------------------------------------------------------------------------

std::vector<FaceLoop> FaceLoops(const std::vector<int>& faceList) {
    std::vector<FaceLoop> loops;
    const long long length = static_cast<long long>(faceList.size());
    for (long long i = 0; i < length;) {
        long long n = faceList[i] < 0 ? -static_cast<long long>(faceList[i]) : faceList[i];
        if (n == 0 || i + 1 + n > length) break;
        loops.push_back({static_cast<int>(i), static_cast<int>(n), faceList[i] < 0});
        i += n + 1;
    }
    return loops;
}

std::string FaceListProblem(const int* faceList, int length, int pointCount) {
    for (long long i = 0; i < length;) {
        long long n = faceList[i] < 0 ? -static_cast<long long>(faceList[i]) : faceList[i];
        if (n == 0 || i + 1 + n > length)
            return "face list entry " + std::to_string(i) + " does not fit the list";
        for (long long j = i + 1; j <= i + n; ++j)
            if (faceList[j] < 0 || faceList[j] >= pointCount)
                return "face list entry " + std::to_string(j) + " names no point";
        i += n + 1;
    }
    return {};
}

int FaceCount(const std::vector<int>& faceList) {
    int faces = 0;
    for (const FaceLoop& loop : FaceLoops(faceList))
        faces += loop.hole ? 0 : 1;
    return faces;
}

int EdgeCount(const std::vector<int>& faceList) {
    int edges = 0;
    for (const FaceLoop& loop : FaceLoops(faceList))
        edges += loop.count;
    return edges;
}

int TristripCount(const std::vector<int>& faceList) {
    std::vector<FaceLoop> loops = FaceLoops(faceList);
    int strips = 0;
    int length = 0;   // triangles in the current strip
    int lone[3] = {}; // the strip's triangle while it has one
    int tail[2] = {}; // the strip's last edge once it has more
    for (size_t i = 0; i < loops.size(); ++i) {
        if (loops[i].hole) continue;
        bool hasHoles = i + 1 < loops.size() && loops[i + 1].hole;
        if (loops[i].count != 3 || hasHoles) {
            ++strips;
            length = 0;
            continue;
        }
        const int* v = &faceList[loops[i].position + 1];
        auto has = [v](int vertex) { return v[0] == vertex || v[1] == vertex || v[2] == vertex; };
        int shared[2] = {};
        bool extends = false;
        if (length == 1) {
            for (int k = 0; k < 3 && !extends; ++k) {
                shared[0] = lone[k];
                shared[1] = lone[(k + 1) % 3];
                extends = shared[0] != shared[1] && has(shared[0]) && has(shared[1]);
            }
        } else if (length > 1) {
            shared[0] = tail[0];
            shared[1] = tail[1];
            extends = shared[0] != shared[1] && has(shared[0]) && has(shared[1]);
        }
        if (!extends) {
            ++strips;
            length = 1;
            std::copy(v, v + 3, lone);
            continue;
        }
        int third = v[2];
        for (int k = 0; k < 3; ++k)
            if (v[k] != shared[0] && v[k] != shared[1]) third = v[k];
        tail[0] = shared[1];
        tail[1] = third;
        ++length;
    }
    return strips;
}

// --- Shell details -------------------------------------------------------------------------------

ShellDetails& ObtainDetails(Geometry& shell) {
    GeometryExtras& extras = shell.Extras();
    if (!extras.shell) extras.shell = std::make_unique<ShellDetails>();
    return *extras.shell;
}

void TrimDetails(Geometry& shell) {
    if (!shell.extras || !shell.extras->shell) return;
    ShellDetails& details = *shell.extras->shell;
    auto clearUnless = [](auto& list, auto isSet) {
        if (std::none_of(list.begin(), list.end(), isSet)) list.clear();
    };
    clearUnless(details.regions, [](int region) { return region != 0; });
    clearUnless(details.faceColors, [](const auto& color) { return color.has_value(); });
    clearUnless(details.edgeVisibilities, [](int8_t visible) { return visible >= 0; });
    clearUnless(details.vertexNormals, [](const auto& normal) { return normal.has_value(); });
    while (!details.lodTypes.empty() && details.lodTypes.back().empty())
        details.lodTypes.pop_back();
    if (details.regions.empty() && details.faceColors.empty() && details.edgeVisibilities.empty() &&
        details.vertexNormals.empty() && details.lodTypes.empty())
        shell.extras->shell.reset();
    if (shell.extras->text.empty() && shell.extras->values.empty() &&
        shell.extras->references.empty() && !shell.extras->shell)
        shell.extras.reset();
}

// --- Other layouts -------------------------------------------------------------------------------

std::string CapsWord(std::string_view caps) {
    std::string word = CollapseBlanks(ToLower(caps));
    if (word.empty()) return "both";
    for (std::string_view known : {"none", "first", "second", "both"})
        if (word == known) return word;
    return {};
}

std::string GridType(std::string_view type) {
    std::string word = CollapseBlanks(ToLower(type));
    if (word.empty()) return "quadrilateral";
    return word == "quadrilateral" || word == "radial" ? word : std::string();
}

int PixelSize(std::string_view format) {
    std::vector<std::string_view> items = SplitList(format, ',');
    std::string word = items.empty() ? std::string() : CollapseBlanks(ToLower(items.front()));
    static constexpr std::pair<std::string_view, int> kFormats[] = {
        {"rgb", 3},      {"rgba", 4},      {"argb", 4},      {"bgra", 4},
        {"mapped 8", 1}, {"mapped 16", 2}, {"grayscale", 1},
    };
    for (const auto& [name, size] : kFormats)
        if (word == name) return size;
    return 0;
}

std::vector<int> PackBytes(const unsigned char* bytes, size_t count) {
    std::vector<int> ints((count + 3) / 4, 0);
    for (size_t i = 0; i < count; ++i) {
        uint32_t word = static_cast<uint32_t>(ints[i / 4]) | uint32_t{bytes[i]} << (8 * (i % 4));
        ints[i / 4] = static_cast<int>(word);
    }
    return ints;
}

void UnpackBytes(const std::vector<int>& ints, size_t first, size_t count, unsigned char* bytes) {
    for (size_t i = 0; i < count; ++i) {
        size_t index = first + i / 4;
        uint32_t word = index < ints.size() ? static_cast<uint32_t>(ints[index]) : 0;
        bytes[i] = static_cast<unsigned char>(word >> (8 * (i % 4)));
    }
}

size_t ImageByteCount(const Geometry& image) {
    if (image.ints.size() < 2 || image.ints[0] < 0 || image.ints[1] < 0) return 0;
    size_t pixels = size_t(image.ints[0]) * size_t(image.ints[1]);
    return pixels > SIZE_MAX / 4 ? 0 : pixels * size_t(PixelSize(image.Text()));
}

float PolyCylinderRadius(const Geometry& item, size_t i) {
    const std::vector<float>& radii = item.Values();
    if (radii.empty()) return 0;
    return radii[std::min(i, radii.size() - 1)];
}

namespace {

bool ShellIsWellFormed(const Geometry& shell) {
    const auto& list = shell.ints;
    if (list.size() > size_t(INT32_MAX) || shell.points.size() > size_t(INT32_MAX) ||
        !FaceListProblem(list.data(), int(list.size()), int(shell.points.size())).empty())
        return false;
    const ShellDetails* details = DetailsOf(shell);
    if (!details) return true;
    auto fits = [](const auto& entries, size_t count) {
        return entries.empty() || entries.size() == count;
    };
    size_t faces = size_t(FaceCount(list));
    return fits(details->regions, faces) && fits(details->faceColors, faces) &&
           fits(details->edgeVisibilities, size_t(EdgeCount(list))) &&
           fits(details->vertexNormals, shell.points.size()) &&
           details->lodTypes.size() <= size_t(kLodLevels);
}

// A NURBS direction: degree at least 1, at least degree + 1 control points.
bool NurbsCounts(long long degree, long long count) {
    return degree >= 1 && count >= degree + 1;
}

} // namespace

bool IsWellFormed(const Geometry& item) {
    const size_t points = item.points.size();
    const size_t ints = item.ints.size();
    const size_t values = item.Values().size();
    switch (item.type) {
    case ContentKind::Shell:
        return ShellIsWellFormed(item);
    case ContentKind::Polyline:
        return points >= 2;
    case ContentKind::Polygon:
        return points >= 3;
    case ContentKind::Line:
    case ContentKind::InfiniteLine:
    case ContentKind::InfiniteRay:
    case ContentKind::SpotLight:
        return points == 2;
    case ContentKind::Marker:
    case ContentKind::DistantLight:
    case ContentKind::LocalLight:
        return points == 1;
    case ContentKind::Text:
        return points == 1 && item.Text().size() < HC_TEXT_MAX;
    case ContentKind::Circle:
    case ContentKind::CircularArc:
    case ContentKind::CircularChord:
    case ContentKind::CircularWedge:
    case ContentKind::Ellipse:
        return points == 3;
    case ContentKind::EllipticalArc:
        return points == 3 && values == 2;
    case ContentKind::CuttingPlane:
        return values == 4;
    case ContentKind::NurbsCurve: {
        if (ints != 1 || !NurbsCounts(item.ints[0], static_cast<long long>(points))) return false;
        return values == 2 * points + size_t(item.ints[0]) + 1 + 2;
    }
    case ContentKind::NurbsSurface: {
        if (ints != 4) return false;
        long long uDegree = item.ints[0], vDegree = item.ints[1];
        long long uCount = item.ints[2], vCount = item.ints[3];
        if (!NurbsCounts(uDegree, uCount) || !NurbsCounts(vDegree, vCount) ||
            static_cast<long long>(points) != uCount * vCount)
            return false;
        return static_cast<long long>(values) ==
               uCount * vCount + uCount + uDegree + 1 + vCount + vDegree + 1;
    }
    case ContentKind::Image:
        return points == 1 && ints >= 2 && item.ints[0] >= 0 && item.ints[1] >= 0 &&
               PixelSize(item.Text()) > 0 && ints == 2 + (ImageByteCount(item) + 3) / 4;
    case ContentKind::Mesh:
        return ints == 2 && item.ints[0] >= 2 && item.ints[1] >= 2 &&
               static_cast<long long>(points) ==
                   static_cast<long long>(item.ints[0]) * item.ints[1];
    case ContentKind::Cylinder:
        return points == 2 && values == 1 && CapsWord(item.Text()) == item.Text();
    case ContentKind::PolyCylinder:
        return points >= 2 && values >= 1 && values <= points &&
               CapsWord(item.Text()) == item.Text();
    case ContentKind::Sphere:
        return points == 3 && values == 1;
    case ContentKind::Grid:
        return points == 3 && ints == 2 && item.ints[0] >= 0 && item.ints[1] >= 0 &&
               GridType(item.Text()) == item.Text();
    default:
        return false;
    }
}

int CountDetails(const Geometry& item, const Filter& filter) {
    const ShellDetails* details = DetailsOf(item);
    if (!details) return 0;
    return int(filter.Has(ContentKind::VertexAttributes) && !details->vertexNormals.empty()) +
           int(filter.Has(ContentKind::EdgeAttributes) && !details->edgeVisibilities.empty()) +
           int(filter.Has(ContentKind::FaceAttributes) && !details->faceColors.empty());
}

void CopyGeometryData(const Geometry& from, Geometry& to) {
    to.points = from.points;
    to.ints = from.ints;
    if (!from.Text().empty()) to.Extras().text = from.Text();
    if (!from.Values().empty()) to.Extras().values = from.Values();
    if (const ShellDetails* details = DetailsOf(from))
        to.Extras().shell = std::make_unique<ShellDetails>(*details);
}

} // namespace hc
