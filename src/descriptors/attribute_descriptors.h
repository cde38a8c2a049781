#pragma once

// Attribute descriptors: one object per attribute kind that names the attribute, tells whether
// the open item sets it, shows its local and net values as one line of text and sets or unsets
// it from such a line. They act on the innermost open item of the scene database (a geometry
// item opened with HC_Open_Geometry, else the current segment) and open nothing themselves, but
// for SYSTEM OPTIONS' presence test.
//
// Most kinds come in families that differ only in the database calls they make (option strings,
// numbers, weights); a family is one class over a table of those calls, and each kind's class is
// that family fixed to the kind. The kinds with rules of their own are classes of their own.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <obsidra/hc.h>

// Every attribute descriptor in the order of a segment's attribute list: class, kind, name word,
// family.
#define OBSIDRA_ATTRIBUTE_DESCRIPTORS(X)                                                           \
    X(HoopsAttributeColor, Color, "COLOR", Text)                                                   \
    X(HoopsAttributeVisibility, Visibility, "VISIBILITY", Text)                                    \
    X(HoopsAttributeSelectability, Selectability, "SELECTABILITY", Text)                           \
    X(HoopsAttributeCallback, Callback, "CALLBACK", Text)                                          \
    X(HoopsAttributeRenderingOptions, RenderingOptions, "RENDERING OPTIONS", Text)                 \
    X(HoopsAttributeUserOptions, UserOptions, "USER OPTIONS", Text)                                \
    X(HoopsAttributeUnicodeOptions, UnicodeOptions, "UNICODE OPTIONS", Text)                       \
    X(HoopsAttributeUserValue, UserValue, "USER VALUE", Own)                                       \
    X(HoopsAttributeUserIndex, UserIndex, "USER INDEX", Own)                                       \
    X(HoopsAttributeUserData, UserData, "USER DATA", Own)                                          \
    X(HoopsAttributeCamera, Camera, "CAMERA", Own)                                                 \
    X(HoopsAttributeModellingMatrix, ModellingMatrix, "MODELLING MATRIX", Numbers)                 \
    X(HoopsAttributeTextureMatrix, TextureMatrix, "TEXTURE MATRIX", Numbers)                       \
    X(HoopsAttributeHeuristics, Heuristics, "HEURISTICS", Text)                                    \
    X(HoopsAttributeTextFont, TextFont, "TEXT FONT", Text)                                         \
    X(HoopsAttributeDriverOptions, DriverOptions, "DRIVER OPTIONS", Text)                          \
    X(HoopsAttributeSystemOptions, SystemOptions, "SYSTEM OPTIONS", Own)                           \
    X(HoopsAttributeHandedness, Handedness, "HANDEDNESS", Text)                                    \
    X(HoopsAttributeWindow, Window, "WINDOW", Numbers)                                             \
    X(HoopsAttributeClipRegion, ClipRegion, "CLIP REGION", Own)                                    \
    X(HoopsAttributeVariableEdgeWeight, VariableEdgeWeight, "VARIABLE EDGE WEIGHT",                \
      VariableWeight)                                                                              \
    X(HoopsAttributeEdgeWeight, EdgeWeight, "EDGE WEIGHT", Weight)                                 \
    X(HoopsAttributeVariableLineWeight, VariableLineWeight, "VARIABLE LINE WEIGHT",                \
      VariableWeight)                                                                              \
    X(HoopsAttributeLineWeight, LineWeight, "LINE WEIGHT", Weight)                                 \
    X(HoopsAttributeVariableMarkerSize, VariableMarkerSize, "VARIABLE MARKER SIZE",                \
      VariableWeight)                                                                              \
    X(HoopsAttributeMarkerSize, MarkerSize, "MARKER SIZE", Weight)                                 \
    X(HoopsAttributeCondition, Condition, "CONDITION", Text)                                       \
    X(HoopsAttributeTextAlignment, TextAlignment, "TEXT ALIGNMENT", Text)                          \
    X(HoopsAttributeWindowPattern, WindowPattern, "WINDOW PATTERN", Text)                          \
    X(HoopsAttributeWindowFrame, WindowFrame, "WINDOW FRAME", Text)                                \
    X(HoopsAttributeLinePattern, LinePattern, "LINE PATTERN", Text)                                \
    X(HoopsAttributeEdgePattern, EdgePattern, "EDGE PATTERN", Text)                                \
    X(HoopsAttributeFacePattern, FacePattern, "FACE PATTERN", Text)                                \
    X(HoopsAttributeMarkerSymbol, MarkerSymbol, "MARKER SYMBOL", Text)                             \
    X(HoopsAttributeTextPath, TextPath, "TEXT PATH", Numbers)                                      \
    X(HoopsAttributeTextSpacing, TextSpacing, "TEXT SPACING", Numbers)                             \
    X(HoopsAttributeColorMap, ColorMap, "COLOR MAP", Text)                                         \
    X(HoopsAttributeGeometryOptions, GeometryOptions, "GEOMETRY OPTIONS", Own)                     \
    X(HoopsAttributeConditionalAction, ConditionalAction, "CONDITIONAL ACTION", Own)

