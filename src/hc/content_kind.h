#pragma once

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hc {

// Everything a contents search can return, with its type word and the other word a filter accepts
// for it, in the order the database lists a segment's contents
// (docs/formats.md). The geometry kinds sit between kFirstGeometry and kLastGeometry; the shell
// details after them are never listed, only counted on a shell (HC_Show_Existence_By_Key).
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
    X(VertexAttributes, "vertex attributes", "vertex attribute")                                   \
    X(EdgeAttributes, "edge attributes", "edge attribute")                                         \
    X(FaceAttributes, "face attributes", "face attribute")                                         \
    X(TextureDefinition, "texture definition", "local texture")                                    \
    X(GlyphDefinition, "glyph definition", "glyph")                                                \
    X(LineStyleDefinition, "line style definition", "line pattern definition")                     \
    X(NamedStyleDefinition, "named style definition", "named style definitions")                   \
    X(ShaderDefinition, "shader definition", "shader")                                             \
    X(FontDefinition, "font definition", "font")                                                   \
    X(Color, "color", "colors")                                                                    \
    X(Visibility, "visibility", "visibilities")                                                    \
    X(Selectability, "selectability", "selectabilities")                                           \
    X(Callback, "callback", "callbacks")                                                           \
    X(RenderingOptions, "rendering options", "rendering option")                                   \
    X(UserOptions, "user options", "user option")                                                  \
    X(UnicodeOptions, "unicode options", "unicode option")                                         \
    X(UserValue, "user value", "user values")                                                      \
    X(UserIndex, "user index", "user indices")                                                     \
    X(UserData, "user data", "user datas")                                                         \
    X(Camera, "camera", "cameras")                                                                 \
    X(ModellingMatrix, "modelling matrix", "modelling matrices")                                   \
    X(TextureMatrix, "texture matrix", "texture matrices")                                         \
    X(Heuristics, "heuristics", "heuristic")                                                       \
    X(TextFont, "text font", "text fonts")                                                         \
    X(DriverOptions, "driver options", "driver option")                                            \
    X(Handedness, "handedness", "handednesses")                                                    \
    X(Window, "window", "windows")                                                                 \
    X(ClipRegion, "clip region", "clip regions")                                                   \
    X(EdgeWeight, "edge weight", "edge weights")                                                   \
    X(LineWeight, "line weight", "line weights")                                                   \
    X(MarkerSize, "marker size", "marker sizes")                                                   \
    X(Conditions, "condition", "conditions")                                                       \
    X(TextAlignment, "text alignment", "text alignments")                                          \
    X(WindowPattern, "window pattern", "window patterns")                                          \
    X(WindowFrame, "window frame", "window frames")                                                \
    X(LinePattern, "line pattern", "line patterns")                                                \
    X(EdgePattern, "edge pattern", "edge patterns")                                                \
    X(FacePattern, "face pattern", "face patterns")                                                \
    X(MarkerSymbol, "marker symbol", "marker symbols")                                             \
    X(TextPath, "text path", "text paths")                                                         \
    X(TextSpacing, "text spacing", "text spacings")                                                \
    X(ColorMap, "color map", "color maps")                                                         \
    X(GeometryOptions, "geometry options", "geometry option")                                      \
    X(ConditionalAction, "conditional action", "conditional actions")

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
constexpr ContentKind kLastAttribute = ContentKind::ConditionalAction;
constexpr ContentKind kFirstDefinition = ContentKind::TextureDefinition;
constexpr ContentKind kLastDefinition = ContentKind::FontDefinition;

constexpr bool IsGeometry(ContentKind kind) {
    return kind >= kFirstGeometry && kind <= kLastGeometry;
}
constexpr bool IsAttribute(ContentKind kind) {
    return kind >= kFirstAttribute && kind <= kLastAttribute;
}
constexpr bool IsDefinition(ContentKind kind) {
    return kind >= kFirstDefinition && kind <= kLastDefinition;
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
    // As Parse, reporting each word that names nothing.
    static Filter ParseOrReport(std::string_view text);

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
