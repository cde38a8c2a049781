#include "host/view/scene_extract.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace obsidra::host::view {

namespace {

constexpr float kTurn = 2.0f * std::numbers::pi_v<float>;
// Segments of a full circle; arcs get their share.
constexpr int kCircleSegments = 48;

Vec3 FromHc(const HC_POINT& p) {
    return {p.x, p.y, p.z};
}

// Adds primitives of one item in world space, in the colours of its look.
class Emitter {
public:
    Emitter(DrawBatch& batch, const Mat4& matrix, HC_KEY item, const Look& look)
        : m_batch(batch), m_matrix(matrix), m_identity(matrix.IsIdentity()), m_item(item),
          m_look(look) {}

    const Look& GetLook() const { return m_look; }
    bool Shows(Part part) const { return m_look.Shows(part); }
    // Edges of a face of n vertices: named edges as named; by default only the outlines of
    // faces of four or more vertices, since a triangulated surface (what importers write)
    // would otherwise show as a wire mesh.
    bool ShowsEdgesOf(int vertexCount) const {
        return Shows(Part::Edges) && (m_look.edgesNamed || vertexCount >= 4);
    }

    void Triangle(Vec3 a, Vec3 b, Vec3 c) {
        Rgba colour = m_look.ColourOf(Part::Faces);
        bool opaque = colour >> 24 == 0xFF;
        Primitives& triangles = opaque ? m_batch.triangles : m_batch.translucent;
        if (!m_beganTriangles) {
            triangles.BeginItem(m_item, 3);
            m_beganTriangles = true;
        }
        for (Vec3 p : {a, b, c})
            Put(triangles, p, colour);
    }
    void Line(Vec3 a, Vec3 b, Part part) {
        if (!m_beganLines) {
            m_batch.lines.BeginItem(m_item, 2);
            m_beganLines = true;
        }
        Rgba colour = m_look.ColourOf(part);
        Put(m_batch.lines, a, colour);
        Put(m_batch.lines, b, colour);
    }
    void Point(Vec3 p, Part part) {
        m_batch.points.BeginItem(m_item, 1);
        Put(m_batch.points, p, m_look.ColourOf(part));
    }
    // A closed or open outline through points.
    void Outline(const std::vector<Vec3>& points, bool closed, Part part) {
        for (size_t i = 0; i + 1 < points.size(); ++i)
            Line(points[i], points[i + 1], part);
        if (closed && points.size() > 2) Line(points.back(), points.front(), part);
    }
    // A convex face, fanned from its first point.
    void Fan(const std::vector<Vec3>& points) {
        for (size_t i = 1; i + 1 < points.size(); ++i)
            Triangle(points[0], points[i], points[i + 1]);
    }

private:
    void Put(Primitives& primitives, Vec3 p, Rgba colour) {
        Vec3 world = m_identity ? p : Transform(m_matrix, p);
        // A point that is not a number is kept (the database keeps it) but must not spoil the
        // box the camera fits.
        if (std::isfinite(world.x) && std::isfinite(world.y) && std::isfinite(world.z))
            m_batch.bounds.Add(world);
        primitives.vertices.push_back({world.x, world.y, world.z, colour});
    }

