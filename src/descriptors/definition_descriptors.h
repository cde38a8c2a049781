#pragma once

// Definition descriptors: the named things a segment defines (local textures, glyphs, line
// styles, named styles, shaders) and the fonts it can use. Each enumerates its kind's names in the
// open segment as lines "name - definition", and takes such a line back apart to redefine one.
// Like the geometry kinds, every kind's class is one class fixed to the kind, over one table.
//
// Also the reference descriptor, which describes a reference item by the count of its keys.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <obsidra/hc.h>

#include "descriptors/geometry_descriptors.h"

// Every definition descriptor in the order of the tree's definition list: class, kind, name word.
#define OBSIDRA_DEFINITION_DESCRIPTORS(X)                                                          \
    X(HoopsGeometryLocalTextures, LocalTexture, "LOCAL TEXTURE")                                   \
    X(HoopsGeometryGlyph, Glyph, "GLYPH DEFINITION")                                               \
    X(HoopsGeometryLinePattern, LinePattern, "LINE PATTERN DEFINITION")                            \
    X(HoopsGeometryFont, Font, "Font")                                                             \
    X(HoopsNamedStyleDefinition, NamedStyle, "NAMED STYLE DEFINITION")                             \
    X(HoopsShaderDefinition, Shader, "SHADER")

namespace obsidra::descriptors {

enum class DefinitionKind : uint8_t {
#define OBSIDRA_ENUM(Class, Kind, Word) Kind,
    OBSIDRA_DEFINITION_DESCRIPTORS(OBSIDRA_ENUM)
#undef OBSIDRA_ENUM
};

struct DefinitionInfo {
    DefinitionKind kind;
    std::string_view nameWord;
};

inline constexpr DefinitionInfo kDefinitionTable[] = {
#define OBSIDRA_ROW(Class, Kind, Word) {DefinitionKind::Kind, Word},
    OBSIDRA_DEFINITION_DESCRIPTORS(OBSIDRA_ROW)
#undef OBSIDRA_ROW
};

inline constexpr size_t kDefinitionKindCount = std::size(kDefinitionTable);

// A definition line taken apart.
struct DefinitionText {
    std::string name;
    std::string definition;
};

} // namespace obsidra::descriptors

class HoopsDefineGeometry : public HoopsGeometry {
public:
    using HoopsGeometry::Describe;

    // One search at a time per kind: BeginSearch, FindNext until it answers false, EndSearch.
    virtual void BeginSearch() = 0;
    virtual void EndSearch() = 0;
    // The line of the next definition; text is left as it was when there is none.
    virtual bool FindNext(std::string& text) = 0;
    // "name - definition"; empty by default.
    virtual std::string Describe(std::string_view name);
    // Defines name anew; does nothing by default.
    virtual void Define(std::string_view name, std::string_view definition);
    // Takes an edited line apart for Define; by default the whole line is the name. Empty when
    // the line cannot be a definition of the kind.
    virtual std::optional<obsidra::descriptors::DefinitionText> SplitText(std::string_view text);
};

class DefinitionKindDescriptor : public HoopsDefineGeometry {
public:
    virtual obsidra::descriptors::DefinitionKind Kind() const = 0;
    std::string_view GetName() const override;
    int Count() override;
    void BeginSearch() override;
    void EndSearch() override;
    bool FindNext(std::string& text) override;
    using HoopsDefineGeometry::Describe;
    std::string Describe(std::string_view name) override;
    void Define(std::string_view name, std::string_view definition) override;
    std::optional<obsidra::descriptors::DefinitionText> SplitText(std::string_view text) override;
};

template <obsidra::descriptors::DefinitionKind K>
class DefinitionOf final : public DefinitionKindDescriptor {
public:
    static constexpr obsidra::descriptors::DefinitionKind kKind = K;
    obsidra::descriptors::DefinitionKind Kind() const override { return K; }
};

// Most lines split by the shader rule: the name is the line's first blank-free word and the
// definition starts two characters after the line's first "-".
//
// "name - definition"; the line splits at its first " - " and is refused without one. Defining
// replaces the texture.
using HoopsGeometryLocalTextures = DefinitionOf<obsidra::descriptors::DefinitionKind::LocalTexture>;
// The glyph's bytes as signed numbers separated by blanks, which is also what Define reads.
using HoopsGeometryGlyph = DefinitionOf<obsidra::descriptors::DefinitionKind::Glyph>;
using HoopsGeometryLinePattern = DefinitionOf<obsidra::descriptors::DefinitionKind::LinePattern>;
// Font names stand alone and are never defined here. A segment counts one font entry only when
// it sets driver options and is not the root.
using HoopsGeometryFont = DefinitionOf<obsidra::descriptors::DefinitionKind::Font>;
// "name - source segment".
using HoopsNamedStyleDefinition = DefinitionOf<obsidra::descriptors::DefinitionKind::NamedStyle>;
// "name - options\n{\nsource\n}"; Define takes a definition of that shape apart again.
using HoopsShaderDefinition = DefinitionOf<obsidra::descriptors::DefinitionKind::Shader>;

// "%d keys": how many keys the reference item carries.
class HoopsReference final : public HoopsGeometry {
public:
    std::string_view GetName() const override;
    std::string Describe(HC_KEY key) override;
};

namespace obsidra::descriptors {

std::unique_ptr<HoopsDefineGeometry> MakeDefinition(DefinitionKind kind);

} // namespace obsidra::descriptors