namespace obsidra::descriptors {

enum class AttributeKind : uint8_t {
#define OBSIDRA_ENUM(Class, Kind, Word, Family) Kind,
    OBSIDRA_ATTRIBUTE_DESCRIPTORS(OBSIDRA_ENUM)
#undef OBSIDRA_ENUM
};

// The families: texts passed through as they stand, blank-separated "%f" numbers, the plain and
// the variable member of a weight pair, and the kinds with classes of their own.
enum class AttributeFamily : uint8_t { Text, Numbers, Weight, VariableWeight, Own };

struct AttributeInfo {
    AttributeKind kind;
    std::string_view nameWord;
    AttributeFamily family;
};

inline constexpr AttributeInfo kAttributeTable[] = {
#define OBSIDRA_ROW(Class, Kind, Word, Family) {AttributeKind::Kind, Word, AttributeFamily::Family},
    OBSIDRA_ATTRIBUTE_DESCRIPTORS(OBSIDRA_ROW)
#undef OBSIDRA_ROW
};

inline constexpr size_t kAttributeKindCount = std::size(kAttributeTable);

constexpr const AttributeInfo& InfoOf(AttributeKind kind) {
    return kAttributeTable[static_cast<size_t>(kind)];
}

} // namespace obsidra::descriptors

class HoopsAttribute {
public:
    virtual ~HoopsAttribute() = default;

    // The attribute's upper-case name word ("COLOR", "MODELLING MATRIX").
    virtual std::string_view GetName() const;
    // Parses a line of the form Show writes and sets the attribute; a line that does not parse
    // is ignored or passed to the database as it stands, which then reports it.
    virtual void Set(std::string_view text) = 0;
    virtual void UnSet() = 0;
    // The local value, and the value in effect (inherited or local).
    virtual std::string Show() = 0;
    virtual std::string ShowNet() = 0;
    // Whether the open item sets the attribute itself; by default whether the database counts one
    // item of the name word there.
    virtual bool Exists();

    virtual obsidra::descriptors::AttributeKind Kind() const = 0;
    static constexpr obsidra::descriptors::AttributeFamily kFamily =
        obsidra::descriptors::AttributeFamily::Own;
};

// Fixes a descriptor to its kind, which must belong to the family of Base.
template <obsidra::descriptors::AttributeKind K, typename Base = HoopsAttribute>
class AttributeOf : public Base {
public:
    static constexpr obsidra::descriptors::AttributeKind kKind = K;
    static_assert(obsidra::descriptors::InfoOf(K).family == Base::kFamily,
                  "the kind belongs to another family");
    obsidra::descriptors::AttributeKind Kind() const override { return K; }
};

// Option strings and other texts, passed through unchanged in both directions. USER OPTIONS,
// UNICODE OPTIONS and COLOR MAP ask for the length first; USER OPTIONS and UNICODE OPTIONS also
// need a length of at least 1 to exist, and UNICODE OPTIONS asks for the presence of user
// options, not of its own: the tree lists unicode options only beside user options.
class TextAttribute : public HoopsAttribute {
public:
    static constexpr obsidra::descriptors::AttributeFamily kFamily =
        obsidra::descriptors::AttributeFamily::Text;
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
    bool Exists() override;
};