    DrawBatch& m_batch;
    const Mat4& m_matrix;
    bool m_identity;
    HC_KEY m_item;
    Look m_look;
    bool m_beganTriangles = false;
    bool m_beganLines = false;
};

void Shell(HC_KEY key, Emitter& out) {
    int pointCount = 0, listLength = 0;
    HC_Show_Shell_Size(key, &pointCount, &listLength);
    if (pointCount <= 0 || listLength <= 0) return;
    std::vector<HC_POINT> points(pointCount);
    std::vector<int> list(listLength);
    HC_Show_Shell(key, &pointCount, points.data(), &listLength, list.data());
    std::vector<Vec3> loop;
    for (int i = 0; i < listLength;) {
        int count = list[i++];
        int n = count < 0 ? -count : count;
        if (n == 0 || i + n > listLength) break;
        loop.clear();
        for (int k = 0; k < n; ++k)
            if (list[i + k] >= 0 && list[i + k] < pointCount)
                loop.push_back(FromHc(points[list[i + k]]));
        i += n;
        // Holes are outlined but not cut out of their face: the faces the view meets are
        // triangles and simple polygons; a hole's face is filled over.
        if (count > 0 && out.Shows(Part::Faces)) out.Fan(loop);
        if (out.ShowsEdgesOf(n)) out.Outline(loop, true, Part::Edges);
    }
}

void Mesh(HC_KEY key, Emitter& out) {
    int rows = 0, columns = 0;
    HC_Show_Mesh_Size(key, &rows, &columns);
    if (rows < 2 || columns < 2) return;
    std::vector<HC_POINT> points(static_cast<size_t>(rows) * columns);
    HC_Show_Mesh(key, &rows, &columns, points.data());
    auto at = [&](int r, int c) { return FromHc(points[static_cast<size_t>(r) * columns + c]); };
    for (int r = 0; r + 1 < rows; ++r)
        for (int c = 0; c + 1 < columns; ++c) {
            if (out.Shows(Part::Faces)) {
                out.Triangle(at(r, c), at(r, c + 1), at(r + 1, c + 1));
                out.Triangle(at(r, c), at(r + 1, c + 1), at(r + 1, c));
            }
            if (out.GetLook().edgesNamed && out.Shows(Part::Edges)) {
                out.Line(at(r, c), at(r, c + 1), Part::Edges);
                out.Line(at(r, c), at(r + 1, c), Part::Edges);
            }
        }
}

std::vector<Vec3> PointList(HC_KEY key, bool polygon) {
    int count = 0;
    polygon ? HC_Show_Polygon_Count(key, &count) : HC_Show_Polyline_Count(key, &count);
    std::vector<HC_POINT> points(count > 0 ? count : 0);
    if (count > 0)
        polygon ? HC_Show_Polygon(key, &count, points.data())
                : HC_Show_Polyline(key, &count, points.data());
    std::vector<Vec3> result;
    for (const HC_POINT& p : points)
        result.push_back(FromHc(p));
    return result;
}

// The circle through three points: centre, and the unit vectors from the centre to the first
// point (u) and a quarter turn on (v), so that the points run from u towards v. False when the
// points lie on one line.
struct Circle {
    Vec3 centre, u, v;
    float radius = 0;
    Vec3 At(float angle) const {
        return centre + u * (radius * std::cos(angle)) + v * (radius * std::sin(angle));
    }
};

bool CircleThrough(Vec3 p0, Vec3 p1, Vec3 p2, Circle& circle) {
    Vec3 a = p1 - p0, b = p2 - p0;
    Vec3 n = Cross(a, b);
    float n2 = Dot(n, n);
    if (n2 <= 1e-20f) return false;
    Vec3 offset = (Cross(n, a) * Dot(b, b) + Cross(b, n) * Dot(a, a)) * (1.0f / (2.0f * n2));
    circle.centre = p0 + offset;
    circle.radius = Length(offset);
    circle.u = Normalized(p0 - circle.centre);
    circle.v = Normalized(Cross(Normalized(n), circle.u));
    return circle.radius > 0;
}

float AngleOf(const Circle& circle, Vec3 p) {
    Vec3 d = p - circle.centre;
    float angle = std::atan2(Dot(d, circle.v), Dot(d, circle.u));
    return angle < 0 ? angle + kTurn : angle;
}

// The points of the arc from the first point through the second to the third.
std::vector<Vec3> ArcPoints(const Circle& circle, Vec3 through, Vec3 last, bool full) {
    float sweep = kTurn;
    if (!full) {
        float t1 = AngleOf(circle, through), t2 = AngleOf(circle, last);
        sweep = t1 < t2 ? t2 : t2 - kTurn;
    }
    int steps = std::max(2, static_cast<int>(std::ceil(std::abs(sweep) / kTurn * kCircleSegments)));
    std::vector<Vec3> points;
    for (int i = 0; i <= steps; ++i)
        points.push_back(circle.At(sweep * static_cast<float>(i) / static_cast<float>(steps)));
    if (full) points.pop_back();
    return points;
}

enum class Curve { Circle, Arc, Chord, Wedge };

// How each kind shows its three points.
using ShowThreePoints = void (*)(HC_KEY, HC_POINT*, HC_POINT*, HC_POINT*);

void CircleKind(HC_KEY key, ShowThreePoints show, Curve kind, Emitter& out) {
    HC_POINT p[3] = {};
    show(key, &p[0], &p[1], &p[2]);
    Circle circle;
    if (!CircleThrough(FromHc(p[0]), FromHc(p[1]), FromHc(p[2]), circle)) {
        out.Outline({FromHc(p[0]), FromHc(p[1]), FromHc(p[2])}, false, Part::Lines);
        return;
    }
    std::vector<Vec3> points = ArcPoints(circle, FromHc(p[1]), FromHc(p[2]), kind == Curve::Circle);
    if (kind == Curve::Arc) {
        if (out.Shows(Part::Lines)) out.Outline(points, false, Part::Lines);
        return;
    }
    if (kind == Curve::Wedge) points.insert(points.begin(), circle.centre);
    if (out.Shows(Part::Faces)) out.Fan(points);
    if (out.ShowsEdgesOf(kCircleSegments)) out.Outline(points, true, Part::Edges);
}

void EllipseKind(HC_KEY key, bool arc, Emitter& out) {
    HC_POINT c{}, major{}, minor{};
    float start = 0, end = 1;
    if (arc)
        HC_Show_Elliptical_Arc(key, &c, &major, &minor, &start, &end);
    else
        HC_Show_Ellipse(key, &c, &major, &minor);
    if (end < start) end += 1;
    Vec3 centre = FromHc(c), a = FromHc(major) - centre, b = FromHc(minor) - centre;
    int steps = std::max(2, static_cast<int>(std::ceil((end - start) * kCircleSegments)));
    std::vector<Vec3> points;
    for (int i = 0; i <= steps; ++i) {
        float t =
            kTurn * (start + (end - start) * static_cast<float>(i) / static_cast<float>(steps));
        points.push_back(centre + a * std::cos(t) + b * std::sin(t));
    }
    if (arc) {
        if (out.Shows(Part::Lines)) out.Outline(points, false, Part::Lines);
        return;
    }
    points.pop_back();
    if (out.Shows(Part::Faces)) out.Fan(points);
    if (out.ShowsEdgesOf(kCircleSegments)) out.Outline(points, true, Part::Edges);
}

// Two unit vectors square to an axis.
void Basis(Vec3 axis, Vec3& u, Vec3& v) {
    Vec3 helper = std::abs(axis.x) < 0.9f ? Vec3{1, 0, 0} : Vec3{0, 1, 0};
    u = Normalized(Cross(axis, helper));
    v = Cross(axis, u);
}

void Sphere(HC_KEY key, Emitter& out) {
    if (!out.Shows(Part::Faces)) return;
    HC_POINT c{};
    HC_VECTOR axisHc{}, orthoHc{};
    float radius = 0;
    HC_Show_Sphere(key, &c, &radius, &axisHc, &orthoHc);
    Vec3 axis = Normalized(FromHc(axisHc));
    if (Length(axis) == 0) axis = {0, 0, 1};
    Vec3 u, v;
    Basis(axis, u, v);
    constexpr int kStacks = 12, kSlices = 24;
    auto at = [&](int stack, int slice) {
        float polar = std::numbers::pi_v<float> * static_cast<float>(stack) / kStacks;
        float around = kTurn * static_cast<float>(slice) / kSlices;
        Vec3 d = axis * std::cos(polar) +
                 (u * std::cos(around) + v * std::sin(around)) * std::sin(polar);
        return FromHc(c) + d * radius;
    };
    for (int s = 0; s < kStacks; ++s)
        for (int k = 0; k < kSlices; ++k) {
            if (s > 0) out.Triangle(at(s, k), at(s + 1, k), at(s, k + 1));
            if (s + 1 < kStacks) out.Triangle(at(s, k + 1), at(s + 1, k), at(s + 1, k + 1));
        }
}

// A tube from a to b with radii ra and rb, capped at either end as asked.
void Tube(Vec3 a, Vec3 b, float ra, float rb, bool capA, bool capB, Emitter& out) {
    Vec3 axis = Normalized(b - a);
    if (Length(axis) == 0 || !out.Shows(Part::Faces)) return;
    Vec3 u, v;
    Basis(axis, u, v);
    constexpr int kSides = 24;
    auto ring = [&](Vec3 centre, float radius, int k) {
        float angle = kTurn * static_cast<float>(k) / kSides;
        return centre + (u * std::cos(angle) + v * std::sin(angle)) * radius;
    };
    for (int k = 0; k < kSides; ++k) {
        Vec3 a0 = ring(a, ra, k), a1 = ring(a, ra, k + 1);
        Vec3 b0 = ring(b, rb, k), b1 = ring(b, rb, k + 1);
        out.Triangle(a0, a1, b1);
        out.Triangle(a0, b1, b0);
        if (capA) out.Triangle(a, a1, a0);
        if (capB) out.Triangle(b, b0, b1);
    }
}

void Cylinder(HC_KEY key, Emitter& out) {
    HC_POINT first{}, second{};
    float radius = 0;
    char caps[HC_TEXT_MAX] = "";
    HC_Show_Cylinder(key, &first, &second, &radius, caps);
    std::string_view c = caps;
    Tube(FromHc(first), FromHc(second), radius, radius, c == "both" || c == "first",
         c == "both" || c == "second", out);
}

void PolyCylinder(HC_KEY key, Emitter& out) {
    int pointCount = 0, radiusCount = 0;
    HC_Show_PolyCylinder_Counts(key, &pointCount, &radiusCount);
    if (pointCount < 2 || radiusCount < 1) return;
    std::vector<HC_POINT> points(pointCount);
    std::vector<float> radii(radiusCount);
    char caps[HC_TEXT_MAX] = "";
    HC_Show_PolyCylinder(key, &pointCount, points.data(), &radiusCount, radii.data(), caps);
    std::string_view c = caps;
    auto radius = [&](int i) { return radii[std::min(i, radiusCount - 1)]; };
    for (int i = 0; i + 1 < pointCount; ++i)
        Tube(FromHc(points[i]), FromHc(points[i + 1]), radius(i), radius(i + 1),
             i == 0 && (c == "both" || c == "first"),
             i + 2 == pointCount && (c == "both" || c == "second"), out);
}

void NurbsCurve(HC_KEY key, Emitter& out) {
    int degree = 0, count = 0;
    HC_Show_NURBS_Curve_Size(key, &degree, &count);
    if (count < 2 || !out.Shows(Part::Lines)) return;
    std::vector<HC_POINT> control(count);
    std::vector<float> weights(count), knots(count + degree + 1);
    float startU = 0, endU = 0;
    HC_Show_NURBS_Curve(key, &degree, &count, control.data(), weights.data(), knots.data(), &startU,
                        &endU);
    // The control polygon stands for the curve: close enough to see and pick it.
    std::vector<Vec3> points;
    for (const HC_POINT& p : control)
        points.push_back(FromHc(p));
    out.Outline(points, false, Part::Lines);
}

void NurbsSurface(HC_KEY key, Emitter& out) {
    int uDegree = 0, vDegree = 0, uCount = 0, vCount = 0;
    HC_Show_NURBS_Surface_Size(key, &uDegree, &vDegree, &uCount, &vCount);
    if (uCount < 2 || vCount < 2 || !out.Shows(Part::Faces)) return;
    std::vector<HC_POINT> control(static_cast<size_t>(uCount) * vCount);
    std::vector<float> weights(control.size()), uKnots(uCount + uDegree + 1),
        vKnots(vCount + vDegree + 1);
    HC_Show_NURBS_Surface(key, &uDegree, &vDegree, &uCount, &vCount, control.data(), weights.data(),
                          uKnots.data(), vKnots.data());
    // The control net stands for the surface, as the control polygon does for a curve.
    // u runs fastest, as the control points are given.
    auto at = [&](int u, int v) { return FromHc(control[static_cast<size_t>(v) * uCount + u]); };
    for (int u = 0; u + 1 < uCount; ++u)
        for (int v = 0; v + 1 < vCount; ++v) {
            out.Triangle(at(u, v), at(u + 1, v), at(u + 1, v + 1));
            out.Triangle(at(u, v), at(u + 1, v + 1), at(u, v + 1));
        }
}

// The item's own colour and visibility over what its segment passes down.
Look ItemLook(HC_KEY item, const NetState& net) {
    if (HC_Show_Existence_By_Key(item, "color, visibility") <= 0)
        return ResolveLook(net.colour, net.visibility);
    OptionMap colour = net.colour, visibility = net.visibility;
    char options[HC_TEXT_MAX] = "";
    HC_Open_Geometry(item);
    if (HC_Show_Existence_By_Key(item, "color") > 0) {
        HC_Show_Color(options);
        colour.Merge(options, true);
    }
    if (HC_Show_Existence_By_Key(item, "visibility") > 0) {
        HC_Show_Visibility(options);
        visibility.Merge(options, false);
    }
    HC_Close_Geometry();
    return ResolveLook(colour, visibility);
}

} // namespace

