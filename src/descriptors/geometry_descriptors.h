#pragma once

// Geometry descriptors: one object per geometry kind that names the kind, counts its items in the
// open segment, describes one item as a line of text and, for some kinds, applies an edited text
// back to the item. Every kind's class is the one geometry class fixed to the kind; what sets the
// kinds apart (description and edit) is a row of one table.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include <obsidra/hc.h>

// Every geometry descriptor in the order of the tree's geometry list: class, kind, name word.
#define OBSIDRA_GEOMETRY_DESCRIPTORS(X)                                                            \
    X(HoopsGeometryShell, Shell, "SHELL")                                                          \
    X(HoopsGeometryPolyline, Polyline, "POLYLINE")                                                 \
    X(HoopsGeometryMarker, Marker, "MARKER")                                                       \
    X(HoopsGeometryCircle, Circle, "CIRCLE")                                                       \
    X(HoopsGeometryPolygon, Polygon, "POLYGON")                                                    \
    X(HoopsGeometryCircularChord, CircularChord, "CIRCULAR CHORD")                                 \
    X(HoopsGeometryCircularArc, CircularArc, "CIRCULAR ARC")                                       \
    X(HoopsGeometryCircularWedge, CircularWedge, "CIRCULAR WEDGE")                                 \
    X(HoopsGeometryCuttingPlane, CuttingPlane, "CUTTING PLANE")                                    \
    X(HoopsGeometryNurbsCurve, NurbsCurve, "NURBS CURVE")                                          \
    X(HoopsGeometryNurbsSurface, NurbsSurface, "NURBS SURFACE")                                    \
    X(HoopsGeometryDistantLight, DistantLight, "DISTANT LIGHT")                                    \
    X(HoopsGeometryLocalLight, LocalLight, "LOCAL LIGHT")                                          \
    X(HoopsGeometrySpotLight, SpotLight, "SPOT LIGHT")                                             \
    X(HoopsGeometryText, Text, "TEXT")                                                             \
    X(HoopsGeometryImage, Image, "IMAGE")                                                          \
    X(HoopsGeometryEllipse, Ellipse, "ELLIPSE")                                                    \
    X(HoopsGeometryEllipticalArc, EllipticalArc, "ELLIPTICAL ARC")                                 \
    X(HoopsGeometryMesh, Mesh, "MESH")                                                             \
    X(HoopsGeometryCylinder, Cylinder, "CYLINDER")                                                 \
    X(HoopsGeometryPolyCylinder, PolyCylinder, "POLYCYLINDER")                                     \
    X(HoopsGeometryLine, Line, "LINE")                                                             \
    X(HoopsGeometrySphere, Sphere, "SPHERE")                                                       \
    X(HoopsGeometryGrid, Grid, "GRID")                                                             \
    X(HoopsGeometryInfiniteLine, InfiniteLine, "INFINITE LINE")                                    \
    X(HoopsGeometryInfiniteRay, InfiniteRay, "INFINITE RAY")

namespace obsidra::descriptors {

enum class GeometryKind : uint8_t {
#define OBSIDRA_ENUM(Class, Kind, Word) Kind,
    OBSIDRA_GEOMETRY_DESCRIPTORS(OBSIDRA_ENUM)
#undef OBSIDRA_ENUM
};

struct GeometryInfo {
    GeometryKind kind;
    std::string_view nameWord;
};

inline constexpr GeometryInfo kGeometryTable[] = {
#define OBSIDRA_ROW(Class, Kind, Word) {GeometryKind::Kind, Word},
    OBSIDRA_GEOMETRY_DESCRIPTORS(OBSIDRA_ROW)
#undef OBSIDRA_ROW
};

inline constexpr size_t kGeometryKindCount = std::size(kGeometryTable);

} // namespace obsidra::descriptors

class HoopsGeometry {
public:
    virtual ~HoopsGeometry() = default;

    virtual std::string_view GetName() const = 0;
    // How many items of the kind the open segment holds.
    virtual int Count();
    // One line about the item; empty by default.
    virtual std::string Describe(HC_KEY key);
    // Applies an edited text to the item; false (and nothing changed) when the kind takes no
    // edits or the text does not read.
    virtual bool Edit(HC_KEY key, std::string_view text);
};

// A geometry kind; its description and edit come from the kind's row of the geometry table.
class GeometryKindDescriptor : public HoopsGeometry {
public:
    virtual obsidra::descriptors::GeometryKind Kind() const = 0;
    std::string_view GetName() const override;
    std::string Describe(HC_KEY key) override;
    bool Edit(HC_KEY key, std::string_view text) override;
};

template <obsidra::descriptors::GeometryKind K>
class GeometryOf final : public GeometryKindDescriptor {
public:
    static constexpr obsidra::descriptors::GeometryKind kKind = K;
    obsidra::descriptors::GeometryKind Kind() const override { return K; }
};