// Matrices, window, text path and spacing: "%f" numbers separated by single blanks; Set needs all
// of the kind's numbers.
class NumbersAttribute : public HoopsAttribute {
public:
    static constexpr obsidra::descriptors::AttributeFamily kFamily =
        obsidra::descriptors::AttributeFamily::Numbers;
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
};

// Edge weight, line weight and marker size are a number or a text with units. Each has a plain
// descriptor ("%f") and a variable one (the text); both test the plain name word, and the
// database shows a variable value as a negative plain one, so exactly one of the pair exists.
class WeightAttribute : public HoopsAttribute {
public:
    static constexpr obsidra::descriptors::AttributeFamily kFamily =
        obsidra::descriptors::AttributeFamily::Weight;
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
    bool Exists() override;
};

class VariableWeightAttribute : public HoopsAttribute {
public:
    static constexpr obsidra::descriptors::AttributeFamily kFamily =
        obsidra::descriptors::AttributeFamily::VariableWeight;
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
    bool Exists() override;
};

using HoopsAttributeColor = AttributeOf<obsidra::descriptors::AttributeKind::Color, TextAttribute>;
using HoopsAttributeVisibility =
    AttributeOf<obsidra::descriptors::AttributeKind::Visibility, TextAttribute>;
using HoopsAttributeSelectability =
    AttributeOf<obsidra::descriptors::AttributeKind::Selectability, TextAttribute>;
using HoopsAttributeCallback =
    AttributeOf<obsidra::descriptors::AttributeKind::Callback, TextAttribute>;
using HoopsAttributeRenderingOptions =
    AttributeOf<obsidra::descriptors::AttributeKind::RenderingOptions, TextAttribute>;
using HoopsAttributeUserOptions =
    AttributeOf<obsidra::descriptors::AttributeKind::UserOptions, TextAttribute>;
using HoopsAttributeUnicodeOptions =
    AttributeOf<obsidra::descriptors::AttributeKind::UnicodeOptions, TextAttribute>;
using HoopsAttributeModellingMatrix =
    AttributeOf<obsidra::descriptors::AttributeKind::ModellingMatrix, NumbersAttribute>;
using HoopsAttributeTextureMatrix =
    AttributeOf<obsidra::descriptors::AttributeKind::TextureMatrix, NumbersAttribute>;
using HoopsAttributeHeuristics =
    AttributeOf<obsidra::descriptors::AttributeKind::Heuristics, TextAttribute>;
using HoopsAttributeTextFont =
    AttributeOf<obsidra::descriptors::AttributeKind::TextFont, TextAttribute>;
using HoopsAttributeDriverOptions =
    AttributeOf<obsidra::descriptors::AttributeKind::DriverOptions, TextAttribute>;
using HoopsAttributeHandedness =
    AttributeOf<obsidra::descriptors::AttributeKind::Handedness, TextAttribute>;
using HoopsAttributeWindow =
    AttributeOf<obsidra::descriptors::AttributeKind::Window, NumbersAttribute>;
using HoopsAttributeVariableEdgeWeight =
    AttributeOf<obsidra::descriptors::AttributeKind::VariableEdgeWeight, VariableWeightAttribute>;
using HoopsAttributeEdgeWeight =
    AttributeOf<obsidra::descriptors::AttributeKind::EdgeWeight, WeightAttribute>;
using HoopsAttributeVariableLineWeight =
    AttributeOf<obsidra::descriptors::AttributeKind::VariableLineWeight, VariableWeightAttribute>;
using HoopsAttributeLineWeight =
    AttributeOf<obsidra::descriptors::AttributeKind::LineWeight, WeightAttribute>;
using HoopsAttributeVariableMarkerSize =
    AttributeOf<obsidra::descriptors::AttributeKind::VariableMarkerSize, VariableWeightAttribute>;
using HoopsAttributeMarkerSize =
    AttributeOf<obsidra::descriptors::AttributeKind::MarkerSize, WeightAttribute>;
using HoopsAttributeCondition =
    AttributeOf<obsidra::descriptors::AttributeKind::Condition, TextAttribute>;