void ExtractItem(HC_KEY item, std::string_view type, const NetState& net, DrawBatch& batch) {
    Emitter out(batch, net.matrix, item, ItemLook(item, net));
    if (type == "shell") {
        Shell(item, out);
    } else if (type == "mesh") {
        Mesh(item, out);
    } else if (type == "polygon") {
        std::vector<Vec3> points = PointList(item, true);
        if (out.Shows(Part::Faces)) out.Fan(points);
        if (out.ShowsEdgesOf(static_cast<int>(points.size())))
            out.Outline(points, true, Part::Edges);
    } else if (type == "polyline") {
        if (out.Shows(Part::Lines)) out.Outline(PointList(item, false), false, Part::Lines);
    } else if (type == "line") {
        float xa = 0, ya = 0, za = 0, xb = 0, yb = 0, zb = 0;
        HC_Show_Line(item, &xa, &ya, &za, &xb, &yb, &zb);
        if (out.Shows(Part::Lines)) out.Line({xa, ya, za}, {xb, yb, zb}, Part::Lines);
    } else if (type == "marker" || type == "text") {
        Part part = type == "marker" ? Part::Markers : Part::Text;
        float x = 0, y = 0, z = 0;
        if (part == Part::Markers)
            HC_Show_Marker(item, &x, &y, &z);
        else
            HC_Show_Text(item, &x, &y, &z, nullptr);
        if (out.Shows(part)) out.Point({x, y, z}, part);
    } else if (type == "circle") {
        CircleKind(item, HC_Show_Circle, Curve::Circle, out);
    } else if (type == "circular arc") {
        CircleKind(item, HC_Show_Circular_Arc, Curve::Arc, out);
    } else if (type == "circular chord") {
        CircleKind(item, HC_Show_Circular_Chord, Curve::Chord, out);
    } else if (type == "circular wedge") {
        CircleKind(item, HC_Show_Circular_Wedge, Curve::Wedge, out);
    } else if (type == "ellipse" || type == "elliptical arc") {
        EllipseKind(item, type == "elliptical arc", out);
    } else if (type == "sphere") {
        Sphere(item, out);
    } else if (type == "cylinder") {
        Cylinder(item, out);
    } else if (type == "polycylinder") {
        PolyCylinder(item, out);
    } else if (type == "nurbs curve") {
        NurbsCurve(item, out);
    } else if (type == "nurbs surface") {
        NurbsSurface(item, out);
    }
}

HC_KEY Primitives::ItemOf(std::uint32_t primitive) const {
    auto it = std::upper_bound(runs.begin(), runs.end(), primitive,
                               [](std::uint32_t p, const ItemRun& run) { return p < run.first; });
    return it == runs.begin() ? -1 : std::prev(it)->item;
}

} // namespace obsidra::host::view
