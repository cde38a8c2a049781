// Host interfaces: the objects a host application hands to the module's dialogs.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// ---------------------------------------------------------------------------------------------
// Component host: the building model behind the component viewer and the statistics dialog.
//
// All text is UTF-8. Wherever the host orders names (floor maps, the component index, part
// parameters, minor-category counts) the order is that of the names' UTF-16 code units, so
// that hosts which keep their names as UTF-16 sort them the same way.
// ---------------------------------------------------------------------------------------------
namespace obsidra {

// Orders UTF-8 strings by their UTF-16 code units. UTF-8 byte order is code-point order, which
// differs from UTF-16 order only where a supplementary character (a surrogate pair in UTF-16)
// meets a character of U+E000..U+FFFF. A byte that does not start a well-formed sequence sorts
// on its own after every character, so that malformed text still orders strictly.
struct Utf16Less {
    using is_transparent = void;

    bool operator()(std::string_view a, std::string_view b) const noexcept {
        const std::size_t common = a.size() < b.size() ? a.size() : b.size();
        std::size_t i = 0;
        while (i < common && a[i] == b[i])
            ++i;
        // Back up to where a character starts in both strings (before i they are equal): a
        // string that ends inside a character is not simply a prefix of the other.
        while (i > 0 && (IsContinuationAt(a, i) || IsContinuationAt(b, i)))
            --i;
        // Each key stands for exactly one byte sequence, so equal keys advance both alike.
        while (i < a.size() && i < b.size()) {
            const Unit unitA = Decode(a.substr(i));
            const Unit unitB = Decode(b.substr(i));
            if (unitA.key != unitB.key) return unitA.key < unitB.key;
            i += unitA.length;
        }
        return a.size() < b.size();
    }

private:
    struct Unit {
        std::uint32_t key;
        std::size_t length;
    };

    static bool IsContinuation(char c) noexcept {
        return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    }

    static bool IsContinuationAt(std::string_view s, std::size_t i) noexcept {
        return i < s.size() && IsContinuation(s[i]);
    }

    // The first character's code point, moved so that U+E000..U+FFFF sort above every
    // supplementary character, as their UTF-16 units (above the surrogates) do.
    static Unit Decode(std::string_view s) noexcept {
        const auto lead = static_cast<unsigned char>(s[0]);
        const Unit malformed{kMalformed + lead, 1};
        if (lead < 0x80) return {lead, 1};
        std::size_t length = 0;
        std::uint32_t cp = 0;
        std::uint32_t smallest = 0;
        if ((lead & 0xE0) == 0xC0) {
            length = 2;
            cp = lead & 0x1F;
            smallest = 0x80;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3;
            cp = lead & 0x0F;
            smallest = 0x800;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4;
            cp = lead & 0x07;
            smallest = 0x10000;
        } else {
            return malformed;
        }
        if (s.size() < length) return malformed;
        for (std::size_t k = 1; k < length; ++k) {
            if (!IsContinuation(s[k])) return malformed;
            cp = (cp << 6) | (static_cast<unsigned char>(s[k]) & 0x3F);
        }
        if (cp < smallest || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return malformed;
        return {cp >= 0xE000 && cp <= 0xFFFF ? cp + 0x200000 : cp, length};
    }

    static constexpr std::uint32_t kMalformed = 0x400000;
};

// A 128-bit GUID: a 32-bit part, two 16-bit parts, then eight bytes.
struct Guid {
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::array<std::uint8_t, 8> data4{};

    friend bool operator==(const Guid&, const Guid&) = default;
    friend auto operator<=>(const Guid&, const Guid&) = default;
};

// Identifies a component, attribute, part or partition. A non-empty identifier text replaces the
// GUID; the text "none" stands for "no identifier".
struct ComponentId {
    Guid guid;
    std::string text;

    friend bool operator==(const ComponentId&, const ComponentId&) = default;