// Descriptions: "Points:%d, %d Faces in %d Tristrips, LODS:%d" with the region range and the
// kinds of per-vertex, per-edge and per-face attributes. Edit: the label line, then the points
// and the face list as numbers separated by blanks, commas and line breaks, of the shell's
// present sizes.
using HoopsGeometryShell = GeometryOf<obsidra::descriptors::GeometryKind::Shell>;
// "Points:%d". Edit: "<x y z, x y z, ...>", replacing every point.
using HoopsGeometryPolyline = GeometryOf<obsidra::descriptors::GeometryKind::Polyline>;
using HoopsGeometryMarker = GeometryOf<obsidra::descriptors::GeometryKind::Marker>;
// Edit: "<Cenrter:x y z, Radius:r, Normal:x y z>".
using HoopsGeometryCircle = GeometryOf<obsidra::descriptors::GeometryKind::Circle>;
// Edit: "<x y z, x y z, ...>", replacing every point.
using HoopsGeometryPolygon = GeometryOf<obsidra::descriptors::GeometryKind::Polygon>;
using HoopsGeometryCircularChord = GeometryOf<obsidra::descriptors::GeometryKind::CircularChord>;
// Edit: "<x y z, x y z, x y z>", the three points on the arc.
using HoopsGeometryCircularArc = GeometryOf<obsidra::descriptors::GeometryKind::CircularArc>;
using HoopsGeometryCircularWedge = GeometryOf<obsidra::descriptors::GeometryKind::CircularWedge>;
// Edit: "<a:%f, b:%f c:%f, d:%f>".
using HoopsGeometryCuttingPlane = GeometryOf<obsidra::descriptors::GeometryKind::CuttingPlane>;
using HoopsGeometryNurbsCurve = GeometryOf<obsidra::descriptors::GeometryKind::NurbsCurve>;
using HoopsGeometryNurbsSurface = GeometryOf<obsidra::descriptors::GeometryKind::NurbsSurface>;
// Lights: "Color = \"%s\", Position = (%g, %g, %g)", "Color: %s" and, for spot lights, the
// colour and the position and target in world coordinates. Edit: "Color: " followed by the
// light's new colour, up to the end of its line.
using HoopsGeometryDistantLight = GeometryOf<obsidra::descriptors::GeometryKind::DistantLight>;
using HoopsGeometryLocalLight = GeometryOf<obsidra::descriptors::GeometryKind::LocalLight>;
using HoopsGeometrySpotLight = GeometryOf<obsidra::descriptors::GeometryKind::SpotLight>;
// "Position: %f %f %f  Text: %s". Edit: everything after "Text: " becomes the string; a text
// without "Text: " is refused.
using HoopsGeometryText = GeometryOf<obsidra::descriptors::GeometryKind::Text>;
// "Format: %s, W:%d H:%d, Pos: %f %f %f".
using HoopsGeometryImage = GeometryOf<obsidra::descriptors::GeometryKind::Image>;
using HoopsGeometryEllipse = GeometryOf<obsidra::descriptors::GeometryKind::Ellipse>;
// Edit: "<Cenrter:x y z, Major:x y z, Minor:x y z>"; start and end stay as they are.
using HoopsGeometryEllipticalArc = GeometryOf<obsidra::descriptors::GeometryKind::EllipticalArc>;
// "Rows:%d Columns:%d". Edit: one "<x y z, ...>" per row, replacing every point.
using HoopsGeometryMesh = GeometryOf<obsidra::descriptors::GeometryKind::Mesh>;
using HoopsGeometryCylinder = GeometryOf<obsidra::descriptors::GeometryKind::Cylinder>;
using HoopsGeometryPolyCylinder = GeometryOf<obsidra::descriptors::GeometryKind::PolyCylinder>;
// "Points: (%f, %f, %f), (%f, %f, %f)", as also the infinite line and ray.
using HoopsGeometryLine = GeometryOf<obsidra::descriptors::GeometryKind::Line>;
// "Center:%f %f %f, Radius: %f, Axis: %f %f %f, Ortho: %f %f %f".
using HoopsGeometrySphere = GeometryOf<obsidra::descriptors::GeometryKind::Sphere>;
// "%s, %d x %d": the grid's type and counts.
using HoopsGeometryGrid = GeometryOf<obsidra::descriptors::GeometryKind::Grid>;
using HoopsGeometryInfiniteLine = GeometryOf<obsidra::descriptors::GeometryKind::InfiniteLine>;
using HoopsGeometryInfiniteRay = GeometryOf<obsidra::descriptors::GeometryKind::InfiniteRay>;

namespace obsidra::descriptors {

std::unique_ptr<HoopsGeometry> MakeGeometry(GeometryKind kind);

} // namespace obsidra::descriptors
