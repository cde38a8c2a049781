#pragma once

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hc {

// Everything a contents search can return, with its type word and the other word a filter accepts
// for it, in the order the database lists a segment's contents
// (docs/formats.md). The geometry kinds sit between kFirstGeometry and kLastGeometry.
#define HC_CONTENT_KINDS(X)                                                                        \
    X(StaticModel, "static model", "static models")                                                \
    X(Segment, "segment", "segments")                                                              \
    X(Include, "include", "includes")                                                              \
    X(Style, "style", "styles")                                                                    \
    X(NamedStyle, "named style", "named styles")                                                   \
    X(Reference, "reference", "references")                                                        \
    X(Shell, "shell", "shells")                                                                    \
    X(Polyline, "polyline", "polylines")                                                           \
    X(Marker, "marker", "markers")                                                                 \
    X(Circle, "circle", "circles")                                                                 \
    X(Polygon, "polygon", "polygons")                                                              \
    X(CircularChord, "circular chord", "circular chords")                                          \
    X(CircularArc, "circular arc", "circular arcs")                                                \
    X(CircularWedge, "circular wedge", "circular wedges")                                          \
    X(CuttingPlane, "cutting plane", "cutting planes")                                             \
    X(NurbsCurve, "nurbs curve", "nurbs curves")                                                   \
    X(NurbsSurface, "nurbs surface", "nurbs surfaces")                                             \
    X(DistantLight, "distant light", "distant lights")                                             \
    X(LocalLight, "local light", "local lights")                                                   \
    X(SpotLight, "spot light", "spot lights")                                                      \
    X(Text, "text", "texts")                                                                       \
    X(Image, "image", "images")                                                                    \
    X(Ellipse, "ellipse", "ellipses")                                                              \
    X(EllipticalArc, "elliptical arc", "elliptical arcs")                                          \
    X(Mesh, "mesh", "meshes")                                                                      \
    X(Cylinder, "cylinder", "cylinders")                                                           \
    X(PolyCylinder, "polycylinder", "polycylinders")                                               \
    X(Line, "line", "lines")                                                                       \
    X(Sphere, "sphere", "spheres")                                                                 \
    X(Grid, "grid", "grids")                                                                       \
    X(InfiniteLine, "infinite line", "infinite lines")                                             \
    X(InfiniteRay, "infinite ray", "infinite rays")                                                \
    X(NamedStyleDefinition, "named style definition", "named style definitions")                   \
    X(Color, "color", "colors")                                                                    \
    X(Visibility, "visibility", "visibilities")                                                    \
    X(Heuristics, "heuristics", "heuristic")                                                       \
    X(RenderingOptions, "rendering options", "rendering option")                                   \
    X(Selectability, "selectability", "selectabilities")                                           \
    X(UserOptions, "user options", "user option")

enum class ContentKind : uint8_t {
#define HC_ENUM(name, word, other) name,
    HC_CONTENT_KINDS(HC_ENUM)
#undef HC_ENUM
        Count
};

constexpr size_t kContentKindCount = static_cast<size_t>(ContentKind::Count);
constexpr ContentKind kFirstGeometry = ContentKind::Shell;
constexpr ContentKind kLastGeometry = ContentKind::InfiniteRay;
constexpr ContentKind kFirstAttribute = ContentKind::Color;
constexpr ContentKind kLastAttribute = ContentKind::UserOptions;

constexpr bool IsGeometry(ContentKind kind) {
    return kind >= kFirstGeometry && kind <= kLastGeometry;
}
constexpr bool IsAttribute(ContentKind kind) {
    return kind >= kFirstAttribute && kind <= kLastAttribute;
}
constexpr bool IsDefinition(ContentKind kind) {
    return kind == ContentKind::NamedStyleDefinition;
}

// The type word the database answers for a kind ("shell", "named style", ...).
std::string_view TypeWord(ContentKind kind);

// A parsed filter of a contents search, of HC_Show_Existence or of HC_Flush_Contents: a set of
// kinds, built from a comma-separated list of words ("segments, includes", "everything, no
// attributes", "geometry, first match").
class Filter {
public:
    // Words that name nothing are collected in unknownWords and otherwise ignored.
    static Filter Parse(std::string_view text, std::vector<std::string>& unknownWords);

    bool Has(ContentKind kind) const { return m_kinds.test(static_cast<size_t>(kind)); }
    bool HasAnyGeometry() const;
    bool HasAnyAttribute() const;
    bool FirstMatch() const { return m_firstMatch; }
    bool Empty() const { return m_kinds.none(); }

private:
    std::bitset<kContentKindCount> m_kinds;
    bool m_firstMatch = false;
};

} // namespace hc