    // Identifiers with different texts order by text; equal texts fall back to the GUID.
    friend std::strong_ordering operator<=>(const ComponentId& a, const ComponentId& b) {
        if (a.text != b.text)
            return Utf16Less{}(a.text, b.text) ? std::strong_ordering::less
                                               : std::strong_ordering::greater;
        return a.guid <=> b.guid;
    }
};

// An Order of this value means that no Order is set.
inline constexpr std::uint32_t kOrderNotSet = 0xFFFFFFFF;
// Either geometry-index value equal to this means that the geometry has no index.
inline constexpr std::uint32_t kNoGeometryIndex = 0xFFFFFFFF;
// Only parts of this kind are shown in a geometry's information.
inline constexpr std::uint32_t kShownPartKind = 1;

struct DisplayStyle {
    // Bits 0 to 3 do not count: the style is set only when a higher bit is.
    std::uint16_t flags = 0;
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;
    std::uint32_t zBuffer = 0;
    std::string textureName;
    float textSize = 0.0f;
    std::uint8_t textSizeType = 0;
    std::uint8_t textAlignmentType = 0;
    // Row-major 4x4 matrix; kept with the style, never shown.
    std::array<double, 16> transform{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    // Further host values that travel with the style and are never shown.
    std::vector<std::string> extraValues;
};

struct FloorData {
    std::uint64_t handle = 0;
    std::uint32_t order = kOrderNotSet;
    double bottomElevation = 0.0;
    double storeyHeight = 0.0;
};

struct AttributeData {
    ComponentId id;
    std::string name;
    std::string partitionType;
    ComponentId mainComponentId;
    std::string mainComponentType;
};

struct MinorCategoryData {
    std::uint64_t handle = 0;
    std::string name;
    std::uint32_t order = kOrderNotSet;
    DisplayStyle style;
    std::map<ComponentId, AttributeData> attributes;
};

struct MajorCategoryData {
    std::uint64_t handle = 0;
    std::string name;
    std::uint32_t order = kOrderNotSet;
    std::vector<MinorCategoryData> minorCategories;
};

struct DisciplineData {
    std::uint64_t handle = 0;
    std::string name;
    std::uint32_t order = kOrderNotSet;
    std::vector<MajorCategoryData> majorCategories;
};

struct PartData {
    ComponentId id;
    std::string name;
    std::string type;
    std::map<std::string, std::string, Utf16Less> parameters;
};

struct GeometryIndexData {
    std::uint32_t managementId = kNoGeometryIndex;
    std::uint32_t indexId = kNoGeometryIndex;
};

struct PartitionData {
    ComponentId id;
    std::string name;
};

struct GeometryData {
    // Also the key under which the host's geometry index finds the drawable geometry.
    std::int64_t id = 0;
    bool wholeGeometry = false;
    // Keyed by part kind; a kind may hold several parts.
    std::multimap<std::uint32_t, PartData> parts;
    GeometryIndexData index;
    std::vector<PartitionData> partitions;
};

struct ComponentData {
    // The value by which the host names this component when it reports highlighted components
    // or asks the viewer to mark one.
    std::uint64_t handle = 0;
    ComponentId id;
    std::vector<ComponentId> connectedIds;
    ComponentId mainComponentId;
    std::vector<GeometryData> geometries;
};

struct ComponentGroupData {
    std::string floorName;
    // Key into the minor category's attribute map.
    ComponentId attributeKey;
    std::vector<ComponentData> components;
};

// The (discipline, major category, minor category) names under which the component index files
// its groups; compared name by name.
struct CategoryPath {
    std::string discipline;
    std::string majorCategory;
    std::string minorCategory;

    friend bool operator==(const CategoryPath&, const CategoryPath&) = default;

    friend bool operator<(const CategoryPath& a, const CategoryPath& b) {
        const Utf16Less less;
        if (a.discipline != b.discipline) return less(a.discipline, b.discipline);
        if (a.majorCategory != b.majorCategory) return less(a.majorCategory, b.majorCategory);
        return less(a.minorCategory, b.minorCategory);
    }
};

struct ProjectData {
    std::uint64_t handle = 0;
    std::string name;
    std::string type;
    std::uint32_t order = kOrderNotSet;
    std::map<std::string, FloorData, Utf16Less> floors;
    std::vector<DisciplineData> disciplines;
    std::map<CategoryPath, std::vector<ComponentGroupData>> componentIndex;
    // The type of each partition that has one.
    std::map<ComponentId, std::string> partitionTypes;
};

using MinorCategoryCounts = std::map<std::string, std::int32_t, Utf16Less>;

// The host object of the component viewer and the statistics dialog. Every object it returns
// stays owned by the host. The operations stand in the order the viewer relies on.
class ComponentHost {
public:
    class View {
    public:
        virtual ~View() = default;
        // Repaints the 3D view after visibilities changed.
        virtual void RedrawView() = 0;
        // Appends the handles of the components the host currently has selected.
        virtual void CollectHighlightedComponents(std::vector<std::uint64_t>& handles) = 0;
    };

    class Geometry {
    public:
        virtual ~Geometry() = default;
        virtual void SetVisible(bool visible) = 0;
        // Draws the geometry see-through (x-ray) or as it is; a host without the mode ignores
        // it. Display state only: the scene is not changed.
        virtual void SetXRay(bool /*xRay*/) {}
        // Marks the geometry as part of the node selected in the component viewer's tree, or
        // unmarks it; display state only, which a host without it ignores.
        virtual void SetHighlighted(bool /*highlighted*/) {}
    };

    // Keeps the geometry alive for as long as the viewer holds the handle.
    class GeometryHandle {
    public:
        virtual ~GeometryHandle() = default;
        virtual Geometry* GetGeometry() = 0;
    };

    class GeometryIndex {
    public:
        virtual ~GeometryIndex() = default;
        virtual std::shared_ptr<GeometryHandle> FindGeometry(std::int64_t geometryId) = 0;
    };

    class Project {
    public:
        virtual ~Project() = default;
        virtual const ProjectData* GetProjectData() = 0;
    };

    class ProjectSource {
    public:
        virtual ~ProjectSource() = default;
        virtual void CollectProjects(std::vector<Project*>& projects) = 0;
    };

    class Model {
    public:
        virtual ~Model() = default;
        virtual ProjectSource* GetProjectSource() = 0;
        virtual void CollectMinorCategoryCounts(MinorCategoryCounts& counts) = 0;
    };

    virtual ~ComponentHost() = default;
    virtual View* GetView() = 0;
    virtual GeometryIndex* GetGeometryIndex() = 0;
    virtual Model* GetModel() = 0;
};

} // namespace obsidra
// ---------------------------------------------------------------------------------------------
// End of the component host.
// ---------------------------------------------------------------------------------------------
