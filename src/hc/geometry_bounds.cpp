#include "hc/geometry_bounds.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "hc/box.h"
#include "hc/geometry_data.h"

namespace hc {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

// Points that are not finite numbers are left out.
void Add(Box& box, const Vec& p) {
    if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) box.Add(ToPoint(p));
}

void Add(Box& box, const HC_POINT& p) {
    Add(box, ToVec(p));
}

// The box of p with extent on either side along each axis.
void Add(Box& box, const Vec& p, const Vec& extent) {
    Add(box, p - extent);
    Add(box, p + extent);
}

void AddAll(Box& box, const std::vector<HC_POINT>& points) {
    for (const HC_POINT& p : points)
        Add(box, p);
}

// How far a disc of that radius about a unit axis reaches along each coordinate axis.
Vec DiscExtent(const Vec& axis, double radius) {
    auto reach = [radius](double a) { return radius * std::sqrt(std::max(0.0, 1 - a * a)); };
    return {reach(axis.x), reach(axis.y), reach(axis.z)};
}

// The part of center + a cos t + b sin t (a circle or an ellipse) from angle `from` on through
// `sweep`: its ends and the extremes along each axis that it passes.
void AddConicArc(Box& box, const Vec& center, const Vec& a, const Vec& b, double from,
                 double sweep) {
    auto at = [&](double t) { return center + a * std::cos(t) + b * std::sin(t); };
    Add(box, at(from));
    Add(box, at(from + sweep));
    for (int axis = 0; axis < 3; ++axis) {
        double extreme = std::atan2(Component(b, axis), Component(a, axis));
        for (double t : {extreme, extreme + std::numbers::pi}) {
            double along = std::fmod(t - from, kTurn);
            if (along < 0) along += kTurn;
            if (along <= sweep) Add(box, at(from + along));
        }
    }
}

// A circle, arc, chord or wedge by its three points; points on one line stand for themselves.
void AddCircular(Box& box, const Geometry& item) {
    AddAll(box, item.points);
    CircleFrame frame;
    if (item.points.size() != 3 ||
        !CircleThrough(item.points[0], item.points[1], item.points[2], frame))
        return;
    double sweep = item.type == ContentKind::Circle ? kTurn : frame.sweep;
    AddConicArc(box, frame.center, frame.u * frame.radius, frame.v * frame.radius, 0, sweep);
    if (item.type == ContentKind::CircularWedge) Add(box, frame.center);
}

void AddElliptical(Box& box, const Geometry& item) {
    if (item.points.size() != 3) return;
    Vec center = ToVec(item.points[0]);
    Vec major = ToVec(item.points[1]) - center;
    Vec minor = ToVec(item.points[2]) - center;
    double from = 0, sweep = kTurn;
    if (item.type == ContentKind::EllipticalArc && item.Values().size() == 2) {
        // start and end are fractions of a turn; an end below the start runs on through 0.
        double start = item.Values()[0], end = item.Values()[1];
        double fraction = end - start;
        if (fraction < 0) fraction -= std::floor(fraction);
        from = start * kTurn;
        sweep = std::min(fraction, 1.0) * kTurn;
    }
    AddConicArc(box, center, major, minor, from, sweep);
}

// A tube from a to b with a radius at each end: the discs at its ends.
void AddTube(Box& box, const HC_POINT& a, double radiusA, const HC_POINT& b, double radiusB) {
    Vec axis = ToVec(b) - ToVec(a);
    double length = Length(axis);
    if (!(length > 0)) {
        double r = std::max(radiusA, radiusB);
        Add(box, ToVec(a), {r, r, r});
        return;
    }
    axis = axis * (1 / length);
    Add(box, ToVec(a), DiscExtent(axis, radiusA));
    Add(box, ToVec(b), DiscExtent(axis, radiusB));
}

void AddPolyCylinder(Box& box, const Geometry& item) {
    const auto& points = item.points;
    if (points.size() == 1) AddTube(box, points[0], PolyCylinderRadius(item, 0), points[0], 0);
    for (size_t i = 0; i + 1 < points.size(); ++i)
        AddTube(box, points[i], PolyCylinderRadius(item, i), points[i + 1],
                PolyCylinderRadius(item, i + 1));
}

// False when the grid goes on without end.
bool AddGrid(Box& box, const Geometry& item) {
    if (item.points.size() != 3 || item.ints.size() != 2) return false;
    Vec origin = ToVec(item.points[0]);
    Vec step1 = ToVec(item.points[1]) - origin;
    Vec step2 = ToVec(item.points[2]) - origin;
    int count1 = item.ints[0], count2 = item.ints[1];
    if (item.Text() == "radial") {
        // count1 rings, one step1 apart; the spokes (count2) stay inside the outer ring.
        if (count1 <= 0) return false;
        Vec normal = Cross(step1, step2);
        double radius = Length(step1) * count1;
        double n = Length(normal);
        if (!(n > 0)) {
            Add(box, origin, {radius, radius, radius});
            return true;
        }
        Add(box, origin, DiscExtent(normal * (1 / n), radius));
        return true;
    }
    if (count1 <= 0 || count2 <= 0) return false;
    for (double s : {0.0, double(count1)})
        for (double t : {0.0, double(count2)})
            Add(box, origin + step1 * s + step2 * t);
    return true;
}

} // namespace

bool LocalBounds(const Geometry& item, HC_POINT& min, HC_POINT& max) {
    Box box;
    switch (item.type) {
    case ContentKind::DistantLight:
    case ContentKind::LocalLight:
    case ContentKind::SpotLight:
    case ContentKind::CuttingPlane:
    case ContentKind::InfiniteLine:
    case ContentKind::InfiniteRay:
        return false;
    case ContentKind::Circle:
    case ContentKind::CircularArc:
    case ContentKind::CircularChord:
    case ContentKind::CircularWedge:
        AddCircular(box, item);
        break;
    case ContentKind::Ellipse:
    case ContentKind::EllipticalArc:
        AddElliptical(box, item);
        break;
    case ContentKind::Sphere: {
        HC_POINT center;
        float radius;
        if (!LocalSphere(item, center, radius)) return false;
        Add(box, ToVec(center), {radius, radius, radius});
        break;
    }
    case ContentKind::Cylinder:
        if (item.points.size() == 2 && item.Values().size() == 1)
            AddTube(box, item.points[0], item.Values()[0], item.points[1], item.Values()[0]);
        break;
    case ContentKind::PolyCylinder:
        AddPolyCylinder(box, item);
        break;
    case ContentKind::Grid:
        if (!AddGrid(box, item)) return false;
        break;
    case ContentKind::Text:
    case ContentKind::Image:
        // The position: their extent is measured on the screen, not in the scene.
        if (!item.points.empty()) Add(box, item.points[0]);
        break;
    default:
        // Shells, meshes, polylines, polygons, lines, markers and NURBS control points.
        AddAll(box, item.points);
        break;
    }
    if (box.empty) return false;
    min = box.min;
    max = box.max;
    return true;
}

bool LocalSphere(const Geometry& item, HC_POINT& center, float& radius) {
    if (item.type != ContentKind::Sphere || item.points.empty() || item.Values().empty())
        return false;
    center = item.points[0];
    radius = item.Values()[0];
    return true;
}

} // namespace hc