using HoopsAttributeTextAlignment =
    AttributeOf<obsidra::descriptors::AttributeKind::TextAlignment, TextAttribute>;
using HoopsAttributeWindowPattern =
    AttributeOf<obsidra::descriptors::AttributeKind::WindowPattern, TextAttribute>;
using HoopsAttributeWindowFrame =
    AttributeOf<obsidra::descriptors::AttributeKind::WindowFrame, TextAttribute>;
using HoopsAttributeLinePattern =
    AttributeOf<obsidra::descriptors::AttributeKind::LinePattern, TextAttribute>;
using HoopsAttributeEdgePattern =
    AttributeOf<obsidra::descriptors::AttributeKind::EdgePattern, TextAttribute>;
using HoopsAttributeFacePattern =
    AttributeOf<obsidra::descriptors::AttributeKind::FacePattern, TextAttribute>;
using HoopsAttributeMarkerSymbol =
    AttributeOf<obsidra::descriptors::AttributeKind::MarkerSymbol, TextAttribute>;
using HoopsAttributeTextPath =
    AttributeOf<obsidra::descriptors::AttributeKind::TextPath, NumbersAttribute>;
using HoopsAttributeTextSpacing =
    AttributeOf<obsidra::descriptors::AttributeKind::TextSpacing, NumbersAttribute>;
using HoopsAttributeColorMap =
    AttributeOf<obsidra::descriptors::AttributeKind::ColorMap, TextAttribute>;

// "%lld".
class HoopsAttributeUserValue final
    : public AttributeOf<obsidra::descriptors::AttributeKind::UserValue> {
public:
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
};

// "%d : { (%lu = %p), (%lu = %p), ...}": the count, then index and value pairs until the line
// reaches 3996 characters. Indices are set through the database, not through a line, and have no
// net value.
class HoopsAttributeUserIndex final
    : public AttributeOf<obsidra::descriptors::AttributeKind::UserIndex> {
public:
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
    bool Exists() override;
};

// As USER INDEX over the user-data indices: "%d : {%llu, %llu, ...}".
class HoopsAttributeUserData final
    : public AttributeOf<obsidra::descriptors::AttributeKind::UserData> {
public:
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
    bool Exists() override;
};

// "Pos: %f %f %f Target: %f %f %f Up: %f %f %f Width: %f Height: %f Near Limit: %f
// Projection:%s". Set also reads the metafile-like form
// (Camera (x y z) (x y z) (x y z) width height "projection"); the near limit is shown, never set.
class HoopsAttributeCamera final : public AttributeOf<obsidra::descriptors::AttributeKind::Camera> {
public:
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
};

// The database's own options: no unset, the net value is the value, and only the root segment
// lists them.
class HoopsAttributeSystemOptions final
    : public AttributeOf<obsidra::descriptors::AttributeKind::SystemOptions> {
public:
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
    bool Exists() override;
};

// "Loops:%d Total:%d Specs:%s". A line cannot carry the region's points, so Show keeps the points
// it read and Set applies the options after "Specs:" of an edited line to them; Set before any
// Show does nothing.
class HoopsAttributeClipRegion final
    : public AttributeOf<obsidra::descriptors::AttributeKind::ClipRegion> {
public:
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;

private:
    std::vector<HC_POINT> m_points;
};

// Geometry options belong to geometry items: every operation acts only when the innermost open
// item is one. Unsetting sets the empty options; there is no net value.
class HoopsAttributeGeometryOptions final
    : public AttributeOf<obsidra::descriptors::AttributeKind::GeometryOptions> {
public:
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
    bool Exists() override;
};

// "((condition) ? (type = options)), ..." with "segment" for empty options; Set takes that line
// back entry by entry. There is no net value.
class HoopsAttributeConditionalAction final
    : public AttributeOf<obsidra::descriptors::AttributeKind::ConditionalAction> {
public:
    void Set(std::string_view text) override;
    void UnSet() override;
    std::string Show() override;
    std::string ShowNet() override;
};

namespace obsidra::descriptors {

// A new descriptor of the kind's class.
std::unique_ptr<HoopsAttribute> MakeAttribute(AttributeKind kind);

} // namespace obsidra::descriptors
